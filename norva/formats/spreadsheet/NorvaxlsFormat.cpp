#include <norva/formats/spreadsheet/NorvaxlsFormat.h>

#include <algorithm>
#include <iterator>

#include <norva/formats/spreadsheet/NorvaxlsLists.h>
#include <norva/platform/CodePages.h>
#include <norva/platform/Property.h>

namespace norva {

namespace {

/// The palette member for the colour of a host's font. On purpose: only the 15 basic colours have
/// one, though the palette holds other values that a host's font may have.
TxlsColor FontColor(TColor Color) {
  static constexpr TColor basicColors[] = {clRed,    clMaroon, clGreen, clLime,   clOlive,
                                           clYellow, clNavy,   clBlue,  clPurple, clFuchsia,
                                           clTeal,   clAqua,   clGray,  clSilver, clWhite};
  const bool isBasic =
      std::find(std::begin(basicColors), std::end(basicColors), Color) != std::end(basicColors);
  return isBasic ? PaletteMember(Color) : clrBlack;
}

TxlsFontStyles FontStyle(TFontStyles Style) {
  TxlsFontStyles result;
  if (Style.Contains(fsBold)) result.Include(xfsBold);
  if (Style.Contains(fsItalic)) result.Include(xfsItalic);
  if (Style.Contains(fsStrikeOut)) result.Include(xfsStrikeOut);
  return result;
}

}  // namespace

void TxlsFont::SetDefault() { *this = TxlsFont(); }

void TxlsFont::Assign(const TPersistent& Source) {
  if (const auto* font = dynamic_cast<const TxlsFont*>(&Source)) {
    const std::uint16_t fontIndex = FontIndex;
    *this = *font;
    FontIndex = fontIndex;
  } else if (const auto* hostFont = dynamic_cast<const TFont*>(&Source)) {
    Size = hostFont->Size;
    Style = FontStyle(hostFont->Style);
    Color = FontColor(hostFont->Color);
    Script = fscNone;
    Underline = hostFont->Style.Contains(fsUnderline) ? fulSingle : fulNone;
    Charset = hostFont->Charset;
    Name = hostFont->Name;
  } else {
    TPersistent::Assign(Source);
  }
}

bool TxlsFont::IsEqual(const TxlsFont* Other) const {
  return Other && Size == Other->Size && Style == Other->Style && Color == Other->Color &&
         Script == Other->Script && Underline == Other->Underline && Charset == Other->Charset &&
         Name == Other->Name;
}

const TPropertyList& TxlsFont::Properties() const {
  static const TPropertyList list{
      Published("Size", &TxlsFont::Size, 10),
      Published("Style", &TxlsFont::Style, TxlsFontStyles()),
      Published("Color", &TxlsFont::Color, clrBlack),
      Published("Script", &TxlsFont::Script, fscNone),
      Published("Underline", &TxlsFont::Underline, fulNone),
      Published("Charset", &TxlsFont::Charset, 1),
      IgnoringCase(Published("Name", &TxlsFont::Name, "arial")),
  };
  return list;
}

void TxlsBorder::SetDefault() { *this = TxlsBorder(); }

void TxlsBorder::Assign(const TPersistent& Source) {
  const auto* border = dynamic_cast<const TxlsBorder*>(&Source);
  if (!border) return TPersistent::Assign(Source);
  *this = *border;
}

bool TxlsBorder::IsEqual(const TxlsBorder* Other) const {
  return Other && Style == Other->Style && Color == Other->Color;
}

const TPropertyList& TxlsBorder::Properties() const {
  static const TPropertyList list{
      Published("Style", &TxlsBorder::Style, bstNone),
      Published("Color", &TxlsBorder::Color, clrBlack),
  };
  return list;
}

void TxlsBorders::SetDefault() { *this = TxlsBorders(); }

void TxlsBorders::Assign(const TPersistent& Source) {
  const auto* borders = dynamic_cast<const TxlsBorders*>(&Source);
  if (!borders) return TPersistent::Assign(Source);
  *this = *borders;
}

bool TxlsBorders::IsEqual(const TxlsBorders* Other) const {
  return Other && Left.IsEqual(&Other->Left) && Right.IsEqual(&Other->Right) &&
         Top.IsEqual(&Other->Top) && Bottom.IsEqual(&Other->Bottom) &&
         DiagDown.IsEqual(&Other->DiagDown) && DiagUp.IsEqual(&Other->DiagUp);
}

bool TxlsBorders::HasStyle() const {
  const TxlsBorder* sides[] = {&Left, &Right, &Top, &Bottom, &DiagDown, &DiagUp};
  return std::any_of(std::begin(sides), std::end(sides),
                     [](const TxlsBorder* side) { return side->Style != bstNone; });
}

const TPropertyList& TxlsBorders::Properties() const {
  static const TPropertyList list{
      PublishedGroup("Left", &TxlsBorders::Left),
      PublishedGroup("Right", &TxlsBorders::Right),
      PublishedGroup("Top", &TxlsBorders::Top),
      PublishedGroup("Bottom", &TxlsBorders::Bottom),
      PublishedGroup("DiagDown", &TxlsBorders::DiagDown),
      PublishedGroup("DiagUp", &TxlsBorders::DiagUp),
  };
  return list;
}

void TxlsFill::SetDefault() { *this = TxlsFill(); }

void TxlsFill::Assign(const TPersistent& Source) {
  const auto* fill = dynamic_cast<const TxlsFill*>(&Source);
  if (!fill) return TPersistent::Assign(Source);
  *this = *fill;
}

bool TxlsFill::IsEqual(const TxlsFill* Other) const {
  return Other && Background == Other->Background && Pattern == Other->Pattern &&
         Foreground == Other->Foreground;
}

const TPropertyList& TxlsFill::Properties() const {
  static const TPropertyList list{
      Published("Background", &TxlsFill::Background, clrWhite),
      Published("Pattern", &TxlsFill::Pattern, ptNone),
      Published("Foreground", &TxlsFill::Foreground, clrBlack),
  };
  return list;
}

void TxlsAlignment::SetDefault() { *this = TxlsAlignment(); }

void TxlsAlignment::Assign(const TPersistent& Source) {
  const auto* alignment = dynamic_cast<const TxlsAlignment*>(&Source);
  if (!alignment) return TPersistent::Assign(Source);
  *this = *alignment;
}

bool TxlsAlignment::IsEqual(const TxlsAlignment* Other) const {
  return Other && Horizontal == Other->Horizontal && Vertical == Other->Vertical;
}

const TPropertyList& TxlsAlignment::Properties() const {
  static const TPropertyList list{
      Published("Horizontal", &TxlsAlignment::Horizontal, halGeneral),
      Published("Vertical", &TxlsAlignment::Vertical, valBottom),
  };
  return list;
}

void TxlsFormat::SetDefault() {
  Font.SetDefault();
  Borders.SetDefault();
  Fill.SetDefault();
  Alignment.SetDefault();
  Wrap = false;
}

void TxlsFormat::Assign(const TPersistent& Source) {
  const auto* format = dynamic_cast<const TxlsFormat*>(&Source);
  if (!format) return TCollectionItem::Assign(Source);
  Font.Assign(format->Font);
  Borders.Assign(format->Borders);
  Fill.Assign(format->Fill);
  Alignment.Assign(format->Alignment);
  Wrap = format->Wrap;
}

bool TxlsFormat::IsEqual(const TxlsFormat* Other) const {
  return Other && Font.IsEqual(&Other->Font) && Borders.IsEqual(&Other->Borders) &&
         Fill.IsEqual(&Other->Fill) && Alignment.IsEqual(&Other->Alignment) && Wrap == Other->Wrap;
}

bool TxlsFormat::IsDefault() const {
  const TxlsFont plainFont;
  const TxlsAlignment plainAlignment;
  // On purpose: SetDefault gives a black foreground, so that a new format is not default.
  const bool isPlainFill =
      Fill.Background == clrWhite && Fill.Pattern == ptNone && Fill.Foreground == clrWhite;
  return Font.IsEqual(&plainFont) && !Borders.HasStyle() && isPlainFill &&
         Alignment.IsEqual(&plainAlignment) && !Wrap;
}

void TxlsFormat::LoadFromTxlsXFormat(const TxlsXFormat& XFormat) {
  if (XFormat.Font) Font.Assign(*XFormat.Font);
  Borders.Assign(XFormat.Borders);
  Fill.Assign(XFormat.Fill);
  Wrap = XFormat.Wrap;
}

std::string TxlsFormat::GetDisplayName() const {
  const auto* formats = dynamic_cast<const TxlsFormats*>(Collection());
  if (!formats || formats->DisplayPrefix().empty()) return TCollectionItem::GetDisplayName();
  return std::string(formats->DisplayPrefix()) + std::to_string(Index());
}

const TPropertyList& TxlsFormat::Properties() const {
  static const TPropertyList list{
      PublishedGroup("Font", &TxlsFormat::Font),
      PublishedGroup("Borders", &TxlsFormat::Borders),
      PublishedGroup("Fill", &TxlsFormat::Fill),
      PublishedGroup("Alignment", &TxlsFormat::Alignment),
      Published("Wrap", &TxlsFormat::Wrap, false),
  };
  return list;
}

void TxlsFieldFormat::SetDefault() {
  TxlsFormat::SetDefault();
  FieldName.clear();
  Width = 0;
  Aggregate = aggNone;
}

void TxlsFieldFormat::Assign(const TPersistent& Source) {
  TxlsFormat::Assign(Source);
  if (const auto* format = dynamic_cast<const TxlsFieldFormat*>(&Source)) {
    FieldName = format->FieldName;
    Width = format->Width;
    Aggregate = format->Aggregate;
  }
}

std::string TxlsFieldFormat::GetDisplayName() const {
  return FieldName.empty() ? TxlsFormat::GetDisplayName() : FieldName;
}

const TPropertyList& TxlsFieldFormat::Properties() const {
  static const TPropertyList list(TxlsFormat::Properties(),
                                  {
                                      Published("FieldName", &TxlsFieldFormat::FieldName, ""),
                                      Published("Width", &TxlsFieldFormat::Width, 0),
                                      Published("Aggregate", &TxlsFieldFormat::Aggregate, aggNone),
                                  });
  return list;
}

int TxlsFieldFormats::IndexByName(std::string_view Name) const {
  for (int i = 0; i < Count(); ++i) {
    if (SameText((*this)[i].FieldName, Name)) return i;
  }
  return -1;
}

std::unique_ptr<TCollectionItem> TxlsFieldFormats::NewItem() {
  std::unique_ptr<TCollectionItem> item = TCollectionOf::NewItem();
  if (Initial_) item->Assign(*Initial_);
  return item;
}

TXLSOptions::TXLSOptions() { CaptionsFormat.Font.Style = {xfsBold}; }

void TXLSOptions::SetSheetTitle(const std::string& Value) {
  // On purpose: not the "Sheet 1" of a new object.
  SheetTitle_ = Value.empty() ? "Sheet1" : Value;
}

void TXLSOptions::Assign(const TPersistent& Source) {
  const auto* options = dynamic_cast<const TXLSOptions*>(&Source);
  if (!options) return TPersistent::Assign(Source);
  *this = *options;
}

const TPropertyList& TXLSOptions::Properties() const {
  static const TPropertyList list{
      Published("PageHeader", &TXLSOptions::PageHeader, ""),
      Published("PageFooter", &TXLSOptions::PageFooter, "Page &P of &N"),
      Published("SheetTitle", &TXLSOptions::SheetTitle, &TXLSOptions::SetSheetTitle, "Sheet 1"),
      PublishedGroup("HeaderFormat", &TXLSOptions::HeaderFormat),
      PublishedGroup("CaptionsFormat", &TXLSOptions::CaptionsFormat),
      PublishedGroup("DataFormat", &TXLSOptions::DataFormat),
      PublishedGroup("AggregateFormat", &TXLSOptions::AggregateFormat),
      PublishedGroup("FooterFormat", &TXLSOptions::FooterFormat),
  };
  return list;
}

}  // namespace norva
