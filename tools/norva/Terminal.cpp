#include <tools/norva/Terminal.h>

#include <unistd.h>

#include <norva/platform/CodePages.h>
#include <tools/norva/HandleStream.h>

namespace norva::tool {
namespace {

/// Another active code page for as long as this lives.
class TPageScope {
 public:
  explicit TPageScope(int CodePage) {
    SetActiveCodePage(CodePage);
    SetUnmappablePolicy(umReplace);
  }
  ~TPageScope() {
    SetActiveCodePage(Page_);
    SetUnmappablePolicy(Policy_);
  }
  TPageScope(const TPageScope&) = delete;
  TPageScope& operator=(const TPageScope&) = delete;

 private:
  int Page_ = ActiveCodePage();
  TUnmappable Policy_ = UnmappablePolicy();
};

bool IsUtf8(std::string_view Text) {
  const TPageScope utf8(CodePageUtf8);
  return ToUtf8(Text) == Text;
}

std::string ToShell(std::string_view Utf8) {
  const TPageScope shell(EnvironmentCodePage());
  return FromUtf8(Utf8);
}

std::string OnOneLine(std::string_view Text) {
  std::string line(Text);
  for (char& c : line) {
    if (c == '\n' || c == '\r' || c == '\t') c = ' ';
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = '?';
  }
  return line;
}

}  // namespace

std::string FromShell(std::string_view Text) {
  if (EnvironmentCodePage() == CodePageUtf8) return std::string(Text);
  const TPageScope shell(EnvironmentCodePage());
  return ToUtf8(Text);
}

void Say(std::string_view Text) {
  const std::string utf8 = IsUtf8(Text) ? std::string(Text) : ToUtf8(Text);
  const std::string line = "norva: " + OnOneLine(ToShell(utf8)) + "\n";
  // Where it cannot be written there is nobody to tell.
  [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, line.data(), line.size());
}

void Print(std::string_view Text) {
  THandleStream output(STDOUT_FILENO, StandardOutputName);
  output.Write(ToShell(Text));
  output.Flush();
}

}  // namespace norva::tool
