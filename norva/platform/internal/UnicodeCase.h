/// Capitals of Unicode.
#pragma once

namespace norva::internal {

/// The one-to-one capital of `Code`, in no particular language; `Code` itself without one.
char32_t UnicodeUpper(char32_t Code);

}  // namespace norva::internal
