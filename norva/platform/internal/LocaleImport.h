/// The import of the system's locales into the library's settings.
#pragma once

#include <norva/platform/Locale.h>
#include <norva/platform/internal/SystemLocale.h>

namespace norva::internal {

class TSingleBytePage;

// Each replaces its category's part of `Settings`, with texts in `Page` (null is UTF-8).

/// LC_NUMERIC: decimal, thousand and list separator.
void ImportNumeric(const TSystemLocale& Locale, const TSingleBytePage* Page,
                   TFormatSettings& Settings);
/// LC_MONETARY: the currency symbol.
void ImportMonetary(const TSystemLocale& Locale, const TSingleBytePage* Page,
                    TFormatSettings& Settings);
/// LC_TIME: pictures, their separators and all names.
void ImportTime(const TSystemLocale& Locale, const TSingleBytePage* Page,
                TFormatSettings& Settings);

}  // namespace norva::internal
