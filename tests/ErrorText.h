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

}  // namespace norva::tests
