/// The current date and time, from one function that tests and hosts can replace.
#pragma once

#include <functional>

#include <norva/platform/DateTime.h>
#include <norva/platform/Export.h>

namespace norva {

/// The current local date and time.
NORVA_EXPORT TDateTime Now();
/// The current local date, at midnight.
NORVA_EXPORT TDateTime Date();
/// The current year, as reading a two-digit year assumes it.
NORVA_EXPORT int CurrentYear();

/// Replaces the clock of the whole process; an empty function restores the system's. Not to be
/// called while another thread exports.
NORVA_EXPORT void SetClock(std::function<TDateTime()> Clock);

}  // namespace norva
