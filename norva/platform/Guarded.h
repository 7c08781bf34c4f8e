/// Clean-up steps that may themselves fail, and so are no destructors.
#pragma once

namespace norva {

/// Runs `Body`, then `Last` on every way out. When both throw, the error of `Body` goes on: it came
/// first and caused the other.
template <class TBody, class TLast>
void Guarded(TBody&& Body, TLast&& Last) {
  try {
    Body();
  } catch (...) {
    try {
      Last();
    } catch (...) {  // NOLINT(bugprone-empty-catch): the first error is the one to report
    }
    throw;
  }
  Last();
}

}  // namespace norva
