#include <tools/norva/TextTable.h>

#include <algorithm>

#include <norva/core/NorvaWriter.h>
#include <norva/platform/CodePages.h>

namespace norva::tool {
namespace {

using TRows = std::vector<std::vector<std::string>>;

/// Whether all cells of a column, but its title, are whole numbers.
bool HoldsNumbers(const TRows& Rows, std::size_t Column) {
  return std::all_of(Rows.begin() + 1, Rows.end(), [Column](const auto& row) {
    return row[Column].find_first_not_of("0123456789") == std::string::npos;
  });
}

}  // namespace

std::string TTextTable::Text() const {
  const std::size_t columns = Rows_.front().size();
  std::vector<int> widths(columns);
  for (const std::vector<std::string>& row : Rows_) {
    for (std::size_t i = 0; i < columns; ++i) {
      widths[i] = std::max(widths[i], static_cast<int>(CharCount(row[i])));
    }
  }
  std::vector<TNorvaColAlign> aligns;
  for (std::size_t i = 0; i < columns; ++i) {
    aligns.push_back(HoldsNumbers(Rows_, i) ? ecaRight : ecaLeft);
  }
  std::string text;
  for (const std::vector<std::string>& row : Rows_) {
    for (std::size_t i = 0; i < columns; ++i) {
      const std::size_t start = text.size();
      text += row[i];
      TNorvaWriter::PadTail(text, start, ' ', widths[i], aligns[i]);
      text += "  ";
    }
    text.erase(text.find_last_not_of(' ') + 1);
    text += '\n';
  }
  return text;
}

}  // namespace norva::tool
