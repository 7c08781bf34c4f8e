#include <norva/platform/Shell.h>

#include <unistd.h>

#include <filesystem>
#include <mutex>
#include <utility>

#include <norva/platform/internal/Handles.h>
#include <norva/platform/internal/Process.h>

namespace norva {

namespace {

using TShell = std::function<void(std::string_view, const std::string&)>;

std::mutex ShellMutex;
TShell Shell;
std::function<void()> Sound;

TShell CurrentShell() {
  const std::lock_guard lock(ShellMutex);
  return Shell;
}

void RingBell() {
  if (::isatty(STDERR_FILENO) == 1) internal::WriteAll(STDERR_FILENO, "\a", 1);
}

void StartDesktopProgram(std::string_view Verb, const std::string& FileName) {
  const std::string program = internal::FindProgram(Verb == "print" ? "lp" : "xdg-open");
  if (program.empty()) return;
  // The full path: a name may look like an option (`-x.txt`) or like an address (`mailto:x.txt`).
  internal::StartDetached({program, std::filesystem::absolute(FileName).string()});
}

void Perform(std::string_view Verb, const std::string& FileName) {
  try {
    const TShell shell = CurrentShell();
    shell ? shell(Verb, FileName) : StartDesktopProgram(Verb, FileName);
  } catch (...) {
    // The export is done; whether its result is also shown is not worth an error.
  }
}

}  // namespace

void ShellOpen(const std::string& FileName) { Perform("open", FileName); }

void ShellPrint(const std::string& FileName) { Perform("print", FileName); }

void SetShell(TShell NewShell) {
  const std::lock_guard lock(ShellMutex);
  Shell = std::move(NewShell);
}

void Beep() {
  std::function<void()> sound;
  {
    const std::lock_guard lock(ShellMutex);
    sound = Sound;
  }
  sound ? sound() : RingBell();
}

void SetBeep(std::function<void()> NewSound) {
  const std::lock_guard lock(ShellMutex);
  Sound = std::move(NewSound);
}

}  // namespace norva
