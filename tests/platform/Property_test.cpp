#include <norva/platform/Property.h>

#include <gtest/gtest.h>

#include <norva/platform/Exceptions.h>
#include <tests/ErrorText.h>
#include <tests/platform/SampleComponent.h>

namespace norva::tests {
namespace {

struct ValueCase {
  const char *Name, *Text, *Expected;  // what is read back, or `!` and the right values
};
const ValueCase ValueCases[] = {
    {"Count",     "-7",              "-7"                                                },
    {"count",     "$10",             "16"                                                }, // any case
    {"Count",     "2147483648",      "!a whole number from -2147483648 to 2147483647"    },
    {"Small",     "255",             "255"                                               },
    {"Small",     "-1",              "!a whole number from 0 to 255"                     },
    {"Text",      " as it 'is' ",    " as it 'is' "                                      },
    {"Flag",      "TRUE",            "true"                                              },
    {"Flag",      "1",               "!true or false"                                    },
    {"Mark",      "#9",              "#9"                                                },
    {"Mark",      "#65",             "A"                                                 },
    {"Mark",      "#255",            "#255"                                              },
    {"Mark",      "#256",            "!one character, or # and its code from 0 to 255"   },
    {"Mark",      "ab",              "!one character, or # and its code from 0 to 255"   },
    {"Operation", "STBLUE",          "stBlue"                                            },
    {"Operation", "1",               "!one of stRed, stGreen, stBlue"                    },
    {"Tints",     "[stblue, stRed]", "[stRed,stBlue]"                                    },
    {"Tints",     "[stRed,]",        "[stRed]"                                           },
    {"Tints",     "stRed",           "!a set in brackets of stRed, stGreen, stBlue"      },
    {"Ink",       "#102030",         "$00302010"                                         },
    {"Ink",       "pale",            "!a colour as $00BBGGRR, #RRGGBB or a standard name"},
    {"Limit",     "12",              "10"                                                }, // by its setter
};

TEST(Property, HasATextForm) {
  for (const ValueCase& c : ValueCases) {
    SCOPED_TRACE(testing::Message() << c.Name << " = " << c.Text);
    TSample sample;
    const TPropertyPath path = FindProperty(sample, c.Name);
    ASSERT_NE(path.Property, nullptr);
    const TProperty& property = *path.Property;
    const std::string before = property.Get(*path.Object);
    const auto set = [&] { property.Set(*path.Object, c.Text); };
    const bool fails = *c.Expected == '!';
    if (fails) {
      EXPECT_EQ(ErrorText<EConvertError>(set), Format("\"%s\" is not a value of %s: give %s",
                                                      c.Text, property.Name, c.Expected + 1));
    } else {
      set();
    }
    EXPECT_EQ(property.Get(*path.Object), fails ? before : c.Expected);
  }
}

TEST(Property, PathsLeadThroughGroupsOnly) {
  TSample sample;
  EXPECT_EQ(FindProperty(sample, "group.size").Object, &sample.Group);
  for (const char* path : {"", "Nothing", "Group.", "Group.Nothing", "Lines.Text", "Count.Size"}) {
    EXPECT_EQ(FindProperty(sample, path).Property, nullptr) << path;
  }
}

TEST(Property, ReferencesTakeTheirClassOnly) {
  TSample sample, other;
  TComponent* const stranger = new TStranger(&sample);
  const TProperty& partner = *sample.Properties().Find("Partner");
  EXPECT_TRUE(partner.SetReference(sample, &other));
  EXPECT_FALSE(partner.SetReference(sample, stranger));
  EXPECT_EQ(partner.GetReference(sample), &other);
  EXPECT_TRUE(partner.SetReference(sample, nullptr));
  EXPECT_EQ(partner.GetReference(sample), nullptr);
}

}  // namespace
}  // namespace norva::tests
