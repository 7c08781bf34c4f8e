#include <norva/platform/Shell.h>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <thread>

#include <tests/TempFolder.h>

namespace norva {
namespace {

using tests::TEnvironmentScope;
using tests::TTempFolder;

/// Waits for what a program in the background leaves.
std::string ReadWhenThere(const TTempFolder& Folder, const std::string& Name) {
  for (int i = 0; i < 1000 && !std::filesystem::exists(Folder.Path(Name)); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return Folder.Read(Name);
}

TEST(Shell, StartsTheProgramOfTheVerb) {
  struct VerbCase {
    void (*Perform)(const std::string& FileName);
    const char *Program, *FileName;
  };
  const VerbCase cases[] = {
      {ShellOpen,  "xdg-open", "/a/orders may.xls"},
      {ShellPrint, "lp",       "/a/$(touch x);'\""}, // no shell takes this apart
  };
  for (const VerbCase& c : cases) {
    const TTempFolder folder;
    const TEnvironmentScope path("PATH", folder.Path().c_str());
    folder.WriteProgram(c.Program, "printf '%s|' \"$#\" \"$@\" > '" + folder.Path("part") +
                                       "'\n/bin/mv '" + folder.Path("part") + "' '" +
                                       folder.Path("done") + "'");
    c.Perform(c.FileName);
    EXPECT_EQ(ReadWhenThere(folder, "done"), "1|" + std::string(c.FileName) + "|");
  }
}

TEST(Shell, GivesTheFullPath) {
  const TTempFolder folder;
  const TEnvironmentScope path("PATH", folder.Path().c_str());
  folder.WriteProgram("xdg-open", "echo \"$1\" > '" + folder.Path("part") + "'\n/bin/mv '" +
                                      folder.Path("part") + "' '" + folder.Path("done") + "'");
  ShellOpen("-a:b.txt");  // neither an option nor an address
  EXPECT_EQ(ReadWhenThere(folder, "done"),
            (std::filesystem::current_path() / "-a:b.txt").string() + "\n");
}

TEST(Shell, NeitherWaitsNorLeavesAZombie) {
  const TTempFolder folder;
  const TEnvironmentScope path("PATH", folder.Path().c_str());
  folder.WriteProgram("xdg-open", "while ! [ -e '" + folder.Path("go on") +
                                      "' ]; do /bin/sleep 0.05; done\n: > '" + folder.Path("done") +
                                      "'");
  ShellOpen("a.txt");
  EXPECT_FALSE(std::filesystem::exists(folder.Path("done")));
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);  // no child of this process, dead or alive
  EXPECT_EQ(errno, ECHILD);
  folder.Write("go on", "");
  EXPECT_EQ(ReadWhenThere(folder, "done"), "");
}

TEST(Shell, FailuresAreIgnored) {
  const TTempFolder folder;
  const TEnvironmentScope path("PATH", folder.Path().c_str());
  EXPECT_NO_THROW(ShellOpen("a.txt"));  // no such program
  folder.WriteProgram("lp", "exit 1");
  EXPECT_NO_THROW(ShellPrint("a.txt"));
  EXPECT_NO_THROW(ShellPrint(""));
}

TEST(Shell, CanBeReplaced) {
  std::string received;
  SetShell([&](std::string_view verb, const std::string& fileName) {
    received.append(verb).append(" ").append(fileName).append("\n");
    throw std::runtime_error("ignored like all failures");
  });
  EXPECT_NO_THROW(ShellOpen("a b"));
  EXPECT_NO_THROW(ShellPrint("c"));
  SetShell(nullptr);
  const TEnvironmentScope path("PATH", "");
  ShellOpen("d");
  EXPECT_EQ(received, "open a b\nprint c\n");
}

}  // namespace
}  // namespace norva
