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

TEST(Norvabiff, RecordsInOrder) {
  TBook book;
  book.AddColumn(1);
  book.AddColumn(1);
  book.Fonts.Add(TxlsFont());
  book.TextFormats.Add({50, "0"});
  book.XFormats.Add(TxlsXFormat());
  book.Strings.Add(std::string(5000, 'x'));
  book.WriteCells = [](TLumXLSWriter& writer) { writer.WriteBlank(0, 0, 15); };
  EXPECT_EQ(book.Written().Order(),
            "0809 005C 0042 0161 013D 009C 0019 0012 0013 01AF 01BC 003D 0040 008D 0022 000E 01B7 "
            "00DA 0031*4 00E0*16 0031 041E 00E0 0085 008C 00FC 003C*2 000A "
            "0809 000D 000C 000F 0011 0010 005F 002A 002B 0082 0080 0225 0081 0014 0015 0083 0084 "
            "0055 007D*2 0200 0201 023E 001D 000A*2");
}

struct RecordCase {
  int Number;
  const char* Body;
};
const RecordCase RecordCases[] = {
    {0x0809, "00 06 05 00 BB 0D CC 07 00 00 00 00 06 02 00 00"                              },
    {0x0042, "E4 04"                                                                        },
    {0x0161, "00 00"                                                                        },
    {0x013D, "01 00"                                                                        },
    {0x009C, "0E 00"                                                                        },
    {0x0019, "00 00"                                                                        },
    {0x0012, "00 00"                                                                        },
    {0x0013, "00 00"                                                                        },
    {0x01AF, "00 00"                                                                        },
    {0x01BC, "00 00"                                                                        },
    {0x003D, "78 00 78 00 0C 5D 68 3D 38 00 00 00 00 00 01 00 58 02"                        },
    {0x0040, "00 00"                                                                        },
    {0x008D, "00 00"                                                                        },
    {0x0022, "00 00"                                                                        },
    {0x000E, "01 00"                                                                        },
    {0x01B7, "00 00"                                                                        },
    {0x00DA, "00 00"                                                                        },
    {0x0031, "C8 00 00 00 08 00 90 01 00 00 00 00 01 00 05 01 61 00 72 00 69 00 61 00 6C 00"},
    {0x008C, "01 00 01 00"                                                                  },
    {0x00FC, "00 00 00 00 00 00 00 00"                                                      },
    {0x000D, "01 00"                                                                        },
    {0x000C, "64 00"                                                                        },
    {0x000F, "01 00"                                                                        },
    {0x0011, "00 00"                                                                        },
    {0x0010, "FC A9 F1 D2 4D 62 50 3F"                                                      },
    {0x005F, "01 00"                                                                        },
    {0x002A, "00 00"                                                                        },
    {0x002B, "00 00"                                                                        },
    {0x0082, "01 00"                                                                        },
    {0x0080, "00 00 00 00 00 00 00 00"                                                      },
    {0x0225, "00 00 FF 00"                                                                  },
    {0x0081, "C1 04"                                                                        },
    {0x0014, ""                                                                             },
    {0x0015, "0D 00 00 50 61 67 65 20 26 50 20 6F 66 20 26 4E 00 00"                        },
    {0x0083, "00 00"                                                                        },
    {0x0084, "00 00"                                                                        },
    {0x0055, "08 00"                                                                        },
    {0x0200, "00 00 00 00 07 00 00 00 00 00 05 00 00 00"                                    },
    {0x023E, "B6 06 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"                        },
    {0x001D, "03 00 00 00 00 00 00 01 00 00 00 00 00 00 00 00"                              },
    {0x000A, ""                                                                             },
};
TEST(Norvabiff, FixedRecords) {
  const TWorkbook book = TBook().Written();
  for (const RecordCase& c : RecordCases) {
    EXPECT_EQ(Hex(book.Body(c.Number)), c.Body) << HexNumber(static_cast<unsigned>(c.Number), 4);
  }
  EXPECT_EQ(Hex(book.Body(0x0809, 1)), "00 06 10 00 BB 0D CC 07 00 00 00 00 06 02 00 00");
  EXPECT_EQ(book.Body(0x005C), std::string("\1\0\0X", 4) + std::string(108, ' '));
}

TEST(Norvabiff, StandardFormats) {
  const TWorkbook book = TBook().Written();
  const std::string style = " 00 00 00 F5 FF 20 00 00 F4 00 00 00 00 00 00 00 00 C0 20";
  const char* const fonts[] = {"01", "01", "02", "02", "00"};
  EXPECT_EQ(Hex(book.Body(0x00E0, 0)),
            "00 00 00 00 F5 FF 20 00 00 00 00 00 00 00 00 00 00 00 C0 20");
  for (std::size_t i = 1; i <= 14; ++i) {
    EXPECT_EQ(Hex(book.Body(0x00E0, i)), fonts[std::min<std::size_t>(i, 5) - 1] + style) << i;
  }
  EXPECT_EQ(Hex(book.Body(0x00E0, 15)),
            "01 00 00 00 01 00 20 00 00 00 00 00 00 00 00 00 00 00 C0 20");
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
  font.Size = 11;
  font.Style = {xfsBold, xfsItalic, xfsStrikeOut};
  font.Color = clrRed;
  font.Script = fscSubscript;
  font.Underline = fulDoubleAccounting;
  font.Charset = 238;
  font.Name = "Ω";
  book.Fonts.Add(font);
  EXPECT_EQ(Hex(book.Written().Body(0x0031, 4)),
            "DC 00 0A 00 0A 00 BC 02 02 00 22 00 EE 00 01 01 A9 03");
}

