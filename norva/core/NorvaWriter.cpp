#include <norva/core/NorvaWriter.h>

#include <algorithm>
#include <cstring>

#include <norva/platform/CodePages.h>

namespace norva {
namespace {

std::string Padded(std::string_view S, char Ch, int Len, TNorvaColAlign Align) {
  std::string text(S);
  TNorvaWriter::PadTail(text, 0, Ch, Len, Align);
  return text;
}

}  // namespace

void TNorvaWriter::WriteLn(std::string_view S) {
  Write(S);
  Write("\r\n");
}

void TNorvaWriter::CharLine(char Ch, int Count) {
  WriteLn(std::string(Count > 0 ? static_cast<std::size_t>(Count) : 0, Ch));
}

std::string TNorvaWriter::PadL(std::string_view S, char Ch, int Len) {
  return Padded(S, Ch, Len, ecaRight);
}

std::string TNorvaWriter::PadR(std::string_view S, char Ch, int Len) {
  return Padded(S, Ch, Len, ecaLeft);
}

std::string TNorvaWriter::PadC(std::string_view S, char Ch, int Len) {
  return Padded(S, Ch, Len, ecaCenter);
}

void TNorvaWriter::PadTail(std::string& Row, std::size_t Start, char Ch, int Len,
                           TNorvaColAlign Align, int Gap) {
  const std::size_t bytes = Row.size() - Start;
  const std::size_t have = CharCount(std::string_view(Row).substr(Start));
  const auto wanted = static_cast<std::size_t>(std::max(Len, 0));
  const std::size_t missing = wanted > have ? wanted - have : 0;
  const std::size_t left = Align == ecaRight ? missing : Align == ecaCenter ? missing / 2 : 0;
  Row.append(missing + static_cast<std::size_t>(std::max(Gap, 0)), Ch);
  if (left == 0) return;
  char* const text = Row.data() + Start;
  std::memmove(text + left, text, bytes);
  std::memset(text, Ch, left);
}

std::string TNorvaWriter::AlignToStr(TNorvaColAlign Align) const {
  switch (Align) {
    case ecaLeft:
      return "Left alignment";
    case ecaCenter:
      return "Center alignment";
    case ecaRight:
      return "Right alignment";
  }
  return "Unknown alignment";
}

}  // namespace norva
