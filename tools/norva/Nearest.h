/// "Did you mean": the names that are most like one that does not exist.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace norva::tool {

/// `nearest: "orders", "order_items"` with up to three of `Names`, the most alike first; where
/// none is like `Wanted`, `it has: ` and all of them, or the first ten.
std::string Suggestion(std::string_view Wanted, const std::vector<std::string>& Names);

/// The names, separated by `, `.
std::string Joined(const std::vector<std::string>& Names);
/// The same for a message: the first ten, then `...` if there are more.
std::string FirstOf(const std::vector<std::string>& Names);

}  // namespace norva::tool
