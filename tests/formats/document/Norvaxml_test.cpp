#include <norva/formats/document/Norvaxml.h>

#include <map>

#include <gtest/gtest.h>

#include <tests/ErrorText.h>
#include <tests/Exports.h>
#include <tests/Vectors.h>
#include <tests/platform/TextScopes.h>

namespace norva::tests {
namespace {

struct TInvariant {
  const TLocaleScope Scope{TFormatSettings()};
};

/// An exporter of a table with the columns A, B ...; notes what it warns of as "column: text".
class TXML : TInvariant, public TNorvaXML {
 public:
  explicit TXML(std::initializer_list<TFieldType> Types, const std::string& First = "A") {
    for (const TFieldType type : Types) {
      const int column = Source_.FieldCount();
      Source_.AddField(column == 0 ? First : std::string(1, static_cast<char>('A' + column)), type);
    }
    DataSet = &Source_;
    OnUnsafeText = [this](TObject&, std::int32_t column, std::string_view text) {
      Unsafe_ += std::to_string(column) + ": " + std::string(text);
    };
  }
  using TNorvaXML::GetSpecialCharacters;
  using TNorvaXML::NormalString;
  TMemoryDataSet& Source() { return Source_; }

  /// The only ROW element, and what is warned of.
  std::string Row() {
    Unsafe_.clear();
    const std::string text = Exported(*this);
    const std::size_t begin = text.find("<ROW ");
    return text.substr(begin, text.find("\r\n</ROWDATA>") - begin) + Unsafe_;
  }

 private:
  std::string Unsafe_;
  TMemoryDataSet Source_;
};

TEST(NorvaXML, WholeDocument) {
  TXML exporter({ftInteger, ftString, ftBoolean}, "Id");
  exporter.Source().Append({1234, "Ann \"A\" O", true});
  exporter.Source().Append({-2, "", nullptr});
  exporter.Captions = {"B=Full name"};
  const std::string begin = R"(<?xml version="1.0" standalone="yes"?>
<DATAPACKET Version="2.0">
)";
  const std::string rows = R"(<ROWDATA>
<ROW Id="1,234" B="Ann &quot;A&quot; O" C="True"/>
<ROW Id="-2" B="" C="null"/>
</ROWDATA>
</DATAPACKET>
)";
  EXPECT_EQ(Exported(exporter), Replace(begin + R"(<METADATA>
<FIELDS>
<FIELD FieldName="Id" DisplayLabel="Id" FieldType="Integer" FieldClass="TField"/>
<FIELD FieldName="B" DisplayLabel="Full name" FieldType="String" FieldClass="TField"/>
<FIELD FieldName="C" DisplayLabel="C" FieldType="Boolean" FieldClass="TField"/>
</FIELDS>
</METADATA>
)" + rows,
                                        "\n", "\r\n"));
  exporter.AllowCaptions = false;
  EXPECT_EQ(Exported(exporter), Replace(begin + rows, "\n", "\r\n"));
  exporter.SkipRecCount = 2;
  EXPECT_EQ(Exported(exporter),
            Lines({R"(<?xml version="1.0" standalone="yes"?>)", R"(<DATAPACKET Version="2.0">)",
                   "<ROWDATA>", "</ROWDATA>", "</DATAPACKET>"}));
}

TEST(NorvaXML, Declaration) {
  struct Case {
    const char *Settings, *Declaration;
  };
  const Case cases[] = {
      {"Encoding=UTF-8",               R"(version="1.0" encoding="UTF-8" standalone="yes")"},
      {"Version=1.1 StandAlone=false", R"(version="1.1" standalone="no")"                  },
  };
  for (const Case& c : cases) {
    TXML exporter({ftString});
    exporter.Source().Append({"a"});
    TXMLOptions options;
    Set(options, c.Settings);
    exporter.Options.Assign(options);
    const std::string text = Exported(exporter);
    EXPECT_EQ(text.substr(0, text.find('\r')), std::string("<?xml ") + c.Declaration + "?>");
  }
  EXPECT_EQ(ErrorText<EConvertError>([] { TXMLOptions().Assign(TNorvaFormats()); }),
            "A TNorvaFormats cannot be assigned to a TXMLOptions");
}

