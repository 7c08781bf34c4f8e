#include <norva/platform/Clipboard.h>

#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <string>
#include <vector>

#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <tests/ErrorText.h>
#include <tests/TempFolder.h>

namespace norva {
namespace {

using tests::ErrorText;
using tests::TEnvironmentScope;
using tests::TTempFolder;

/// A desktop session with programs of the test's own and no others.
struct TSession {
  TSession(const char* Wayland, const char* Display)
      : Path("PATH", Programs.Path().c_str()),
        WaylandDisplay("WAYLAND_DISPLAY", Wayland),
        XDisplay("DISPLAY", Display) {}

  std::string File(const std::string& Name) const { return "'" + Programs.Path(Name) + "'"; }
  /// A program that keeps its arguments and its input in files.
  void AddTool(const std::string& Name) const {
    Programs.WriteProgram(Name, "echo " + Name + " \"$@\" > " + File("arguments") +
                                    "\nexec /bin/cat > " + File("text"));
  }

  TTempFolder Programs;
  TEnvironmentScope Path, WaylandDisplay, XDisplay;
};

TEST(Clipboard, TakesTheProgramOfTheSession) {
  struct ToolCase {
    const char *Wayland, *Display;
    std::vector<std::string> Installed;
    const char* Expected;
  };
  const ToolCase cases[] = {
      {"wayland-0", ":0",    {"wl-copy", "xclip", "xsel"}, "wl-copy --type text/plain\n" },
      {"wayland-0", ":0",    {"xclip", "xsel"},            "xclip -selection clipboard\n"},
      {nullptr,     ":0",    {"wl-copy", "xclip", "xsel"}, "xclip -selection clipboard\n"},
      {"",          ":0",    {"wl-copy", "xsel"},          "xsel --clipboard --input\n"  },
      {"wayland-0", nullptr, {"wl-copy", "xclip"},         "wl-copy --type text/plain\n" },
  };
  for (const ToolCase& c : cases) {
    const TSession session(c.Wayland, c.Display);
    for (const std::string& name : c.Installed) session.AddTool(name);
    SetClipboardText("text");
    EXPECT_EQ(session.Programs.Read("arguments"), c.Expected);
    EXPECT_EQ(session.Programs.Read("text"), "text");
  }
}

TEST(Clipboard, GivesTheProgramUtf8) {
  const TSession session(nullptr, ":0");
  session.AddTool("xclip");
  SetActiveCodePage(1252);
  SetClipboardText("\x80\xE4\r\n");
  SetActiveCodePage(CodePageUtf8);
  EXPECT_EQ(session.Programs.Read("text"), "\xE2\x82\xAC\xC3\xA4\r\n");
  SetClipboardText("");  // replaces what was there
  EXPECT_EQ(session.Programs.Read("text"), "");
  const std::string large(3000000, 'x');  // more than a pipe holds
  SetClipboardText(large);
  EXPECT_TRUE(session.Programs.Read("text") == large);
}

TEST(Clipboard, DoesNotWaitForWhatStaysInTheBackground) {
  const TSession session(nullptr, ":0");
  session.Programs.WriteProgram("xclip", "/bin/cat > " + session.File("text") +
                                             "\nout=$(/bin/readlink /proc/$$/fd/1)" +
                                             "\necho $out > " + session.File("output") +
                                             "\n/bin/sleep 60 &\necho $! > " + session.File("pid"));
  const auto start = std::chrono::steady_clock::now();
  SetClipboardText("text");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
  EXPECT_EQ(session.Programs.Read("text"), "text");
  // A pipe that the host's output goes to must not stay open with it.
  EXPECT_EQ(session.Programs.Read("output"), "/dev/null\n");
  EXPECT_EQ(::kill(std::stoi(session.Programs.Read("pid")), SIGKILL), 0);  // it was still there
}

TEST(Clipboard, AFailingProgramIsAnErrorAndDoesNotKillTheHost) {
  const std::string large(3000000, 'x');
  for (const char* script : {"exit 0", "exit 3", "/bin/cat >/dev/null; exit 1", "kill -9 $$"}) {
    const TSession session(nullptr, ":0");
    const std::string program = session.Programs.WriteProgram("xclip", script);
    EXPECT_EQ(ErrorText<Exception>([&] { SetClipboardText(large); }),
              "The text cannot be put on the clipboard: the program \"" + program +
                  "\" did not take it. Try it in a terminal of this desktop session")
        << script;
  }
}

TEST(Clipboard, SaysWhatIsMissing) {
  {
    const TSession session(nullptr, nullptr);
    session.AddTool("xclip");
    EXPECT_EQ(ErrorText<Exception>([] { SetClipboardText("x"); }),
              "The text cannot be put on the clipboard: neither WAYLAND_DISPLAY nor DISPLAY is "
              "set. Run the program in a desktop session, or give it a clipboard of its own with "
              "SetClipboardSink");
  }
  const TSession session("wayland-0", ":0");
  session.Programs.Write("xclip", "not executable");
  EXPECT_EQ(ErrorText<Exception>([] { SetClipboardText("x"); }),
            "The text cannot be put on the clipboard: none of the programs that do so (wl-copy, "
            "xclip, xsel) is installed. Install one of them, or give the program a clipboard of "
            "its own with SetClipboardSink");
}

TEST(Clipboard, ASinkTakesTheTextUnchanged) {
  const TSession session(nullptr, ":0");
  session.AddTool("xclip");
  std::string received = "old";
  SetClipboardSink([&](std::string_view text) { received = text; });
  SetActiveCodePage(1252);
  SetClipboardText("\xE4");
  SetActiveCodePage(CodePageUtf8);
  EXPECT_EQ(received, "\xE4");
  SetClipboardSink(nullptr);
  SetClipboardText("back to xclip");
  EXPECT_EQ(received, "\xE4");
  EXPECT_EQ(session.Programs.Read("text"), "back to xclip");
}

}  // namespace
}  // namespace norva
