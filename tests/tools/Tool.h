/// Runs the tool as its users do: as a process, in a folder of its own.
#pragma once

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tests/TempFolder.h>
#include <tests/sources/sqlite/SqliteScript.h>

namespace norva::tests {

using TArguments = std::vector<std::string>;

/// What a run of the tool left.
struct TRun {
  int Code = -1;  // negative: ended by that signal
  std::string Out, Err;
};

/// A command line of words without blanks in them: `export shop.db --table orders`.
inline TArguments Words(const std::string& Line) {
  TArguments words;
  const std::regex word("[^ ]+");
  for (auto it = std::sregex_iterator(Line.begin(), Line.end(), word); it != std::sregex_iterator();
       ++it) {
    words.push_back(it->str());
  }
  return words;
}
inline TArguments operator+(TArguments A, const TArguments& B) {
  A.insert(A.end(), B.begin(), B.end());
  return A;
}

/// A folder with the database shop.db, and the tool started in it.
class ToolTest : public testing::Test {
 protected:
  ToolTest() { MakeDatabase("shop.db", Shop); }

  void MakeDatabase(const std::string& Name, const std::string& Script) {
    RunScript(Folder.Path(Name), Script);
  }

  /// Runs the tool to its end. `InChild` prepares the process: limits, descriptors.
  TRun Run(const TArguments& Arguments, const std::function<void()>& InChild = {}) const {
    const pid_t child = Start(Arguments, InChild);
    return Wait(child);
  }

  pid_t Start(const TArguments& Arguments, const std::function<void()>& InChild = {}) const {
    const char* const tool = std::getenv("NORVA_TOOL");
    if (!tool) throw std::runtime_error("NORVA_TOOL must name the tool to test");
    std::vector<char*> pointers = {const_cast<char*>("norva")};
    for (const std::string& argument : Arguments) {
      pointers.push_back(const_cast<char*>(argument.c_str()));
    }
    pointers.push_back(nullptr);
    const pid_t child = ::fork();
    if (child != 0) return child;
    Redirect(STDOUT_FILENO, "out");
    Redirect(STDERR_FILENO, "err");
    if (::chdir(Folder.Path().c_str()) != 0) ::_exit(126);
    if (InChild) InChild();
    ::execv(tool, pointers.data());
    ::_exit(127);
  }

  TRun Wait(pid_t Child) const {
    int status = 0;
    EXPECT_EQ(::waitpid(Child, &status, 0), Child);
    TRun run;
    run.Code = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    run.Out = Streams.Read("out");
    run.Err = Streams.Read("err");
    return run;
  }

  /// Runs the tool and expects it to succeed without a word; returns the file `Output`, or standard
  /// output where it is empty.
  std::string Exported(const TArguments& Arguments, const std::string& Output = "") const {
    const TRun run = Run(TArguments{"export", "shop.db", "-q"} + Arguments);
    EXPECT_EQ(run.Code, 0);
    EXPECT_EQ(run.Err, "");
    return Output.empty() ? run.Out : Folder.Read(Output);
  }

  /// What the tool said without the measured figures.
  static std::string Timeless(const std::string& Err) {
    return std::regex_replace(Err, std::regex("in [0-9.]+ s \\([0-9,]+ rows/s\\)"), "in T");
  }

  /// The names in the folder but the database's, sorted, with blanks between.
  std::string Files() const {
    std::vector<std::string> names = Folder.Names();
    std::sort(names.begin(), names.end());
    std::string text;
    for (const std::string& name : names) {
      if (!name.ends_with(".db")) text += (text.empty() ? "" : " ") + name;
    }
    return text;
  }

  const TTempFolder Folder;

 private:
  void Redirect(int Handle, const char* Name) const {
    ::dup2(::open(Streams.Path(Name).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), Handle);
  }

  // No two columns are alike, so that a swap shows.
  static constexpr const char* Shop = R"(
    CREATE TABLE items (id INTEGER, name VARCHAR(8), price REAL, paid BOOLEAN, day DATE);
    INSERT INTO items VALUES (7, 'Tea', 4.5, 1, '2024-01-31'), (1234, 'C "b"', NULL, 0, NULL),
                             (-3, 'Öl;x', 0.25, 1, '1999-12-31');
    CREATE TABLE photos (id INT, small BLOB, title TEXT, large BLOB);
    INSERT INTO photos VALUES (1, x'6162', 'One', x'63');
    CREATE TABLE empty (id INT, name TEXT);
    CREATE TABLE onlyblobs (a BLOB);
    INSERT INTO onlyblobs VALUES (x'00');
    CREATE TABLE wrong (id INT, price REAL);
    INSERT INTO wrong VALUES (1, 2.5), (2, 'cheap');
    CREATE VIEW names AS SELECT name FROM items;)";

  const TTempFolder Streams;  // not in the folder: a failed export leaves nothing there
};

}  // namespace norva::tests
