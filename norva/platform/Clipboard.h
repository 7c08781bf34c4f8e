/// The clipboard, as a place for text.
///
/// A host with a toolkit gives a sink that puts the text where its toolkit keeps it. Without one
/// the text goes through the desktop's own small programs: wl-copy under Wayland, xclip or xsel
/// under X.
#pragma once

#include <functional>
#include <string_view>

#include <norva/platform/Export.h>

namespace norva {

/// Replaces what the clipboard holds by `Text`, which is in the active code page. Throws an
/// Exception that says what is missing when there is no sink and no program to do it.
NORVA_EXPORT void SetClipboardText(std::string_view Text);

/// Sends the text of the whole process to `Sink` from now on, unchanged, in the thread that sets
/// it; its exceptions reach the caller. An empty function goes back to the desktop's programs.
NORVA_EXPORT void SetClipboardSink(std::function<void(std::string_view)> Sink);

}  // namespace norva
