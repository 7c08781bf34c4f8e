/// Takes binary files apart: numbers, bytes as text, and compound documents.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace norva::tests {

/// The little-endian number of `Size` bytes at `At`.
inline std::uint64_t NumberAt(std::string_view Bytes, std::size_t At, std::size_t Size = 2) {
  std::uint64_t number = 0;
  while (Size-- > 0) number = number << 8 | static_cast<unsigned char>(Bytes.at(At + Size));
  return number;
}

/// In capital hexadecimal, with `Digits` digits.
inline std::string HexNumber(std::uint64_t Number, int Digits) {
  std::string hex;
  for (; Digits > 0; --Digits) hex += "0123456789ABCDEF"[Number >> (4 * Digits - 4) & 15];
  return hex;
}

/// "00 FF".
inline std::string Hex(std::string_view Bytes) {
  std::string hex;
  for (const char byte : Bytes) {
    hex += (hex.empty() ? "" : " ") + HexNumber(static_cast<unsigned char>(byte), 2);
  }
  return hex;
}

/// The streams of a compound document, and how many sectors it spends on what.
class TCompoundReader {
 public:
  struct TEntry {
    std::u16string Name;
    bool IsBlack;
    std::size_t Left, Right, Child, First, Size;
  };
  std::size_t FatSectors, MiniFatSectors, DifatSectors;
  std::vector<TEntry> Entries;  ///< the root is the first

  explicit TCompoundReader(std::string_view File) : File_(File) {
    FatSectors = NumberAt(File, 44, 4);
    MiniFatSectors = NumberAt(File, 64, 4);
    DifatSectors = NumberAt(File, 72, 4);
    std::string places(File.substr(76, 436));
    for (auto at = NumberAt(File, 68, 4); at < Special; at = NumberAt(Sector(at), 508, 4)) {
      places += Sector(at).substr(0, 508);
    }
    for (std::size_t i = 0; i < FatSectors; ++i) Fat_ += Sector(NumberAt(places, 4 * i, 4));
    const std::string directory = Chain(NumberAt(File, 48, 4));
    for (std::size_t at = 0; at < directory.size(); at += 128) ReadEntry(directory.substr(at, 128));
    MiniFat_ = Chain(NumberAt(File, 60, 4));
    MiniStream_ = Chain(Entries.at(0).First);
  }

  std::string Content(const TEntry& Entry) {
    std::string content;
    if (Entry.Size >= 4096) {
      content = Chain(Entry.First);
    } else {
      for (auto at = Entry.First; at < Special; at = NumberAt(MiniFat_, 4 * at, 4)) {
        content += MiniStream_.substr(64 * at, 64);
      }
    }
    EXPECT_EQ(content.find_first_not_of('\0', Entry.Size), content.npos) << "not padded with zeros";
    return content.substr(0, Entry.Size);
  }
  /// After all streams were read: every sector belongs to something, and the FAT says so.
  void ExpectAllSectorsUsed() const {
    EXPECT_EQ(File_.size(), 512 * (1 + FatSectors + DifatSectors + Used_));
    EXPECT_EQ(MiniFat_.size(), 512 * MiniFatSectors);
    std::size_t fat = 0, difat = 0;
    for (std::size_t at = 0; at < Fat_.size(); at += 4) {
      fat += NumberAt(Fat_, at, 4) == 0xFFFFFFFD;
      difat += NumberAt(Fat_, at, 4) == 0xFFFFFFFC;
    }
    EXPECT_EQ(fat, FatSectors);
    EXPECT_EQ(difat, DifatSectors);
  }

 private:
  static constexpr std::size_t Special = 0xFFFFFFF0;  // no sector: an end, or a mark

  std::string_view Sector(std::size_t Number) const {
    return File_.substr(512 * Number + 512, 512);
  }
  std::string Chain(std::size_t First) {
    std::string bytes;
    for (; First < Special && bytes.size() < File_.size(); First = NumberAt(Fat_, 4 * First, 4)) {
      bytes += Sector(First);
      ++Used_;
    }
    return bytes;
  }
  void ReadEntry(std::string_view Bytes) {
    if (Bytes[66] == 0) return;
    EXPECT_EQ(int{Bytes[66]}, Entries.empty() ? 5 : 2);
    const auto number = [&](std::size_t At) { return NumberAt(Bytes, At, 4); };
    TEntry entry;
    entry.IsBlack = Bytes[67] == 1;
    entry.Left = number(68), entry.Right = number(72), entry.Child = number(76);
    entry.First = number(116), entry.Size = number(120);
    for (std::size_t i = 0; i + 2 < NumberAt(Bytes, 64); i += 2) {
      entry.Name += static_cast<char16_t>(NumberAt(Bytes, i));
    }
    Entries.push_back(entry);
  }

  std::string_view File_;
  std::string Fat_, MiniFat_, MiniStream_;
  std::size_t Used_ = 0;
};

}  // namespace norva::tests
