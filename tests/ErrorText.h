/// The text of an error, to compare with what a test expects.
#pragma once

#include <string>

namespace norva::tests {

/// What `Body` throws, which must be a TError: another class of error fails the test by itself.
/// "(no error)" when it throws nothing.
template <class TError, class TBody>
std::string ErrorText(const TBody& Body) {
  try {
    Body();
  } catch (const TError& error) {
    return error.what();
  }
  return "(no error)";
}

/// The text that `Body` gives, or `!` and the message of the TError that it throws.
template <class TError, class TBody>
std::string TextOrError(const TBody& Body) {
  try {
    return Body();
  } catch (const TError& error) {
    return std::string("!") + error.what();
  }
}

}  // namespace norva::tests
