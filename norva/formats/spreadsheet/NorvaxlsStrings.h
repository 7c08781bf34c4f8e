/// The texts of a workbook under way, each kept once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string_view>
#include <vector>

#include <norva/formats/spreadsheet/NorvaxlsBytes.h>
#include <norva/platform/Export.h>

namespace norva {

/// The shared strings, in the order of their first use. They are kept in the code page that they
/// come in and compared byte for byte.
class NORVA_EXPORT TxlsStrings {
 public:
  /// The index of `Text`, which is entered if it is new. Counts a reference.
  std::uint32_t Add(std::string_view Text);

  /// Number of different texts.
  std::uint32_t Count() const { return static_cast<std::uint32_t>(Entries_.size()); }
  /// How often Add was called.
  std::uint32_t References() const { return References_; }
  /// `Index` must be below Count. The text is valid until Clear.
  std::string_view operator[](std::uint32_t Index) const {
    return {Entries_[Index].Text, Entries_[Index].Length};
  }
  /// Gives back the memory that only Add needs, which takes it again.
  void Trim() { std::vector<std::uint32_t>().swap(Places_); }
  void Clear() { *this = TxlsStrings(); }

 private:
  struct TEntry {
    const char* Text;  // in Texts_
    std::uint32_t Length, Hash;
  };

  void Grow();

  TxlsBytes Texts_;
  std::deque<TEntry> Entries_;  // not a vector: growing must not copy the whole
  // A hash table with open addressing: index + 1 of an entry, 0 for a free place. A power of two
  // of places, at most two thirds of them taken.
  std::vector<std::uint32_t> Places_;
  std::uint32_t References_ = 0;
};

}  // namespace norva
