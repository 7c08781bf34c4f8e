#include <norva/formats/document/NorvahtmlWriter.h>

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace norva {

std::string HtmlColor(TColor Color) {
  // Signed and truncating: what a system colour comes out as depends on it.
  const auto red = static_cast<std::uint32_t>(Color % 256) << 16;
  const auto green = static_cast<std::uint32_t>(Color) & 0xFF00U;
  const auto blue = static_cast<std::uint32_t>(Color / 65536 % 256);
  char digits[8];
  const char* const end = std::to_chars(digits, digits + sizeof digits, red | green | blue, 16).ptr;
  const auto count = static_cast<std::size_t>(end - digits);
  return "#" + std::string(6 - std::min<std::size_t>(count, 6), '0') + std::string(digits, count);
}

bool TLumHTMLWriter::WritesFile() const {
  return dynamic_cast<const TFileStream*>(&Stream()) != nullptr;
}

void TLumHTMLWriter::WriteTITLE(std::string_view Title) {
  Write(" <Title>");
  Write(Title);
  WriteLn("</Title>");
}

std::string TLumHTMLWriter::AlignToStr(TNorvaColAlign Align) const {
  switch (Align) {
    case ecaLeft:
      return "Left";
    case ecaCenter:
      return "Center";
    case ecaRight:
      return "Right";
  }
  return TNorvaWriter::AlignToStr(Align);
}

}  // namespace norva
