#include <tools/norva/Interrupt.h>

#include <signal.h>

namespace norva::tool {
namespace {

volatile sig_atomic_t Requested = 0;

void Request(int) { Requested = 1; }
// A handler and not SIG_IGN, which the programs that are started here would inherit.
void Ignore(int) {}

void Handle(int Signal, void (*Handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = Handler;
  ::sigemptyset(&action.sa_mask);
  ::sigaction(Signal, &action, nullptr);
}

bool IsIgnored(int Signal) {
  struct sigaction action = {};
  return ::sigaction(Signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

void CatchSignals() {
  Handle(SIGINT, Request);
  Handle(SIGTERM, Request);
  if (!IsIgnored(SIGHUP)) Handle(SIGHUP, Request);  // ignored: nohup wants the export to go on
  Handle(SIGPIPE, Ignore);
  Handle(SIGXFSZ, Ignore);
}

bool Interrupted() { return Requested != 0; }

}  // namespace norva::tool
