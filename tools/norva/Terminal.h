/// Texts between the shell and the tool, whose own messages and arguments are UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace norva::tool {

/// An argument, which is in the character set of the environment, as UTF-8.
std::string FromShell(std::string_view Text);

/// Writes `norva: `, the message and a line end to standard error. `Text` is UTF-8 or, as messages
/// about values may be, in the active code page; line ends in it become blanks.
void Say(std::string_view Text);

/// Writes `Text`, UTF-8, to standard output; throws EWriteError.
void Print(std::string_view Text);

}  // namespace norva::tool
