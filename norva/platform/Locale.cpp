#include <norva/platform/Locale.h>

#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>
#include <norva/platform/internal/LocaleImport.h>
#include <norva/platform/internal/SingleBytePage.h>

namespace norva {

using internal::TSingleBytePage;
using internal::TSystemLocale;

namespace {

/// One category of the environment: its variable and what it fills.
struct TCategory {
  const char* Variable;
  int Mask;
  void (*Import)(const TSystemLocale&, const TSingleBytePage*, TFormatSettings&);
};

constexpr TCategory Categories[] = {
    {"LC_NUMERIC",  LC_NUMERIC_MASK,  internal::ImportNumeric },
    {"LC_MONETARY", LC_MONETARY_MASK, internal::ImportMonetary},
    {"LC_TIME",     LC_TIME_MASK,     internal::ImportTime    },
};

TFormatSettings EnvironmentSettings(const TSingleBytePage* Page) {
  TFormatSettings settings;
  for (const TCategory& category : Categories) {
    const std::string name = internal::EnvironmentLocaleName(category.Variable);
    if (internal::IsInvariantLocale(name)) continue;
    // A locale that is not installed says nothing, as for every other program.
    const TSystemLocale locale(name, category.Mask);
    if (locale) category.Import(locale, Page, settings);
  }
  return settings;
}

const TFormatSettings& InitialSettings() {
  // In the page that every thread starts with, whatever the first one to ask has switched to.
  static const TFormatSettings settings =
      EnvironmentSettings(internal::FindSingleBytePage(EnvironmentCodePage()));
  return settings;
}

}  // namespace

TFormatSettings TFormatSettings::FromEnvironment() {
  return EnvironmentSettings(internal::ActivePage());
}

TFormatSettings TFormatSettings::FromLocale(std::string_view Name) {
  const std::string name(Name);
  TFormatSettings settings;
  if (name == "invariant" || internal::IsInvariantLocale(name)) return settings;
  const TSystemLocale locale(name, LC_NUMERIC_MASK | LC_MONETARY_MASK | LC_TIME_MASK);
  if (!locale) throw EConvertError(MsgUnknownLocale, name);
  for (const TCategory& category : Categories) {
    category.Import(locale, internal::ActivePage(), settings);
  }
  return settings;
}

TFormatSettings& FormatSettings() {
  thread_local TFormatSettings settings = InitialSettings();
  return settings;
}

}  // namespace norva
