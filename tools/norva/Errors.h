/// What ends a command otherwise than with success.
#pragma once

#include <norva/platform/Exceptions.h>

namespace norva::tool {

enum TExitCode {
  ecDone = 0,
  ecFailed = 1,
  ecUsage = 2,          ///< the arguments are wrong
  ecInterrupted = 130,  // as shells report a program that Ctrl-C has ended: 128 + SIGINT
};

/// Arguments that say nothing, too much, or something that does not exist.
class EUsage : public Exception {
 public:
  using Exception::Exception;
};

/// Ctrl-C, or another request to end.
class EInterrupted : public Exception {
 public:
  using Exception::Exception;
};

}  // namespace norva::tool
