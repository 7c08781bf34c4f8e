#include <norva/formats/database/Norvadbf.h>

#include <gtest/gtest.h>

#include <norva/platform/Clock.h>
#include <norva/platform/Shell.h>
#include <tests/Binary.h>
#include <tests/ErrorText.h>
#include <tests/Exports.h>
#include <tests/Vectors.h>
#include <tests/platform/TextScopes.h>

namespace norva::tests {
namespace {

using namespace std::string_literals;

/// An exporter over a set of its own with the fields F0, F1 ...
class TDBF : public TNorvaDBF {
 public:
  TMemoryDataSet Source;

  explicit TDBF(const std::vector<TFieldType>& Types, int Size = 0) {
    for (const TFieldType type : Types) {
      Source.AddField("F" + std::to_string(Source.FieldCount()), type, Size);
    }
    DataSet = &Source;
    Formats.NullString.clear();
  }
};

/// The records that a table counts, `|` behind each; or `!` and the error.
std::string Records(TNorva& Exporter) {
  const std::string file = ExportedOrError(Exporter);
  if (file[0] == '!') return file;
  std::size_t at = NumberAt(file, 8, 2);
  std::string text;
  for (std::size_t n = NumberAt(file, 4, 4); n > 0; --n, at += NumberAt(file, 10, 4)) {
    text += file.substr(at, NumberAt(file, 10, 4)) + "|";
  }
  EXPECT_EQ(file.substr(at), "\x1A");
  return text;
}

std::string FieldNames(const std::string& File) {
  std::string names;
  for (std::size_t at = 32; File.at(at) != '\r'; at += 32) {
    names += File.substr(at, 11).c_str() + "/"s;
  }
  return names;
}

TEST(NorvaDBF, WritesATable) {
  const TLocaleScope locale{TFormatSettings()};
  SetClock([] { return 45351.75; });  // 29 February 2024
  TDBF exporter({ftInteger, ftString, ftCurrency, ftDate, ftBoolean, ftUnknown}, 5);
  exporter.Captions = {"F0=Identifier 12", "F1=Abc"};
  exporter.Formats.SetCurrencyFormat("0.00");
  exporter.Source.Append({-7, "Ann", 3.5, TMemoryValue::DateTime(45322), true, "0123456789a"});
  exporter.Source.Append({nullptr, nullptr, nullptr, nullptr, nullptr, nullptr});
  const auto field = [](std::string name, char type, char at, char length, char decimals) {
    name.resize(11);
    return name + type + at + "\0\0\0"s + length + decimals + std::string(14, '\0');
  };
  EXPECT_EQ(Exported(exporter), "\x03\x7C\x02\x1D\x02\0\0\0\xE1\0\x33\0\0\0"s +
                                    std::string(18, '\0') + field("IDENTIFIER", 'N', 0, 11, 0) +
                                    field("ABC", 'C', 11, 5, 0) + field("F2", 'N', 16, 15, 4) +
                                    field("F3", 'D', 31, 8, 0) + field("F4", 'L', 39, 1, 0) +
                                    field("F5", 'C', 40, 10, 0) + "\r" +
                                    "          -7Ann           3.500020240131T0123456789" +
                                    "                          0.0000                   " + "\x1A");
  EXPECT_EQ(exporter.Overflows(), 0);
  EXPECT_EQ(exporter.CutTexts(), 1);
  exporter.SkipRecCount = 2;
  exporter.ExportRecCount = -1;  // no records
  const std::string empty = Exported(exporter);
  EXPECT_EQ(NumberAt(empty, 4, 4), 0U);
  EXPECT_EQ(empty.substr(empty.size() - 2), "\r\x1A");
  SetClock(nullptr);
}

struct TextCase {
  TFieldType Type;
  const char *Picture, *Text;  // what OnGetExportText gives
  const char* Expected;        // the field, or the error without its place
};
const TextCase TextCases[] = {
    {ftInteger,  "",           "12345678901",      "12345678901"                                     },
    {ftInteger,  "",           "123456789012",     "***********"                                     },
    {ftFloat,    "",           "-0.0000",          "         0.0000"                                 },
    {ftFloat,    "",           " 5. ",             "         5.0000"                                 },
    {ftFloat,    "",           "2.00005",          "         2.0001"                                 },
    {ftFloat,    "",           "9999999999.99999", "***************"                                 },
    {ftFloat,    "",           "-999999999.9999",  "-999999999.9999"                                 },
    {ftFloat,    "#,##0.00",   "-1,234.50",        "     -1234.5000"                                 },
    {ftFloat,    "0','0",      "1,2",              "\"1,2\" is not a valid number"                   }, // a text
    {ftCurrency, "$ #,##0.00", "-$ 1,234.50",      "     -1234.5000"                                 },
    {ftCurrency, "0.00",       "5.10$",            "\"5.10$\" is not a valid number"                 },
    {ftDate,     "",           "2024-2-9",         "20240209"                                        },
    {ftDate,     "",           "",                 "        "                                        },
    {ftDate,     "",           "2023-02-29",       "\"2023-02-29\" is not a valid date or time"      },
    {ftDate,     "",           "2024-02-29T10:00", "\"2024-02-29T10:00\" is not a valid date or time"},
    {ftTime,     "",           "10:30",            "18991230"                                        },
    {ftBoolean,  "",           "untrue",           "T"                                               },
    {ftBoolean,  "",           "False",            "F"                                               },
};

TEST(NorvaDBF, EncodesTheDriversText) {
  const TLocaleScope locale{TFormatSettings()};
  for (const TextCase& c : TextCases) {
    TDBF exporter({c.Type});
    exporter.Source.Append({nullptr});
    exporter.UserFormats.SetValue("F0", c.Picture);
    exporter.OnGetExportText = [&](TObject&, std::int32_t, std::string& Text) { Text = c.Text; };
    const std::string expected = c.Expected;
    const bool isError = expected.find(" valid ") != std::string::npos;
    EXPECT_EQ(Records(exporter),
              isError ? "!Column \"F0\", record 1: " + expected : " " + expected + "|");
    EXPECT_EQ(exporter.Overflows(), expected[0] == '*' ? 1 : 0) << c.Text;
  }
}

TEST(NorvaDBF, ReadsBackWhatThePicturesOfTheLocaleWrite) {
  struct Case {
    const char *Locale, *Currency, *Expected;
  };
  const Case cases[] = {
      {"us", "00.00$",       "   1,234,567   1234567.8900   1234567.890020240131|"},
      {"de", "#,##0.00 €", "   1.234.567   1234567.8900   1234567.890020240131|"},
  };
  for (const Case& c : cases) {
    const TLocaleScope locale(VectorLocale(c.Locale));
    const char separator = FormatSettings().DecimalSeparator;
    TDBF exporter({ftInteger, ftFloat, ftCurrency, ftDateTime});
    exporter.Formats.SetCurrencyFormat(c.Currency);
    exporter.Source.Append({1234567, 1234567.89, 1234567.89, TMemoryValue::DateTime(45322.5)});
    EXPECT_EQ(Records(exporter), c.Expected) << c.Locale;
    EXPECT_EQ(FormatSettings().DecimalSeparator, separator);
    EXPECT_EQ(FormatSettings().ThousandSeparator, VectorLocale(c.Locale).ThousandSeparator);
  }
}

TEST(NorvaDBF, TheSeparatorIsAPointWhileRecordsAreWritten) {
  const TLocaleScope locale(VectorLocale("de"));
  for (const bool fails : {false, true}) {
    TDBF exporter({ftFloat});
    exporter.Source.Append({1.5});
    std::string seen;
    const auto note = [&](auto&&...) { seen += FormatSettings().DecimalSeparator; };
    exporter.OnBeginExport = exporter.OnEndExport = note;
    exporter.OnExportedRecord = [&](TObject&, std::int32_t) {
      note();
      if (fails) throw Exception("now");
    };
    EXPECT_EQ(Records(exporter), fails ? "!now" : "          1.5000|");
    EXPECT_EQ(seen, ",.,");
    EXPECT_EQ(FormatSettings().DecimalSeparator, ',');
  }
}

TEST(NorvaDBF, CutsBetweenCharacters) {
  struct Case {
    int Page;
    const char *Length, *Text, *Caption;
    std::string Record, Names;
    int Cut;
  };
  const std::string x254(254, 'x');
  const std::string x255 = x254 + "x";
  const Case cases[] = {
      {65001, "4",   "zoë",       "été 2020ö", " zoë|",          "ÉTÉ 2020/", 0},
      {1252,  "2",   "\xEB\xEBz",  "\xE9\xE9",     " \xEB\xEB|",      "\xC9\xC9/",   1},
      {1252,  "255", x255.c_str(), "",             " " + x254 + " |", "/",           1},
      {1252,  "260", "zoe12",      "a",            " zoe1|",          "A/",          1}, // modulo 256
      {1252,  "",    x254.c_str(), "a",            " " + x254 + "|",  "A/",          0}, // as the Size says
  };
  for (const Case& c : cases) {
    const TPageScope page(c.Page);
    TDBF exporter({ftString}, 300);
    exporter.Source.Append({c.Text});
    exporter.Captions.Add("F0="s + c.Caption);
    if (*c.Length) exporter.ColumnsLength.SetValue("f0", c.Length);
    EXPECT_EQ(Records(exporter), c.Record);
    EXPECT_EQ(FieldNames(Exported(exporter)), c.Names);
    EXPECT_EQ(exporter.CutTexts(), c.Cut) << c.Record;
  }
}

TEST(NorvaDBF, AFieldWithoutLengthBeeps) {
  int beeps = 0;
  SetBeep([&] { ++beeps; });
  TDBF exporter({ftString, ftBoolean});
  exporter.Source.Append({"lost", true});
  exporter.Source.Append({nullptr, true});
  EXPECT_EQ(Records(exporter), " T| T|");
  EXPECT_EQ(beeps, 2);
  EXPECT_EQ(exporter.CutTexts(), 1);
  SetBeep(nullptr);
}

TEST(NorvaDBF, NamesThatAreTheSameAreWrittenAndTold) {
  TDBF exporter({ftBoolean, ftBoolean, ftBoolean});
  exporter.Captions = {"F0=same_name_1", "F1=SAME_NAME_2"};
  exporter.Source.Append({true, true, true});
  std::string unsafe;
  exporter.OnUnsafeText = [&](TObject&, std::int32_t Column, std::string_view Text) {
    unsafe += std::to_string(Column) + std::string(Text);
  };
  EXPECT_EQ(FieldNames(Exported(exporter)), "SAME_NAME_/SAME_NAME_/F2/");
  EXPECT_EQ(unsafe, "-1SAME_NAME_2");
}

TEST(NorvaDBF, HoldsNoMoreThan255Fields) {
  TDBF exporter(std::vector<TFieldType>(256, ftString), 255);
  exporter.Source.Append(std::vector<TMemoryValue>(256, "x"));
  for (int i = 0; i < 256; ++i) exporter.ColumnsLength.Add("F" + std::to_string(i) + "=255");
  TMemoryStream stream;
  EXPECT_EQ(ErrorText<Exception>([&] { exporter.ExportToStream(stream); }),
            "256 columns do not fit: a DBF table has 255 fields at most; choose them with "
            "ExportedFields");
  EXPECT_EQ(stream.Bytes(), "");
  for (int i = 0; i < 255; ++i) exporter.ExportedFields.Add("F" + std::to_string(i));
  const std::string file = Exported(exporter);
  EXPECT_EQ(file.size(), 32U * 256 + 1 + 1 + 255 * 255 + 1);
  EXPECT_EQ(NumberAt(file, 10, 4), 1U + 255 * 255);
}

TEST(LumDBFWriter, WritesFieldByFieldAndCounts) {
  TMemoryStream stream;
  stream.Write("before");
  TLumDBFWriter writer(stream);
  TDBFFieldDescriptor number, day;
  number.FieldType = 'N', number.Length = 3;
  day.FieldType = 'D', day.Length = 8;
  writer.AddFieldDef(number);
  writer.AddFieldDef(day);
  writer.CreateDBF();
  const std::size_t header = stream.Bytes().size();
  writer.WriteData(0, "12");
  writer.WriteData(1, "");
  writer.WriteData(0, "1234");
  EXPECT_THROW(writer.WriteData(1, "never"), EConvertError);
  EXPECT_EQ(stream.Bytes().substr(header), "  12         ***");
  EXPECT_EQ(NumberAt(stream.Bytes(), 6 + 4, 4), 2U);
  for (int n = 3; n <= 257; ++n) writer.WriteData(0, "");
  EXPECT_EQ(NumberAt(stream.Bytes(), 6 + 4, 4), 257U);
}

}  // namespace
}  // namespace norva::tests