TEST(Norvabiff, Underlines) {
  TBook book;
  for (const auto underline : {fulNone, fulSingle, fulDouble, fulSingleAccounting}) {
    TxlsFont font;
    font.Underline = underline;
    book.Fonts.Add(font);
  }
  const TWorkbook written = book.Written();
  std::string codes;
  for (std::size_t i = 4; i < 8; ++i) codes += Hex(written.Body(0x0031, i).substr(10, 1)) + " ";
  EXPECT_EQ(codes, "00 01 02 21 ");
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
    {"#,##0", 1,   "32 00 05 00 00", 10 },
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
  full.Borders.Left.Style = bstThin;              // 1
  full.Borders.Left.Color = clrRed;               // 0A
  full.Borders.Right.Style = bstMedium;           // 2
  full.Borders.Right.Color = clrBlue;             // 0C
  full.Borders.Top.Style = bstDashed;             // 3
  full.Borders.Top.Color = clrGreen;              // 11
  full.Borders.Bottom.Style = bstSlantedDashDot;  // D
  full.Borders.Bottom.Color = clrGray80Percent;   // 3F
  full.Borders.DiagDown.Style = bstDouble;        // 6
  full.Borders.DiagDown.Color = clrPink;          // 0E
  full.Borders.DiagUp.Style = bstHair;            // its colour and style give way
  full.Fill.Background = clrGold;                 // 33
  full.Fill.Pattern = ptThinThinSpots;            // 12
  full.Fill.Foreground = clrPlum;                 // 3D
  full.Alignment.Horizontal = halRight;
  full.Alignment.Vertical = valCenter;
  full.Wrap = true;
  TxlsXFormat up;
  up.Borders.DiagUp.Style = bstThick;  // 5
  up.Borders.DiagUp.Color = clrAqua;   // 31
  up.Borders.Left.Color = clrRed;      // no style: no colour
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
    {10,  "03 00 03 00 00 0A 0F 00 00 00 00"},
    {255, "03 00 03 00 00 FF 0F 00 00 00 00"},
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
    {"A",   1,    "01 00 00 41", 6   },
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

std::string Repeated(std::size_t Count, std::string_view Text) {
  std::string text;
  for (std::size_t i = 0; i < Count; ++i) text += Text;
  return text;
}

struct SSTCase {
  const char *Lengths, *Bodies;  // of the texts; of SST and CONTINUE
};
// Behind the counts 8216 bytes are left, in a CONTINUE 8224; a text takes 3 and 2 a character.
const SSTCase SSTCases[] = {
    {"",              "8"            },
    {"2000 2000 101", "8219"         },
    {"2000 2000 103", "8223"         },
    {"2000 2105",     "8224"         },
    {"2000 2000 104", "8014 211"     },
    {"2000 2106",     "4011 4215"    },
    {"2000 2105 1",   "8224 5"       },
    {"4106",          "8223"         },
    {"4107",          "8 8217"       },
    {"4108",          "8 8219"       },
    {"4109",          "8 8221"       },
    {"4110",          "8 8223"       },
    {"4111",          "8 8223 3"     },
    {"4112",          "8 8223 5"     },
    {"1 4111",        "13 8223 3"    },
    {"4111 4109",     "8 8223 8224"  },
    {"4111 4110",     "8 8223 3 8223"},
    {"8221",          "8 8223*2"     },
    {"8222",          "8 8223*2 3"   },
    {"32767",         "8 8223*7 7983"},
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
  const auto cell = [](std::size_t length) {
    TBook book;
    book.WriteCells = [&](TLumXLSWriter& writer) {
      writer.WriteString(7, 3, 15, std::string(length, 'x'), book.Strings);
    };
    return book.WrittenError();
  };
  EXPECT_EQ(cell(32767), "(no error)");
  EXPECT_EQ(cell(32768), "Cell R7,C3: String length more than 32767 bytes");

  const std::string e255 = Repeated(255, "é"), x8219(8219, 'x'), euros = Repeated(4109, "€");
  const auto error = [](const std::function<void(TBook&)>& change) {
    TBook book;
    change(book);
    return book.WrittenError();
  };
  const auto title = [&](const std::string& text) {
    return error([&](TBook& book) { book.Options.SetSheetTitle(text); });
  };
  EXPECT_EQ(title(e255), "(no error)");
  EXPECT_EQ(title(e255 + "x"), "The sheet title \"" + e255 +
                                   "x\" is too long for a workbook: give at most 255 characters");
  const auto fontName = [&](const std::string& text) {
    return error([&](TBook& book) { book.Options.DataFormat.Font.Name = text; });
  };
  EXPECT_EQ(fontName(e255), "(no error)");
  EXPECT_EQ(
      fontName(e255 + "x"),
      "The font name \"" + e255 + "x\" is too long for a workbook: give at most 255 characters");
  const auto pageFooter = [&](const std::string& text) {
    return error([&](TBook& book) { book.Options.PageFooter = text; });
  };
  EXPECT_EQ(pageFooter(x8219), "(no error)");
  EXPECT_EQ(pageFooter(x8219 + "x"),
            "The page footer \"" + x8219 +
                "x\" is too long for a workbook: give at most 8219 characters");
  EXPECT_EQ(pageFooter(euros), "(no error)");
  EXPECT_EQ(pageFooter(euros + "x"),
            "The page footer \"" + euros +
                "x\" is too long for a workbook: give at most 4109 characters");
  const auto textFormat = [&](const std::string& text) {
    return error([&](TBook& book) { book.TextFormats.Add({50, text}); });
  };
  EXPECT_EQ(textFormat(x8219), "(no error)");
  EXPECT_EQ(textFormat(x8219 + "x"),
            "The number format \"" + x8219 +
                "x\" is too long for a workbook: give at most 8219 characters");
}

}  // namespace
}  // namespace norva::tests
