#include <norva/platform/internal/Process.h>

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <ctime>

#include <norva/platform/internal/Handles.h>

namespace norva::internal {

namespace {

/// Keeps SIGPIPE from this thread, so that a reader that goes away is an error of the write and
/// not the end of the host.
class TSigPipeGuard {
 public:
  TSigPipeGuard() {
    sigset_t pending;
    ::sigpending(&pending);
    WasPending_ = ::sigismember(&pending, SIGPIPE) == 1;
    ::sigemptyset(&SigPipe_);
    ::sigaddset(&SigPipe_, SIGPIPE);
    ::pthread_sigmask(SIG_BLOCK, &SigPipe_, &OldMask_);
  }
  ~TSigPipeGuard() {
    const timespec now = {};
    if (!WasPending_) ::sigtimedwait(&SigPipe_, nullptr, &now);  // takes back what a write raised
    ::pthread_sigmask(SIG_SETMASK, &OldMask_, nullptr);
  }
  TSigPipeGuard(const TSigPipeGuard&) = delete;
  TSigPipeGuard& operator=(const TSigPipeGuard&) = delete;

 private:
  sigset_t SigPipe_, OldMask_;
  bool WasPending_;
};

std::vector<char*> ArgumentPointers(const std::vector<std::string>& Command) {
  std::vector<char*> pointers;
  for (const std::string& argument : Command) {
    pointers.push_back(const_cast<char*>(argument.c_str()));  // execv changes nothing
  }
  pointers.push_back(nullptr);
  return pointers;
}

/// Turns a forked child into the program. Between fork and execv only what is safe in a signal
/// handler: another thread of the host may have held any lock.
[[noreturn]] void Become(char* const* Arguments, int Input) {
  const int null = ::open("/dev/null", O_RDWR);
  // A host that has closed its own 0, 1 and 2 may have them as the ends of the pipe.
  const int input = Input >= 0 ? ::fcntl(Input, F_DUPFD_CLOEXEC, STDERR_FILENO + 1) : null;
  ::dup2(null, STDOUT_FILENO);
  ::dup2(null, STDERR_FILENO);
  ::dup2(input, STDIN_FILENO);
  sigset_t none;
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
  ::signal(SIGPIPE, SIG_DFL);  // ignoring it would be inherited
  ::execv(Arguments[0], Arguments);
  ::_exit(127);  // as shells report a program that cannot be started
}

/// True when the child ended with status 0, also when the host has its children reaped elsewhere.
bool WaitForSuccess(pid_t Child) {
  int status = 0;
  pid_t ended;
  do {
    ended = ::waitpid(Child, &status, 0);
  } while (ended < 0 && errno == EINTR);
  return ended < 0 || (WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

bool IsProgram(const std::string& Path) {
  struct stat status;
  return ::stat(Path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         ::access(Path.c_str(), X_OK) == 0;
}

}  // namespace

std::string FindProgram(std::string_view Name) {
  const char* path = std::getenv("PATH");
  std::string_view folders = path != nullptr ? path : "/usr/bin:/bin";
  while (!folders.empty()) {
    const std::size_t end = folders.find(':');
    const std::string_view folder = folders.substr(0, end);
    folders.remove_prefix(end == folders.npos ? folders.size() : end + 1);
    if (folder.empty()) continue;  // the current folder: nothing is started from there
    std::string program(folder);
    program.append(1, '/').append(Name);
    if (IsProgram(program)) return program;
  }
  return {};
}

bool RunWithInput(const std::vector<std::string>& Command, std::string_view Input) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) return false;
  THandle reading(ends[0]);
  THandle writing(ends[1]);
  const std::vector<char*> arguments = ArgumentPointers(Command);
  const pid_t child = ::fork();
  if (child < 0) return false;
  if (child == 0) Become(arguments.data(), reading.Get());
  reading.Close();
  bool taken;
  {
    const TSigPipeGuard guard;
    taken = WriteAll(writing.Get(), Input.data(), Input.size()) == Input.size();
  }
  writing.Close();
  return WaitForSuccess(child) && taken;
}

bool StartDetached(const std::vector<std::string>& Command) {
  const std::vector<char*> arguments = ArgumentPointers(Command);
  const pid_t child = ::fork();
  if (child < 0) return false;
  if (child == 0) {
    // The program's parent ends at once, so that the system adopts and later reaps the program.
    ::setsid();
    const pid_t program = ::fork();
    if (program == 0) Become(arguments.data(), -1);
    ::_exit(program < 0 ? 1 : 0);
  }
  return WaitForSuccess(child);
}

}  // namespace norva::internal
