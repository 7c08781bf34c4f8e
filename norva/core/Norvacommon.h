/// Common routines: source checks, column discovery, type inference, small helpers.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <norva/core/NorvaTypes.h>
#include <norva/platform/Controls.h>
#include <norva/platform/DataSet.h>
#include <norva/platform/Export.h>
#include <norva/platform/Fonts.h>
#include <norva/platform/StringList.h>

namespace norva {

/// Throws Exception "Export source (%s) is not assigned" when the chosen source is missing, or is
/// a grid without a data source or data set. The other references are not looked at.
NORVA_EXPORT void CheckNorvaSource(TNorvaSource Source, TDataSet* DataSet, TDBGrid* DBGrid,
                                   TListView* ListView, TStringGrid* StringGrid);

/// Fills the two lists of a column picker: `Exported` with those entries of `Fields` that the
/// source has, in the order of `Fields`; `Available` with the source's other columns, in its own
/// order. A grid's names are those of its data set. A closed data set without fields is opened for
/// the moment; an error in doing so only means that it gives no names.
NORVA_EXPORT void GetNorvaColumns(TNorvaSource Source, TDataSet* DataSet, TDBGrid* DBGrid,
                                  TListView* ListView, TStringGrid* StringGrid,
                                  const TStringList& Fields, TStringList& Available,
                                  TStringList& Exported);

/// The type that the text `S` looks like: ectString when empty, ectBoolean when it is one of the
/// two boolean texts, ectInteger, ectFloat, ectDate (midnight), ectTime (day 0), ectDateTime, else
/// ectString. Locale settings decide what is a number or a date.
NORVA_EXPORT TNorvaColType CalcStringType(std::string_view S, std::string_view BooleanTrue,
                                          std::string_view BooleanFalse);

/// Replaces every occurrence of `OldPattern`, letter case ignored. An empty pattern or text gives
/// `S` unchanged.
NORVA_EXPORT std::string Replace(std::string_view S, std::string_view OldPattern,
                                 std::string_view NewPattern);

/// The locale's list separator.
NORVA_EXPORT char GetListSeparator();

NORVA_EXPORT std::int32_t MinimumInt(std::int32_t A, std::int32_t B);
NORVA_EXPORT std::int32_t MaximumInt(std::int32_t A, std::int32_t B);

/// Pixels of `Text` on the control's canvas; 8 a character when it publishes none; 0 without a
/// control or a text.
NORVA_EXPORT int GetTextWidth(const TControl* Control, std::string_view Text);
/// Pixels of `Text` in `Font` on a display of 96 dots per inch.
NORVA_EXPORT int GetDisplayTextWidth(std::string_view Text, const TFont& Font);

/// "DataSet", "ListView", "DBGrid", "StringGrid".
NORVA_EXPORT std::string NorvaSourceAsString(TNorvaSource Source);

}  // namespace norva
