#include <norva/core/Norvacommon.h>

#include <algorithm>
#include <cmath>

#include <norva/core/Norvaconsts.h>
#include <norva/platform/CodePages.h>
#include <norva/platform/DateTime.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Locale.h>
#include <norva/platform/Numbers.h>

namespace norva {
namespace {

void AddFieldNames(TDataSet& DataSet, TStringList& Names) {
  const bool opened = !DataSet.Active() && DataSet.FieldCount() == 0;
  try {
    if (opened) DataSet.Open();
    for (int i = 0; i < DataSet.FieldCount(); ++i) Names.Add(DataSet.Fields(i).FieldName);
    if (opened) DataSet.Close();
  } catch (const std::exception&) {
    // A set that cannot be opened simply contributes no names.
  }
}

}  // namespace

void CheckNorvaSource(TNorvaSource Source, TDataSet* DataSet, TDBGrid* DBGrid, TListView* ListView,
                      TStringGrid* StringGrid) {
  const bool assigned = Source == esDataSet      ? DataSet != nullptr
                        : Source == esDBGrid     ? DBGrid && DBGrid->DataSet()
                        : Source == esListView   ? ListView != nullptr
                        : Source == esStringGrid ? StringGrid != nullptr
                                                 : true;
  if (!assigned) throw Exception(MsgSourceNotAssigned, NorvaSourceAsString(Source));
}

void GetNorvaColumns(TNorvaSource Source, TDataSet* DataSet, TDBGrid* DBGrid, TListView* ListView,
                     TStringGrid* StringGrid, const TStringList& Fields, TStringList& Available,
                     TStringList& Exported) {
  CheckNorvaSource(Source, DataSet, DBGrid, ListView, StringGrid);
  Available.Clear();
  Exported.Clear();
  switch (Source) {
    case esDataSet:
      AddFieldNames(*DataSet, Available);
      break;
    case esDBGrid:
      AddFieldNames(*DBGrid->DataSet(), Available);
      break;
    case esListView:
      for (int i = 0; i < ListView->ColumnCount(); ++i) Available.Add(ListView->ColumnCaption(i));
      break;
    case esStringGrid:
      for (int i = 0; i < StringGrid->ColCount(); ++i) Available.Add(std::to_string(i));
      break;
  }
  for (const std::string& field : Fields) {
    if (Available.IndexOf(field) >= 0) Exported.Add(field);
  }
  for (int i = Available.Count() - 1; i >= 0; --i) {
    if (Fields.IndexOf(Available[i]) >= 0) Available.Delete(i);
  }
}

TNorvaColType CalcStringType(std::string_view S, std::string_view BooleanTrue,
                             std::string_view BooleanFalse) {
  if (S.empty()) return ectString;
  if (SameText(S, BooleanTrue) || SameText(S, BooleanFalse)) return ectBoolean;
  std::int32_t integer = 0;
  if (TryStrToInt(S, integer)) return ectInteger;
  double number = 0;
  if (TryStrToFloat(S, number)) return ectFloat;
  TDateTime moment = 0;
  if (!TryStrToDateTime(S, moment)) return ectString;
  const double day = std::trunc(moment);
  if (moment == day) return ectDate;
  return day == 0 ? ectTime : ectDateTime;
}

std::string Replace(std::string_view S, std::string_view OldPattern, std::string_view NewPattern) {
  return ReplaceText(S, OldPattern, NewPattern);
}

char GetListSeparator() {
  const char separator = FormatSettings().ListSeparator;
  return separator == '\0' ? ',' : separator;
}

std::int32_t MinimumInt(std::int32_t A, std::int32_t B) { return std::min(A, B); }
std::int32_t MaximumInt(std::int32_t A, std::int32_t B) { return std::max(A, B); }

int GetTextWidth(const TControl* Control, std::string_view Text) {
  if (!Control || Text.empty()) return 0;
  if (const TCanvas* canvas = Control->Canvas()) return canvas->TextWidth(Text);
  constexpr int pixelsPerCharacter = 8;  // a control that cannot measure counts this much
  return pixelsPerCharacter * static_cast<int>(CharCount(Text));
}

int GetDisplayTextWidth(std::string_view Text, const TFont& Font) { return TextWidth(Text, Font); }

std::string NorvaSourceAsString(TNorvaSource Source) {
  const std::string_view name = EnumToStr(Source);  // "es" and the kind
  return std::string(name.substr(std::min<std::size_t>(2, name.size())));
}

}  // namespace norva
