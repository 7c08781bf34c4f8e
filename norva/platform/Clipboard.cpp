#include <norva/platform/Clipboard.h>

#include <cstdlib>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>
#include <norva/platform/internal/Process.h>

namespace norva {

namespace {

/// A program that takes UTF-8 text from its standard input and keeps it on the clipboard.
struct TClipboardTool {
  const char* Display;  // the variable that says which display to use; without it, no tool
  std::vector<std::string> Command;
};

/// In the order of preference: in a Wayland session DISPLAY is often set too. The type is named
/// because wl-copy would otherwise look at the text and guess one.
const std::vector<TClipboardTool>& ClipboardTools() {
  static const std::vector<TClipboardTool> tools = {
      {"WAYLAND_DISPLAY", {"wl-copy", "--type", "text/plain"} },
      {"DISPLAY",         {"xclip", "-selection", "clipboard"}},
      {"DISPLAY",         {"xsel", "--clipboard", "--input"}  },
  };
  return tools;
}

std::mutex SinkMutex;
std::function<void(std::string_view)> ClipboardSink;

std::function<void(std::string_view)> CurrentSink() {
  const std::lock_guard lock(SinkMutex);
  return ClipboardSink;
}

bool IsSet(const char* Variable) {
  const char* value = std::getenv(Variable);
  return value != nullptr && *value != '\0';
}

/// The command, with its full path, of the first program that is there.
std::vector<std::string> FindTool() {
  std::string wanted;
  for (const TClipboardTool& tool : ClipboardTools()) {
    if (!IsSet(tool.Display)) continue;
    std::vector<std::string> command = tool.Command;
    command[0] = internal::FindProgram(tool.Command[0]);
    if (!command[0].empty()) return command;
    wanted += (wanted.empty() ? "" : ", ") + tool.Command[0];
  }
  if (wanted.empty()) throw Exception(MsgNoDesktop);
  throw Exception(MsgNoClipboardTool, wanted);
}

}  // namespace

void SetClipboardText(std::string_view Text) {
  if (const auto sink = CurrentSink()) {
    sink(Text);
    return;
  }
  const std::vector<std::string> command = FindTool();
  if (!internal::RunWithInput(command, ToUtf8(Text))) {
    throw Exception(MsgClipboardToolFailed, command[0]);
  }
}

void SetClipboardSink(std::function<void(std::string_view)> Sink) {
  const std::lock_guard lock(SinkMutex);
  ClipboardSink = std::move(Sink);
}

}  // namespace norva
