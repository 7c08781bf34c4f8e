/// Gives a test a code page or an environment of its own.
#pragma once

#include <cstdlib>
#include <map>
#include <optional>
#include <string>

#include <norva/platform/CodePages.h>

namespace norva::tests {

/// Restores the thread's page and policy.
class TPageScope {
 public:
  explicit TPageScope(int CodePage, TUnmappable Policy = umError) {
    SetActiveCodePage(CodePage);
    SetUnmappablePolicy(Policy);
  }
  ~TPageScope() {
    SetActiveCodePage(Page_);
    SetUnmappablePolicy(Policy_);
  }
  TPageScope(const TPageScope&) = delete;
  TPageScope& operator=(const TPageScope&) = delete;

 private:
  int Page_ = ActiveCodePage();
  TUnmappable Policy_ = UnmappablePolicy();
};

using TEnvironment = std::map<std::string, std::string>;

/// Of the locale variables only those given are set; restores all afterwards.
class TLocaleVariables {
 public:
  explicit TLocaleVariables(const TEnvironment& Variables) {
    for (const char* name : Names) {
      const char* value = std::getenv(name);
      Saved_[name] = value == nullptr ? std::nullopt : std::optional<std::string>(value);
      unsetenv(name);
    }
    for (const auto& [name, value] : Variables) setenv(name.c_str(), value.c_str(), 1);
  }
  ~TLocaleVariables() {
    for (const auto& [name, value] : Saved_) {
      value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
    }
  }
  TLocaleVariables(const TLocaleVariables&) = delete;
  TLocaleVariables& operator=(const TLocaleVariables&) = delete;

 private:
  static constexpr const char* Names[] = {"LC_ALL",  "LC_CTYPE", "LC_NUMERIC", "LC_MONETARY",
                                          "LC_TIME", "LANG",     "LOCPATH"};
  std::map<std::string, std::optional<std::string>> Saved_;
};

}  // namespace norva::tests
