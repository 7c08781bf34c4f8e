#include <norva/platform/IniFile.h>

#include <algorithm>
#include <exception>
#include <utility>

#include <norva/platform/CodePages.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>
#include <norva/platform/Numbers.h>
#include <norva/platform/internal/WholeFile.h>

namespace norva {

namespace {

constexpr std::string_view Blanks = " \t";
constexpr std::string_view LineEnd = "\r\n";
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

std::string_view Trimmed(std::string_view Text) {
  const std::size_t first = Text.find_first_not_of(Blanks);
  if (first == Text.npos) return {};
  return Text.substr(first, Text.find_last_not_of(Blanks) - first + 1);
}

bool IsQuoted(std::string_view Value) {
  return Value.size() >= 2 && Value.front() == Value.back() &&
         (Value.front() == '"' || Value.front() == '\'');
}

std::string_view Unquoted(std::string_view Value) {
  return IsQuoted(Value) ? Value.substr(1, Value.size() - 2) : Value;
}

/// The value as the file holds it: in quotes when reading would take something off it.
std::string Quoted(const std::string& Value) {
  const bool isSafe = Trimmed(Value).size() == Value.size() && !IsQuoted(Value);
  return isSafe ? Value : '"' + Value + '"';
}

void CheckTexts(std::string_view Section, std::string_view Key, std::string_view Value) {
  for (std::string_view text : {Section, Key, Value}) {
    if (text.find_first_of(LineEnd) != text.npos) throw EIniError(MsgIniLineBreak, Section, Key);
  }
  if (Key.empty() || Key.find('=') != Key.npos || Trimmed(Key).size() != Key.size() ||
      Key.front() == ';' || Key.front() == '[') {
    throw EIniError(MsgIniKey, Key, Section);
  }
}

}  // namespace

bool TIniFile::TSection::Is(std::string_view OtherName) const {
  return SameText(Name, Trimmed(OtherName));
}

bool TIniFile::TLine::IsEmpty() const { return !IsKey && Text.empty(); }

bool TIniFile::TLine::IsComment() const { return !IsKey && Trimmed(Text).starts_with(';'); }

bool TIniFile::TSection::HasKeys() const {
  return std::any_of(Lines.begin(), Lines.end(), [](const TLine& line) { return line.IsKey; });
}

TIniFile::TIniFile(std::string FileName)
    : FileName_(std::move(FileName)), Sections_(1), Exceptions_(std::uncaught_exceptions()) {
  Load(internal::ReadWholeFile(FileName_));
}

TIniFile::~TIniFile() {
  if (!Changed_ || std::uncaught_exceptions() > Exceptions_) return;
  try {
    UpdateFile();
  } catch (const std::exception&) {  // a destructor has nobody to tell
  }
}

void TIniFile::Load(std::string_view Text) {
  if (Text.starts_with(ByteOrderMark)) Text.remove_prefix(ByteOrderMark.size());
  TStringList lines;
  lines.SetText(Text);
  for (const std::string& line : lines) LoadLine(line);
  CloseLastSection();
}

void TIniFile::LoadLine(const std::string& Line) {
  const std::string_view text = Trimmed(Line);
  const std::size_t bracket = text.rfind(']');
  const std::size_t equals = text.find('=');
  if (text.starts_with('[') && bracket != text.npos) {
    AddSection(Trimmed(text.substr(1, bracket - 1)));
  } else if (text.empty() || text.starts_with(';') || equals == text.npos) {
    Sections_.back().Lines.push_back({false, {}, text.empty() ? std::string() : Line});
  } else {
    const std::string_view value = Unquoted(Trimmed(text.substr(equals + 1)));
    Sections_.back().Lines.push_back(
        {true, std::string(Trimmed(text.substr(0, equals))), std::string(value)});
  }
}

void TIniFile::AddSection(std::string_view Name) {
  TSection section;
  section.Name = Name;
  // A comment right above a header, set apart from what stands before it, is about that header.
  std::vector<TLine>& above = Sections_.back().Lines;
  const auto comment = std::find_if_not(above.rbegin(), above.rend(), [](const TLine& line) {
                         return line.IsComment();
                       }).base();
  if (comment != above.begin() && comment[-1].IsEmpty()) {
    section.Heading.assign(comment, above.end());
    above.erase(comment, above.end());
  }
  CloseLastSection();
  Sections_.push_back(std::move(section));
}

/// Drops the empty lines at the end of a section; FileText puts one between two sections.
void TIniFile::CloseLastSection() {
  std::vector<TLine>& lines = Sections_.back().Lines;
  if (!IsShown(Sections_.back())) return;  // a comment at the top of the file keeps its distance
  while (!lines.empty() && lines.back().IsEmpty()) lines.pop_back();
}

/// What stands above all headers is a section only when it holds keys.
bool TIniFile::IsShown(const TSection& Section) const {
  return &Section != &Sections_.front() || Section.HasKeys();
}

std::string TIniFile::ReadString(std::string_view Section, std::string_view Key,
                                 std::string_view Default) const {
  const TLine* line = FindLine(Section, Key);
  return line != nullptr ? line->Text : std::string(Default);
}

std::int32_t TIniFile::ReadInteger(std::string_view Section, std::string_view Key,
                                   std::int32_t Default) const {
  const TLine* line = FindLine(Section, Key);
  return line != nullptr ? StrToIntDef(line->Text, Default) : Default;
}

bool TIniFile::ReadBool(std::string_view Section, std::string_view Key, bool Default) const {
  const std::string value = ReadString(Section, Key, {});
  std::int32_t number = 0;
  if (TryStrToInt(value, number)) return number != 0;
  if (SameText(value, "true")) return true;
  if (SameText(value, "false")) return false;
  return Default;
}

const TIniFile::TLine* TIniFile::FindLine(std::string_view Section, std::string_view Key) const {
  for (const TSection& section : Sections_) {
    if (!section.Is(Section)) continue;
    for (const TLine& line : section.Lines) {
      if (line.IsKey && SameText(line.Key, Key)) return &line;
    }
  }
  return nullptr;
}

void TIniFile::WriteString(std::string_view Section, std::string_view Key, std::string_view Value) {
  CheckTexts(Section, Key, Value);
  // The lines are this object's own, so the one found may be changed.
  if (auto* line = const_cast<TLine*>(FindLine(Section, Key))) {
    if (line->Text == Value) return;
    line->Text = Value;
  } else {
    LastSection(Section).Lines.push_back({true, std::string(Key), std::string(Value)});
  }
  Changed_ = true;
}

void TIniFile::WriteInteger(std::string_view Section, std::string_view Key, std::int32_t Value) {
  WriteString(Section, Key, std::to_string(Value));
}

void TIniFile::WriteBool(std::string_view Section, std::string_view Key, bool Value) {
  WriteString(Section, Key, Value ? "1" : "0");
}

/// The last part of a section that stands in several, or a new section at the end of the file.
TIniFile::TSection& TIniFile::LastSection(std::string_view Name) {
  const auto found = std::find_if(Sections_.rbegin(), Sections_.rend(),
                                  [&](const TSection& section) { return section.Is(Name); });
  if (found != Sections_.rend()) return *found;
  AddSection(Trimmed(Name));
  return Sections_.back();
}

TStringList TIniFile::ReadSections() const {
  TStringList names;
  for (const TSection& section : Sections_) {
    if (IsShown(section) && names.IndexOf(section.Name) < 0) names.Add(section.Name);
  }
  return names;
}

TStringList TIniFile::ReadSectionKeys(std::string_view Section) const {
  TStringList keys;
  for (const TSection& section : Sections_) {
    if (!section.Is(Section)) continue;
    for (const TLine& line : section.Lines) {
      if (line.IsKey && keys.IndexOf(line.Key) < 0) keys.Add(line.Key);
    }
  }
  return keys;
}

bool TIniFile::SectionExists(std::string_view Section) const {
  return std::any_of(Sections_.begin(), Sections_.end(), [&](const TSection& section) {
    return section.Is(Section) && IsShown(section);
  });
}

bool TIniFile::ValueExists(std::string_view Section, std::string_view Key) const {
  return FindLine(Section, Key) != nullptr;
}

void TIniFile::EraseSection(std::string_view Section) {
  if (!SectionExists(Section)) return;
  if (Sections_.front().Is(Section)) Sections_.front().Lines.clear();
  Sections_.erase(std::remove_if(Sections_.begin() + 1, Sections_.end(),
                                 [&](const TSection& section) { return section.Is(Section); }),
                  Sections_.end());
  Changed_ = true;
}

void TIniFile::DeleteKey(std::string_view Section, std::string_view Key) {
  for (TSection& section : Sections_) {
    if (!section.Is(Section)) continue;
    // All of them: behind the first of equal keys the second would come to light.
    const auto isKey = [&](const TLine& line) { return line.IsKey && SameText(line.Key, Key); };
    if (std::erase_if(section.Lines, isKey) > 0) Changed_ = true;
  }
}

void TIniFile::UpdateFile() {
  internal::ReplaceFile(FileName_, FileText());
  Changed_ = false;
}

std::string TIniFile::FileText() const {
  std::string text;
  const auto putLine = [&text](const TLine& line) {
    if (line.IsKey) text.append(line.Key).append(1, '=');
    text.append(line.IsKey ? Quoted(line.Text) : line.Text).append(LineEnd);
  };
  bool isFirst = true;
  for (const TSection& section : Sections_) {
    if (&section != &Sections_.front()) {
      if (!isFirst) text.append(LineEnd);
      for (const TLine& line : section.Heading) putLine(line);
      text.append(1, '[').append(section.Name).append(1, ']').append(LineEnd);
    }
    for (const TLine& line : section.Lines) putLine(line);
    if (IsShown(section)) isFirst = false;
  }
  return text;
}

}  // namespace norva
