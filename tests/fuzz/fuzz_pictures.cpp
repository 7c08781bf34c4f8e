// The first eight bytes are a value, the rest a picture; numbers and dates take any picture.
#include <cstring>

#include <norva/platform/DateTime.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Numbers.h>

#include "Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  using namespace norva;
  if (Size < sizeof(double)) return 0;
  double value = 0;
  std::int64_t integer = 0;
  std::memcpy(&value, Data, sizeof value);
  std::memcpy(&integer, Data, sizeof integer);
  const std::string_view picture = fuzz::Bytes(Data + sizeof value, Size - sizeof value);
  FormatFloat(picture, value);
  FormatFloat(picture, integer);
  try {
    FormatDateTime(picture, value);
  } catch (const EConvertError&) {  // outside the scale
  }
  return 0;
}
