#include <norva/formats/spreadsheet/NorvaxlsLists.h>

#include <functional>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <norva/platform/Exceptions.h>
#include <tests/ErrorText.h>

namespace norva::tests {
namespace {

TxlsFont Font(const char* Name, std::uint16_t FontIndex = 0) {
  TxlsFont font;
  font.Name = Name;
  font.FontIndex = FontIndex;
  return font;
}

TxlsTextFormat TextFormat(const char* Text, std::uint16_t FormatIndex = 0) {
  return {FormatIndex, Text};
}

TxlsXFormat XFormat(std::uint16_t XFIndex, TxlsColor Background = clrWhite) {
  TxlsXFormat format;
  format.XFIndex = XFIndex;
  format.Fill.Background = Background;
  return format;
}

TEST(NorvaxlsLists, FontsAreFoundByWhatTheyHold) {
  TxlsFontList fonts;
  fonts.Add(Font("arial", 5));
  fonts.Add(Font("Arial", 6));  // letter case makes another font
  fonts.Add(Font("arial", 7));  // found behind its equal only when that is gone
  EXPECT_EQ(fonts.FontIndexByFont(Font("arial", 99)), 5);
  EXPECT_EQ(fonts.FontIndexByFont(Font("Arial")), 6);
  EXPECT_EQ(fonts.ListIndexByFont(Font("Arial")), 1);
  EXPECT_EQ(fonts.FontIndexByFont(Font("ARIAL")), -1);
  fonts.Delete(0);
  EXPECT_EQ(fonts.FontIndexByFont(Font("arial")), 7);
  EXPECT_EQ(fonts.ListIndexByFont(Font("arial")), 1);
  fonts.Put(1, Font("courier", 8));
  EXPECT_EQ(fonts.FontIndexByFont(Font("arial")), -1);
  EXPECT_EQ(fonts.FontIndexByFont(Font("courier")), 8);
}

TEST(NorvaxlsLists, CellFormatsAreFoundByLookAndIndex) {
  const TxlsFont own = Font("arial"), equal = Font("arial");
  TxlsXFormatList formats;
  formats.Add(XFormat(16, clrRed));
  TxlsXFormat withFont = XFormat(17, clrRed);
  withFont.Font = &own;
  const TxlsXFormat& added = formats.Add(std::make_unique<TxlsXFormat>(withFont));
  formats.Add(XFormat(18, clrRed));
  EXPECT_EQ(formats.FormatIndexByFormat(XFormat(99, clrRed)), 16);
  TxlsXFormat wanted = XFormat(99, clrRed);
  wanted.Font = &equal;
  EXPECT_EQ(formats.FormatIndexByFormat(wanted), 17);
  wanted.Wrap = true;
  EXPECT_EQ(formats.FormatIndexByFormat(wanted), -1);
  EXPECT_EQ(formats.ListIndexByFormatIndex(18), 2);
  EXPECT_EQ(formats.FormatByFormatIndex(17), &added);
  EXPECT_EQ(formats.FormatByFormatIndex(15), nullptr);
  formats.Delete(0);
  EXPECT_EQ(formats.FormatIndexByFormat(XFormat(99, clrRed)), 18);
  EXPECT_EQ(formats.ListIndexByFormatIndex(17), 0);
}

TEST(NorvaxlsLists, FieldsAndNumbersAreFoundInOrder) {
  TxlsXFormatFieldList fields;
  fields.Add({"Price", 16});
  fields.Add({"PRICE", 17});
  fields.Add({"Price", 18});
  EXPECT_EQ(fields.FormatIndexByFieldName("Price"), 16);
  EXPECT_EQ(fields.FormatIndexByFieldName("PRICE"), 17);
  EXPECT_EQ(fields.ListIndexByFieldName("PRICE"), 1);
  EXPECT_EQ(fields.FormatIndexByFieldName("price"), -1);

  TxlsXFormatColRowList numbers;
  numbers.Add({1002, 16});
  numbers.Add({3, 17});
  numbers.Add({3, 16});
  EXPECT_EQ(numbers.XFIndexByNumber(1002), 16);
  EXPECT_EQ(numbers.XFIndexByNumber(3), 17);
  EXPECT_EQ(numbers.IndexByXF(16), 0);
  EXPECT_EQ(numbers.IndexByXF(17), 1);
  numbers.Clear();
  EXPECT_EQ(numbers.XFIndexByNumber(3), -1);
}

TEST(NorvaxlsLists, IndexesAreChecked) {
  TxlsTextFormatList formats;
  formats.Add(TextFormat("0", 50));
  for (const int index : {-1, 1}) {
    const std::string expected = "List index " + std::to_string(index) + " is out of range";
    EXPECT_EQ(ErrorText<EListError>([&] { (void)formats[index]; }), expected);
    EXPECT_EQ(ErrorText<EListError>([&] { formats.Delete(index); }), expected);
  }
  EXPECT_EQ(formats.FormatIndexByString("0"), 50);
}

struct EqualCase {
  const char* What;
  std::function<void(TxlsXFormat&)> Change;
  bool Equal;
};

TEST(TxlsXFormat, EverythingButTheIndexCounts) {
  const TxlsFont arial = Font("arial", 5), alsoArial = Font("arial", 6), times = Font("times", 5);
  const TxlsTextFormat zero = TextFormat("0", 50), alsoZero = TextFormat("0", 51),
                       general = TextFormat("General");
  const EqualCase cases[] = {
      {"index",             [](TxlsXFormat& f) { f.XFIndex = 99; },                   true },
      {"equal font",        [&](TxlsXFormat& f) { f.Font = &alsoArial; },             true },
      {"other font",        [&](TxlsXFormat& f) { f.Font = &times; },                 false},
      {"equal text format", [&](TxlsXFormat& f) { f.TextFormat = &alsoZero; },        true },
      {"other text format", [&](TxlsXFormat& f) { f.TextFormat = &general; },         false},
      {"border",            [](TxlsXFormat& f) { f.Borders.DiagUp.Style = bstThin; }, false},
      {"fill",              [](TxlsXFormat& f) { f.Fill.Foreground = clrWhite; },     false},
      {"alignment",         [](TxlsXFormat& f) { f.Alignment.Vertical = valTop; },    false},
      {"wrap",              [](TxlsXFormat& f) { f.Wrap = true; },                    false},
  };
  for (const EqualCase& c : cases) {
    SCOPED_TRACE(c.What);
    TxlsXFormat one = XFormat(16), other = XFormat(16);
    one.Font = other.Font = &arial;
    one.TextFormat = other.TextFormat = &zero;
    c.Change(other);
    EXPECT_EQ(one.IsEqual(&other), c.Equal);
    EXPECT_EQ(other.IsEqual(&one), c.Equal);
    // What is equal has one hash: the list finds it exactly then.
    TxlsXFormatList list;
    list.Add(one);
    EXPECT_EQ(list.FormatIndexByFormat(other), c.Equal ? 16 : -1);
  }
  EXPECT_FALSE(XFormat(16).IsEqual(nullptr));
  EXPECT_FALSE(zero.IsEqual(nullptr));
}

}  // namespace
}  // namespace norva::tests
