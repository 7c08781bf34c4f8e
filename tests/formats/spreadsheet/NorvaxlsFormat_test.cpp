#include <norva/formats/spreadsheet/NorvaxlsFormat.h>

#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include <norva/platform/Exceptions.h>
#include <norva/platform/Property.h>
#include <tests/ErrorText.h>
#include <tests/Exports.h>
#include <tests/TempFolder.h>

namespace norva::tests {
namespace {

// The index in a workbook's palette and the value of each colour, in order.
TEST(TxlsColor, HasIndexAndValue) {
  std::string palette;
  for (int i = clrBlack; i <= clrWhite; ++i) {
    const auto color = static_cast<TxlsColor>(i);
    palette += Format("%d:%.6x ", PaletteIndex(color), static_cast<int>(PaletteColor(color)));
    EXPECT_EQ(Str2XLSClr(XLSClr2Str(color)), color);
  }
  EXPECT_EQ(palette,
            "8:000000 60:003399 59:003333 58:003300 56:663300 18:800000 62:993333 63:333333 "
            "16:000080 53:0066ff 19:008080 17:008000 21:808000 12:ff0000 54:996666 23:808080 "
            "10:0000ff 52:0099ff 50:00cc99 57:669933 49:cccc33 48:ff6633 20:800080 55:969696 "
            "14:ff00ff 51:00ccff 13:00ffff 11:00ff00 15:ffff00 40:ffcc00 61:663399 22:c0c0c0 "
            "45:cc99ff 47:99ccff 43:99ffff 42:ccffcc 41:ffffcc 44:ffcc99 46:ff99cc 9:ffffff ");
}

struct ColorTextCase {
  const char* Text;
  TxlsColor Color;
};
const ColorTextCase ColorTextCases[] = {
    {"clRed",     clrRed    },
    {"CLMAROON",  clrDarkRed},
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
  EXPECT_EQ(EnumToStr(clrWhite), "clrWhite");
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

/// The published values of `Object` and its groups: "Path = value", a line each.
std::string PublishedValues(TPersistent& Object, const std::string& Prefix = "") {
  std::string text;
  for (const TProperty& property : Object.Properties()) {
    const std::string path = Prefix + property.Name;
    text += property.Kind == pkGroup ? PublishedValues(property.Object(Object), path + ".")
                                     : path + " = " + property.Get(Object) + "\n";
  }
  return text;
}

TEST(TxlsFont, NameIsStoredUnlessItIsArialInAnyCase) {
  const TProperty& name = *TxlsFont().Properties().Find("Name");
  EXPECT_TRUE(name.IsDefault("arial"));
  EXPECT_TRUE(name.IsDefault("Arial"));
  EXPECT_FALSE(name.IsDefault("Arial Narrow"));
}

struct ValueCase {
  const char* Settings;  // each by itself
  bool Counts;           // for IsEqual
  bool IsDefaults;       // whether IsDefault still holds
};
const ValueCase ValueCases[] = {
    {"Font.Size=11 Font.Style=[xfsItalic] Font.Color=clrRed Font.Script=fscSubscript "
     "Font.Underline=fulDouble Font.Charset=204 Font.Name=Arial "  // letter case counts
     "Borders.Left.Style=bstThin Borders.Right.Style=bstThick Borders.Top.Style=bstHair "
     "Borders.Bottom.Style=bstDouble Borders.DiagDown.Style=bstDotted "
     "Borders.DiagUp.Style=bstDashed Fill.Background=clrTeal Fill.Pattern=ptSolid "
     "Fill.Foreground=clrAqua Alignment.Horizontal=halRight Alignment.Vertical=valTop Wrap=true", true,  false},
    {"Borders.Left.Color=clrBlue Borders.DiagUp.Color=clrPlum",                                        true,  true }, // no side is drawn
    {"FieldName=Price Width=30 Aggregate=aggMax",                                                      false, true },
};

/// `Format` whose fill foreground is what IsDefault asks for.
void MakeDefault(TxlsFormat& Format) { Format.Fill.Foreground = clrWhite; }

TEST(TxlsFormat, EveryValueIsComparedCopiedAndReset) {
  for (const ValueCase& c : ValueCases) {
    std::istringstream settings(c.Settings);
    for (std::string setting; settings >> setting;) {
      SCOPED_TRACE(setting);
      TxlsFieldFormat plain, changed, copy;
      MakeDefault(changed);
      EXPECT_TRUE(changed.IsDefault());
      MakeDefault(plain);
      Set(changed, setting.c_str());
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
}

TEST(TxlsFormat, IsNotDefaultAfterSetDefault) {
  TxlsFormat format;
  EXPECT_FALSE(format.IsDefault());  // its fill foreground is black
  MakeDefault(format);
  EXPECT_TRUE(format.IsDefault());
  format.SetDefault();
  EXPECT_FALSE(format.IsDefault());
  EXPECT_FALSE(format.IsEqual(nullptr));
}

TEST(TxlsFormat, AssignRefusesOtherClasses) {
  TxlsFieldFormat format;
  TXLSOptions options;
  for (TPersistent* target : std::initializer_list<TPersistent*>{&format, &format.Font, &options}) {
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

TEST(TxlsFont, TakesOverAHostFont) {
  const std::pair<TColor, TxlsColor> colors[] = {
      {clRed,          clrRed          },
      {clGray,         clrGray50Percent},
      {clWhite,        clrWhite        },
      {0x003399,       clrBlack        }, // the value of clrBrown, which has no counterpart
      {clBtnHighlight, clrBlack        }, // shown white
      {clNone,         clrBlack        },
  };
  for (const auto& [color, expected] : colors) {
    TFont host;
    host.Color = color;
    TxlsFont font;
    font.Color = clrGold;
    font.Assign(host);
    EXPECT_EQ(font.Color, expected) << ColorToString(color);
  }
  TFont host;
  Set(host, "Name=Times Size=14 Charset=204");
  TxlsFont font, expected, copy;
  Set(font, "Script=fscSubscript Underline=fulDouble Style=[xfsBold]");
  Set(expected, "Name=Times Size=14 Charset=204");
  font.FontIndex = 5;
  font.Assign(host);
  EXPECT_TRUE(font.IsEqual(&expected));
  copy.Assign(font);
  EXPECT_TRUE(copy.IsEqual(&font));
  // The index is the workbook's business and never travels with the look.
  EXPECT_EQ(font.FontIndex, 5);
  EXPECT_EQ(copy.FontIndex, 0);
}

TEST(TxlsFont, TakesOverAHostFontsStyle) {
  TFont host;
  TxlsFont font;
  host.Style = {fsBold, fsItalic, fsStrikeOut};
  font.Assign(host);
  EXPECT_EQ(font.Style, (TxlsFontStyles{xfsBold, xfsItalic, xfsStrikeOut}));
  EXPECT_EQ(font.Underline, fulNone);
  host.Style = {fsUnderline};
  font.Assign(host);
  EXPECT_EQ(font.Style, TxlsFontStyles());
  EXPECT_EQ(font.Underline, fulSingle);
}

TEST(TxlsFormat, DisplayNames) {
  TxlsFormats rows(nullptr, "Row_"), others;
  rows.Add();
  EXPECT_EQ(rows.Add().GetDisplayName(), "Row_1");
  EXPECT_EQ(others.Add().GetDisplayName(), "TxlsFormat");
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

TEST(TXLSOptions, AssignCopiesEverything) {
  TXLSOptions options, copy;
  options.SetSheetTitle("");
  EXPECT_EQ(options.SheetTitle(), "Sheet1");  // without a blank
  options.SetSheetTitle("Orders");
  options.PageHeader = "&A";
  options.PageFooter = "";
  TxlsFormat* formats[] = {&options.HeaderFormat, &options.CaptionsFormat, &options.DataFormat,
                           &options.AggregateFormat, &options.FooterFormat};
  for (int i = 0; i < 5; ++i) formats[i]->Font.Size = 20 + i;
  copy.Assign(options);
  EXPECT_EQ(PublishedValues(copy), PublishedValues(options));
}

/// Values that all differ from the defaults and, where they can, from each other.
void Fill(TxlsFormat& Format) {
  Format.Font.Name = "Times New Roman";
  Set(Format,
      "Font.Size=12 Font.Color=clrRed Font.Style=[xfsBold,xfsStrikeOut] "
      "Font.Underline=fulDoubleAccounting Alignment.Horizontal=halFill "
      "Alignment.Vertical=valJustify Borders.Top.Style=bstThin Borders.Top.Color=clrBrown "
      "Borders.Bottom.Style=bstSlantedDashDot Borders.Bottom.Color=clrGreen "
      "Borders.Left.Style=bstDashed Borders.Left.Color=clrBrightGreen "
      "Borders.Right.Style=bstDotted Borders.Right.Color=clrTan Fill.Pattern=ptThinThinSpots "
      "Fill.Background=clrBlack Fill.Foreground=clrWhite");
}

const std::string FilledKeys = Lines(
    "FontName=Times New Roman/FontSize=12/FontColor=clRed/FontBold=1/FontItalic=0/FontStrikeOut=1/"
    "FontUnderline=4/HorAlignment=4/VertAlignment=3/BorderTop=1/BorderTopColor=$00003399/"
    "BorderBottom=13/BorderBottomColor=clGreen/BorderLeft=3/BorderLeftColor=clLime/BorderRight=4/"
    "BorderRightColor=$0099CCFF/FillPattern=18/FillBackground=clBlack/FillForeground=clWhite/");

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
  EXPECT_EQ(folder.Read("options.ini"), "[XLS_OPTION_HEADER]\r\n" + FilledKeys +
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
    {"FontSize",      "410", "a number from 1 to 409"                           },
    {"FontUnderline", "5",   "a number from 0 to 4"                             },
    {"BorderRight",   "257", "a number from 0 to 13"                            },
    {"FillPattern",   "19",  "a number from 0 to 18"                            },
    {"FontColor",     "rot", "a colour as $00BBGGRR, #RRGGBB or a standard name"},
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
