#include <norva/formats/document/Norvalatex.h>

#include <algorithm>

#include <norva/platform/CodePages.h>
#include <norva/platform/Property.h>

namespace norva {
namespace {

constexpr std::string_view SpecialCharacters = "#$%&\\^_{}~";
constexpr std::string_view CellEnd = " & ";  // behind every cell; GetDataRow takes the last one off

enum TEscape : std::uint8_t {
  exNone,
  exSlash,      // a backslash in front
  exAccent,     // the same, which makes an accent of it
  exBackslash,  // "\backslash"
  exFormula,    // in dollar signs
  exUnsafe,     // as it stands, although LaTeX refuses it
};

/// The bytes that inputenc refuses in a text: its files for the Windows code pages declare them for
/// formulas only, or not at all.
struct TRefusedBytes {
  int CodePage;
  std::string_view Bytes;
};
constexpr TRefusedBytes RefusedBytes[] = {
    {1250, "\x81\x83\x88\x90\x98\xAC\xB1\xB5\xD7\xF7"                                        },
    {1251, "\x98\xAC\xB1\xB5"                                                                },
    {1252, "\x81\x8D\x8F\x90\x9D\xAC\xB1\xB2\xB3\xB5\xB9\xD7\xF7"                            },
    {1257, "\x81\x83\x88\x8A\x8C\x90\x98\x9A\x9C\x9F\xA1\xA5\xAC\xB1\xB2\xB3\xB5\xB9\xD7\xF7"},
};

void RemoveCellEnd(std::string& Row) {
  if (Row.ends_with(CellEnd)) Row.resize(Row.size() - CellEnd.size());
}

}  // namespace

std::string_view StyleToStr(TLaTeXDocStyle Style) {
  switch (Style) {
    case dsArticle:
      return "article";
    case dsBook:
      return "book";
  }
  return {};
}

// Options.

TLaTeXOptions::TLaTeXOptions() : CodePage_(SystemAnsiCodePage()) {}

void TLaTeXOptions::Assign(const TPersistent& Source) {
  const auto* options = dynamic_cast<const TLaTeXOptions*>(&Source);
  if (!options) AssignError(Source);
  *this = *options;
}

const TPropertyList& TLaTeXOptions::Properties() const {
  using O = TLaTeXOptions;
  static const TPropertyList list{
      Published("LaTeXVersion", &O::LaTeXVersion, LaTeX2e),
      Published("DocumentStyle", &O::DocumentStyle, dsArticle),
      Published("DocumentParams", &O::DocumentParams, "a4paper"),
      // No stored default: another system's page would be taken for this one's.
      Published("CodePage", &O::CodePage, &O::SetCodePage, std::nullopt),
      Published("Languages", &O::Languages, "english"),
  };
  return list;
}

void TLaTeXOptions::SetCodePage(std::int32_t Value) {
  CodePage_ = Value < 1 ? SystemAnsiCodePage() : Value;
}

// Writer.

void TLumLaTeXWriter::BeginEnv(std::string_view Name, std::string_view Params) {
  std::string line = "\\begin{";
  line.append(Name).append("}");
  if (!Params.empty()) line.append("{").append(Params).append("}");
  WriteLn(line);
}

void TLumLaTeXWriter::EndEnv(std::string_view Name) {
  WriteLn(std::string("\\end{").append(Name).append("}"));
}

void TLumLaTeXWriter::UsePackage(std::string_view Name, std::string_view Options) {
  WriteLn(std::string("\\usepackage[").append(Options).append("]{").append(Name).append("}"));
}

void TLumLaTeXWriter::HLine() { WriteLn("\\hline"); }
void TLumLaTeXWriter::NewLine() { WriteLn("\\\\"); }

// Exporter.

TNorvaLaTeX::TNorvaLaTeX(TComponent* Owner) : TNorvaFormatText(Owner) {
  FillEscapes(TNorvaLaTeX::GetSpecialCharacters());
}

const TPropertyList& TNorvaLaTeX::Properties() const {
  static const TPropertyList list(TNorvaFormatText::Properties(),
                                  {
                                      PublishedGroup("Options", &TNorvaLaTeX::Options),
                                      PublishedList("Preambula", &TNorvaLaTeX::Preambula),
                                  });
  return list;
}

TNorvaWriterClass TNorvaLaTeX::GetWriterClass() const { return NewWriter<TLumLaTeXWriter>; }

void TNorvaLaTeX::BeginExport() {
  TNorvaFormatText::BeginExport();
  FillEscapes(GetSpecialCharacters());
  WritePreamble();
  TLumLaTeXWriter& writer = LaTeXWriter();
  writer.BeginEnv("document");
  if (UpperCase(Options.Languages).find("RUSSIAN") != std::string::npos) writer.WriteLn("\\Rus");
  writer.EmptyLine();
  for (const std::string& line : Header) writer.WriteLn(line);
  writer.WriteLn("\\par\\bigskip");
  BeginTable();
}

void TNorvaLaTeX::FillEscapes(const TSpecialCharacters& Special) {
  Escapes_.fill(exNone);
  const auto set = [this](std::string_view bytes, TEscape escape) {
    for (const char c : bytes) Escapes_[static_cast<unsigned char>(c)] = escape;
  };
  std::fill_n(Escapes_.begin(), 0x20, exUnsafe);
  set("\x7F", exUnsafe);
  set("\t\r\n", exNone);
  set("<>", exFormula);
  for (std::size_t i = 0; i < Special.size(); ++i) {
    if (Special[i]) Escapes_[i] = exSlash;
  }
  if (Special['^']) set("^", exAccent);
  if (Special['~']) set("~", exAccent);
  if (Special['\\']) set("\\", exBackslash);
  if (Options.LaTeXVersion == LaTeX209) {
    std::fill(Escapes_.begin() + 0x80, Escapes_.end(), exUnsafe);
  } else if (Options.CodePage() == ActiveCodePage()) {
    for (const TRefusedBytes& page : RefusedBytes) {
      if (page.CodePage == Options.CodePage()) set(page.Bytes, exUnsafe);
    }
  }
}

void TNorvaLaTeX::WritePreamble() {
  TLumLaTeXWriter& writer = LaTeXWriter();
  std::string line = Options.LaTeXVersion == LaTeX209 ? "\\documentstyle" : "\\documentclass";
  if (!Options.DocumentParams.empty()) line += "[" + Options.DocumentParams + "]";
  writer.WriteLn(line.append("{").append(StyleToStr(Options.DocumentStyle)).append("}"));
  if (Options.LaTeXVersion == LaTeX209) return;
  writer.UsePackage("inputenc", "cp" + std::to_string(Options.CodePage()));
  writer.UsePackage("babel", Options.Languages);
  if (Preambula.Empty()) return;
  for (const std::string& preambleLine : Preambula) writer.WriteLn(preambleLine);
  writer.EmptyLine();
}

void TNorvaLaTeX::BeginTable() {
  std::string columns = "|";
  for (int i = 0; i < Columns.Count(); ++i) columns += Columns[i].IsNumeric() ? "r|" : "l|";
  LaTeXWriter().BeginEnv("tabular", columns);
  LaTeXWriter().HLine();
}

void TNorvaLaTeX::WriteCaptionRow() {
  std::string& row = RowBuffer();
  row.clear();
  GetCaptionRow(row);
  EndRow(row);
}

/// Behind the cells the lines of NewLine and HLine, all in one write.
void TNorvaLaTeX::EndRow(std::string& Row) {
  Row += "\r\n\\\\\r\n\\hline\r\n";
  GetWriter().Write(Row);
}

void TNorvaLaTeX::GetCaptionRow(std::string& Row) {
  TNorvaFormatText::GetCaptionRow(Row);
  RemoveCellEnd(Row);
}

void TNorvaLaTeX::GetColCaption(int Index, std::string& Text) {
  TNorvaFormatText::GetColCaption(Index, Text);
  Text += CellEnd;
}

void TNorvaLaTeX::WriteDataRow() {
  std::string& row = RowBuffer();
  row.clear();
  GetDataRow(true, row);
  EndRow(row);
}

void TNorvaLaTeX::GetDataRow(bool NeedFormat, std::string& Row) {
  TNorvaFormatText::GetDataRow(NeedFormat, Row);
  RemoveCellEnd(Row);
}

void TNorvaLaTeX::GetColData(int Index, bool NeedFormat, std::string& Text) {
  const std::size_t start = Text.size();
  TNorvaFormatText::GetColData(Index, NeedFormat, Text);
  if (Columns[Index].ColType == ectUnknown && !ColIsNull(Index)) CheckRawText(start, Text);
  Text += CellEnd;
}

/// A value of unknown type has not gone through NormalString.
void TNorvaLaTeX::CheckRawText(std::size_t Start, std::string_view Text) {
  const std::string_view value = Text.substr(Start);
  const auto special = [this](char c) { return Escapes_[static_cast<unsigned char>(c)] != exNone; };
  if (std::any_of(value.begin(), value.end(), special)) UnsafeText(value);
}

TSpecialCharacters TNorvaLaTeX::GetSpecialCharacters() const {
  TSpecialCharacters set;
  for (const char c : SpecialCharacters) set.set(static_cast<unsigned char>(c));
  return set;
}

void TNorvaLaTeX::NormalString(std::string_view S, std::string& Text) {
  const char* run = S.data();  // what has not been copied yet
  const char* const end = S.data() + S.size();
  for (const char* p = run; p != end; ++p) {
    const std::uint8_t escape = Escapes_[static_cast<unsigned char>(*p)];
    if (escape == exNone) continue;
    Text.append(run, p);
    run = p + 1;
    switch (escape) {
      case exFormula:
        Text.append({'$', *p, '$'});
        break;
      case exBackslash:
        Text += "\\backslash";
        UnsafeText(S);
        break;
      case exUnsafe:
        Text += *p;
        UnsafeText(S);
        break;
      default:
        Text.append({'\\', *p});
        if (escape == exAccent) UnsafeText(S);
    }
  }
  Text.append(run, end);
}

void TNorvaLaTeX::EndExport() {
  TLumLaTeXWriter& writer = LaTeXWriter();
  writer.EndEnv("tabular");
  writer.EmptyLine();
  for (const std::string& line : Footer) writer.WriteLn(line);
  writer.EndEnv("document");
  TNorvaFormatText::EndExport();
}

void TNorvaLaTeX::Abort() {
  TLumLaTeXWriter& writer = LaTeXWriter();
  writer.HLine();
  writer.EndEnv("tabular");
  writer.EmptyLine();
  writer.EndEnv("document");
  TNorvaFormatText::Abort();
}

}  // namespace norva
