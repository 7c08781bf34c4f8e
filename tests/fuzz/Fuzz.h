/// What the fuzz programs share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace norva::fuzz {

inline std::string_view Bytes(const std::uint8_t* Data, std::size_t Size) {
  return {reinterpret_cast<const char*>(Data), Size};
}

/// Stops the fuzzer with the input that broke a rule.
inline void Require(bool Kept) {
  if (!Kept) std::abort();
}

}  // namespace norva::fuzz
