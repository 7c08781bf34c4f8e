#include <norva/platform/internal/SystemLocale.h>

#include <iconv.h>

#include <cstdlib>
#include <string_view>

namespace norva::internal {

std::string EnvironmentLocaleName(const char* Category) {
  for (const char* variable : {"LC_ALL", Category, "LANG"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return value;
  }
  return {};
}

bool IsInvariantLocale(const std::string& Name) {
  const std::string language = Name.substr(0, Name.find('.'));
  return language == "C" || language == "POSIX";
}

TSystemLocale::TSystemLocale(const std::string& Name, int Categories)
    // The empty name would mean the environment's.
    : Locale_(Name.empty() ? nullptr
                           : newlocale(Categories | LC_CTYPE_MASK, Name.c_str(), nullptr)) {}

TSystemLocale::~TSystemLocale() {
  if (Locale_ != nullptr) freelocale(Locale_);
}

std::string TSystemLocale::Charset() const { return nl_langinfo_l(CODESET, Locale_); }

namespace {

std::optional<std::string> ConvertToUtf8(std::string Bytes, const std::string& Charset) {
  const iconv_t converter = iconv_open("UTF-8", Charset.c_str());
  if (converter == reinterpret_cast<iconv_t>(-1)) return std::nullopt;
  // No character of a locale's set takes more than four bytes in UTF-8, and the few that stand
  // for two characters come from two bytes or more.
  std::string utf8(Bytes.size() * 4, '\0');
  char* from = Bytes.data();
  char* to = utf8.data();
  std::size_t fromLeft = Bytes.size(), toLeft = utf8.size();
  const bool converted = iconv(converter, &from, &fromLeft, &to, &toLeft) == 0 &&
                         iconv(converter, nullptr, nullptr, &to, &toLeft) == 0;
  iconv_close(converter);
  if (!converted) return std::nullopt;
  utf8.resize(utf8.size() - toLeft);
  return utf8;
}

}  // namespace

std::optional<std::string> TSystemLocale::Text(nl_item Item) const {
  const std::string_view bytes = nl_langinfo_l(Item, Locale_);
  const std::string charset = Charset();
  if (charset == "UTF-8") return std::string(bytes);
  return ConvertToUtf8(std::string(bytes), charset);
}

}  // namespace norva::internal
