/// Text: 8-bit strings in the active code page.
///
/// A string of the library is a run of bytes in the thread's active code page. A *character* is a
/// byte in a single-byte page and a code point in UTF-8 (65001), where a byte that belongs to no
/// well-formed sequence counts as one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <norva/platform/Export.h>

namespace norva {

inline constexpr int CodePageUtf8 = 65001;

/// What happens to a character that the target code page lacks.
enum TUnmappable : std::uint8_t {
  umError,    ///< EConvertError "Character U+... cannot be written in code page ..."
  umReplace,  ///< a question mark takes its place
};

/// The calling thread's active code page: 437, 850, 866, 1250 to 1258 or 65001. Initially that
/// of the environment's character set.
NORVA_EXPORT int ActiveCodePage();
/// Throws EConvertError for a page that is not known; the page then stays as it was. Texts that
/// exist already, those of FormatSettings() included, are not converted.
NORVA_EXPORT void SetActiveCodePage(int CodePage);
/// The thread's policy for characters that the active page lacks; initially umError.
NORVA_EXPORT TUnmappable UnmappablePolicy();
NORVA_EXPORT void SetUnmappablePolicy(TUnmappable Policy);

/// True for the pages listed at ActiveCodePage.
NORVA_EXPORT bool IsKnownCodePage(int CodePage);
/// The page of the environment's character set (LC_ALL, LC_CTYPE, LANG); 65001 when in doubt.
NORVA_EXPORT int EnvironmentCodePage();
/// The page that stands for "the system's ANSI code page": the active one when it is 1250 to
/// 1258, else by the language of the environment's LC_CTYPE, 1252 when that says nothing.
NORVA_EXPORT int SystemAnsiCodePage();

/// Number of characters of `Text` in the active page.
NORVA_EXPORT std::size_t CharCount(std::string_view Text);
/// The longest prefix of `Text` that has at most `Bytes` bytes and ends between two characters.
NORVA_EXPORT std::string_view CutAtCharacter(std::string_view Text, std::size_t Bytes);

/// Appends `Utf8`, converted to the active page by the thread's policy, to `Out`. In 65001 the
/// bytes are appended as they are. Throws EConvertError under umError.
NORVA_EXPORT void AppendFromUtf8(std::string_view Utf8, std::string& Out);
NORVA_EXPORT std::string FromUtf8(std::string_view Utf8);
/// From the active page. An unassigned byte becomes U+FFFD, and so does every maximal ill-formed
/// sequence, the way Unicode recommends: E2 82 without its third byte is one.
NORVA_EXPORT std::string ToUtf8(std::string_view Text);
/// From the active page; supplementary characters as surrogate pairs.
NORVA_EXPORT std::u16string ToUtf16(std::string_view Text);
/// The Unicode characters of `Text`, one value a character (U+FFFD as in ToUtf8).
NORVA_EXPORT std::u32string ToUtf32(std::string_view Text);
/// The code point that `Byte` stands for in a single-byte page, U+FFFD when unassigned, as are
/// bytes 80 to FF of 65001. Throws EConvertError for a page that is not known.
NORVA_EXPORT char32_t CodePoint(int CodePage, unsigned char Byte);

/// Each character by its one-to-one Unicode capital; one whose capital the page lacks stays.
NORVA_EXPORT std::string UpperCase(std::string_view Text);
/// True when the upper-cased texts are the same.
NORVA_EXPORT bool SameText(std::string_view A, std::string_view B);
/// Byte order with a-z folded to A-Z only: negative, 0 or positive.
NORVA_EXPORT int CompareText(std::string_view A, std::string_view B);
/// `S` with every occurrence of `OldPattern` replaced, compared without regard to case character
/// by character; the copied parts stay as they are. An empty pattern or text changes nothing.
NORVA_EXPORT std::string ReplaceText(std::string_view S, std::string_view OldPattern,
                                     std::string_view NewPattern);

}  // namespace norva
