#include <norva/formats/spreadsheet/Norvabiff.h>

#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <norva/formats/spreadsheet/Norvaxls.h>
#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <tests/ErrorText.h>
#include <tests/Exports.h>
#include <tests/formats/spreadsheet/Workbook.h>
#include <tests/platform/TextScopes.h>

namespace norva::tests {
namespace {

/// A workbook with what a test puts into it; everything else is empty.
struct TBook {
  TXLSOptions Options;
  TNorvaXLS Exporter;
  TNorvaColumns& Columns = Exporter.Columns;
  int StartDataCol = 0;
  TxlsFontList Fonts;
  TxlsTextFormatList TextFormats;
  TxlsXFormatList XFormats;
  TxlsStrings Strings;
  std::function<void(TLumXLSWriter&)> WriteCells = [](TLumXLSWriter&) {};

  void AddColumn(int Width) { Columns.Add().Width = Width; }
  TWorkbook Written() {
    TMemoryStream stream;
    TLumXLSWriter writer(stream);
    writer.WriteGlobals(Options);
    writer.WriteSheetStart(Options, Columns, StartDataCol);
    WriteCells(writer);
    writer.WriteSheetFinish();
    writer.WriteXF(Fonts, TextFormats, XFormats);
    writer.WriteSST(Strings);
    writer.WriteDIM(0, 6, 0, 4);
    writer.WriteWorkbook();
    return TWorkbook(stream.Bytes());
  }
  std::string WrittenError() {
    return ErrorText<Exception>([this] { Written(); });
  }
};

// Every byte of a small workbook: readers forgive much of what is wrong here.
TEST(Norvabiff, AllRecords) {
  TBook book;
  book.AddColumn(1);
  book.AddColumn(1);
  book.Fonts.Add(TxlsFont());
  book.TextFormats.Add({50, "0"});
  book.XFormats.Add(TxlsXFormat());
  book.Strings.Add("x");
  book.WriteCells = [](TLumXLSWriter& writer) { writer.WriteBlank(0, 0, 15); };
  std::vector<std::string> records;
  for (const TRecord& record : book.Written().Records) {
    records.push_back(HexNumber(static_cast<unsigned>(record.Number), 4) + ":");
    for (const char byte : record.Body) records.back() += Hex({&byte, 1});
  }
  EXPECT_EQ(Row(records),
            "0809:00060500BB0DCC070000000006020000 005C:010000582020202020202020202020202020202"
            "0202020202020202020202020202020202020202020202020202020202020202020202020202020202"
            "0202020202020202020202020202020202020202020202020202020202020202020202020202020202"
            "020202020202020202020 0042:E404 0161:0000 013D:0100 009C:0E00 0019:0000 0012:0000 "
            "0013:0000 01AF:0000 01BC:0000 003D:780078000C5D683D38000000000001005802 0040:0000 "
            "008D:0000 0022:0000 000E:0100 01B7:0000 00DA:0000 "
            "0031:C800000008009001000000000100050161007200690061006C00*4 "
            "00E0:00000000F5FF200000000000000000000000C020 "
            "00E0:01000000F5FF200000F40000000000000000C020*2 "
            "00E0:02000000F5FF200000F40000000000000000C020*2 "
            "00E0:00000000F5FF200000F40000000000000000C020*10 "
            "00E0:010000000100200000000000000000000000C020 "
            "0031:C800000008009001000000000100050161007200690061006C00 041E:320001000030 "
            "00E0:0100000001002000005000000000000000000904 "
            "0085:67030000000007015300680065006500740020003100 008C:01000100 "
            "00FC:01000000010000000100017800 000A: 0809:00061000BB0DCC070000000006020000 "
            "000D:0100 000C:6400 000F:0100 0011:0000 0010:FCA9F1D24D62503F 005F:0100 002A:0000 "
            "002B:0000 0082:0100 0080:0000000000000000 0225:0000FF00 0081:C104 0014: "
            "0015:0D000050616765202650206F6620264E0000 0083:0000 0084:0000 0055:0800 "
            "007D:0000000000010F00000000 007D:0100010000010F00000000 "
            "0200:0000000007000000000005000000 0201:000000000F00 "
            "023E:B60600000000000000000000000000000000 001D:03000000000000010000000000000000 "
            "000A:*2");
}

TEST(Norvabiff, FontsOneToThreeAreThatOfTheData) {
  TBook book;
  book.Options.DataFormat.Font.Name = "Zoë";
  book.Options.DataFormat.Font.Size = 12;
  const TWorkbook written = book.Written();
  EXPECT_EQ(Narrow(written.Body(0x0031, 0).substr(16)), "arial");
  for (std::size_t i = 1; i <= 3; ++i) {
    EXPECT_EQ(Hex(written.Body(0x0031, i)),
              "F0 00 00 00 08 00 90 01 00 00 00 00 01 00 03 01 5A 00 6F 00 EB 00");
  }
}

TEST(Norvabiff, UserFont) {
  TBook book;
  TxlsFont font;
  Set(font,
      "Size=11 Style=[xfsBold,xfsItalic,xfsStrikeOut] Color=clrRed Script=fscSubscript "
      "Underline=fulDoubleAccounting Charset=238");
  font.Name = "Ω";
  book.Fonts.Add(font);
  EXPECT_EQ(Hex(book.Written().Body(0x0031, 4)),
            "DC 00 0A 00 0A 00 BC 02 02 00 22 00 EE 00 01 01 A9 03");
}

std::string Repeated(std::string_view Text, int Times) {
  std::string text;
  for (int i = 0; i < Times; ++i) text += Text;
  return text;
}

struct TextFormatCase {
  const char* Text;
  int Times;  // so often in a row
  const char* Head;
  std::size_t Size;
};
// Up to U+00FF a character is one byte, else all are two. The length has its low byte only.
const TextFormatCase TextFormatCases[] = {
    {"0 ¥",  1,   "32 00 03 00 00", 8  },
    {"0 €", 1,   "32 00 03 00 01", 11 },
    {"0",     300, "32 00 2C 00 00", 305},
};
TEST(Norvabiff, TextFormats) {
  for (const TextFormatCase& c : TextFormatCases) {
    TBook book;
    book.TextFormats.Add({50, Repeated(c.Text, c.Times)});
    const std::string body = book.Written().Body(0x041E);
    EXPECT_EQ(Hex(body.substr(0, 5)), c.Head) << c.Text;
    EXPECT_EQ(body.size(), c.Size) << c.Text;
  }
}

TEST(Norvabiff, UserXF) {
  TBook book;
  TxlsFont font;
  font.FontIndex = 0x0105;
  const TxlsTextFormat textFormat{0x0132, "0"};
  TxlsXFormat full;
  full.Font = &font;
  full.TextFormat = &textFormat;
  Set(full.Borders,
      "Left.Style=bstThin Left.Color=clrRed Right.Style=bstMedium Right.Color=clrBlue "
      "Top.Style=bstDashed Top.Color=clrGreen Bottom.Style=bstSlantedDashDot "
      "Bottom.Color=clrGray80Percent DiagDown.Style=bstDouble DiagDown.Color=clrPink "
      "DiagUp.Style=bstHair");  // the other diagonal goes first
  Set(full.Fill, "Background=clrGold Pattern=ptThinThinSpots Foreground=clrPlum");
  full.Alignment.Horizontal = halRight;
  full.Alignment.Vertical = valCenter;
  full.Wrap = true;
  TxlsXFormat up;
  // A side without a style has no colour either.
  Set(up.Borders, "DiagUp.Style=bstThick DiagUp.Color=clrAqua Left.Color=clrRed");
  book.XFormats.Add(TxlsXFormat());
  book.XFormats.Add(full);
  book.XFormats.Add(up);
  const TWorkbook written = book.Written();
  EXPECT_EQ(Hex(written.Body(0x00E0, 16)),
            "01 00 00 00 01 00 20 00 00 50 00 00 00 00 00 00 00 00 09 04");
  const std::string body = written.Body(0x00E0, 17);
  EXPECT_EQ(Hex(body.substr(0, 12)), "05 01 32 01 01 00 1B 00 00 78 21 D3");
  EXPECT_EQ(NumberAt(body, 12), 0x0AU | 0x0C << 7 | 0xC000);
  EXPECT_EQ(NumberAt(body, 14, 4), 0x11U | 0x3F << 7 | 0x0E << 14 | 6 << 21 | 0x12 << 26);
  EXPECT_EQ(NumberAt(body, 18), 0x33U | 0x3D << 7);
  const std::string other = written.Body(0x00E0, 18);
  EXPECT_EQ(Hex(other.substr(9, 3)), "70 00 00");
  EXPECT_EQ(NumberAt(other, 12), 0x8000U);
  EXPECT_EQ(NumberAt(other, 14, 4), 0x31U << 14 | 5 << 21);
}

TEST(Norvabiff, Cells) {
  TBook book;
  book.WriteCells = [&](TLumXLSWriter& writer) {
    book.Strings.Add("other");
    writer.WriteBlank(1, 2, 3);
    writer.WriteString(0xFFFF, 0x00FE, 0x0110, "text", book.Strings);
    writer.WriteString(1, 2, 3, "", book.Strings);  // nothing
    writer.WriteNumber(1, 2, 3, -1.5);
    writer.WriteBoolean(1, 2, 3, true);
    writer.WriteBoolean(1, 2, 3, false);
    writer.WriteAggregate(11, 2, 3, 10, aggSum, 16);
    writer.WriteAggregate(11, 2, 3, 10, aggAvg, 16);
    writer.WriteAggregate(11, 2, 3, 10, aggMin, 16);
    writer.WriteAggregate(11, 2, 3, 10, aggMax, 16);
  };
  const TWorkbook written = book.Written();
  EXPECT_EQ(Hex(written.Body(0x0201)), "01 00 02 00 03 00");
  EXPECT_EQ(Hex(written.Body(0x00FD)), "FF FF FE 00 10 01 01 00 00 00");
  EXPECT_EQ(written.Bodies(0x00FD).size(), 1U);
  EXPECT_EQ(Hex(written.Body(0x0203)), "01 00 02 00 03 00 00 00 00 00 00 00 F8 BF");
  EXPECT_EQ(Hex(written.Body(0x0205, 0)), "01 00 02 00 03 00 01 00");
  EXPECT_EQ(Hex(written.Body(0x0205, 1)), "01 00 02 00 03 00 00 00");
  const char* const functions[] = {"04", "05", "06", "07"};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(Hex(written.Body(0x0006, i)),
              std::string("0B 00 02 00 10 00 00 00 00 00 00 00 00 00 02 00 00 00 00 00 0D 00 "
                          "25 03 00 0A 00 02 C0 02 C0 42 01 ") +
                  functions[i] + " 00");
  }
}

struct WidthCase {
  int Width;
  const char* Body;
};
const WidthCase WidthCases[] = {
    {-1,  "03 00 03 00 00 00 0F 00 00 00 00"},
    {256, "03 00 03 00 00 FF 0F 00 00 00 00"}, // the format's greatest width
};
TEST(Norvabiff, ColumnWidths) {
  for (const WidthCase& c : WidthCases) {
    TBook book;
    book.StartDataCol = 2;
    book.AddColumn(1);
    book.AddColumn(c.Width);
    EXPECT_EQ(Hex(book.Written().Body(0x007D, 1)), c.Body) << c.Width;
  }
}

struct CatchwordCase {
  const char* Text;
  int Times;  // so often in a row
  const char* Head;
  std::size_t Size;
};
const CatchwordCase CatchwordCases[] = {
    {"",    1,    "",            0   },
    {"ü",  1,    "01 00 00 FC", 6   },
    {"€", 1,    "01 00 01 AC", 7   },
    {"B",   300,  "2C 00 00 42", 305 }, // 300 mod 256
    {"C",   8219, "1B 00 00 43", 8224},
};
TEST(Norvabiff, PageHeaders) {
  for (const CatchwordCase& c : CatchwordCases) {
    TBook book;
    book.Options.PageHeader = Repeated(c.Text, c.Times);
    const std::string body = book.Written().Body(0x0014);
    EXPECT_EQ(Hex(body.substr(0, 4)), c.Head) << c.Text;
    EXPECT_EQ(body.size(), c.Size) << c.Text;
    EXPECT_TRUE(body.empty() || body.ends_with(std::string(2, '\0'))) << c.Text;
  }
}

TEST(Norvabiff, SheetTitleAndPlace) {
  TBook book;
  book.Options.SetSheetTitle("Zoë 😀");
  book.Fonts.Add(TxlsFont());
  book.Strings.Add("before the sheet");
  const TWorkbook written = book.Written();
  const std::string body = written.Body(0x0085);
  EXPECT_EQ(Hex(body.substr(4, 4)), "00 00 06 01");
  EXPECT_EQ(Narrow(body.substr(8)), "Zo\\u00EB \\uD83D\\uDE00");
  std::vector<std::size_t> places;
  for (const TRecord& record : written.Records) {
    if (record.Number == 0x0809) places.push_back(record.Offset);
  }
  EXPECT_EQ(NumberAt(body, 0, 4), places.at(1));
}

// The shared strings.

struct SSTCase {
  const char *Lengths, *Bodies;  // of the texts; of SST and CONTINUE
};
// Behind the counts 8216 bytes are left, in a CONTINUE 8224; a text takes 3 and 2 a character.
const SSTCase SSTCases[] = {
    {"",            "8"            },
    {"2000 2105",   "8224"         },
    {"2000 2106",   "4011 4215"    },
    {"2000 2105 1", "8224 5"       },
    {"4107",        "8 8217"       },
    {"4110",        "8 8223"       },
    {"4111",        "8 8223 3"     },
    {"1 4111",      "13 8223 3"    },
    {"4111 4110",   "8 8223 3 8223"},
    {"8222",        "8 8223*2 3"   },
    {"32767",       "8 8223*7 7983"},
};
TEST(Norvabiff, SharedStringsAreContinued) {
  for (const SSTCase& c : SSTCases) {
    TBook book;
    std::vector<std::string> texts;
    std::istringstream lengths(c.Lengths);
    for (std::size_t length; lengths >> length;) {
      texts.emplace_back(length, static_cast<char>('a' + texts.size()));
      book.Strings.Add(texts.back());
    }
    const TWorkbook written = book.Written();
    std::vector<std::string> bodies;
    for (const TRecord& record : written.Records) {
      if (record.Number != 0x00FC && record.Number != 0x003C) continue;
      bodies.push_back(std::to_string(record.Body.size()));
    }
    EXPECT_EQ(Row(bodies), c.Bodies) << c.Lengths;
    EXPECT_TRUE(written.Strings == texts) << c.Lengths;
  }
}

TEST(Norvabiff, PiecesHoldWholeCharacters) {
  // The 4110th unit, the last that fits, is the first half of a character.
  TBook book;
  book.Strings.Add(std::string(4109, 'a') + "😀b");
  const TWorkbook written = book.Written();
  EXPECT_EQ(written.Body(0x003C, 0).size(), 8221U);
  EXPECT_EQ(Hex(written.Body(0x003C, 1)), "01 3D D8 00 DE 62 00");
}

TEST(Norvabiff, SharedStringsAreKeptOnce) {
  TxlsStrings strings;
  std::string wrong;
  for (int pass = 0; pass < 2; ++pass) {
    for (std::uint32_t i = 0; i < 20000; ++i) {
      if (strings.Add("text " + std::to_string(i)) != i) wrong += std::to_string(i) + " ";
    }
  }
  EXPECT_EQ(wrong, "");
  strings.Trim();
  EXPECT_EQ(strings.Add("TEXT 1"), 20000U);  // case counts
  EXPECT_EQ(strings.Add("text 1"), 1U);
  EXPECT_EQ(strings.Count(), 20001U);
  EXPECT_EQ(strings.References(), 40002U);
  EXPECT_EQ(strings[19999], "text 19999");
  strings.Clear();
  EXPECT_EQ(strings.Add("text 1"), 0U);
}

TEST(Norvabiff, CountsAndCodePageOfSharedStrings) {
  const TPageScope page(1252);
  TBook book;
  for (const char* text : {"\xE9\x80", "b", "\xE9\x80", "\xE9\x80"}) book.Strings.Add(text);
  const TWorkbook written = book.Written();
  EXPECT_EQ(Hex(written.Body(0x00FC)),
            "04 00 00 00 02 00 00 00 02 00 01 E9 00 AC 20 01 00 01 62 00");
}

// Errors.

TEST(Norvabiff, TextsThatAreTooLong) {
  const auto fontName = [](TBook& book, const std::string& text) {
    book.Options.DataFormat.Font.Name = text;
  };
  const auto title = [](TBook& book, const std::string& t) { book.Options.SetSheetTitle(t); };
  const auto footer = [](TBook& book, const std::string& t) { book.Options.PageFooter = t; };
  const auto format = [](TBook& book, const std::string& t) { book.TextFormats.Add({50, t}); };
  const struct {
    std::function<void(TBook&, const std::string&)> Put;
    const char *What, *Letter;
    int Most;
  } cases[] = {
      {title,    "sheet title",   "é",  255 },
      {fontName, "font name",     "é",  255 },
      {footer,   "page footer",   "x",   8219},
      {footer,   "page footer",   "€", 4109},
      {format,   "number format", "x",   8219},
  };
  for (const auto& c : cases) {
    TBook good, bad;
    const std::string most = Repeated(c.Letter, c.Most);
    c.Put(good, most);
    EXPECT_EQ(good.WrittenError(), "(no error)") << c.What;
    c.Put(bad, most + "x");
    EXPECT_EQ(bad.WrittenError(), Format("The %s \"%sx\" is too long for a workbook: give at most "
                                         "%d characters",
                                         c.What, most, c.Most));
  }
  for (const std::size_t length : {32767U, 32768U}) {
    TBook book;
    book.WriteCells = [&](TLumXLSWriter& writer) {
      writer.WriteString(7, 3, 15, std::string(length, 'x'), book.Strings);
    };
    EXPECT_EQ(book.WrittenError(),
              length == 32767 ? "(no error)" : "Cell R7,C3: String length more than 32767 bytes");
  }
}

}  // namespace
}  // namespace norva::tests
