// norva: exports tables of databases from the command line. docs/norva.1 is its manual.
#include <exception>
#include <new>

#include <tools/norva/CommandLine.h>
#include <tools/norva/Errors.h>
#include <tools/norva/Interrupt.h>
#include <tools/norva/Messages.h>
#include <tools/norva/Terminal.h>

using namespace norva::tool;

namespace {

int Fail(const char* Message, TExitCode Code) {
  Say(Message);
  return Code;
}

}  // namespace

int main(int argc, char** argv) {
  CatchSignals();
  try {
    RunCommandLine(argc, argv);
    return ecDone;
  } catch (const EUsage& error) {
    return Fail(error.what(), ecUsage);
  } catch (const EInterrupted& error) {
    return Fail(error.what(), ecInterrupted);
  } catch (const std::bad_alloc&) {
    return Fail(MsgOutOfMemory, ecFailed);
  } catch (const std::exception& error) {
    // What fails after Ctrl-C fails because of it.
    return Interrupted() ? Fail(MsgInterruptedEarly, ecInterrupted) : Fail(error.what(), ecFailed);
  }
}
