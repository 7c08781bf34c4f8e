#include <norva/formats/document/Norvahtml.h>

#include <algorithm>
#include <typeinfo>

#include <norva/platform/CodePages.h>
#include <norva/platform/FileNames.h>
#include <norva/platform/Guarded.h>
#include <norva/platform/Property.h>

namespace norva {
namespace {

constexpr std::string_view SpecialCharacters = "\"&<>";

/// By byte: whether NormalString writes something else for it.
constexpr auto Escaped = [] {
  std::array<bool, 256> table{};
  for (const char c : SpecialCharacters) table[static_cast<unsigned char>(c)] = true;
  table['\r'] = table['\n'] = true;
  return table;
}();

/// The first such byte of `S` from `Start` on, or the end.
std::size_t FindEscaped(std::string_view S, std::size_t Start) {
  while (Start < S.size() && !Escaped[static_cast<unsigned char>(S[Start])]) ++Start;
  return Start;
}

/// True while it lives.
class TFlagScope {
 public:
  explicit TFlagScope(bool& Flag) : Flag_(Flag) { Flag_ = true; }
  ~TFlagScope() { Flag_ = false; }
  TFlagScope(const TFlagScope&) = delete;
  TFlagScope& operator=(const TFlagScope&) = delete;

 private:
  bool& Flag_;
};

/// 01 ... 09, 10 ... 99, 100 ...
std::string PartSuffix(std::int32_t Part) { return (Part < 10 ? "0" : "") + std::to_string(Part); }

std::string PartName(std::string FileName, std::int32_t Part) {
  // On purpose: the first point of the whole path, which may belong to a folder.
  return FileName.insert(std::min(FileName.find('.'), FileName.size()), PartSuffix(Part));
}

std::string PartLink(const std::string& FileName, std::int32_t Part) {
  // On purpose: before the last point, which with several is not where PartName puts it.
  const std::string name = ChangeFileExt(FileName, PartSuffix(Part) + ExtractFileExt(FileName));
  return "<a href=\"" + name + "\">" + name + "</a>";
}

std::string StyleSheetLink(const std::string& CSSFileName) {
  return " <link rel=\"stylesheet\" type=\"text/css\" href=\"" + CSSFileName + "\">";
}

}  // namespace

TNorvaHTML::TNorvaHTML(TComponent* Owner) : TNorvaFormatText(Owner) {
  Header = {"<br>"};
  Footer = {"<br>"};
  SetHTMLTemplate(htClassic);
}

const TPropertyList& TNorvaHTML::Properties() const {
  using H = TNorvaHTML;
  static const TPropertyList list(
      TNorvaFormatText::Properties(),
      {
          Published("UsingCSS", &H::UsingCSS, usInternal),
          PublishedGroup("TableOptions", &H::TableOptions),
          PublishedGroup("HTMLOptions", &H::HTMLOptions),
          Published("HTMLTemplate", &H::HTMLTemplate, &H::SetHTMLTemplate, htClassic),
          Published("CSSFileName", &H::CSSFileName, ""),
          Published("MaxRecords", &H::MaxRecords, &H::SetMaxRecords, 0),
          Published("GenerateIndex", &H::GenerateIndex, false),
          Published("BoolAsCheckBox", &H::BoolAsCheckBox, false),
          Published("Title", &TNorva::Title, ""),
          PublishedList("ColumnsAlign", &TNorva::ColumnsAlign),
          PublishedEvent("OnGetCellParams", "TGetCellParamsEvent"),
      });
  return list;
}

void TNorvaHTML::Execute() {
  Part_ = std::make_unique<TFileStream>(FileName, fmCreate);
  Guarded(
      [&] {
        ExportToStream(*Part_);
        Part_->Close();
      },
      [&] { Part_.reset(); });
  ShowResult();
}

TNorvaWriterClass TNorvaHTML::GetWriterClass() const { return NewWriter<TLumHTMLWriter>; }

// The style sheet.

void TNorvaHTML::BeginExport() {
  TNorvaFormatText::BeginExport();
  StyleSheet_.Clear();
  AddBodyRule();
  StyleSheet_.Add("  A:link { color: " + HtmlColor(HTMLOptions.LinkColor) + " }");
  StyleSheet_.Add("  A:visited { color: " + HtmlColor(HTMLOptions.VLinkColor) + " }");
  StyleSheet_.Add("  A:active { color: " + HtmlColor(HTMLOptions.ALinkColor) + " }");
  const TTableOptions& table = TableOptions;
  if (AllowCaptions) {
    AddRowRule(".ThRows", table.HeadersRowBgColor, table.HeadersRowFontColor, true);
  }
  AddRowRule(".TrRows", table.TableBgColor, table.TableFontColor, false);
  AddRowRule(".TrOdd ", table.OddRowBgColor, table.TableFontColor, false);
  HasOuterBorder_ = table.BorderColor != clWhite;
  if (HasOuterBorder_) {
    StyleSheet_.Add("  .TrBC { background-color: " + HtmlColor(table.BorderColor) + " }");
  }
  PartCount_ = 0;
  for (const TNorvaColAlign align : {ecaLeft, ecaCenter, ecaRight}) {
    Attributes_[align] = " align=" + GetWriter().AlignToStr(align) + ">";
  }
}

void TNorvaHTML::AddBodyRule() {
  StyleSheet_.Add("  BODY { background: " + HtmlColor(HTMLOptions.BackgroundColor) +
                  "; color: " + HtmlColor(HTMLOptions.TextFont.Color) + ";");
  AddFontLines(9);
  const std::string& picture = HTMLOptions.BackgroundFileName;
  if (!picture.empty()) StyleSheet_.Add("background-image: url(" + picture + ")");
  StyleSheet_.Add("  }");
}

void TNorvaHTML::AddRowRule(const std::string& Selector, TColor Background, TColor Text,
                            bool IsHeader) {
  StyleSheet_.Add("  " + Selector + " { background-color: " + HtmlColor(Background) +
                  ";  color: " + HtmlColor(Text) + ";");
  if (IsHeader) StyleSheet_.Add("            font-weight: bold; text-align: center;");
  AddFontLines(12);
  StyleSheet_.Add("  }");
}

void TNorvaHTML::AddFontLines(std::size_t Indent) {
  const std::string blanks(Indent, ' ');
  const TFont& font = HTMLOptions.TextFont;
  if (!HTMLOptions.DefaultOptions.Contains(doFontName)) {
    StyleSheet_.Add(blanks + "font-family: " + font.Name + ";");
  }
  if (!HTMLOptions.DefaultOptions.Contains(doFontSize)) {
    StyleSheet_.Add(blanks + "font-size: " + std::to_string(font.Size) + "pt;");
  }
}

// The parts.

void TNorvaHTML::WriteCaptionRow() {}

void TNorvaHTML::WriteDataRow() {
  if (PartBegins()) BeginPart();
  const bool isOdd = RecordCounter % 2 != 0;
  const std::string_view next = isOdd ? "</td>\r\n    <td class=\"TrOdd\""  //
                                      : "</td>\r\n    <td class=\"TrRows\"";
  constexpr std::size_t end = 7;  // of the cell before, which the first one has not
  std::string& row = RowBuffer();
  row.assign("  <tr>\r\n");
  for (int i = 0; i < Columns.Count(); ++i) {
    row += i == 0 ? next.substr(end) : next;
    GetColData(i, true, row);
  }
  row += Columns.Count() > 0 ? "</td>\r\n  </tr>\r\n" : "  </tr>\r\n";
  GetWriter().Write(row);
}

bool TNorvaHTML::PartBegins() const {
  // On purpose: record 1 is a part of its own, the next one begins behind it.
  const bool begins =
      RecordCounter == 0 || (MaxRecords_ > 0 && (RecordCounter - 1) % MaxRecords_ == 0);
  return begins && HTMLWriter().WritesFile();
}

/// Turns to a new file. The page in the last one is not ended.
void TNorvaHTML::BeginPart() {
  const std::string name = MaxRecords_ > 0 ? PartName(FileName, ++PartCount_) : FileName;
  if (Part_) Part_->Close();
  Part_ = std::make_unique<TFileStream>(name, fmCreate);
  TLumHTMLWriter& writer = HTMLWriter();
  writer.SetStream(*Part_);
  writer.StartHTML();
  writer.StartHEAD();
  writer.WriteTITLE(Title);
  WriteStyle(name);
  writer.EndHEAD();
  writer.StartBODY();
  for (const std::string& line : Header) writer.WriteLn(line);
  WriteTableStart();
  if (AllowCaptions) WriteCaptions();
}

void TNorvaHTML::WriteStyle(const std::string& PartName) {
  TLumHTMLWriter& writer = HTMLWriter();
  if (UsingCSS == usInternal) {
    writer.StartSTYLE();
    writer.Write(StyleSheet_.Text());
    writer.EndSTYLE();
    return;
  }
  if (CSSFileName.empty()) CSSFileName = ChangeFileExt(PartName, ".css");
  writer.WriteLn(StyleSheetLink(CSSFileName));
  TFileStream file(CSSFileName, fmCreate);
  file.Write(StyleSheet_.Text());
  file.Close();
}

void TNorvaHTML::WriteTableStart() {
  if (HasOuterBorder_) {  // never ended
    GetWriter().WriteLn("<Table cellspacing=0 cellpadding=0 class=\"TrBC\">");
    GetWriter().WriteLn("<tr><td>");
  }
  GetWriter().WriteLn("<Table Border=\"" + std::to_string(TableOptions.Border) +
                      "\" Cellpadding=\"" + std::to_string(TableOptions.CellPadding) +
                      "\" Cellspacing=\"" + std::to_string(TableOptions.CellSpacing) + "\">");
}

void TNorvaHTML::WriteCaptions() {
  std::string& row = RowBuffer();
  row.assign("  <tr>\r\n");
  for (int i = 0; i < Columns.Count(); ++i) {
    row += "    <td class=\"ThRows\">";
    GetColCaption(i, row);
    row += "</td>\r\n";
  }
  row += "  </tr>\r\n";
  GetWriter().Write(row);
}

// The cells.

void TNorvaHTML::GetColData(int Index, bool NeedFormat, std::string& Text) {
  if (OnGetCellParams) return AppendCellByEvent(Index, NeedFormat, Text);
  Text += Attributes_[Columns[Index].Align];
  AppendCell(Index, NeedFormat, Text);
}

void TNorvaHTML::AppendCell(int Index, bool NeedFormat, std::string& Text) {
  const std::size_t start = Text.size();
  {
    // A value is escaped once, behind the event that may change it and nulls included, which is why
    // the driver's own call has to leave it alone.
    const TFlagScope fetching(Fetching_);
    TNorvaFormatText::GetColData(Index, NeedFormat, Text);
  }
  if (Text.size() == start) {
    Text += "&nbsp";  // without semicolon
    return;
  }
  if (FindEscaped(Text, start) == Text.size() || Columns[Index].ColType == ectBoolean) return;
  Cell_.assign(Text, start);
  if (BoolAsCheckBox) {
    if (Cell_.find_first_of("<&") != std::string::npos) UnsafeText(Cell_);
    return;
  }
  Text.resize(start);
  NormalString(Cell_, Text);
}

// NormalString copies while GetColData fetches a cell, and besides it only the width pass does.
bool TNorvaHTML::CopiesTexts() const {
  return typeid(*this) == typeid(TNorvaHTML) && !AutoCalcColWidth;
}

TSpecialCharacters TNorvaHTML::GetSpecialCharacters() const {
  TSpecialCharacters characters;
  for (const char c : SpecialCharacters) characters.set(static_cast<unsigned char>(c));
  return characters;
}

void TNorvaHTML::NormalString(std::string_view S, std::string& Text) {
  if (Fetching_) return TNorvaFormatText::NormalString(S, Text);
  std::size_t copied = 0;
  bool secondBreak = false;
  for (std::size_t i = FindEscaped(S, 0); i < S.size(); i = FindEscaped(S, i + 1)) {
    Text.append(S, copied, i - copied);
    copied = i + 1;
    switch (S[i]) {
      case '"':
        Text += "&quot;";
        break;
      case '&':
        Text += "&amp;";
        break;
      case '<':
        Text += "&lt;";
        break;
      case '>':
        Text += "&gt;";
        break;
      default:
        // On purpose: not only the LF of CR LF is dropped but each second line break there is.
        if (!secondBreak) Text += "<br>";
        secondBreak = !secondBreak;
    }
  }
  Text.append(S, copied);
}

void TNorvaHTML::AppendCellByEvent(int Index, bool NeedFormat, std::string& Text) {
  std::string value;
  AppendCell(Index, NeedFormat, value);
  TNorvaColAlign align = Columns[Index].Align;
  TFont font = HTMLOptions.TextFont;
  // On purpose: not the colour that the row's class has, but that of the rows between.
  const bool isOdd = RecordCounter % 2 != 0;
  const TColor usual = isOdd ? TableOptions.TableBgColor : TableOptions.OddRowBgColor;
  TColor background = usual;
  GetCellParams(RecordCounter, Index, value, align, font, background);
  Text += " align=" + GetWriter().AlignToStr(align);
  const std::string style = StyleOf(font, background, usual);
  if (!style.empty()) Text += " style=\"" + style + "\"";
  Text += ">" + value;
}

/// What differs from the style sheet: "background-color: #ff0000; font-size: 9pt".
std::string TNorvaHTML::StyleOf(const TFont& Font, TColor Background, TColor Usual) const {
  std::string style;
  const auto add = [&style](const char* name, const std::string& value) {
    style.append(style.empty() ? "" : "; ").append(name).append(": ").append(value);
  };
  const TFont& usual = HTMLOptions.TextFont;
  const auto addStyle = [&](TFontStyle which, const char* name, const char* on, const char* off) {
    const bool isOn = Font.Style.Contains(which);
    if (isOn != usual.Style.Contains(which)) add(name, isOn ? on : off);
  };
  if (Background != Usual) add("background-color", HtmlColor(Background));
  if (!SameText(Font.Name, usual.Name)) add("font-family", Font.Name);
  if (Font.Size != usual.Size) add("font-size", std::to_string(Font.Size) + "pt");
  if (Font.Color != usual.Color) add("color", HtmlColor(Font.Color));
  addStyle(fsBold, "font-weight", "bold", "normal");
  addStyle(fsItalic, "font-style", "italic", "normal");
  addStyle(fsUnderline, "text-decoration", "underline", "none");
  return style;
}

// The end.

void TNorvaHTML::AfterExport() {
  TLumHTMLWriter& writer = HTMLWriter();
  writer.WriteLn("</Table>");
  for (const std::string& line : Footer) writer.WriteLn(line);
  writer.EndBODY();
  writer.EndHTML();
  TNorvaFormatText::AfterExport();
}

void TNorvaHTML::EndExport() {
  // Before the index: without records, this is still the file that the index replaces.
  if (Part_) Part_->Close();
  DoGenerateIndex();
  TNorvaFormatText::EndExport();
}

void TNorvaHTML::DoGenerateIndex() {
  if (MaxRecords_ < 1 || !GenerateIndex || !HTMLWriter().WritesFile()) return;
  TFileStream file(FileName, fmCreate);
  TLumHTMLWriter writer(file);
  writer.StartHTML();
  writer.StartHEAD();
  if (UsingCSS == usExternal) {
    writer.WriteLn(StyleSheetLink(CSSFileName));
  } else {
    writer.StartSTYLE();
    writer.Write(StyleSheet_.Text());
    writer.EndSTYLE();
  }
  writer.EndHEAD();
  writer.StartBODY();
  writer.StartUI();
  for (std::int32_t i = 1; i <= PartCount_; ++i) {
    writer.LI();
    writer.WriteLn(PartLink(FileName, i));
  }
  writer.EndUI();
  writer.EndBODY();
  writer.EndHTML();
  file.Close();
}

}  // namespace norva
