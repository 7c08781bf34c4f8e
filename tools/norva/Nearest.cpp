#include <tools/norva/Nearest.h>

#include <algorithm>
#include <numeric>
#include <utility>

#include <norva/platform/CodePages.h>

namespace norva::tool {
namespace {

constexpr std::size_t MostNearest = 3;
constexpr std::size_t MostListed = 10;
constexpr std::size_t ShortestPart = 3;  // of another name

/// How many characters must be typed, dropped, changed or swapped to make `A` out of `B`.
std::size_t EditDistance(std::string_view A, std::string_view B) {
  std::vector<std::size_t> last, row(B.size() + 1), next(B.size() + 1);
  std::iota(row.begin(), row.end(), 0);
  for (std::size_t i = 1; i <= A.size(); ++i) {
    next[0] = i;
    for (std::size_t j = 1; j <= B.size(); ++j) {
      next[j] = std::min({row[j] + 1, next[j - 1] + 1, row[j - 1] + (A[i - 1] != B[j - 1])});
      const bool swapped = i > 1 && j > 1 && A[i - 1] == B[j - 2] && A[i - 2] == B[j - 1];
      if (swapped) next[j] = std::min(next[j], last[j - 2] + 1);
    }
    last = row;
    row.swap(next);
  }
  return row.back();
}

/// 0 for the same name in other letter case; a name that holds the other one counts as close.
std::size_t Distance(const std::string& A, const std::string& B) {
  const std::size_t distance = EditDistance(A, B);
  const bool longEnough = std::min(A.size(), B.size()) >= ShortestPart;
  const bool holds = A.find(B) != std::string::npos || B.find(A) != std::string::npos;
  return longEnough && holds ? std::min<std::size_t>(distance, 1) : distance;
}

}  // namespace

std::string Suggestion(std::string_view Wanted, const std::vector<std::string>& Names) {
  const std::string wanted = UpperCase(Wanted);
  const std::size_t near = std::max<std::size_t>(1, wanted.size() / 3);
  std::vector<std::pair<std::size_t, const std::string*>> found;
  for (const std::string& name : Names) {
    const std::size_t distance = Distance(wanted, UpperCase(name));
    if (distance <= near && distance < wanted.size()) found.emplace_back(distance, &name);
  }
  if (found.empty()) return "it has: " + FirstOf(Names);
  std::stable_sort(found.begin(), found.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  found.resize(std::min(found.size(), MostNearest));
  std::vector<std::string> nearest;
  nearest.reserve(found.size());
  for (const auto& [distance, name] : found) nearest.push_back('"' + *name + '"');
  return "nearest: " + Joined(nearest);
}

std::string Joined(const std::vector<std::string>& Names) {
  std::string text;
  for (const std::string& name : Names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

std::string FirstOf(const std::vector<std::string>& Names) {
  std::vector<std::string> first = Names;
  if (first.size() > MostListed) {
    first.resize(MostListed);
    first.emplace_back("...");
  }
  return Joined(first);
}

}  // namespace norva::tool
