/// Bytes gathered piece by piece.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace norva {

/// A growing row of bytes that never moves: what was appended stays where it is, and growth needs
/// no second copy of it.
class TxlsBytes {
 public:
  /// Returns where the bytes are kept, in one piece, until Clear.
  char* Append(std::string_view Bytes) {
    if (Bytes.size() > Room_) AddChunk(Bytes.size());
    char* const place = Next_;
    std::memcpy(place, Bytes.data(), Bytes.size());
    Next_ += Bytes.size();
    Room_ -= Bytes.size();
    Size_ += Bytes.size();
    return place;
  }

  std::size_t Size() const { return Size_; }

  /// The whole row, in order.
  void AppendTo(std::vector<std::string_view>& Pieces) const {
    for (const TChunk& chunk : Chunks_) {
      const bool last = &chunk == &Chunks_.back();
      Pieces.emplace_back(chunk.Bytes.get(), last ? chunk.Capacity - Room_ : chunk.Used);
    }
  }

  void Clear() { *this = TxlsBytes(); }

 private:
  struct TChunk {
    std::unique_ptr<char[]> Bytes;
    std::size_t Capacity;
    std::size_t Used;  // set when the next one begins
  };
  static constexpr std::size_t FirstSize = std::size_t{4} * 1024;
  static constexpr std::size_t LargestSize = std::size_t{1024} * 1024;

  void AddChunk(std::size_t Wanted) {
    std::size_t capacity = FirstSize;
    if (!Chunks_.empty()) {
      TChunk& last = Chunks_.back();
      last.Used = last.Capacity - Room_;
      capacity = std::min(2 * last.Capacity, LargestSize);
    }
    capacity = std::max(capacity, Wanted);
    Chunks_.push_back({std::make_unique_for_overwrite<char[]>(capacity), capacity, 0});
    Next_ = Chunks_.back().Bytes.get();
    Room_ = capacity;
  }

  std::vector<TChunk> Chunks_;
  char* Next_ = nullptr;  // into the last chunk
  std::size_t Room_ = 0;  // what is left there
  std::size_t Size_ = 0;
};

}  // namespace norva
