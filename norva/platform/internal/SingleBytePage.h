/// The single-byte code pages: bytes below 80 are ASCII, those above come from a table.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include <norva/platform/internal/Utf8.h>

namespace norva::internal {

/// The code points of bytes 80 to FF. Unassigned bytes below A0 stand for the control character
/// of the same number, the others are U+FFFD.
struct TPageTable {
  int Number;
  std::array<char16_t, 128> HighHalf;
};

/// The known single-byte pages.
extern const std::array<TPageTable, 12> PageTables;

/// A page with what is derived from its table.
class TSingleBytePage {
 public:
  explicit TSingleBytePage(const TPageTable& Table);

  int Number() const { return Table_.Number; }
  /// U+FFFD for an unassigned byte.
  char32_t CodePointOf(unsigned char Byte) const {
    return Byte < 0x80 ? Byte : Table_.HighHalf[Byte - 0x80U];
  }
  /// The byte of a code point, or -1 when the page lacks it.
  int ByteOf(char32_t Code) const;
  /// The byte of the capital; `Byte` itself when there is none, or none in this page.
  unsigned char UpperOf(unsigned char Byte) const { return Upper_[Byte]; }

  /// Appends `Utf8` in this page to `Out`. `Lacking(char32_t)` returns the byte to write for a
  /// character that the page lacks; what is ill-formed comes as U+FFFD, which no page has.
  template <class TLacking>
  void Encode(std::string_view Utf8, std::string& Out, const TLacking& Lacking) const {
    std::size_t at = 0;
    while (true) {
      const std::size_t run = SkipAscii(Utf8, at);
      Out.append(Utf8, at, run - at);
      if (run == Utf8.size()) return;
      const TUtf8Char c = DecodeUtf8(Utf8, run);
      const int byte = ByteOf(c.Code);
      Out += byte < 0 ? Lacking(c.Code) : static_cast<char>(byte);
      at = run + c.Length;
    }
  }

 private:
  const TPageTable& Table_;
  // Bytes 80 to FF hashed by their code point, open addressing; 0 is free.
  std::array<unsigned char, 512> Places_{};
  std::array<unsigned char, 256> Upper_{};
};

/// The page of that number, or null: 65001 and whatever is not known.
const TSingleBytePage* FindSingleBytePage(int CodePage);

/// The calling thread's active page; null is UTF-8.
const TSingleBytePage* ActivePage();

}  // namespace norva::internal
