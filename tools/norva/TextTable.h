/// A table of texts with aligned columns, for standard output.
#pragma once

#include <string>
#include <vector>

namespace norva::tool {

class TTextTable {
 public:
  explicit TTextTable(std::vector<std::string> Titles) { Rows_.push_back(std::move(Titles)); }

  /// As many cells as there are titles, in the active code page.
  void Add(std::vector<std::string> Cells) { Rows_.push_back(std::move(Cells)); }
  /// The titles and all rows, two blanks between the columns. A column is as wide as its widest
  /// cell; one of whole numbers is aligned on the right.
  std::string Text() const;

 private:
  std::vector<std::vector<std::string>> Rows_;
};

}  // namespace norva::tool
