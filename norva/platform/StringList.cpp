#include <norva/platform/StringList.h>

#include <utility>

#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>

namespace norva {

namespace {

void CheckIndex(int Index, int Count) {
  if (Index < 0 || Index >= Count) throw EListError(MsgListIndex, Index);
}

}  // namespace

TStringList::TStringList(std::initializer_list<std::string_view> Lines)
    : Lines_(Lines.begin(), Lines.end()) {}

const std::string& TStringList::operator[](int Index) const {
  CheckIndex(Index, Count());
  return Lines_[static_cast<std::size_t>(Index)];
}

std::string& TStringList::operator[](int Index) {
  CheckIndex(Index, Count());
  return Lines_[static_cast<std::size_t>(Index)];
}

int TStringList::Add(std::string_view Line) {
  Lines_.emplace_back(Line);
  return Count() - 1;
}

void TStringList::Insert(int Index, std::string_view Line) {
  CheckIndex(Index, Count() + 1);
  Lines_.insert(Lines_.begin() + Index, std::string(Line));
}

void TStringList::Delete(int Index) {
  CheckIndex(Index, Count());
  Lines_.erase(Lines_.begin() + Index);
}

void TStringList::Assign(const TPersistent& Source) {
  if (const auto* list = dynamic_cast<const TStringList*>(&Source)) {
    Lines_ = list->Lines_;
  } else {
    TPersistent::Assign(Source);
  }
}

int TStringList::IndexOf(std::string_view Line) const {
  for (int i = 0; i < Count(); ++i) {
    if (SameText((*this)[i], Line)) return i;
  }
  return -1;
}

int TStringList::IndexOfName(std::string_view Name) const {
  for (int i = 0; i < Count(); ++i) {
    const std::string_view line = (*this)[i];
    const std::size_t equals = line.find('=');
    if (equals != line.npos && SameText(line.substr(0, equals), Name)) return i;
  }
  return -1;
}

std::string TStringList::Names(int Index) const {
  const std::string& line = (*this)[Index];
  const std::size_t equals = line.find('=');
  return equals == line.npos ? std::string() : line.substr(0, equals);
}

std::string TStringList::ValueFromIndex(int Index) const {
  const std::string& line = (*this)[Index];
  const std::size_t equals = line.find('=');
  return equals == line.npos ? std::string() : line.substr(equals + 1);
}

std::string TStringList::Values(std::string_view Name) const {
  const int index = IndexOfName(Name);
  return index < 0 ? std::string() : ValueFromIndex(index);
}

void TStringList::SetValue(std::string_view Name, std::string_view Value) {
  const int index = IndexOfName(Name);
  if (Value.empty()) {
    if (index >= 0) Delete(index);
    return;
  }
  std::string line = index < 0 ? std::string(Name) : Names(index);
  line.append(1, '=').append(Value);
  if (index < 0) {
    Lines_.push_back(std::move(line));
  } else {
    (*this)[index] = std::move(line);
  }
}

std::string TStringList::Text() const {
  std::string text;
  for (const std::string& line : Lines_) text.append(line).append("\r\n");
  return text;
}

void TStringList::SetText(std::string_view Text) {
  std::vector<std::string> lines;
  while (!Text.empty()) {
    const std::size_t end = Text.find_first_of("\r\n");
    lines.emplace_back(Text.substr(0, end));
    if (end == Text.npos) break;
    Text.remove_prefix(end + (Text.substr(end, 2) == "\r\n" ? 2 : 1));
  }
  Lines_ = std::move(lines);  // only now: Text may be part of a line of this list
}

}  // namespace norva
