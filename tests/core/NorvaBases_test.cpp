#include <norva/core/NorvaBases.h>

#include <gtest/gtest.h>

#include <norva/platform/Exceptions.h>
#include <norva/platform/Shell.h>
#include <tests/ErrorText.h>
#include <tests/Exports.h>
#include <tests/TempFolder.h>

namespace norva::tests {
namespace {

/// An export of three records to files in a folder of its own, with a shell that notes the verbs.
class TNorvaTextTest : public testing::Test {
 protected:
  TNorvaTextTest() {
    SetShell([this](std::string_view Verb, const std::string& FileName) {
      Verbs += std::string(Verb) + " " + FileName.substr(FileName.rfind('/') + 1) + ";";
      throw Exception("no such verb");  // to be ignored
    });
    Run.Export.FileName = Folder.Path("out.txt");
    Run.Export.ShowFile = Run.Export.PrintFile = true;
  }
  ~TNorvaTextTest() override { SetShell(nullptr); }

  const TTempFolder Folder;
  TLogged Run;
  std::string Verbs;
};

TEST_F(TNorvaTextTest, WritesTheFileThenShowsAndPrintsIt) {
  Folder.Write("out.txt", std::string(1000, 'x'));  // to be replaced
  Run.Export.Execute();
  EXPECT_EQ(Folder.Read("out.txt"), Lines({"N|", "1|", "2|", "3|"}));
  EXPECT_EQ(Verbs, "open out.txt;print out.txt;");
  EXPECT_TRUE(Run.Log.Text.ends_with("end enable ShowResult")) << Run.Log.Text;
  Verbs.clear();
  Run.Export.ShowFile = false;
  Run.Export.Execute();
  EXPECT_EQ(Verbs, "print out.txt;");
}

TEST_F(TNorvaTextTest, ShowsNothingAfterAnAbort) {
  Run.Export.OnExportedRecord = [this](TObject&, std::int32_t) { Run.Export.Abort(); };
  Run.Export.Execute();
  EXPECT_EQ(Folder.Read("out.txt"), Lines({"N|", "1|"}));
  EXPECT_EQ(Verbs, "");
}

TEST_F(TNorvaTextTest, AnErrorLeavesTheFileSoFar) {
  Run.Export.OnExportedRecord = [](TObject&, std::int32_t) { throw Exception("now"); };
  EXPECT_EQ(ErrorText<Exception>([&] { Run.Export.Execute(); }), "now");
  EXPECT_EQ(Folder.Read("out.txt"), Lines({"N|", "1|"}));
  EXPECT_EQ(Run.Log.Text.find("ShowResult"), std::string::npos);
}

TEST_F(TNorvaTextTest, FileErrorsReachTheCaller) {
  Run.Export.FileName = Folder.Path("missing/out.txt");
  EXPECT_EQ(ErrorText<EFCreateError>([&] { Run.Export.Execute(); }),
            "Cannot create \"" + Run.Export.FileName + "\": No such file or directory");
  EXPECT_EQ(Run.Log.Text, "");
  Run.Export.FileName = "/dev/full";
  EXPECT_EQ(ErrorText<EWriteError>([&] { Run.Export.Execute(); }),  // found out by closing
            "Cannot write \"/dev/full\": No space left on device");
  EXPECT_TRUE(Run.Log.Text.ends_with("end enable")) << Run.Log.Text;
  Run.Log.Text.clear();
  Run.Export.Header.Add(std::string(100000, 'x'));
  Run.Export.OnBeginExport = [this](TObject&) {
    Run.Export.GetWriter().WriteLn(Run.Export.Header[0]);
  };
  EXPECT_THROW(Run.Export.Execute(), EWriteError);  // by writing
  EXPECT_EQ(Run.Log.Text, "disable Begin enable");
}

class TMemoryExport : public TNorvaMemory {
 public:
  using TNorvaMemory::TNorvaMemory;
  std::string_view ClassName() const override { return "TMemoryExport"; }

 protected:
  void WriteDataRow() override { GetWriter().Write(std::string_view("a\0\xFF", 3)); }
};

TEST(NorvaMemory, ReplacesTheClipboardUnlessItFails) {
  TLogged run;
  TMemoryExport exporter;
  exporter.DataSet = &run.Set;
  exporter.ExportRecCount = 1;
  EXPECT_EQ(Copied(exporter), std::string("a\0\xFF", 3));
  exporter.SkipRecCount = 5;  // no row
  EXPECT_EQ(Copied(exporter), "");
  exporter.OnEndExport = [](TObject&) { throw Exception("now"); };
  std::string text = "(untouched)";
  SetClipboardSink([&](std::string_view Text) { text = Text; });
  EXPECT_EQ(ErrorText<Exception>([&] { exporter.Execute(); }), "now");
  SetClipboardSink(nullptr);
  EXPECT_EQ(text, "(untouched)");
}

TEST(NorvaBases, PublishWithDefaults) {
  TLogged run;
  EXPECT_EQ(Published(run.Export, "ExportSource"),
            "ExportSource: TNorvaSource = esDataSet/DataSet: TDataSet/DBGrid: TDBGrid/"
            "ListView: TListView/StringGrid: TStringGrid/ExportedFields: String list/"
            "CurrentRecordOnly: Boolean = false/GoToFirstRecord: Boolean = true/"
            "ExportRecCount: Integer = 0/SkipRecCount: Integer = 0/"
            "OnlyVisibleFields: Boolean = false/AutoCalcStrType: Boolean = false/"
            "_Version: String = 2.25/OnBeginExport: TNotifyEvent/"
            "OnSkippedRecord: TExportedRecordEvent/OnExportedRecord: TExportedRecordEvent/"
            "OnStopExport: TNorvaStopEvent/OnGetExportText: TGetExportTextEvent/"
            "OnEndExport: TNotifyEvent/"
            "FileName: String = /ShowFile: Boolean = false/PrintFile: Boolean = false/"
            "Header: String list/Footer: String list/"
            "AllowCaptions: Boolean = true/Captions: String list/Formats: TNorvaFormats/"
            "UserFormats: String list/"
            "AutoCalcColWidth: Boolean = false/");  // of the test's own class
}

}  // namespace
}  // namespace norva::tests
