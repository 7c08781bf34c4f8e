/// Message formatting: a small, type-safe `Format` with %d, %s, %x and %f.
///
///   Format("Field \"%s\" has %d characters", name, 12)
///
/// A specifier is % [-] [width] [.precision] letter; %% is a percent sign.
///   %d   decimal integer             %s   text, cut to `precision` characters
///   %x   lower-case hexadecimal; `.6` pads with zeros to six digits
///   %f   fixed decimals (`%15.4f`), rounded half away from zero, with the thread's decimal
///        separator and no grouping; two decimals without a precision
/// Widths pad with blanks on the left, with `-` on the right.
#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

#include <norva/platform/Export.h>

namespace norva {

/// One argument of Format: an integer, a floating-point number or a text.
/// A text is referenced, not copied; it must outlive the call.
class NORVA_EXPORT TFormatArg {
 public:
  template <std::integral T>
  TFormatArg(T Value) : Value_(static_cast<std::int64_t>(Value)) {}
  template <std::floating_point T>
  TFormatArg(T Value) : Value_(static_cast<double>(Value)) {}
  TFormatArg(std::string_view Value) : Value_(Value) {}
  TFormatArg(const std::string& Value) : Value_(std::string_view(Value)) {}
  TFormatArg(const char* Value) : Value_(std::string_view(Value)) {}

  const std::variant<std::int64_t, double, std::string_view>& Value() const { return Value_; }

 private:
  std::variant<std::int64_t, double, std::string_view> Value_;
};

/// The body of Format. A specifier without an argument, or with one of the wrong kind, throws
/// EConvertError naming the picture: it is a fault of the caller.
NORVA_EXPORT std::string FormatArgs(std::string_view Picture,
                                    std::initializer_list<TFormatArg> Args);

/// Returns `Picture` with its specifiers replaced by `Args`, in order.
template <class... TArgs>
std::string Format(std::string_view Picture, const TArgs&... Args) {
  return FormatArgs(Picture, {TFormatArg(Args)...});
}

}  // namespace norva
