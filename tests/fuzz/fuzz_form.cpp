// Any text as a stored form: an error or a component, which saves and loads again unchanged.
#include <norva/formats/text/Norvaascii.h>
#include <norva/platform/FormText.h>

#include "Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  using namespace norva;
  TNorvaASCII first;
  try {
    LoadComponent(fuzz::Bytes(Data, Size), first);
  } catch (const EConvertError&) {
    return 0;
  }
  const std::string saved = SaveComponent(first);
  TNorvaASCII second;
  LoadComponent(saved, second);
  fuzz::Require(SaveComponent(second) == saved);
  return 0;
}
