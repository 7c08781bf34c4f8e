#include <norva/core/NorvaFormats.h>

#include <gtest/gtest.h>

#include <norva/platform/Exceptions.h>
#include <tests/ErrorText.h>
#include <tests/Exports.h>
#include <tests/Vectors.h>

namespace norva::tests {
namespace {

/// All values, in the order of the properties.
std::string Values(const TNorvaFormats& Formats) {
  std::string text;
  for (const TProperty& property : Formats.Properties()) text += property.Get(Formats) + "|";
  return text;
}

TEST(NorvaFormats, DefaultsFollowTheLocale) {
  struct Case {
    const char *Locale, *Expected;
  };
  const Case cases[] = {
      {"inv", "#,###,##0|#,###,##0.00|yyyy-mm-dd|hh:mm|yyyy-mm-dd hh:mm|00.00$|true|false|null|"  },
      {"de",  "#,###,##0|#,###,##0.00|dd.mm.yyyy|hh:mm|dd.mm.yyyy hh:mm|00,00€|true|false|null|"},
      {"us",
       "#,###,##0|#,###,##0.00|m/d/yyyy|h:mm AM/PM|m/d/yyyy h:mm AM/PM|00.00$|true|false|null|"   },
  };
  TNorvaFormats formats;
  for (const Case& c : cases) {
    const TLocaleScope locale(VectorLocale(c.Locale));
    EXPECT_EQ(Values(TNorvaFormats()), c.Expected);
    for (const TProperty& property : formats.Properties()) property.Set(formats, "x");
    EXPECT_EQ(Values(formats), "x|x|x|x|x|x|x|x|x|");
    for (const TProperty& property : formats.Properties()) property.Set(formats, "");
    EXPECT_EQ(Values(formats) + "null|",
              std::string(c.Expected).insert(std::string(c.Expected).rfind("null"), "|"));
    formats.ResetFormats();
    EXPECT_EQ(Values(formats), c.Expected);
  }
}

TEST(NorvaFormats, AssignLeavesNullStringOut) {
  TNorvaFormats source, target;
  for (const TProperty& property : source.Properties()) {
    property.Set(source, "new " + property.Name);
  }
  target = source;
  EXPECT_EQ(Values(target),
            "new IntegerFormat|new FloatFormat|new DateFormat|new TimeFormat|new DateTimeFormat|"
            "new CurrencyFormat|new BooleanTrue|new BooleanFalse|null|");
  EXPECT_EQ(ErrorText<EConvertError>([&] { target.Assign(TFont()); }),
            "A TFont cannot be assigned to a TNorvaFormats");
}

}  // namespace
}  // namespace norva::tests
