// Any text: what is read as a moment can be written, and reads back as the same second.
#include <cmath>

#include <norva/platform/DateTime.h>

#include "Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  using namespace norva;
  TDateTime value = 0;
  if (!TryStrToDateTime(fuzz::Bytes(Data, Size), value)) return 0;
  TDateTime again = 0;
  fuzz::Require(TryStrToDateTime(DateTimeToStr(value), again));
  fuzz::Require(std::abs(value - again) < 1.5 / 86400);
  return 0;
}
