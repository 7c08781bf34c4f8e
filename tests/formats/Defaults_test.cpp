#include <gtest/gtest.h>

#include <norva/formats/database/Norvadbf.h>
#include <norva/formats/database/Norvasql.h>
#include <norva/formats/document/Norvahtml.h>
#include <norva/formats/document/Norvalatex.h>
#include <norva/formats/document/Norvartf.h>
#include <norva/formats/document/Norvaxml.h>
#include <norva/formats/spreadsheet/Norvaxls.h>
#include <norva/formats/text/Norvaascii.h>
#include <norva/formats/text/Norvaclipboard.h>
#include <tests/Exports.h>
#include <tests/Vectors.h>

namespace norva::tests {
namespace {

/// ChangedProperties, and behind them the groups that have some: "Size Font(Color )".
std::string Changed(TPersistent& Object) {
  std::string names = ChangedProperties(Object);
  for (const TProperty& property : Object.Properties()) {
    if (property.Kind != pkGroup) continue;
    const std::string inner = Changed(property.Object(Object));
    if (!inner.empty()) names += property.Name + "(" + inner + ")";
  }
  return names;
}

template <class TExport>
std::string Changed() {
  TExport exporter;
  return Changed(exporter);
}

// What is left out of a stored form must be what a new exporter has; what differs is stored.
TEST(Exporters, StartAsTheirStoredDefaults) {
  const TLocaleScope locale(VectorLocale("de"));
  EXPECT_EQ(Changed<TNorvaASCII>(), "CSVComma ");  // the locale's; the default is for storing
  EXPECT_EQ(Changed<TNorvaClipboard>(), "");
  EXPECT_EQ(Changed<TNorvaHTML>(), "HTMLOptions(TextFont(Color ))");
  EXPECT_EQ(Changed<TNorvaLaTeX>(), "");
  EXPECT_EQ(Changed<TNorvaRTF>(), "Options(DefaultFont(Size )HeaderFont(Size Style ))");
  EXPECT_EQ(Changed<TNorvaXML>(), "");
  EXPECT_EQ(Changed<TNorvaDBF>(), "");
  EXPECT_EQ(Changed<TNorvaSQL>(), "");
  EXPECT_EQ(Changed<TNorvaXLS>(), "Options(CaptionsFormat(Font(Style )))");
  EXPECT_EQ(TNorvaASCII().CSVComma, ';');
  EXPECT_EQ(TNorvaClipboard().Separator, ';');
}

}  // namespace
}  // namespace norva::tests
