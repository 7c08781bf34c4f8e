/// The desktop's "open" and "print" for a finished file, and its beep.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include <norva/platform/Export.h>

namespace norva {

/// Opens the file with the program that the desktop has for it (xdg-open). Returns at once;
/// failures are not reported.
NORVA_EXPORT void ShellOpen(const std::string& FileName);
/// Prints the file on the default printer (lp). Returns at once; failures are not reported.
NORVA_EXPORT void ShellPrint(const std::string& FileName);

/// Gives both verbs, "open" and "print", to `Shell` from now on, in the whole process. What it
/// throws is ignored, as all failures are. An empty function goes back to the desktop's programs.
NORVA_EXPORT void SetShell(
    std::function<void(std::string_view Verb, const std::string& FileName)> Shell);

/// Sounds the bell of the terminal that standard error is; silent where it is none.
NORVA_EXPORT void Beep();
/// Gives the beep to `Sound` from now on, in the whole process. An empty function goes back to the
/// terminal's bell.
NORVA_EXPORT void SetBeep(std::function<void()> Sound);

}  // namespace norva
