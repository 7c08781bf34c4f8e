#include <norva/formats/document/Norvartf.h>

#include <algorithm>
#include <iterator>

#include <norva/core/Norvacommon.h>
#include <norva/platform/CodePages.h>
#include <norva/platform/Property.h>

namespace norva {
namespace {

constexpr std::int64_t TwipsPerPixel = 15;  // 1440 twips and 96 pixels to the inch
constexpr std::int64_t RowLeft = 36;        // in twips, as in \trleft36
constexpr std::int64_t CellMargins = 10;    // in twips
constexpr std::string_view CellEnd = "}\\cell";

/// "\b\i\ul\strike", as far as one of the styles has them.
std::string StyleText(TFontStyles Style, TFontStyles Other = {}) {
  std::string text;
  const auto append = [&](TFontStyle Member, const char* Word) {
    if (Style.Contains(Member) || Other.Contains(Member)) text += Word;
  };
  append(fsBold, "\\b");
  append(fsItalic, "\\i");
  append(fsUnderline, "\\ul");
  append(fsStrikeOut, "\\strike");
  return text;
}

constexpr bool IsSpecial(char C) { return C == '\\' || C == '{' || C == '}'; }

}  // namespace

TRTFOptions::TRTFOptions() {
  DefaultFont.Size = 10;
  HeaderFont = DefaultFont;
  HeaderFont.Style.Include(fsBold);
}

void TRTFOptions::Assign(const TPersistent& Source) {
  const auto* options = dynamic_cast<const TRTFOptions*>(&Source);
  if (!options) return TPersistent::Assign(Source);
  *this = *options;
}

const TPropertyList& TRTFOptions::Properties() const {
  static const TPropertyList list{
      PublishedGroup("DefaultFont", &TRTFOptions::DefaultFont),
      PublishedGroup("HeaderFont", &TRTFOptions::HeaderFont),
      Published("PageOrientation", &TRTFOptions::PageOrientation, poPortrait),
  };
  return list;
}

const TPropertyList& TNorvaRTF::Properties() const {
  static const TPropertyList list(TNorvaFormatText::Properties(),
                                  {
                                      PublishedGroup("Options", &TNorvaRTF::Options),
                                      PublishedList("ColumnsWidth", &TNorva::ColumnsWidth),
                                      PublishedList("ColumnsAlign", &TNorva::ColumnsAlign),
                                      PublishedEvent("OnGetCellParams", "TGetCellParamsEvent"),
                                  });
  return list;
}

TNorvaWriterClass TNorvaRTF::GetWriterClass() const { return NewWriter<TLumRTFWriter>; }

void TNorvaRTF::BeginExport() {
  TNorvaFormatText::BeginExport();
  WriteTables();
  WritePage();
  for (const std::string& line : Header) {
    RTFWriter().WriteLn(line);
    RTFWriter().WritePara();
  }
  RTFWriter().WritePara();
  WriteRowDefinition();
}

void TNorvaRTF::WriteTables() {
  TLumRTFWriter& writer = RTFWriter();
  writer.WriteBOF();
  writer.WriteHeader();
  writer.AddFont({0, Options.HeaderFont.Name, "nil"});
  writer.AddFont({1, Options.DefaultFont.Name, "nil"});
  writer.WriteFontTable();
  writer.AddColor(TRTFColorTableItem(clBlack));
  writer.WriteColorTable();
  writer.SetFont(Options.DefaultFont, true);
}

void TNorvaRTF::WritePage() {
  const bool landscape = Options.PageOrientation == poLandscape;
  if (landscape) RTFWriter().WriteLn("\\landscape");
  RTFWriter().WriteLn(landscape ? "\\paperw16838" : "\\paperw11906");
  RTFWriter().WriteLn(landscape ? "\\paperh11906" : "\\paperh16838");
}

void TNorvaRTF::WriteRowDefinition() {
  RTFWriter().WriteLn("\\trowd\\trql\\trgaph0\\trleft36");
  const std::int64_t charWidth = GetDisplayTextWidth("X", Options.HeaderFont);
  std::int64_t right = RowLeft;
  for (int i = 0; i < Columns.Count(); ++i) {
    right += Columns[i].Width * charWidth * TwipsPerPixel + CellMargins;
    RTFWriter().WriteLn("\\clbrdrl\\brdrth \\clbrdrr\\brdrth \\clbrdrt\\brdrth \\clbrdrb\\brdrth");
    RTFWriter().WriteLn("\\cellx" + std::to_string(right));
  }
}

void TNorvaRTF::WriteCaptionRow() {
  RTFWriter().SetFont(Options.HeaderFont, true);
  std::string& row = RowBuffer();
  row.clear();
  GetCaptionRow(row);
  RTFWriter().WriteLn(row += "\\row");
}

void TNorvaRTF::GetColCaption(int Index, std::string& Text) {
  Text += "\\pard\\intbl\\li30\\ri30{";
  Text += StyleText(Options.HeaderFont.Style) + " ";
  TNorvaFormatText::GetColCaption(Index, Text);
  Text += CellEnd;
}

void TNorvaRTF::BeforeExport() {
  RTFWriter().SetFont(Options.DefaultFont, true);
  for (std::size_t i = 0; i < std::size(CellStarts_); ++i) {
    CellStarts_[i] = GetCellStart(static_cast<TNorvaColAlign>(i), Options.DefaultFont, clWhite);
  }
}

std::string TNorvaRTF::GetCellStart(TNorvaColAlign Align, const TFont& Font, TColor Background) {
  const TFont& base = Options.DefaultFont;
  std::string attributes;
  if (!SameText(Font.Name, base.Name)) attributes += RTFWriter().SetFont(Font, false);
  if (Font.Color != base.Color) attributes += RTFWriter().GetColorText(Font.Color, false);
  attributes += StyleText(Font.Style, base.Style);
  if (!attributes.empty()) attributes += ' ';
  std::string text = "\\pard\\intbl\\li30\\ri30";
  if (Background != clWhite) text += RTFWriter().GetColorText(Background, true);
  return text + RTFWriter().AlignToStr(Align) + "{" + attributes;
}

void TNorvaRTF::WriteDataRow() {
  std::string& row = RowBuffer();
  row.clear();
  GetDataRow(true, row);
  RTFWriter().Write(row += "\\row\r\n");
}

void TNorvaRTF::GetColData(int Index, bool NeedFormat, std::string& Text) {
  Text += CellStarts_[std::min<std::size_t>(Columns[Index].Align, std::size(CellStarts_) - 1)];
  const std::size_t start = Text.size();
  TNorvaFormatText::GetColData(Index, NeedFormat, Text);
  const std::string_view value = std::string_view(Text).substr(start);
  if (value.find('\r') != std::string_view::npos) {
    Text.replace(start, std::string::npos, Replace(value, "\r\n", " \\par "));
  }
  Text += CellEnd;
}

void TNorvaRTF::NormalString(std::string_view S, std::string& Text) {
  if (std::find_if(S.begin(), S.end(), IsSpecial) == S.end()) {  // nearly every value
    Text += S;
    return;
  }
  // On purpose: braces are not escaped.
  if (S.find_first_of("{}") != std::string_view::npos) UnsafeText(S);
  for (const char c : S) Text.append(c == '\\' ? 2 : 1, c);
}

void TNorvaRTF::EndExport() {
  WriteFooter();
  RTFWriter().WriteEOF();
  TNorvaFormatText::EndExport();
}

void TNorvaRTF::Abort() {
  WriteFooter();
  TNorvaFormatText::Abort();
}

void TNorvaRTF::WriteFooter() {
  RTFWriter().WriteLn("\\pard");
  RTFWriter().WritePara();
  for (const std::string& line : Footer) {
    RTFWriter().WritePara();
    RTFWriter().WriteLn(line);
  }
}

}  // namespace norva
