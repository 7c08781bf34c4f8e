#include <norva/formats/document/Norvalatex.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tests/Exports.h>
#include <tests/Vectors.h>
#include <tests/platform/TextScopes.h>

namespace norva::tests {
namespace {

/// Exports two records in code page 1252.
class TLaTeX : public TNorvaLaTeX {
 public:
  const TPageScope Page{1252};
  const TLocaleScope Locale{TFormatSettings()};
  TMemoryDataSet Source{
      {{"Name", ftString, 20}, {"Amount", ftFloat}}
  };
  std::vector<std::string> Unsafe;

  TLaTeX() {
    Options.SetCodePage(0);  // again, now that the page is chosen
    Source.Append({"Ann & Co", 12.5});
    Source.Append({"100%_$#", nullptr});
    DataSet = &Source;
    Header = {"head \\# er"};
    Footer = {"foot"};
    OnUnsafeText = [this](TObject&, std::int32_t column, std::string_view text) {
      Unsafe.push_back(std::to_string(column) + ":" + std::string(text));
    };
  }
};

/// Of a text with | behind each line and ¦ for |.
std::string LinesOf(std::string_view Text) { return Replace(Replace(Text, "|", "\r\n"), "¦", "|"); }

constexpr const char* Table =
    "|\\par\\bigskip|\\begin{tabular}{¦l¦r¦}|\\hline|Name & Amount|\\\\|\\hline|"
    "Ann \\& Co & 12.50|\\\\|\\hline|100\\%\\_\\$\\# & null|\\\\|\\hline|\\end{tabular}||";

struct DocumentCase {
  const char *Settings, *Languages, *Preambula, *Preamble, *Begin;
};
// clang-format off
const DocumentCase DocumentCases[] = {
    {"LaTeXVersion=LaTeX2e", "english", "",
     "\\documentclass[a4paper]{article}|\\usepackage[cp1252]{inputenc}|"
     "\\usepackage[english]{babel}|", "|"},
    {"DocumentStyle=dsBook DocumentParams= CodePage=1251", "german,Russian", "\\p|\\q",
     "\\documentclass{book}|\\usepackage[cp1251]{inputenc}|"
     "\\usepackage[german,Russian]{babel}|\\p|\\q||", "\\Rus||"},
    {"LaTeXVersion=LaTeX209", "russian", "\\p",  // nothing else of the preamble
     "\\documentstyle[a4paper]{article}|", "\\Rus||"},
    {"LaTeXVersion=LaTeX209 DocumentParams=", "", "",
     "\\documentstyle{article}|", "|"},
    {"CodePage=-1 DocumentParams=a,b", "", "",
     "\\documentclass[a,b]{article}|\\usepackage[cp1252]{inputenc}|\\usepackage[]{babel}|", "|"},
};
// clang-format on

TEST(NorvaLaTeX, Documents) {
  for (const DocumentCase& c : DocumentCases) {
    TLaTeX exporter;
    Set(exporter.Options, c.Settings);
    exporter.Options.Languages = c.Languages;
    exporter.Preambula.SetText(Replace(c.Preambula, "|", "\n"));
    EXPECT_EQ(Exported(exporter), LinesOf(std::string(c.Preamble) + "\\begin{document}|" + c.Begin +
                                          "head \\# er" + Table + "foot|\\end{document}|"));
  }
}

TEST(NorvaLaTeX, OneColumnWithoutSeparator) {
  TLaTeX exporter;
  exporter.ExportedFields = {"Amount"};
  EXPECT_NE(Exported(exporter).find("{tabular}{|r|}\r\n\\hline\r\nAmount\r\n\\\\\r\n\\hline\r\n"
                                    "12.50\r\n\\\\\r\n\\hline\r\n"),
            std::string::npos);
}

TEST(NorvaLaTeX, EscapesTexts) {
  struct Case {
    const char *Text, *Written;
    bool Safe;
    const char* Settings;
  };
  const Case cases[] = {
      {"",                "",                              true,  ""                     },
      {"a#b$c%d&e_f{g}h", "a\\#b\\$c\\%d\\&e\\_f\\{g\\}h", true,  ""                     },
      {"<a>b",            "$<$a$>$b",                      true,  ""                     },
      {"\"|'`-[]*!?\t\r", "\"|'`-[]*!?\t\r",               true,  ""                     },
      {"a\r\n\r\nb",      "a\r\n\r\nb",                    true,  ""                     },
      {"caf\xE9 \x80",    "caf\xE9 \x80",                  true,  ""                     },
      {"C:\\tmp",         "C:\\backslashtmp",              false, ""                     }, // an error of LaTeX
      {"a^b",             "a\\^b",                         false, ""                     }, // an accent
      {"\xB1 5",          "\xB1 5",                        false, ""                     },
      {"\xB1 5",          "\xB1 5",                        true,  "CodePage=1251"        }, // another page's byte
      {"\xE9",            "\xE9",                          false, "LaTeXVersion=LaTeX209"},
  };
  for (const Case& c : cases) {
    TLaTeX exporter;
    Set(exporter.Options, c.Settings);
    exporter.ExportedFields = {"Name"};
    exporter.Captions = {std::string("Name=") + c.Text};  // captions go the same way
    exporter.Source.Clear();
    exporter.Source.Append({c.Text, 1});
    std::string rows = "|l|}\r\n\\hline\r\n";
    for (int i = 0; i < 2; ++i) rows.append(c.Written).append("\r\n\\\\\r\n\\hline\r\n");
    const std::string text = Exported(exporter);
    EXPECT_NE(text.find(rows + "\\end"), std::string::npos) << text;
    EXPECT_EQ(exporter.Unsafe.size(), c.Safe ? 0 : 1) << c.Text;
  }
}

TEST(NorvaLaTeX, LeavesRawTextsAlone) {
  TMemoryDataSet source{{{"Raw", ftBytes}}};
  source.Append({nullptr});
  source.Append({"a_b"});
  TLaTeX exporter;
  exporter.DataSet = &source;
  exporter.Formats.NullString = "\\textit{none}";  // LaTeX, and no warning
  const std::string text = Exported(exporter);
  EXPECT_NE(text.find("\\textit{none}\r\n\\\\\r\n\\hline\r\na_b\r\n"), std::string::npos) << text;
  EXPECT_EQ(exporter.Unsafe, std::vector<std::string>{"0:a_b"});
}

TEST(NorvaLaTeX, AbortEndsTheDocument) {
  TLaTeX exporter;
  exporter.OnExportedRecord = [&](TObject&, std::int32_t) { exporter.Abort(); };
  const std::string text = Exported(exporter);
  EXPECT_EQ(text.substr(text.find("12.50")),
            LinesOf("12.50|\\\\|\\hline|\\hline|\\end{tabular}||\\end{document}|"
                    "\\end{tabular}||foot|\\end{document}|"));
}

TEST(NorvaLaTeX, AssignsOptions) {
  TLaTeXOptions source, copy;
  Set(source, "LaTeXVersion=LaTeX209 DocumentStyle=dsBook DocumentParams=x CodePage=7 Languages=y");
  copy.Assign(source);
  for (const TProperty& property : copy.Properties()) {
    EXPECT_EQ(property.Get(copy), property.Get(source)) << property.Name;
  }
  EXPECT_EQ(copy.CodePage(), 7);
}

}  // namespace
}  // namespace norva::tests