TEST(NorvaXML, ValuesAreEscaped) {
  struct Case {
    std::string_view Text, Written;
    bool Unsafe;
  };
  const Case cases[] = {
      {R"(a<b & "c")",   "a&lt;b &amp; &quot;c&quot;", false},
      {"<\x01>",         "&lt;\x01&gt;",               true },
      {"a long one\x1f", "a long one\x1f",             true },
      {{"\0", 1},        {"\0", 1},                    true },
  };
  for (const Case& c : cases) {
    TXML exporter({ftInteger, ftString});
    exporter.Source().Append({1, c.Text});
    EXPECT_EQ(exporter.Row(), "<ROW A=\"1\" B=\"" + std::string(c.Written) + "\"/>" +
                                  (c.Unsafe ? "1: " + std::string(c.Text) : ""));
  }
}

TEST(NorvaXML, EscapesEveryByteAtEveryPlace) {
  TXML exporter({});
  std::map<char, std::string> escapes;
  escapes['"'] = "&quot;", escapes['&'] = "&amp;", escapes['<'] = "&lt;", escapes['>'] = "&gt;";
  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    EXPECT_EQ(exporter.GetSpecialCharacters().test(byte), escapes.contains(c)) << byte;
    for (std::size_t size = 1; size <= 17; ++size) {
      for (std::size_t at = 0; at < size; ++at) {
        std::string text(size, '!'), got = "+";
        text[at] = c;
        exporter.NormalString(text, got);
        if (escapes.contains(c)) text.replace(at, 1, escapes.at(c));
        ASSERT_EQ(got, "+" + text) << byte << " at " << at << " of " << size;
      }
    }
  }
}

TEST(NorvaXML, NamesAndCaptionsAreCopied) {
  struct Case {
    const char *Name, *Caption, *Unsafe;
    int CodePage = CodePageUtf8;
  };
  const Case cases[] = {
      {"Größe",     "a > &amp;&#x3C;'", ""        },
      {"_a-1.",       "&#60;",            ""        },
      {"a b",         "<",                "-1: a b" }, // the first one only
      {"1",           "x",                "-1: 1"   },
      {"a:b",         "x",                "-1: a:b" },
      {"\xE4",        "x",                "-1: \xE4"},
      {"\xE4",        "x",                "",         1252},
      {"\xD7",             "x",                          "-1: \xD7",                     1252}, // a multiplication sign
      {"xmlns",         "x",                           "-1: xmlns"          },
      {"A",  "\"","-1: \""},
      {"A",     "R&D",                              "-1: R&D"                                              },
      {"A",    "&nbsp;","-1: &nbsp;"},
      {"A", "\x02",                           "-1: \x02"                                                                                },
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.Name << ", " << c.Caption);
    const TPageScope page(c.CodePage);
    TXML exporter({ftString}, c.Name);
    exporter.Source().Fields(0).DisplayName = c.Caption;
    exporter.Source().Append({"v"});
    const std::string name = c.Name;
    EXPECT_EQ(exporter.Row(), "<ROW " + name + "=\"v\"/>" + c.Unsafe);
    const std::string field = "FieldName=\"" + name + "\" DisplayLabel=\"" + c.Caption + "\" ";
    EXPECT_NE(Exported(exporter).find(field), std::string::npos);
  }
}

TEST(NorvaXML, WarnsOfWhatElseBreaks) {
  TXML exporter({ftString, ftUnknown});
  exporter.Source().Append({"a&b", "<"});
  EXPECT_EQ(exporter.Row(), R"(<ROW A="a&amp;b" B="<"/>1: <)");
  exporter.ExportedFields = {"A", "A"};
  EXPECT_EQ(exporter.Row(), R"(<ROW A="a&amp;b" A="a&amp;b"/>-1: A)");
  exporter.ExportedFields = {"A"};
  exporter.OnGetExportText = [](TObject&, std::int32_t, std::string& text) { text += '"'; };
  EXPECT_EQ(exporter.Row(), R"(<ROW A="a&amp;b""/>0: a&amp;b")");

  TXML nulls({ftString, ftString});
  nulls.Source().Append({"a&b", nullptr});
  nulls.Formats.NullString = "<null>";
  EXPECT_EQ(nulls.Row(), R"(<ROW A="a&amp;b" B="<null>"/>1: <null>)");
}

TEST(NorvaXML, WriterTags) {
  TMemoryStream stream;
  TLumXMLWriter writer(stream);
  writer.StartTag("A");
  writer.StartTagLn("B", "c=\"1\"");
  writer.StartEndTag("D");  // on purpose: the blank stands without attributes, too
  writer.StartEndTagLn("E", "f");
  writer.EndTagLn("B");
  writer.EndTag("A");
  EXPECT_EQ(stream.Bytes(), "<A><B c=\"1\">\r\n<D /><E f/>\r\n</B>\r\n</A>");
}

}  // namespace
}  // namespace norva::tests
