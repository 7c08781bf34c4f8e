/// UTF-8, one character at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace norva::internal {

inline constexpr char32_t ReplacementCharacter = 0xFFFD;

/// What stands at a place of a UTF-8 text.
struct TUtf8Char {
  char32_t Code;       ///< U+FFFD when ill-formed
  std::size_t Length;  ///< bytes; of an ill-formed sequence the maximal subpart, at least 1
  bool WellFormed;
};

/// Decodes at `At`, which must lie inside `Text`. Overlong forms, surrogates and values above
/// 10FFFF are ill-formed. A maximal subpart is what could have begun a character: E2 82 without
/// its third byte is one of two bytes, ED A0 are two of one byte each.
inline TUtf8Char DecodeUtf8(std::string_view Text, std::size_t At) {
  const auto lead = static_cast<unsigned char>(Text[At]);
  if (lead < 0x80) return {lead, 1, true};
  if (lead < 0xC2 || lead > 0xF4) return {ReplacementCharacter, 1, false};
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  // The second byte is what rules out overlong forms, surrogates and values above 10FFFF.
  unsigned lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  unsigned highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  char32_t code = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if (At + i >= Text.size()) return {ReplacementCharacter, i, false};
    const auto next = static_cast<unsigned char>(Text[At + i]);
    if (next < lowest || next > highest) return {ReplacementCharacter, i, false};
    code = code << 6 | (next & 0x3FU);
    lowest = 0x80;
    highest = 0xBF;
  }
  return {code, length, true};
}

inline void AppendUtf8(char32_t Code, std::string& Out) {
  const auto put = [&Out](char32_t byte) { Out += static_cast<char>(byte); };
  const auto trail = [&](int shift) { put(0x80 | (Code >> shift & 0x3F)); };
  if (Code < 0x80) {
    put(Code);
  } else if (Code < 0x800) {
    put(0xC0 | Code >> 6), trail(0);
  } else if (Code < 0x10000) {
    put(0xE0 | Code >> 12), trail(6), trail(0);
  } else {
    put(0xF0 | Code >> 18), trail(12), trail(6), trail(0);
  }
}

/// The index of the first byte from `At` on that is not ASCII; the size of `Text` without one.
inline std::size_t SkipAscii(std::string_view Text, std::size_t At) {
  for (std::uint64_t word; At + sizeof(word) <= Text.size(); At += sizeof(word)) {
    std::memcpy(&word, Text.data() + At, sizeof(word));
    if ((word & 0x8080808080808080U) != 0) break;
  }
  while (At < Text.size() && static_cast<unsigned char>(Text[At]) < 0x80) ++At;
  return At;
}

}  // namespace norva::internal
