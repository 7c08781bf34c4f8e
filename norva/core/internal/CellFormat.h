/// Formats one cell by its column's type and picture.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include <norva/core/NorvaColumns.h>
#include <norva/platform/DataSet.h>
#include <norva/platform/Locale.h>

namespace norva::internal {

/// Appends the formatted text of a value. For a number, date or time column it is defined by way of
/// the value's own text: that text is parsed and the result put through the picture. A value that
/// comes typed takes a shortcut where this gives the same bytes. Throws EConvertError for a text
/// that is no such value; text that is no integer counts as 0. Other columns show the own text.
void AppendCell(const TNorvaColumn& Column, const TFieldValue& Value,
                const TFormatSettings& Settings, std::string& Out);

/// At least the number of bytes that AppendCell appends, found without making the text; SIZE_MAX
/// where only the text can tell, or where there may be none.
std::size_t LengthBound(const TNorvaColumn& Column, const TFieldValue& Value,
                        const TFormatSettings& Settings);

/// The number, or the day number, that the own text of a typed value is read back as in a number,
/// date or time column. Nothing for other columns and where only the text can tell.
std::optional<double> TypedNumber(const TNorvaColumn& Column, const TFieldValue& Value,
                                  const TFormatSettings& Settings);

/// Whether a date or time of field type `Type`, written as text by `Settings`, is read back as the
/// same moment, to the second.
bool TextKeepsDateTime(TFieldType Type, const TFormatSettings& Settings);

}  // namespace norva::internal
