#include <norva/platform/CodePages.h>

#include <algorithm>

#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>
#include <norva/platform/internal/SingleBytePage.h>
#include <norva/platform/internal/SystemLocale.h>

namespace norva {

using internal::DecodeUtf8;
using internal::FindSingleBytePage;
using internal::SkipAscii;
using internal::TSingleBytePage;
using internal::TUtf8Char;

// --- The thread's page and policy ---------------------------------------------------------------

namespace {

struct TTextSettings {
  const TSingleBytePage* Page;  // null: UTF-8
  TUnmappable Policy;
};

TTextSettings InitialSettings() {
  // Asked once, so that all threads start alike and no thread reads the environment later on.
  static const int page = EnvironmentCodePage();
  return {FindSingleBytePage(page), umError};
}

thread_local TTextSettings Settings = InitialSettings();

}  // namespace

const TSingleBytePage* internal::ActivePage() { return Settings.Page; }

int ActiveCodePage() {
  const TSingleBytePage* page = Settings.Page;
  return page == nullptr ? CodePageUtf8 : page->Number();
}

void SetActiveCodePage(int CodePage) {
  if (!IsKnownCodePage(CodePage)) throw EConvertError(MsgUnknownCodePage, CodePage);
  Settings.Page = FindSingleBytePage(CodePage);
}

TUnmappable UnmappablePolicy() { return Settings.Policy; }

void SetUnmappablePolicy(TUnmappable Policy) { Settings.Policy = Policy; }

bool IsKnownCodePage(int CodePage) {
  return CodePage == CodePageUtf8 || FindSingleBytePage(CodePage) != nullptr;
}

// --- Pages of the environment -------------------------------------------------------------------

namespace {

struct TCharsetPage {
  std::string_view Name;
  int Page;
};

// Names without their hyphens and underscores. A page of the same family that has every letter
// of the set stands for it.
constexpr TCharsetPage CharsetPages[] = {
    {"IBM437",      437 },
    {"IBM850",      850 },
    {"IBM866",      866 },
    {"CP1250",      1250},
    {"CP1251",      1251},
    {"CP1252",      1252},
    {"CP1253",      1253},
    {"CP1254",      1254},
    {"CP1255",      1255},
    {"CP1256",      1256},
    {"CP1257",      1257},
    {"CP1258",      1258},
    {"WINDOWS1250", 1250},
    {"WINDOWS1251", 1251},
    {"WINDOWS1252", 1252},
    {"WINDOWS1253", 1253},
    {"WINDOWS1254", 1254},
    {"WINDOWS1255", 1255},
    {"WINDOWS1256", 1256},
    {"WINDOWS1257", 1257},
    {"WINDOWS1258", 1258},
    {"ISO88591",    1252},
    {"ISO885915",   1252},
    {"ISO88592",    1250},
    {"ISO885916",   1250},
    {"ISO88595",    1251},
    {"KOI8R",       1251},
    {"KOI8U",       1251},
    {"ISO88596",    1256},
    {"ISO88597",    1253},
    {"ISO88598",    1255},
    {"ISO88599",    1254},
    {"ISO88594",    1257},
    {"ISO885910",   1257},
    {"ISO885913",   1257},
};

struct TPageLanguages {
  int Page;
  std::string_view Languages;
};

constexpr TPageLanguages AnsiLanguages[] = {
    {1251, " be bg kk mk ru sr uk "      },
    {1250, " bs cs hr hu pl ro sk sl sq "},
    {1253, " el "                        },
    {1254, " az tr "                     },
    {1255, " he yi "                     },
    {1256, " ar fa ur "                  },
    {1257, " et lt lv "                  },
    {1258, " vi "                        },
};

}  // namespace

int EnvironmentCodePage() {
  const internal::TSystemLocale locale(internal::EnvironmentLocaleName("LC_CTYPE"), LC_CTYPE_MASK);
  if (!locale) return CodePageUtf8;
  std::string charset;
  for (char c : locale.Charset()) {
    if (c == '-' || c == '_') continue;
    charset += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  }
  for (const TCharsetPage& row : CharsetPages) {
    if (charset == row.Name) return row.Page;
  }
  return CodePageUtf8;
}

int SystemAnsiCodePage() {
  const int active = ActiveCodePage();
  if (active >= 1250 && active <= 1258) return active;
  const std::string name = internal::EnvironmentLocaleName("LC_CTYPE");
  const std::string language = " " + name.substr(0, name.find_first_of("_.@")) + " ";
  for (const TPageLanguages& row : AnsiLanguages) {
    if (row.Languages.find(language) != std::string_view::npos) return row.Page;
  }
  return 1252;
}

// --- Characters ---------------------------------------------------------------------------------

std::size_t CharCount(std::string_view Text) {
  std::size_t at = SkipAscii(Text, 0);
  if (at == Text.size() || Settings.Page != nullptr) return Text.size();
  std::size_t count = at;
  while (at < Text.size()) {
    const TUtf8Char c = DecodeUtf8(Text, at);
    count += c.WellFormed ? 1 : c.Length;
    const std::size_t next = at + c.Length;
    at = SkipAscii(Text, next);
    count += at - next;
  }
  return count;
}

std::string_view CutAtCharacter(std::string_view Text, std::size_t Bytes) {
  if (Text.size() <= Bytes) return Text;
  if (Settings.Page == nullptr) {
    // A lead byte stands for itself, so it is enough to look for one whose character, up to four
    // bytes long, reaches across the cut.
    for (std::size_t back = 1; back <= std::min<std::size_t>(3, Bytes); ++back) {
      const TUtf8Char c = DecodeUtf8(Text, Bytes - back);
      if (c.WellFormed && c.Length > back) return Text.substr(0, Bytes - back);
    }
  }
  return Text.substr(0, Bytes);
}

// --- Conversions --------------------------------------------------------------------------------

namespace {

unsigned char Byte(char C) { return static_cast<unsigned char>(C); }

EConvertError Unmappable(char32_t Code, int CodePage) {
  std::string hex;
  for (int shift = 20; shift >= 0; shift -= 4) {
    const char32_t digit = Code >> shift & 0xF;
    if (digit != 0 || !hex.empty() || shift < 16) hex += "0123456789ABCDEF"[digit];
  }
  return EConvertError(MsgUnmappable, hex, CodePage);
}

// Calls `Sink` with every Unicode character of `Text`, which is in the active page.
template <class TSink>
void ForEachCodePoint(std::string_view Text, const TSink& Sink) {
  if (const TSingleBytePage* page = Settings.Page) {
    for (char c : Text) Sink(page->CodePointOf(Byte(c)));
    return;
  }
  for (std::size_t at = 0; at < Text.size();) {
    const TUtf8Char c = DecodeUtf8(Text, at);
    Sink(c.Code);
    at += c.Length;
  }
}

}  // namespace

void AppendFromUtf8(std::string_view Utf8, std::string& Out) {
  const TSingleBytePage* page = Settings.Page;
  if (page == nullptr) {
    Out += Utf8;
    return;
  }
  const std::size_t before = Out.size();
  page->Encode(Utf8, Out, [&](char32_t Code) {
    if (Settings.Policy == umReplace) return '?';
    Out.resize(before);
    throw Unmappable(Code, page->Number());
  });
}

std::string FromUtf8(std::string_view Utf8) {
  std::string text;
  text.reserve(Utf8.size());
  AppendFromUtf8(Utf8, text);
  return text;
}

std::string ToUtf8(std::string_view Text) {
  const TSingleBytePage* page = Settings.Page;
  std::string utf8;
  utf8.reserve(Text.size() + Text.size() / 8);
  for (std::size_t at = 0; at < Text.size();) {
    const std::size_t run = SkipAscii(Text, at);
    utf8.append(Text, at, run - at);
    if (run == Text.size()) break;
    const TUtf8Char c = page == nullptr ? DecodeUtf8(Text, run)
                                        : TUtf8Char{page->CodePointOf(Byte(Text[run])), 1, true};
    internal::AppendUtf8(c.Code, utf8);
    at = run + c.Length;
  }
  return utf8;
}

std::u16string ToUtf16(std::string_view Text) {
  // No character takes more units than it has bytes.
  std::u16string utf16(Text.size(), u'\0');
  std::size_t size = 0;
  ForEachCodePoint(Text, [&](char32_t Code) {
    if (Code >= 0x10000) {
      utf16[size++] = static_cast<char16_t>(0xD800 + ((Code - 0x10000) >> 10));
      Code = 0xDC00 + (Code & 0x3FF);
    }
    utf16[size++] = static_cast<char16_t>(Code);
  });
  utf16.resize(size);
  return utf16;
}

std::u32string ToUtf32(std::string_view Text) {
  std::u32string utf32;
  utf32.reserve(Text.size());
  ForEachCodePoint(Text, [&utf32](char32_t Code) { utf32 += Code; });
  return utf32;
}

char32_t CodePoint(int CodePage, unsigned char Byte) {
  if (!IsKnownCodePage(CodePage)) throw EConvertError(MsgUnknownCodePage, CodePage);
  if (const TSingleBytePage* page = FindSingleBytePage(CodePage)) return page->CodePointOf(Byte);
  return Byte < 0x80 ? Byte : internal::ReplacementCharacter;
}

}  // namespace norva
