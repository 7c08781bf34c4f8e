#include <norva/platform/FormText.h>

#include <gtest/gtest.h>

#include <norva/formats/text/Norvaascii.h>
#include <norva/platform/Exceptions.h>
#include <norva/sources/memory/MemoryDataSet.h>
#include <tests/ErrorText.h>
#include <tests/platform/SampleComponent.h>

namespace norva::tests {
namespace {

TEST(FormText, LeavesDefaultsOut) {
  TSample sample;
  EXPECT_EQ(SaveComponent(sample),
            "object : TSample\n"
            "  Lines = ()\n"
            "  Group.Notes = ()\n"
            "end\n");
}

TEST(FormText, StoresEveryKindAndLoadsItBack) {
  TStranger form;
  auto* sample = new TSample(&form);
  auto* partner = new TSample(&form);
  sample->Name = "Sample1";
  partner->Name = "Partner1";
  sample->Count = -5;
  sample->Text = "it's #1\r\n\x7Fü";
  sample->Flag = true;
  sample->Mark = '\t';
  sample->Tint = stBlue;
  sample->Tints = {};
  sample->Ink = 0x0000FF;
  sample->SetLimit(7);
  sample->Lines = {"", " a)", "b' (", "\nend"};
  sample->Group.Size = 9;
  sample->Group.Notes = {"Name=x"};
  sample->Partner = partner;
  const std::string stored =
      "object Sample1: TSample\n"
      "  Count = -5\n"
      "  Text = 'it''s #1'#13#10#127'ü'\n"
      "  Flag = true\n"
      "  Mark = '#9'\n"
      "  Operation = stBlue\n"
      "  Tints = []\n"
      "  Ink = clRed\n"
      "  Limit = 7\n"
      "  Lines = (\n"
      "    ''\n"
      "    ' a)'\n"
      "    'b'' ('\n"
      "    #10'end')\n"
      "  Group.Size = 9\n"
      "  Group.Notes = (\n"
      "    'Name=x')\n"
      "  Partner = Partner1\n"
      "end\n";
  EXPECT_EQ(SaveComponent(*sample), stored);
  auto* loaded = new TSample(&form);
  loaded->Lines.Add("old");
  LoadComponent(stored, *loaded);
  EXPECT_EQ(loaded->Name, "Sample1");
  EXPECT_EQ(loaded->Text, sample->Text);
  EXPECT_EQ(loaded->Lines.Text(), sample->Lines.Text());
  EXPECT_EQ(SaveComponent(*loaded), stored);
}

TEST(FormText, AcceptsOtherLineEndsAndIndents) {
  TSample sample;
  LoadComponent("\r\nobject S: TSample\r\ncount = 4\r\n\r\n   Lines = (\r\n'a'\r\n )\r\nend",
                sample);
  EXPECT_EQ(sample.Count, 4);
  EXPECT_EQ(sample.Lines.Text(), "a\r\n");
}

struct ErrorCase {
  const char *Body, *Error;  // lines behind "object S: TSample"
};
const ErrorCase ErrorCases[] = {
    {"Count = x",
     "line 2: \"x\" is not a value of Count: give a whole number from -2147483648 "
     "to 2147483647"                                                                           },
    {"Flag = true\n\nNo = 1", "line 4: TSample has no property \"No\" that can be stored"      },
    {"OnChange = X",          "line 2: TSample has no property \"OnChange\" that can be stored"},
    {"Partner = S",           "line 2: Partner cannot refer to \"S\""                          }, // without an owner
    {"Count",                 "line 2: \"Property = value\" is expected"                       },
    {"Text = abc",            "line 2: \"'\" is expected"                                      },
    {"Text = 'abc",           "line 2: a text ends without its closing quote"                  },
    {"Text = #256",           "line 2: \"# and a code from 0 to 255\" is expected"             },
    {"Lines = ('a')",         "line 2: \"(\" is expected"                                      },
    {"Lines = (\n'a'",        "line 4: \"'\" is expected"                                      }, // the line `end`
};

TEST(FormText, ErrorsNameTheLine) {
  for (const ErrorCase& c : ErrorCases) {
    TSample sample;
    const std::string text = "object S: TSample\n" + std::string(c.Body) + "\nend\n";
    EXPECT_EQ(ErrorText<EConvertError>([&] { LoadComponent(text, sample); }),
              std::string("Form text, ") + c.Error);
  }
  TSample sample;
  const auto error = [&](const char* Text) {
    return ErrorText<EConvertError>([&] { LoadComponent(Text, sample); });
  };
  EXPECT_EQ(error(""), "Form text, line 0: \"end\" is expected");
  EXPECT_EQ(error("object S: TSample\nCount = 9\n"), "Form text, line 2: \"end\" is expected");
  EXPECT_EQ(sample.Count, 9);  // what stands before the error is set
  EXPECT_EQ(error("Sample: TSample"), "Form text, line 1: \"object Name: Class\" is expected");
  EXPECT_EQ(error("object S: TOther"),
            "Form text, line 1: a TSample cannot be loaded from a stored TOther");
}

TEST(FormText, ReferencesAreFoundByNameAndClass) {
  TStranger form;
  auto* exporter = new TNorvaASCII(&form);
  auto* set = new TMemoryDataSet(&form);
  set->Name = "Orders";
  LoadComponent("object E: TNorvaASCII\nDataSet = ORDERS\nend", *exporter);
  EXPECT_EQ(exporter->DataSet, set);
  for (const char* line : {"DBGrid = Orders", "DataSet = Missing"}) {
    EXPECT_THROW(LoadComponent(Format("object E: TNorvaASCII\n%s\nend", line), *exporter),
                 EConvertError);
  }
  delete set;
  EXPECT_EQ(exporter->DataSet, nullptr);
}

TEST(FormText, SettersRunInTheStoredOrder) {
  TNorvaASCII stored, loaded;
  stored.AutoCalcColWidth = false;
  stored.Formats.SetDateFormat("dd.mm.yy");
  stored.Formats.NullString = "";
  LoadComponent(SaveComponent(stored), loaded);
  EXPECT_FALSE(loaded.AutoCalcColWidth);
  EXPECT_EQ(loaded.Formats.DateFormat(), "dd.mm.yy");
  EXPECT_EQ(loaded.Formats.NullString, "");
  LoadComponent(
      "object E: TNorvaASCII\nAutoCalcColWidth = false\nExportType = etCSV\n"
      "ExportType = etTXT\nend",
      loaded);
  EXPECT_TRUE(loaded.AutoCalcColWidth);
}

}  // namespace
}  // namespace norva::tests
