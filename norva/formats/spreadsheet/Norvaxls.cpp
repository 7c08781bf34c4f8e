#include <norva/formats/spreadsheet/Norvaxls.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <optional>

#include <norva/core/Norvaconsts.h>
#include <norva/platform/CodePages.h>
#include <norva/platform/DateTime.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Guarded.h>
#include <norva/platform/Numbers.h>
#include <norva/platform/Property.h>

namespace norva {
namespace {

constexpr int DefaultXF = TLumXLSWriter::DefaultXF;
constexpr std::uint16_t LastStandardFont = 4;  // the format knows no font of that number
constexpr std::uint16_t LastStandardTextFormat = 49;
constexpr std::int32_t RowStyleFactor = 1000;  // row style s of column c has the number 1000 s + c
const std::string General = "General";         // the number format of a cell without one

/// Whether the own text of a number, date or time can be `Text`. Each has a digit, but for the
/// floats that are none.
bool CanBeNumber(std::string_view Text) {
  return Text == "NAN" || Text == "INF" || Text == "-INF" ||
         Text.find_first_of("0123456789") != std::string_view::npos;
}

/// The piece of `Line` up to its first TAB, which is removed with it.
std::string_view TakePiece(std::string_view& Line) {
  const std::size_t end = std::min(Line.find('\t'), Line.size());
  const std::string_view piece = Line.substr(0, end);
  Line.remove_prefix(std::min(end + 1, Line.size()));
  return piece;
}

}  // namespace

const TPropertyList& TNorvaXLS::Properties() const {
  using X = TNorvaXLS;
  static const TPropertyList list(
      TNorvaFormatText::Properties(),
      {
          PublishedList("ColumnsWidth", &TNorva::ColumnsWidth),
          PublishedGroup("Options", &X::Options),
          PublishedCollection("FieldFormats", &X::FieldFormats),
          PublishedCollection("ColStyles", &X::ColStyles),
          PublishedCollection("RowStyles", &X::RowStyles),
          Published("StripStyle", &X::StripStyle, ssNone),
          Published("HeaderRows", &X::HeaderRows, 0),
          Published("StartDataCol", &X::StartDataCol, 0),
          Published("FooterRows", &X::FooterRows, 0),
          PublishedEvent("OnGetHeaderParams", "TGetHeaderFooterParamsEvent"),
          PublishedEvent("OnGetCaptionParams", "TGetCaptionParamsEvent"),
          PublishedEvent("OnGetBeforeDataParams", "TGetHeaderFooterParamsEvent"),
          PublishedEvent("OnGetDataParams", "TGetDataParamsEvent"),
          PublishedEvent("OnGetAggregateParams", "TGetAggregateParamsEvent"),
          PublishedEvent("OnGetFooterParams", "TGetHeaderFooterParamsEvent"),
      });
  return list;
}

TNorvaWriterClass TNorvaXLS::GetWriterClass() const { return NewWriter<TLumXLSWriter>; }

void TNorvaXLS::ClearTemporaryVariables() {
  XFs_.Clear();
  TextFormats_.Clear();
  Fonts_.Clear();
  FieldXFs_.Clear();
  ColRowXFs_.Clear();
  LastFont_ = LastStandardFont;
  LastTextFormat_ = LastStandardTextFormat;
  LastXF_ = DefaultXF;
  Strings_.Clear();
  DataXFs_.clear();
  RowStyleCount_ = 1;
  Stage_ = esNone;
  CurrentRow_ = 0;
  LastCol_ = -1;
}

void TNorvaXLS::BeginExport() {
  TNorvaFormatText::BeginExport();
  ClearTemporaryVariables();
  LastCol_ = StartDataCol + Columns.Count() - 1;
  if (LastCol_ >= TLumXLSWriter::MaxColumns) {
    throw Exception(MsgColumnTooMany, Columns[TLumXLSWriter::MaxColumns - StartDataCol].Name,
                    TLumXLSWriter::MaxColumns);
  }
  // An event or a null text that looks like a number can only be met by way of the texts.
  TypedCells_ = !OnGetExportText && !CanBeNumber(Formats.NullString);
  XLSWriter().WriteGlobals(Options);
  if (StripStyle == ssCol) AddColsToFormatList();
  if (StripStyle == ssRow) AddRowsToFormatList();
  for (int i = 0; i < Columns.Count(); ++i) AddColumnToFormatList(i);
  FillDataXFs();
  XLSWriter().WriteSheetStart(Options, Columns, StartDataCol);
  Stage_ = esHeader;
  HeaderFooter(Header, HeaderRows, Options.HeaderFormat, OnGetHeaderParams, "header");
}

// Cell formats.

/// The index of the cell format with the number format `FormatText`; equal ones are kept once.
int TNorvaXLS::AddXF(const std::string& FormatText, const TxlsFormat* Format) {
  if (!Format) return DefaultXF;
  const TxlsTextFormat textFormat{0, FormatText.empty() ? General : FormatText};
  TxlsXFormat xf;
  if (textFormat.FormatString != General) xf.TextFormat = &textFormat;
  // The fonts 1 to 3 are that of the data, and every format begins with font 1.
  if (!Format->Font.IsEqual(&Options.DataFormat.Font)) xf.Font = &Format->Font;
  xf.Borders = Format->Borders;
  xf.Fill = Format->Fill;
  xf.Alignment = Format->Alignment;
  xf.Wrap = Format->Wrap;
  const int known = XFs_.FormatIndexByFormat(xf);
  return known >= 0 ? known : AddNewXF(xf, textFormat, Format->Font);
}

/// Enters `XFormat`; its font and text format are replaced by those of the lists.
int TNorvaXLS::AddNewXF(TxlsXFormat& XFormat, const TxlsTextFormat& TextFormat,
                        const TxlsFont& Font) {
  constexpr std::uint16_t most = std::numeric_limits<std::uint16_t>::max();
  if (LastXF_ == most || LastFont_ == most || LastTextFormat_ == most) {
    throw Exception(MsgCellFormatTooMany, most - DefaultXF, most - LastStandardFont,
                    most - LastStandardTextFormat);
  }
  if (XFormat.Font) {
    const int position = Fonts_.ListIndexByFont(Font);
    if (position < 0) {
      TxlsFont font = Font;
      font.FontIndex = ++LastFont_;
      XFormat.Font = &Fonts_.Add(std::move(font));
    } else {
      XFormat.Font = &Fonts_[position];
    }
  }
  if (XFormat.TextFormat) {
    const int position = TextFormats_.ListIndexByString(TextFormat.FormatString);
    XFormat.TextFormat = position >= 0
                             ? &TextFormats_[position]
                             : &TextFormats_.Add({++LastTextFormat_, TextFormat.FormatString});
  }
  XFormat.XFIndex = ++LastXF_;
  return XFs_.Add(XFormat).XFIndex;
}

void TNorvaXLS::AddColsToFormatList() {
  if (ColStyles.Count() == 0) return;
  for (int i = 0; i < Columns.Count(); ++i) {
    const int xf = AddXF(Columns[i].Format(), &ColStyles[i % ColStyles.Count()]);
    ColRowXFs_.Add({i, static_cast<std::uint16_t>(xf)});
  }
}

void TNorvaXLS::AddRowsToFormatList() {
  if (RowStyles.Count() == 0) return;
  RowStyleCount_ = RowStyles.Count();
  for (int s = 0; s < RowStyleCount_; ++s) {
    for (int i = 0; i < Columns.Count(); ++i) {
      const int xf = AddXF(Columns[i].Format(), &RowStyles[s]);
      ColRowXFs_.Add({s * RowStyleFactor + i, static_cast<std::uint16_t>(xf)});
    }
  }
}

void TNorvaXLS::AddColumnToFormatList(int Col) {
  const TNorvaColumn& column = Columns[Col];
  const int position = FieldFormats.IndexByName(column.Name);
  const int xf = AddXF(column.Format(), position < 0 ? nullptr : &FieldFormats[position]);
  if (xf == DefaultXF || FieldXFs_.FormatIndexByFieldName(column.Name) >= 0) return;
  FieldXFs_.Add({column.Name, static_cast<std::uint16_t>(xf)});
}

/// Looks up once what GetXF is asked for every cell.
void TNorvaXLS::FillDataXFs() {
  for (int s = 0; s < RowStyleCount_; ++s) {
    for (int i = 0; i < Columns.Count(); ++i) {
      int xf = FieldXFs_.FormatIndexByFieldName(Columns[i].Name);
      if (xf < 0) xf = ColRowXFs_.XFIndexByNumber(s * RowStyleFactor + i);
      DataXFs_.push_back(xf < 0 ? DefaultXF : xf);
    }
  }
}

int TNorvaXLS::GetXF(int Col) {
  const int position = RecordCounter % RowStyleCount_ * Columns.Count() + Col;
  const int xf = DataXFs_[static_cast<std::size_t>(position)];
  return OnGetDataParams ? GetEventXF(Col, xf) : xf;
}

int TNorvaXLS::GetEventXF(int Col, int XF) {
  TxlsFormat format;
  std::string formatText = General;
  if (const TxlsXFormat* const known = XFs_.FormatByFormatIndex(XF)) {
    format.Font = Options.DataFormat.Font;  // what it means to have none
    format.LoadFromTxlsXFormat(*known);
    if (known->TextFormat) formatText = known->TextFormat->FormatString;
  } else {
    format.Assign(Options.DataFormat);
  }
  OnGetDataParams(*this, StartDataCol + Col, CurrentRow_, format, formatText);
  return AddXF(formatText.empty() ? Columns[Col].Format() : formatText, &format);
}

// Rows.

void TNorvaXLS::CheckRow(const char* What) const {
  if (CurrentRow_ >= TLumXLSWriter::MaxRows) {
    throw Exception(MsgRowTooMany, What, TLumXLSWriter::MaxRows);
  }
}

void TNorvaXLS::WriteText(int Col, int XF, std::string_view Text) {
  XLSWriter().WriteString(CurrentRow_, Col, XF, Text, Strings_);
}

void TNorvaXLS::HeaderFooter(const TStringList& Lines, int RowCount, const TxlsFormat& Format,
                             const TGetHeaderFooterParamsEvent& Event, const char* What) {
  const int count = RowCount > 0 ? RowCount : Lines.Count();
  for (int i = 0; i < count; ++i) {
    CheckRow(What);
    HeaderFooterLine(i < Lines.Count() ? std::string_view(Lines[i]) : "", Format, Event);
    ++CurrentRow_;
  }
}

void TNorvaXLS::HeaderFooterLine(std::string_view Line, const TxlsFormat& Format,
                                 const TGetHeaderFooterParamsEvent& Event) {
  for (int col = 0; col < TLumXLSWriter::MaxColumns && (Event || !Line.empty()); ++col) {
    TxlsFormat format;
    format.Assign(Format);
    std::string piece(TakePiece(Line));
    if (Event) Event(*this, col, CurrentRow_, format, piece);
    if (piece.empty()) continue;
    WriteText(col, AddXF(General, &format), piece);
    LastCol_ = std::max(LastCol_, col);
  }
}

/// Fills the cells left of the data in the row that is written next.
void TNorvaXLS::DoOnGetBeforeDataParams() {
  if (!OnGetBeforeDataParams) return;
  for (int col = 0; col < StartDataCol; ++col) {
    TxlsFormat format;
    format.Assign(Options.DataFormat);
    std::string text;
    OnGetBeforeDataParams(*this, col, CurrentRow_, format, text);
    if (!text.empty()) WriteText(col, AddXF(General, &format), text);
  }
}

void TNorvaXLS::WriteCaptionRow() {
  Stage_ = esCaption;
  CheckRow("caption row");
  DoOnGetBeforeDataParams();
  for (int i = 0; i < Columns.Count(); ++i) {
    TxlsFormat format;
    format.Assign(Options.CaptionsFormat);
    std::string caption;
    GetColCaption(i, caption);
    if (OnGetCaptionParams) OnGetCaptionParams(*this, StartDataCol + i, format, caption);
    if (caption.empty()) continue;
    WriteText(StartDataCol + i, format.IsDefault() ? DefaultXF : AddXF(General, &format), caption);
  }
  if (AllowCaptions) ++CurrentRow_;
}

void TNorvaXLS::WriteDataRow() {
  Stage_ = esData;
  if (CurrentRow_ >= TLumXLSWriter::MaxRows) {
    throw Exception(MsgRecordTooMany, SkipRecCount + RecordCounter + 1, TLumXLSWriter::MaxRows);
  }
  DoOnGetBeforeDataParams();
  for (int i = 0; i < Columns.Count(); ++i) WriteCell(i);
  ++CurrentRow_;
}

void TNorvaXLS::WriteCell(int Index) {
  const int col = StartDataCol + Index, xf = GetXF(Index);
  const TNorvaColType type = Columns[Index].ColType;
  const bool isNumber = type <= ectDateTime;
  if (isNumber && TypedCells_) {
    if (const std::optional<double> number = GetColNumber(Index)) {
      XLSWriter().WriteNumber(CurrentRow_, col, xf, *number);
      return;
    }
  }
  Cell_.clear();
  GetColDataSt(Index, false, Cell_);
  const bool isBoolean = type == ectBoolean;
  if (Cell_.empty()) {
    XLSWriter().WriteBlank(CurrentRow_, col, xf);
  } else if (Cell_ == Formats.NullString || !(isNumber || isBoolean)) {
    WriteText(col, xf, Cell_);
  } else if (isBoolean) {
    // "True" is what a field of this type says of itself, in every language.
    const bool value = Cell_ == "True" || SameText(Cell_, Formats.BooleanTrue());
    XLSWriter().WriteBoolean(CurrentRow_, col, xf, value);
  } else {
    XLSWriter().WriteNumber(CurrentRow_, col, xf, TextToNumber(Index, Cell_));
  }
}

double TNorvaXLS::TextToNumber(int Index, std::string_view Text) const {
  try {
    return Columns[Index].IsNumeric() ? StrToFloat(Text) : StrToDateTime(Text);
  } catch (const EConvertError& error) {
    CellError(Index, error);
  }
}

// The end.

void TNorvaXLS::EndExport() {
  Guarded(
      [this] {
        if (HasAggregates()) WriteAggregateRow();
        Stage_ = esFooter;
        HeaderFooter(Footer, FooterRows, Options.FooterFormat, OnGetFooterParams, "footer");
      },
      [this] {
        // What is there is written even when a row did not fit.
        FinishWorkbook();
        ClearTemporaryVariables();
        TNorvaFormatText::EndExport();
      });
}

bool TNorvaXLS::HasAggregates() const {
  for (int i = 0; i < FieldFormats.Count(); ++i) {
    if (FieldFormats[i].Aggregate != aggNone) return true;
  }
  return false;
}

/// The row at which the aggregates begin. On purpose: counts the header's lines, not its rows;
/// empty rows and captions count for nothing in an aggregate.
int TNorvaXLS::GetStartDataRow() const {
  int rows = Header.Count();
  if (HeaderRows > 0) rows = std::min<int>(rows, HeaderRows);
  return rows + (AllowCaptions ? 1 : 0);
}

void TNorvaXLS::WriteAggregateRow() {
  Stage_ = esAggregate;
  CheckRow("aggregate row");
  DoOnGetBeforeDataParams();
  for (int i = 0; i < Columns.Count(); ++i) WriteAggregateCell(i);
  ++CurrentRow_;
}

void TNorvaXLS::WriteAggregateCell(int Index) {
  const int position = FieldFormats.IndexByName(Columns[Index].Name);
  const TxlsAggregate aggregate = position < 0 ? aggNone : FieldFormats[position].Aggregate;
  const int col = StartDataCol + Index;
  TxlsFormat format;
  format.Assign(Options.AggregateFormat);
  std::string formatText = General, value;
  if (OnGetAggregateParams) OnGetAggregateParams(*this, col, format, formatText, value);
  if (aggregate == aggNone) {
    if (!value.empty()) WriteText(col, AddXF(formatText, &format), value);
    return;
  }
  const int firstRow = GetStartDataRow(), lastRow = CurrentRow_ - 1;
  if (lastRow < firstRow) return;  // without a record the formula would refer to its own cell
  const bool isDefault = formatText == General && format.IsDefault();
  XLSWriter().WriteAggregate(CurrentRow_, col, firstRow, lastRow, aggregate,
                             isDefault ? DefaultXF : AddXF(formatText, &format));
}

void TNorvaXLS::FinishWorkbook() {
  TLumXLSWriter& writer = XLSWriter();
  writer.WriteSheetFinish();
  writer.WriteXF(Fonts_, TextFormats_, XFs_);
  Strings_.Trim();  // before the records of the texts take memory
  writer.WriteSST(Strings_);
  writer.WriteDIM(0, CurrentRow_ - 1, 0, LastCol_);
  writer.WriteWorkbook();
}

}  // namespace norva
