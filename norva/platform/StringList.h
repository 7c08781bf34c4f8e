/// A list of text lines, also read as `name=value` entries.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include <norva/platform/Export.h>
#include <norva/platform/Persistent.h>

namespace norva {

/// Lines of text. A line is `name=value` at its first `=`, blanks belonging to both sides; a line
/// without `=` has no name. Searches ignore case and give the first match.
class NORVA_EXPORT TStringList : public TPersistent {
 public:
  TStringList() = default;
  TStringList(std::initializer_list<std::string_view> Lines);
  TStringList(const TStringList&) = default;
  TStringList& operator=(const TStringList&) = default;

  int Count() const { return static_cast<int>(Lines_.size()); }
  bool Empty() const { return Lines_.empty(); }
  /// Throws EListError when `Index` is out of range, as do all operations by index.
  const std::string& operator[](int Index) const;
  std::string& operator[](int Index);

  /// Returns the index of the new line.
  int Add(std::string_view Line);
  /// Before the line `Index`; `Index` may be Count.
  void Insert(int Index, std::string_view Line);
  void Delete(int Index);
  void Clear() { Lines_.clear(); }
  /// Copies the lines of another TStringList.
  void Assign(const TPersistent& Source) override;
  std::string_view ClassName() const override { return "TStringList"; }

  /// Index of the first line equal to `Line`, or -1.
  int IndexOf(std::string_view Line) const;
  /// Index of the first entry named `Name`, or -1.
  int IndexOfName(std::string_view Name) const;
  /// The name of line `Index`; empty when the line has no `=`.
  std::string Names(int Index) const;
  /// What follows the first `=` of line `Index`; empty when there is none.
  std::string ValueFromIndex(int Index) const;
  /// The value of the first entry named `Name`, else empty.
  std::string Values(std::string_view Name) const;
  /// Replaces the first match's value or adds an entry; an empty value deletes the entry.
  void SetValue(std::string_view Name, std::string_view Value);

  /// Every line followed by CR LF.
  std::string Text() const;
  /// Splits at CR LF, LF or CR; an ending line end adds no empty line.
  void SetText(std::string_view Text);

  std::vector<std::string>::const_iterator begin() const { return Lines_.begin(); }
  std::vector<std::string>::const_iterator end() const { return Lines_.end(); }

 private:
  std::vector<std::string> Lines_;
};

}  // namespace norva
