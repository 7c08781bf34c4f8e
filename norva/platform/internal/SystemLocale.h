/// Locale objects of the system; the process's own locale is never touched.
#pragma once

#include <langinfo.h>
#include <locale.h>

#include <optional>
#include <string>

namespace norva::internal {

/// The first non-empty of LC_ALL, `Category` ("LC_TIME") and LANG; empty without one.
std::string EnvironmentLocaleName(const char* Category);

/// True for `C` and `POSIX`, with any character set: `C.UTF-8` writes as `C` does.
bool IsInvariantLocale(const std::string& Name);

/// A locale by name, for the categories asked for.
class TSystemLocale {
 public:
  /// `Categories` as newlocale takes them (LC_TIME_MASK); LC_CTYPE comes with every one.
  TSystemLocale(const std::string& Name, int Categories);
  ~TSystemLocale();
  TSystemLocale(const TSystemLocale&) = delete;
  TSystemLocale& operator=(const TSystemLocale&) = delete;

  /// False when the system lacks the locale; then nothing else may be called.
  explicit operator bool() const { return Locale_ != nullptr; }
  /// The name of the character set, "ISO-8859-1".
  std::string Charset() const;
  /// An item in UTF-8; nothing when it cannot be converted from the locale's character set.
  std::optional<std::string> Text(nl_item Item) const;

 private:
  locale_t Locale_;
};

}  // namespace norva::internal
