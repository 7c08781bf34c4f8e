/// Numbers to text and back, by the thread's locale settings.
///
///   FormatFloat("#,##0.00", 1234.5)   "1,234.50"
///   FloatToStr(0.1)                   "0.1"
///   StrToInt("$FF")                   255
///
/// Pictures, and how numbers are rounded: see NumberPicture.h.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <norva/platform/Export.h>
#include <norva/platform/Locale.h>
#include <norva/platform/NumberPicture.h>

namespace norva {

/// `Value` by `Picture`; the empty picture is the general form (15 significant digits). For many
/// values by one picture keep a TNumberPicture.
NORVA_EXPORT std::string FormatFloat(std::string_view Picture, double Value);
NORVA_EXPORT std::string FormatFloat(std::string_view Picture, std::int64_t Value);

/// The shortest text that reads back to the same double: plain digits from 0.00001 to below 10^15,
/// else with an exponent (`1.5E-7`). Negative zero is 0; no number gives NAN, INF or -INF.
NORVA_EXPORT std::string FloatToStr(double Value);
NORVA_EXPORT void AppendFloatToStr(double Value, const TFormatSettings& Settings, std::string& Out);
/// `Value` with exactly `Decimals` decimals, the decimal separator and no grouping or exponent.
NORVA_EXPORT std::string FloatToFixed(double Value, int Decimals);

/// Blanks and TABs, a sign or none, then decimal digits, or hexadecimal ones after `$` or `0x`.
/// Hexadecimal without a sign fills the bits: `$FFFFFFFF` is -1 in 32 bits. Throws EConvertError
/// for anything else and for what is out of range.
NORVA_EXPORT std::int32_t StrToInt(std::string_view Text);
NORVA_EXPORT std::int64_t StrToInt64(std::string_view Text);
/// `Default` in place of an error.
NORVA_EXPORT std::int32_t StrToIntDef(std::string_view Text, std::int32_t Default);
NORVA_EXPORT std::int64_t StrToInt64Def(std::string_view Text, std::int64_t Default);
/// False, with `Value` unchanged, in place of an error.
NORVA_EXPORT bool TryStrToInt(std::string_view Text, std::int32_t& Value);
NORVA_EXPORT bool TryStrToInt64(std::string_view Text, std::int64_t& Value);

/// The nearest double, by the thread's decimal separator: digits with at most one separator, and
/// an exponent or none; or INF or NAN in any case. Blanks and control characters around are
/// dropped. Throws EConvertError for anything else (thousand separators too) and for what is too
/// large; what is too small is 0.
NORVA_EXPORT double StrToFloat(std::string_view Text);
/// False, with `Value` unchanged, in place of an error.
NORVA_EXPORT bool TryStrToFloat(std::string_view Text, double& Value);

}  // namespace norva
