// Any bytes as text: conversions agree on the number of characters, and cuts fall between them.
#include <norva/platform/CodePages.h>

#include "Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  using namespace norva;
  const std::string_view text = fuzz::Bytes(Data, Size);
  for (const int page : {CodePageUtf8, 1252, 866}) {
    SetActiveCodePage(page);
    fuzz::Require(CharCount(text) >= ToUtf32(text).size());
    const std::string_view cut = CutAtCharacter(text, Size / 2);
    fuzz::Require(CharCount(cut) + CharCount(text.substr(cut.size())) == CharCount(text));
    fuzz::Require(SameText(text, UpperCase(text)));
    ToUtf16(text);
  }
  return 0;
}
