/// Other programs, started without a shell.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace norva::internal {

/// The full path of a program, from the folders of PATH; empty when there is none.
std::string FindProgram(std::string_view Name);

/// Starts `Command` (a full path and its arguments), writes `Input` to its standard input and
/// waits for its end, but not for that of programs it leaves in the background. Its output is
/// dropped. True when it took all of the input and reported success.
bool RunWithInput(const std::vector<std::string>& Command, std::string_view Input);

/// Starts `Command` with no input and no output, in a session of its own, and does not wait for
/// it; it leaves no zombie behind. False when no process can be started.
bool StartDetached(const std::vector<std::string>& Command);

}  // namespace norva::internal
