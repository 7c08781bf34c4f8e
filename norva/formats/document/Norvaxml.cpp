#include <norva/formats/document/Norvaxml.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include <norva/platform/CodePages.h>
#include <norva/platform/Format.h>
#include <norva/platform/Property.h>

namespace norva {
namespace {

constexpr std::string_view SpecialCharacters = "\"&<>";

// What a byte means inside an attribute's value.
enum TByteKind : std::uint8_t { bkPlain, bkEscaped, bkControl };

constexpr std::array<TByteKind, 256> ByteKinds = [] {
  std::array<TByteKind, 256> kinds{};
  for (std::size_t i = 0; i < ' '; ++i) {
    kinds[i] = i == '\t' || i == '\n' || i == '\r' ? bkPlain : bkControl;
  }
  for (const char c : SpecialCharacters) kinds[static_cast<unsigned char>(c)] = bkEscaped;
  return kinds;
}();

TByteKind Kind(char C) { return ByteKinds[static_cast<unsigned char>(C)]; }

/// Eight times the byte `B`.
constexpr std::uint64_t Eight(std::uint64_t B) { return B * 0x0101010101010101; }

/// Whether one of the eight bytes of `Bytes` is below `Limit`, which is at most 0x80.
bool AnyBelow(std::uint64_t Bytes, std::uint64_t Limit) {
  return ((Bytes - Eight(Limit)) & ~Bytes & Eight(0x80)) != 0;
}

/// Whether no byte of `S` needs a closer look. Eight bytes at a time, since nearly every value is
/// plain and this is most of the work on it.
bool IsPlain(std::string_view S) {
  const auto isPlain = [&S](std::size_t at) {
    std::uint64_t bytes;
    std::memcpy(&bytes, S.data() + at, sizeof bytes);
    // `"` and `&` differ in one bit, `<` and `>` as well.
    return !AnyBelow(bytes, ' ') && !AnyBelow((bytes | Eight('"' ^ '&')) ^ Eight('"' | '&'), 1) &&
           !AnyBelow((bytes | Eight('<' ^ '>')) ^ Eight('<' | '>'), 1);
  };
  constexpr std::size_t step = sizeof(std::uint64_t);
  if (S.size() < step) {
    return std::ranges::all_of(S, [](char c) { return Kind(c) == bkPlain; });
  }
  for (std::size_t i = 0; i + step < S.size(); i += step) {
    if (!isPlain(i)) return false;
  }
  return isPlain(S.size() - step);
}

std::string_view Escape(char C) {
  switch (C) {
    case '"':
      return "&quot;";
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    default:
      return "&gt;";
  }
}

struct TRange {
  char32_t First, Last;
};
// NameStartChar and the rest of NameChar of XML 1.0, fifth edition, without the colon, which name
// spaces claim, and U+FFFD, which stands for ill-formed bytes here.
constexpr TRange NameStart[] = {
    {'A',     'Z'    },
    {'_',     '_'    },
    {'a',     'z'    },
    {0xC0,    0xD6   },
    {0xD8,    0xF6   },
    {0xF8,    0x2FF  },
    {0x370,   0x37D  },
    {0x37F,   0x1FFF },
    {0x200C,  0x200D },
    {0x2070,  0x218F },
    {0x2C00,  0x2FEF },
    {0x3001,  0xD7FF },
    {0xF900,  0xFDCF },
    {0xFDF0,  0xFFFC },
    {0x10000, 0xEFFFF}
};
constexpr TRange NameRest[] = {
    {'-',    '.'   },
    {'0',    '9'   },
    {0xB7,   0xB7  },
    {0x300,  0x36F },
    {0x203F, 0x2040}
};

template <std::size_t Size>
bool IsIn(const TRange (&Ranges)[Size], char32_t C) {
  return std::ranges::any_of(Ranges, [C](const TRange& r) { return r.First <= C && C <= r.Last; });
}

bool IsAttributeName(std::string_view Name) {
  const std::u32string name = ToUtf32(Name);
  return !name.empty() && IsIn(NameStart, name.front()) && Name != "xmlns" &&
         std::ranges::all_of(name,
                             [](char32_t c) { return IsIn(NameStart, c) || IsIn(NameRest, c); });
}

/// Whether `&Name;` is a reference that every reader knows.
bool IsReference(std::string_view Name) {
  if (!Name.starts_with('#')) {
    return Name == "amp" || Name == "lt" || Name == "gt" || Name == "quot" || Name == "apos";
  }
  const bool hex = Name.starts_with("#x");
  const std::string_view digits = Name.substr(hex ? 2 : 1);
  const char* const allowed = hex ? "0123456789ABCDEFabcdef" : "0123456789";
  return !digits.empty() && digits.find_first_not_of(allowed) == std::string_view::npos;
}

/// Whether `Text`, written as it stands, breaks an attribute's value.
bool BreaksValue(std::string_view Text) {
  for (std::size_t i = 0; i < Text.size(); ++i) {
    if (Kind(Text[i]) == bkControl || Text[i] == '"' || Text[i] == '<') return true;
    if (Text[i] != '&') continue;
    const std::size_t end = Text.find(';', i);
    if (end == std::string_view::npos || !IsReference(Text.substr(i + 1, end - i - 1))) return true;
  }
  return false;
}

}  // namespace

// TXMLOptions

const TPropertyList& TXMLOptions::Properties() const {
  static const TPropertyList list{
      Published("StandAlone", &TXMLOptions::StandAlone, true),
      Published("Encoding", &TXMLOptions::Encoding, ""),
      Published("Version", &TXMLOptions::Version, "1.0"),
  };
  return list;
}

void TXMLOptions::Assign(const TPersistent& Source) {
  const auto* options = dynamic_cast<const TXMLOptions*>(&Source);
  if (!options) AssignError(Source);
  *this = *options;
}

// TLumXMLWriter

void TLumXMLWriter::StartTag(std::string_view Tag, std::string_view Attrs) {
  Write("<");
  Write(Tag);
  if (!Attrs.empty()) Write(" ");
  Write(Attrs);
  Write(">");
}

void TLumXMLWriter::StartTagLn(std::string_view Tag, std::string_view Attrs) {
  StartTag(Tag, Attrs);
  EmptyLine();
}

void TLumXMLWriter::EndTag(std::string_view Tag) {
  Write("</");
  Write(Tag);
  Write(">");
}

void TLumXMLWriter::EndTagLn(std::string_view Tag) {
  EndTag(Tag);
  EmptyLine();
}

void TLumXMLWriter::StartEndTag(std::string_view Tag, std::string_view Attrs) {
  Write("<");
  Write(Tag);
  Write(" ");
  Write(Attrs);
  Write("/>");
}

void TLumXMLWriter::StartEndTagLn(std::string_view Tag, std::string_view Attrs) {
  StartEndTag(Tag, Attrs);
  EmptyLine();
}

// TNorvaXML

const TPropertyList& TNorvaXML::Properties() const {
  static const TPropertyList list(TNorvaText::Properties(),
                                  {
                                      PublishedGroup("Options", &TNorvaXML::Options),
                                      PublishedList("Captions", &TNorva::Captions),
                                      PublishedGroup("Formats", &TNorva::Formats),
                                      PublishedList("UserFormats", &TNorva::UserFormats),
                                  });
  return list;
}

TNorvaWriterClass TNorvaXML::GetWriterClass() const { return NewWriter<TLumXMLWriter>; }

void TNorvaXML::BeginExport() {
  TNorvaText::BeginExport();
  CheckNames();
  MakeAttributes();
  const std::string encoding =
      Options.Encoding.empty() ? "" : Format("encoding=\"%s\" ", Options.Encoding);
  GetWriter().WriteLn(Format("<?xml version=\"%s\" %sstandalone=\"%s\"?>", Options.Version,
                             encoding, Options.StandAlone ? "yes" : "no"));
  GetWriter().WriteLn("<DATAPACKET Version=\"2.0\">");
}

/// Tells the host of the names and captions that break the document.
void TNorvaXML::CheckNames() {
  for (int i = 0; i < Columns.Count(); ++i) {
    const std::string& name = Columns[i].Name;
    bool unsafe = !IsAttributeName(name);
    for (int j = 0; j < i && !unsafe; ++j) unsafe = Columns[j].Name == name;
    if (unsafe) UnsafeText(name);
    if (AllowCaptions && BreaksValue(Columns[i].Caption)) UnsafeText(Columns[i].Caption);
  }
}

void TNorvaXML::MakeAttributes() {
  const bool escaped = !OnGetExportText && !BreaksValue(Formats.NullString);
  Attributes_.clear();
  for (int i = 0; i < Columns.Count(); ++i) {
    const TNorvaColumn& column = Columns[i];
    Attributes_.push_back(
        {(i == 0 ? "" : "\" ") + column.Name + "=\"",
         escaped && column.ColType != ectBoolean && column.ColType != ectUnknown});
  }
}

void TNorvaXML::WriteCaptionRow() {
  TLumXMLWriter& writer = GetWriter();
  writer.StartTagLn("METADATA");
  writer.StartTagLn("FIELDS");
  std::string& attributes = RowBuffer();
  for (int i = 0; i < Columns.Count(); ++i) {
    attributes.clear();
    GetColCaption(i, attributes);
    writer.StartEndTagLn("FIELD", attributes);
  }
  writer.EndTagLn("FIELDS");
  writer.EndTagLn("METADATA");
}

void TNorvaXML::GetColCaption(int Index, std::string& Text) {
  const TNorvaColumn& column = Columns[Index];
  // On purpose: neither name nor caption is escaped.
  Text += Format("FieldName=\"%s\" DisplayLabel=\"%s\" FieldType=\"%s\" FieldClass=\"TField\"",
                 column.Name, column.Caption, NorvaColTypeAsString(column.ColType));
}

void TNorvaXML::BeforeExport() {
  TNorvaText::BeforeExport();
  GetWriter().StartTagLn("ROWDATA");
}

void TNorvaXML::WriteDataRow() {
  std::string& row = RowBuffer();
  row = "<ROW ";
  GetDataRow(true, row);
  row += "/>\r\n";
  GetWriter().Write(row);
}

void TNorvaXML::GetDataRow(bool NeedFormat, std::string& Row) {
  for (std::size_t i = 0; i < Attributes_.size(); ++i) {
    const TAttribute& attribute = Attributes_[i];
    Row += attribute.Opening;
    const std::size_t start = Row.size();
    GetColData(static_cast<int>(i), NeedFormat, Row);
    if (!attribute.Escaped) {
      const std::string_view cell = std::string_view(Row).substr(start);
      if (BreaksValue(cell)) UnsafeText(cell);
    }
  }
  if (!Attributes_.empty()) Row += '"';
}

TSpecialCharacters TNorvaXML::GetSpecialCharacters() const {
  TSpecialCharacters characters;
  for (const char c : SpecialCharacters) characters.set(static_cast<unsigned char>(c));
  return characters;
}

void TNorvaXML::NormalString(std::string_view S, std::string& Text) {
  if (IsPlain(S)) {
    Text += S;
    return;
  }
  std::size_t plain = 0;  // where the run that is not yet copied begins
  for (std::size_t i = 0; i < S.size(); ++i) {
    const TByteKind kind = Kind(S[i]);
    if (kind == bkPlain) continue;
    if (kind == bkControl) {
      UnsafeText(S);
      continue;
    }
    Text.append(S, plain, i - plain).append(Escape(S[i]));
    plain = i + 1;
  }
  Text.append(S, plain);
}

void TNorvaXML::AfterExport() {
  GetWriter().EndTagLn("ROWDATA");
  GetWriter().WriteLn("</DATAPACKET>");
  TNorvaText::AfterExport();
}

}  // namespace norva
