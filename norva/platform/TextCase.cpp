// Text without regard to case; the declarations stand in CodePages.h.
#include <norva/platform/CodePages.h>

#include <algorithm>
#include <cstdint>

#include <norva/platform/internal/SingleBytePage.h>
#include <norva/platform/internal/UnicodeCase.h>

namespace norva {

using internal::TSingleBytePage;
using internal::TUtf8Char;

namespace {

unsigned char Byte(char C) { return static_cast<unsigned char>(C); }

unsigned char UpperAscii(unsigned char C) {
  return C >= 'a' && C <= 'z' ? static_cast<unsigned char>(C - ('a' - 'A')) : C;
}

/// A character as comparisons see it.
struct TFolded {
  char32_t Code;  // the capital; beyond Unicode for a byte of no well-formed sequence
  std::size_t Length;
};

TFolded FoldedAt(std::string_view Text, std::size_t At, const TSingleBytePage* Page) {
  const unsigned char byte = Byte(Text[At]);
  if (byte < 0x80) return {UpperAscii(byte), 1};
  if (Page != nullptr) return {Page->UpperOf(byte), 1};
  const TUtf8Char c = internal::DecodeUtf8(Text, At);
  if (!c.WellFormed) return {0x110000U + byte, 1};
  return {internal::UnicodeUpper(c.Code), c.Length};
}

}  // namespace

std::string UpperCase(std::string_view Text) {
  std::string upper(Text);
  const std::size_t ascii = internal::SkipAscii(Text, 0);
  const auto end = upper.begin() + static_cast<std::ptrdiff_t>(ascii);
  const auto upperAscii = [](char c) { return static_cast<char>(UpperAscii(Byte(c))); };
  std::transform(upper.begin(), end, upper.begin(), upperAscii);
  if (ascii == Text.size()) return upper;

  upper.resize(ascii);
  const TSingleBytePage* page = internal::ActivePage();
  for (std::size_t at = ascii; at < Text.size();) {
    const TFolded c = FoldedAt(Text, at, page);
    if (page != nullptr) {
      upper += static_cast<char>(c.Code);
    } else if (c.Code < 0x110000U) {
      internal::AppendUtf8(c.Code, upper);
    } else {
      upper += Text[at];
    }
    at += c.Length;
  }
  return upper;
}

namespace {

bool SameFolded(std::string_view A, std::string_view B) {
  const TSingleBytePage* page = internal::ActivePage();
  std::size_t a = 0, b = 0;
  while (a < A.size() && b < B.size()) {
    const TFolded fromA = FoldedAt(A, a, page);
    const TFolded fromB = FoldedAt(B, b, page);
    if (fromA.Code != fromB.Code) return false;
    a += fromA.Length;
    b += fromB.Length;
  }
  return a == A.size() && b == B.size();
}

}  // namespace

bool SameText(std::string_view A, std::string_view B) {
  const std::size_t common = std::min(A.size(), B.size());
  for (std::size_t i = 0; i < common; ++i) {
    const unsigned char a = Byte(A[i]), b = Byte(B[i]);
    if ((a | b) >= 0x80) return SameFolded(A.substr(i), B.substr(i));
    if (a != b && UpperAscii(a) != UpperAscii(b)) return false;
  }
  return A.size() == B.size();
}

int CompareText(std::string_view A, std::string_view B) {
  const std::size_t common = std::min(A.size(), B.size());
  for (std::size_t i = 0; i < common; ++i) {
    const int difference = UpperAscii(Byte(A[i])) - UpperAscii(Byte(B[i]));
    if (difference != 0) return difference;
  }
  return static_cast<int>(A.size() > B.size()) - static_cast<int>(A.size() < B.size());
}

namespace {

std::u32string Folded(std::string_view Text, const TSingleBytePage* Page) {
  std::u32string folded;
  for (std::size_t at = 0; at < Text.size();) {
    const TFolded c = FoldedAt(Text, at, Page);
    folded += c.Code;
    at += c.Length;
  }
  return folded;
}

/// Where a match of the folded `Pattern` that begins at `At` ends; `At` when there is none.
std::size_t MatchEnd(std::string_view Text, std::size_t At, std::u32string_view Pattern,
                     const TSingleBytePage* Page) {
  std::size_t end = At;
  for (char32_t wanted : Pattern) {
    if (end == Text.size()) return At;
    const TFolded c = FoldedAt(Text, end, Page);
    if (c.Code != wanted) return At;
    end += c.Length;
  }
  return end;
}

}  // namespace

std::string ReplaceText(std::string_view S, std::string_view OldPattern,
                        std::string_view NewPattern) {
  if (OldPattern.empty()) return std::string(S);
  const TSingleBytePage* page = internal::ActivePage();
  const std::u32string pattern = Folded(OldPattern, page);
  std::string result;
  std::size_t copied = 0;  // what stands before is in the result
  for (std::size_t at = 0; at < S.size();) {
    const TFolded c = FoldedAt(S, at, page);
    const std::size_t end = c.Code == pattern[0] ? MatchEnd(S, at, pattern, page) : at;
    if (end == at) {
      at += c.Length;
    } else {
      result.append(S, copied, at - copied);
      result += NewPattern;
      copied = at = end;
    }
  }
  result.append(S, copied);
  return result;
}

}  // namespace norva
