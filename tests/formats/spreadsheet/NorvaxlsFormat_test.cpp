#include <norva/formats/spreadsheet/NorvaxlsFormat.h>

#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include <norva/formats/spreadsheet/NorvaxlsLists.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Property.h>
#include <tests/ErrorText.h>
#include <tests/TempFolder.h>

namespace norva::tests {
namespace {

struct PaletteCase {
  TxlsColor Color;
  int Ordinal, Index;
  const char *Name, *RGB;
};
const PaletteCase PaletteCases[] = {
    {clrBlack,          0,  8,  "clrBlack",          "#000000"},
    {clrBrown,          1,  60, "clrBrown",          "#993300"},
    {clrOliveGreen,     2,  59, "clrOliveGreen",     "#333300"},
    {clrDarkGreen,      3,  58, "clrDarkGreen",      "#003300"},
    {clrDarkTeal,       4,  56, "clrDarkTeal",       "#003366"},
    {clrDarkBlue,       5,  18, "clrDarkBlue",       "#000080"},
    {clrIndigo,         6,  62, "clrIndigo",         "#333399"},
    {clrGray80Percent,  7,  63, "clrGray80Percent",  "#333333"},
    {clrDarkRed,        8,  16, "clrDarkRed",        "#800000"},
    {clrOrange,         9,  53, "clrOrange",         "#FF6600"},
    {clrDarkYellow,     10, 19, "clrDarkYellow",     "#808000"},
    {clrGreen,          11, 17, "clrGreen",          "#008000"},
    {clrTeal,           12, 21, "clrTeal",           "#008080"},
    {clrBlue,           13, 12, "clrBlue",           "#0000FF"},
    {clrBlueGray,       14, 54, "clrBlueGray",       "#666699"},
    {clrGray50Percent,  15, 23, "clrGray50Percent",  "#808080"},
    {clrRed,            16, 10, "clrRed",            "#FF0000"},
    {clrLightOrange,    17, 52, "clrLightOrange",    "#FF9900"},
    {clrLime,           18, 50, "clrLime",           "#99CC00"},
    {clrSeaGreen,       19, 57, "clrSeaGreen",       "#339966"},
    {clrAqua,           20, 49, "clrAqua",           "#33CCCC"},
    {clrLightBlue,      21, 48, "clrLightBlue",      "#3366FF"},
    {clrViolet,         22, 20, "clrViolet",         "#800080"},
    {clrGray40Percent,  23, 55, "clrGray40Percent",  "#969696"},
    {clrPink,           24, 14, "clrPink",           "#FF00FF"},
    {clrGold,           25, 51, "clrGold",           "#FFCC00"},
    {clrYellow,         26, 13, "clrYellow",         "#FFFF00"},
    {clrBrightGreen,    27, 11, "clrBrightGreen",    "#00FF00"},
    {clrTurquoise,      28, 15, "clrTurquoise",      "#00FFFF"},
    {clrSkyBlue,        29, 40, "clrSkyBlue",        "#00CCFF"},
    {clrPlum,           30, 61, "clrPlum",           "#993366"},
    {clrGray25Percent,  31, 22, "clrGray25Percent",  "#C0C0C0"},
    {clrRose,           32, 45, "clrRose",           "#FF99CC"},
    {clrTan,            33, 47, "clrTan",            "#FFCC99"},
    {clrLightYellow,    34, 43, "clrLightYellow",    "#FFFF99"},
    {clrLihtGreen,      35, 42, "clrLihtGreen",      "#CCFFCC"},
    {clrLightTurquoise, 36, 41, "clrLightTurquoise", "#CCFFFF"},
    {clrPaleBlue,       37, 44, "clrPaleBlue",       "#99CCFF"},
    {clrLavender,       38, 46, "clrLavender",       "#CC99FF"},
    {clrWhite,          39, 9,  "clrWhite",          "#FFFFFF"},
};

TEST(TxlsColor, HasIndexAndValue) {
  ASSERT_EQ(std::size(PaletteCases), 40U);
  for (const PaletteCase& c : PaletteCases) {
    SCOPED_TRACE(c.Name);
    EXPECT_EQ(c.Color, c.Ordinal);
    EXPECT_EQ(EnumToStr(c.Color), c.Name);
    EXPECT_EQ(PaletteIndex(c.Color), c.Index);
    EXPECT_EQ(PaletteColor(c.Color), StringToColor(c.RGB));
    EXPECT_EQ(Str2XLSClr(c.RGB), c.Color);
    EXPECT_EQ(Str2XLSClr(XLSClr2Str(c.Color)), c.Color);
  }
}

struct ColorTextCase {
  const char* Text;
  TxlsColor Color;
};
const ColorTextCase ColorTextCases[] = {
    {"clRed",     clrRed    },
    {"CLMAROON",  clrDarkRed},
    {"$00003399", clrBrown  },
    {"13421772",  clrBlack  }, // #CCCCCC is in no palette
    {"clCream",   clrBlack  },
    {"clSkyBlue", clrBlack  }, // the host's, another than clrSkyBlue
    {"clWindow",  clrBlack  }, // shown white, but no palette value
    {"clNone",    clrBlack  },
};

TEST(TxlsColor, ComesFromAText) {
  for (const ColorTextCase& c : ColorTextCases) EXPECT_EQ(Str2XLSClr(c.Text), c.Color) << c.Text;
  EXPECT_EQ(XLSClr2Str(clrBrightGreen), "clLime");
  EXPECT_EQ(XLSClr2Str(clrBrown), "$00003399");
  EXPECT_EQ(ErrorText<EConvertError>([] { Str2XLSClr("rot"); }), "\"rot\" is not a valid colour");
}

// A name table that has lost a member would give later values another name.
TEST(NorvaxlsFormat, NameTablesAreWhole) {
  EXPECT_EQ(EnumToStr(bstSlantedDashDot), "bstSlantedDashDot");
  EXPECT_EQ(EnumToStr(ptThinThinSpots), "ptThinThinSpots");
  EXPECT_EQ(EnumToStr(fulDoubleAccounting), "fulDoubleAccounting");
  EXPECT_EQ(EnumToStr(fscSubscript), "fscSubscript");
  EXPECT_EQ(EnumToStr(halFill), "halFill");
  EXPECT_EQ(EnumToStr(valJustify), "valJustify");
  EXPECT_EQ(EnumToStr(aggMax), "aggMax");
  EXPECT_EQ(EnumToStr(ssRow), "ssRow");
  EXPECT_EQ(EnumToStr(xfsStrikeOut), "xfsStrikeOut");
  EXPECT_EQ(esFooter, 5);
}

/// The published values of `Object` and its groups: "Path: Type = default", a line each. A default
/// that a new object does not have is followed by what it has.
std::string PublishedValues(TPersistent& Object, const std::string& Prefix = "") {
  std::string text;
  for (const TProperty& property : Object.Properties()) {
    const std::string path = Prefix + property.Name;
    if (property.Kind == pkGroup) {
      text += PublishedValues(property.Object(Object), path + ".");
      continue;
    }
    text += path + ": " + property.TypeName + " = " + property.Default.value_or("(none)");
    if (property.Get(Object) != property.Default) text += ", but " + property.Get(Object);
    text += "\n";
  }
  return text;
}

TEST(NorvaxlsFormat, PublishesItsDefaults) {
  TxlsFieldFormat format;
  std::string borders;
  for (const std::string side : {"Left", "Right", "Top", "Bottom", "DiagDown", "DiagUp"}) {
    borders += "Borders." + side + ".Style: TxlsBorderStyle = bstNone\n";
    borders += "Borders." + side + ".Color: TxlsColor = clrBlack\n";
  }
  EXPECT_EQ(PublishedValues(format),
            "Font.Size: Integer = 10\n"
            "Font.Style: set of TxlsFontStyle = []\n"
            "Font.Color: TxlsColor = clrBlack\n"
            "Font.Script: TxlsFontScript = fscNone\n"
            "Font.Underline: TxlsFontUnderline = fulNone\n"
            "Font.Charset: Integer = 1\n"
            "Font.Name: String = arial\n" +
                borders +
                "Fill.Background: TxlsColor = clrWhite\n"
                "Fill.Pattern: TxlsPattern = ptNone\n"
                "Fill.Foreground: TxlsColor = clrBlack\n"
                "Alignment.Horizontal: TxlsHorizontalAlignment = halGeneral\n"
                "Alignment.Vertical: TxlsVerticalAlignment = valBottom\n"
                "Wrap: Boolean = false\n"
                "FieldName: String = \n"
                "Width: Integer = 0\n"
                "Aggregate: TxlsAggregate = aggNone\n");
  EXPECT_EQ(format.Font.FontIndex, 0);
}

TEST(TXLSOptions, PublishesItsDefaults) {
  TXLSOptions options;
  std::string names;
  for (const TProperty& property : options.Properties()) {
    names += property.Name + " = " + property.Default.value_or(property.TypeName) + "\n";
    if (property.Kind != pkGroup) continue;
    // Only the captions differ from the plain defaults, and only in their font style.
    const std::string values = PublishedValues(property.Object(options));
    const std::size_t but = values.find(", but ");
    EXPECT_EQ(but == values.npos ? "" : values.substr(but, values.find('\n', but) - but),
              property.Name == "CaptionsFormat" ? ", but [xfsBold]" : "");
  }
  EXPECT_EQ(names,
            "PageHeader = \n"
            "PageFooter = Page &P of &N\n"
            "SheetTitle = Sheet 1\n"
            "HeaderFormat = TxlsFormat\n"
            "CaptionsFormat = TxlsFormat\n"
            "DataFormat = TxlsFormat\n"
            "AggregateFormat = TxlsFormat\n"
            "FooterFormat = TxlsFormat\n");
}

TEST(TxlsFont, NameIsStoredUnlessItIsArialInAnyCase) {
  const TProperty& name = *TxlsFont().Properties().Find("Name");
  EXPECT_TRUE(name.IsDefault("arial"));
  EXPECT_TRUE(name.IsDefault("Arial"));
  EXPECT_FALSE(name.IsDefault("Arial Narrow"));
}

struct ValueCase {
  const char *Path, *Value;
  bool Counts;      // for IsEqual
  bool IsDefaults;  // whether IsDefault still holds
};
const ValueCase ValueCases[] = {
    {"Font.Size",              "11",           true,  false},
    {"Font.Style",             "[xfsItalic]",  true,  false},
    {"Font.Color",             "clrRed",       true,  false},
    {"Font.Script",            "fscSubscript", true,  false},
    {"Font.Underline",         "fulDouble",    true,  false},
    {"Font.Charset",           "204",          true,  false},
    {"Font.Name",              "Arial",        true,  false}, // letter case counts
    {"Borders.Left.Style",     "bstThin",      true,  false},
    {"Borders.Right.Style",    "bstThick",     true,  false},
    {"Borders.Top.Style",      "bstHair",      true,  false},
    {"Borders.Bottom.Style",   "bstDouble",    true,  false},
    {"Borders.DiagDown.Style", "bstDotted",    true,  false},
    {"Borders.DiagUp.Style",   "bstDashed",    true,  false},
    {"Borders.Left.Color",     "clrBlue",      true,  true }, // no side is drawn
    {"Borders.Right.Color",    "clrTan",       true,  true },
    {"Borders.Top.Color",      "clrGold",      true,  true },
    {"Borders.Bottom.Color",   "clrLime",      true,  true },
    {"Borders.DiagDown.Color", "clrRose",      true,  true },
    {"Borders.DiagUp.Color",   "clrPlum",      true,  true },
    {"Fill.Background",        "clrTeal",      true,  false},
    {"Fill.Pattern",           "ptSolid",      true,  false},
    {"Fill.Foreground",        "clrAqua",      true,  false},
    {"Alignment.Horizontal",   "halRight",     true,  false},
    {"Alignment.Vertical",     "valTop",       true,  false},
    {"Wrap",                   "true",         true,  false},
    {"FieldName",              "Price",        false, true },
    {"Width",                  "30",           false, true },
    {"Aggregate",              "aggMax",       false, true },
};

/// `Format` whose fill foreground is what IsDefault asks for.
void MakeDefault(TxlsFormat& Format) { Format.Fill.Foreground = clrWhite; }

TEST(TxlsFormat, EveryValueIsComparedCopiedAndReset) {
  for (const ValueCase& c : ValueCases) {
    SCOPED_TRACE(c.Path);
    TxlsFieldFormat plain, changed, copy;
    MakeDefault(changed);
    EXPECT_TRUE(changed.IsDefault());
    MakeDefault(plain);
    const TPropertyPath path = FindProperty(changed, c.Path);
    path.Property->Set(*path.Object, c.Value);
    EXPECT_EQ(changed.IsEqual(&plain), !c.Counts);
    EXPECT_EQ(plain.IsEqual(&changed), !c.Counts);
    EXPECT_EQ(changed.IsDefault(), c.IsDefaults);

    copy.Assign(changed);
    EXPECT_EQ(PublishedValues(copy), PublishedValues(changed));
    copy.SetDefault();
    TxlsFieldFormat fresh;
    EXPECT_EQ(PublishedValues(copy), PublishedValues(fresh));
  }
}

TEST(TxlsFormat, IsNotDefaultAfterSetDefault) {
  TxlsFormat format;
  EXPECT_FALSE(format.IsDefault());  // its fill foreground is black
  MakeDefault(format);
  EXPECT_TRUE(format.IsDefault());
  format.SetDefault();
  EXPECT_FALSE(format.IsDefault());
}

TEST(TxlsFormat, NothingIsEqualToNull) {
  const TxlsFormat format;
  EXPECT_FALSE(format.IsEqual(nullptr));
  EXPECT_FALSE(format.Font.IsEqual(nullptr));
  EXPECT_FALSE(format.Borders.IsEqual(nullptr));
  EXPECT_FALSE(format.Borders.Left.IsEqual(nullptr));
  EXPECT_FALSE(format.Fill.IsEqual(nullptr));
  EXPECT_FALSE(format.Alignment.IsEqual(nullptr));
}

TEST(TxlsFormat, AssignRefusesOtherClasses) {
  TxlsFieldFormat format;
  TXLSOptions options;
  TPersistent* const targets[] = {&format,  &format.Font,      &format.Borders,     &format.Fill,
                                  &options, &format.Alignment, &format.Borders.Left};
  for (TPersistent* target : targets) {
    EXPECT_EQ(ErrorText<EConvertError>([&] { target->Assign(TxlsFieldFormats()); }),
              "A TxlsFieldFormats cannot be assigned to a " + std::string(target->ClassName()));
  }
}

TEST(TxlsFormat, FieldNameStaysWhenAPlainFormatIsAssigned) {
  TxlsFieldFormat field;
  field.FieldName = "Price";
  field.Aggregate = aggSum;
  TxlsFormat plain;
  plain.Wrap = true;
  field.Assign(plain);
  EXPECT_TRUE(field.Wrap);
  EXPECT_EQ(field.FieldName, "Price");
  EXPECT_EQ(field.Aggregate, aggSum);
}

struct FontColorCase {
  TColor Host;
  TxlsColor Color;
};
const FontColorCase FontColorCases[] = {
    {clRed,          clrRed          },
    {clMaroon,       clrDarkRed      },
    {clGreen,        clrGreen        },
    {clLime,         clrBrightGreen  },
    {clOlive,        clrDarkYellow   },
    {clYellow,       clrYellow       },
    {clNavy,         clrDarkBlue     },
    {clBlue,         clrBlue         },
    {clPurple,       clrViolet       },
    {clFuchsia,      clrPink         },
    {clTeal,         clrTeal         },
    {clAqua,         clrTurquoise    },
    {clGray,         clrGray50Percent},
    {clSilver,       clrGray25Percent},
    {clWhite,        clrWhite        },
    {clBlack,        clrBlack        },
    {0x003399,       clrBlack        }, // the value of clrBrown, which has no counterpart
    {clWindowText,   clrBlack        },
    {clBtnHighlight, clrBlack        }, // shown white
    {clNone,         clrBlack        },
};

TEST(TxlsFont, TakesOverAHostFont) {
  for (const FontColorCase& c : FontColorCases) {
    TFont host;
    host.Color = c.Host;
    TxlsFont font;
    font.Color = clrGold;
    font.Assign(host);
    EXPECT_EQ(font.Color, c.Color) << ColorToString(c.Host);
  }
  TFont host;
  host.Name = "Times";
  host.Size = 14;
  host.Charset = 204;
  TxlsFont font;
  font.Script = fscSubscript;
  font.Underline = fulDouble;
  font.Style = {xfsBold};
  font.FontIndex = 5;
  font.Assign(host);
  TxlsFont expected;
  expected.Name = "Times";
  expected.Size = 14;
  expected.Charset = 204;
  EXPECT_TRUE(font.IsEqual(&expected));
  TxlsFont copy;
  copy.Assign(font);
  EXPECT_TRUE(copy.IsEqual(&font));
  // The index is the workbook's business and never travels with the look.
  EXPECT_EQ(font.FontIndex, 5);
  EXPECT_EQ(copy.FontIndex, 0);
}

struct FontStyleCase {
  TFontStyle Host;
  TxlsFontStyles Style;
  TxlsFontUnderline Underline;
};
const FontStyleCase FontStyleCases[] = {
    {fsBold,      {xfsBold},      fulNone  },
    {fsItalic,    {xfsItalic},    fulNone  },
    {fsStrikeOut, {xfsStrikeOut}, fulNone  },
    {fsUnderline, {},             fulSingle},
};

TEST(TxlsFont, TakesOverAHostFontsStyle) {
  for (const FontStyleCase& c : FontStyleCases) {
    TFont host;
    host.Style = {c.Host};
    TxlsFont font;
    font.Assign(host);
    EXPECT_EQ(font.Style, c.Style) << EnumToStr(c.Host);
    EXPECT_EQ(font.Underline, c.Underline) << EnumToStr(c.Host);
  }
}

TEST(TxlsFormat, LoadsAllOfACellFormatButItsAlignment) {
  TxlsFont font;
  font.Name = "Times";
  TxlsXFormat cell;
  cell.Font = &font;
  cell.Borders.Top.Style = bstThin;
  cell.Fill.Pattern = ptSolid;
  cell.Alignment.Horizontal = halRight;
  cell.Wrap = true;
  TxlsFormat format;
  format.Alignment.Horizontal = halCenter;
  format.LoadFromTxlsXFormat(cell);
  EXPECT_EQ(format.Font.Name, "Times");
  EXPECT_EQ(format.Borders.Top.Style, bstThin);
  EXPECT_EQ(format.Fill.Pattern, ptSolid);
  EXPECT_EQ(format.Alignment.Horizontal, halCenter);
  EXPECT_TRUE(format.Wrap);
  format.LoadFromTxlsXFormat(TxlsXFormat());
  EXPECT_EQ(format.Font.Name, "Times");  // no font there
  EXPECT_FALSE(format.Wrap);
}

TEST(TxlsFormat, DisplayNames) {
  TxlsFormats rows(nullptr, "Row_"), cols(nullptr, "Col_"), others;
  for (TxlsFormats* formats : {&rows, &cols, &others}) {
    formats->Add();
    formats->Add();
  }
  EXPECT_EQ(rows[1].GetDisplayName(), "Row_1");
  EXPECT_EQ(cols[0].GetDisplayName(), "Col_0");
  EXPECT_EQ(others[0].GetDisplayName(), "TxlsFormat");
  rows.Delete(0);
  EXPECT_EQ(rows[0].GetDisplayName(), "Row_0");
  TxlsFieldFormat field;
  EXPECT_EQ(field.GetDisplayName(), "TxlsFieldFormat");
  field.FieldName = "Price";
  EXPECT_EQ(field.GetDisplayName(), "Price");
}

TEST(TxlsFieldFormats, FindsNamesInAnyCase) {
  TxlsFieldFormats formats;
  for (const char* name : {"Größe", "Price", "PRICE"}) formats.Add().FieldName = name;
  EXPECT_EQ(formats.IndexByName("price"), 1);
  EXPECT_EQ(formats.IndexByName("GRÖßE"), 0);
  EXPECT_EQ(formats.IndexByName("Pric"), -1);
}

TEST(TxlsFieldFormats, NewItemsStartAsTheGivenFormat) {
  TxlsFormat data;
  data.Font.Size = 14;
  TxlsFieldFormats formats(nullptr, &data), plain;
  TxlsFieldFormat& first = formats.Add();
  EXPECT_TRUE(first.IsEqual(&data));
  EXPECT_EQ(first.Collection(), &formats);
  data.Font.Size = 16;
  EXPECT_EQ(first.Font.Size, 14);  // a copy
  EXPECT_EQ(formats.Add().Font.Size, 16);
  EXPECT_EQ(plain.Add().Font.Size, 10);
}

TEST(TXLSOptions, EmptySheetTitleBecomesSheet1) {
  TXLSOptions options;
  options.SetSheetTitle("Orders");
  EXPECT_EQ(options.SheetTitle(), "Orders");
  options.SetSheetTitle("");
  EXPECT_EQ(options.SheetTitle(), "Sheet1");  // without a blank
}

TEST(TXLSOptions, AssignCopiesEverything) {
  TXLSOptions options, copy;
  options.PageHeader = "&A";
  options.PageFooter = "";
  options.SetSheetTitle("Orders");
  TxlsFormat* formats[] = {&options.HeaderFormat, &options.CaptionsFormat, &options.DataFormat,
                           &options.AggregateFormat, &options.FooterFormat};
  for (int i = 0; i < 5; ++i) formats[i]->Font.Size = 20 + i;
  copy.Assign(options);
  EXPECT_EQ(PublishedValues(copy), PublishedValues(options));
  EXPECT_EQ(copy.FooterFormat.Font.Size, 24);
}

/// Values that all differ from the defaults and, where they can, from each other.
void Fill(TxlsFormat& Format) {
  Format.Font.Name = "Times New Roman";
  Format.Font.Size = 12;
  Format.Font.Color = clrRed;
  Format.Font.Style = {xfsBold, xfsStrikeOut};
  Format.Font.Underline = fulDoubleAccounting;
  Format.Alignment.Horizontal = halFill;
  Format.Alignment.Vertical = valJustify;
  Format.Borders.Top.Style = bstThin;
  Format.Borders.Top.Color = clrBrown;
  Format.Borders.Bottom.Style = bstSlantedDashDot;
  Format.Borders.Bottom.Color = clrGreen;
  Format.Borders.Left.Style = bstDashed;
  Format.Borders.Left.Color = clrBrightGreen;
  Format.Borders.Right.Style = bstDotted;
  Format.Borders.Right.Color = clrTan;
  Format.Fill.Pattern = ptThinThinSpots;
  Format.Fill.Background = clrBlack;
  Format.Fill.Foreground = clrWhite;
}

const char FilledKeys[] =
    "FontName=Times New Roman\r\n"
    "FontSize=12\r\n"
    "FontColor=clRed\r\n"
    "FontBold=1\r\n"
    "FontItalic=0\r\n"
    "FontStrikeOut=1\r\n"
    "FontUnderline=4\r\n"
    "HorAlignment=4\r\n"
    "VertAlignment=3\r\n"
    "BorderTop=1\r\n"
    "BorderTopColor=$00003399\r\n"
    "BorderBottom=13\r\n"
    "BorderBottomColor=clGreen\r\n"
    "BorderLeft=3\r\n"
    "BorderLeftColor=clLime\r\n"
    "BorderRight=4\r\n"
    "BorderRightColor=$0099CCFF\r\n"
    "FillPattern=18\r\n"
    "FillBackground=clBlack\r\n"
    "FillForeground=clWhite\r\n";

TEST(NorvaxlsFormatIni, SavesAndLoadsASection) {
  const TTempFolder folder;
  TxlsFieldFormat field, plainField;
  Fill(field);
  field.Aggregate = aggMax;
  field.FieldName = "Price";
  TxlsFormat format;
  Fill(format);
  TIniFile file(folder.Path("options.ini"));
  format.SaveToIniFile(file, "XLS_OPTION_HEADER");
  field.SaveToIniFile(file, "XLS_FIELD_PRICE");
  file.UpdateFile();
  EXPECT_EQ(folder.Read("options.ini"), "[XLS_OPTION_HEADER]\r\n" + std::string(FilledKeys) +
                                            "\r\n[XLS_FIELD_PRICE]\r\n" + FilledKeys +
                                            "Aggregate=4\r\n");

  const TIniFile reopened(folder.Path("options.ini"));
  plainField.LoadFromIniFile(reopened, "XLS_FIELD_PRICE");
  field.FieldName = "";  // stands in the section's name, not in the section
  EXPECT_EQ(PublishedValues(plainField), PublishedValues(field));
}

TEST(NorvaxlsFormatIni, MissingKeysLeaveAllButTheFontName) {
  const TTempFolder folder;
  const TIniFile file(
      folder.Write("options.ini", "[S]\nFontBold=0\nFontItalic=true\nFontSize=x\n"));
  TxlsFieldFormat loaded, expected;
  for (TxlsFieldFormat* format : {&loaded, &expected}) {
    Fill(*format);
    format->Aggregate = aggMin;
  }
  loaded.LoadFromIniFile(file, "S");
  expected.Font.Name = "arial";
  expected.Font.Style = {xfsItalic, xfsStrikeOut};
  EXPECT_EQ(PublishedValues(loaded), PublishedValues(expected));
}

struct IniErrorCase {
  const char *Key, *Value, *Expected;
};
const IniErrorCase IniErrorCases[] = {
    {"FontSize",        "410", "a number from 1 to 409"                           },
    {"FontUnderline",   "5",   "a number from 0 to 4"                             },
    {"HorAlignment",    "-1",  "a number from 0 to 4"                             },
    {"VertAlignment",   "4",   "a number from 0 to 3"                             },
    {"BorderTop",       "14",  "a number from 0 to 13"                            },
    {"BorderRight",     "257", "a number from 0 to 13"                            },
    {"FillPattern",     "19",  "a number from 0 to 18"                            },
    {"Aggregate",       "5",   "a number from 0 to 4"                             },
    {"FontColor",       "rot", "a colour as $00BBGGRR, #RRGGBB or a standard name"},
    {"BorderLeftColor", "",    "a colour as $00BBGGRR, #RRGGBB or a standard name"},
};

TEST(NorvaxlsFormatIni, ErrorsNameSectionKeyAndValue) {
  const TTempFolder folder;
  for (const IniErrorCase& c : IniErrorCases) {
    TIniFile file(folder.Path("options.ini"));
    file.WriteString("XLS_FIELD_PRICE", c.Key, c.Value);
    TxlsFieldFormat format;
    EXPECT_EQ(ErrorText<EIniError>([&] { format.LoadFromIniFile(file, "XLS_FIELD_PRICE"); }),
              Format(R"(Section "XLS_FIELD_PRICE", key "%s": "%s" cannot be used: give %s)", c.Key,
                     c.Value, c.Expected));
    file.EraseSection("XLS_FIELD_PRICE");
  }
}

}  // namespace
}  // namespace norva::tests
