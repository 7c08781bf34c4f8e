/// Between the settings of an export and the keys of an INI file.
#pragma once

#include <concepts>
#include <cstdint>
#include <limits>
#include <string>

#include <norva/core/Norvaconsts.h>
#include <norva/platform/Colors.h>
#include <norva/platform/Enums.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/IniFile.h>
#include <norva/platform/Numbers.h>
#include <norva/platform/Sets.h>
#include <norva/platform/StringList.h>

namespace norva::internal {

/// `line0`, `line1` ...
inline std::string Numbered(const char* Name, int Number) { return Name + std::to_string(Number); }

/// Writes settings into an INI file. Its operations have the same names as TOptionsLoader's, so
/// that one list of keys serves both.
class TOptionsSaver {
 public:
  explicit TOptionsSaver(TIniFile& File) : File_(File) {}

  void Section(const char* Name) { Section_ = Name; }
  void Text(const char* Key, const std::string& Value) { File_.WriteString(Section_, Key, Value); }
  void Character(const char* Key, char Value) { Text(Key, std::string(1, Value)); }
  void Boolean(const char* Key, bool Value) { File_.WriteBool(Section_, Key, Value); }
  void Integer(const char* Key, std::int32_t Value) { File_.WriteInteger(Section_, Key, Value); }
  void Count(const char* Key, std::int32_t Value) { Integer(Key, Value); }
  void Color(const char* Key, TColor Value) { Text(Key, ColorToString(Value)); }
  template <NamedEnum TEnum>
  void Member(const char* Key, TEnum Value) {
    Integer(Key, Value);
  }
  template <class TValue>
  void Element(const char* Key, TValue Value, const TSet<TValue>& Values) {
    Boolean(Key, Values.Contains(Value));
  }
  /// A value with a setter, which the loader calls.
  template <class TSetter>
  void Text(const char* Key, const std::string& Value, TSetter) {
    Text(Key, Value);
  }

  /// Attributes of a tag, on one line.
  void Attributes(const char* Key, const TStringList& Lines) {
    std::string text;
    for (const std::string& line : Lines) text += (text.empty() ? "" : " ") + line;
    Text(Key, text);
  }
  /// A section of numbered lines.
  void Lines(const char* Name, const char* Key, const TStringList& Lines) {
    for (int i = 0; i < Lines.Count(); ++i) File_.WriteString(Name, Numbered(Key, i), Lines[i]);
  }
  /// A section of `name=value` lines. Of equal names the first counts, in the list and in the file.
  void Entries(const char* Name, const TStringList& List) {
    for (int i = 0; i < List.Count(); ++i) {
      const std::string key = List.Names(i);
      if (key.empty() || File_.ValueExists(Name, key)) continue;
      File_.WriteString(Name, key, List.ValueFromIndex(i));
    }
  }
  /// The same for whole numbers; throws EConvertError for what is none.
  void Integers(const char* Name, const TStringList& List) {
    Entries(Name, List);
    for (const std::string& key : File_.ReadSectionKeys(Name)) {
      File_.WriteInteger(Name, key, StrToInt(File_.ReadString(Name, key, {})));
    }
  }

 private:
  TIniFile& File_;
  std::string Section_;
};

/// Reads them back; each stays as it is when its key is missing.
class TOptionsLoader {
 public:
  explicit TOptionsLoader(const TIniFile& File) : File_(File) {}

  void Section(const char* Name) { Section_ = Name; }
  void Text(const char* Key, std::string& Value) { Value = Read(Key, Value); }
  void Character(const char* Key, char& Value) {
    const std::string text = Read(Key, std::string(1, Value));
    if (text.size() != 1) Fail(Key, "one character");
    Value = text.front();
  }
  void Boolean(const char* Key, bool& Value) {
    if (!Has(Key)) return;
    Value = File_.ReadBool(Section_, Key, true);
    if (Value != File_.ReadBool(Section_, Key, false)) Fail(Key, "1 or 0");
  }
  template <std::integral T>
  void Integer(const char* Key, T& Value, std::int32_t Min = std::numeric_limits<T>::min()) {
    std::int32_t number = Value;
    const std::int32_t max = std::numeric_limits<T>::max();
    const bool fits =
        !Has(Key) || (TryStrToInt(Read(Key), number) && number >= Min && number <= max);
    if (!fits) Fail(Key, Format("a whole number from %d to %d", Min, max));
    Value = static_cast<T>(number);
  }
  void Count(const char* Key, std::int32_t& Value) { Integer(Key, Value, 0); }
  void Color(const char* Key, TColor& Value) {
    try {
      const TColor color = StringToColor(Read(Key, ColorToString(Value)));
      if (color != Value) ColorsChanged_ = true;
      Value = color;
    } catch (const EConvertError&) {
      Fail(Key, "a colour as $00BBGGRR, #RRGGBB or a standard name");
    }
  }
  template <NamedEnum TEnum>
  void Member(const char* Key, TEnum& Value) {
    std::int32_t number = Value;
    const auto last = static_cast<std::int32_t>(EnumInfo(Value).Names.size()) - 1;
    const bool fits =
        !Has(Key) || (TryStrToInt(Read(Key), number) && number >= 0 && number <= last);
    if (!fits) Fail(Key, Format("a number from 0 to %d", last));
    Value = static_cast<TEnum>(number);
  }
  template <class TValue>
  void Element(const char* Key, TValue Value, TSet<TValue>& Values) {
    bool contains = Values.Contains(Value);
    Boolean(Key, contains);
    contains ? Values.Include(Value) : Values.Exclude(Value);
  }
  template <class TSetter>
  void Text(const char* Key, const std::string&, TSetter Set) {
    if (Has(Key)) Set(Read(Key));
  }

  void Attributes(const char* Key, TStringList& Lines) {
    if (Has(Key)) Lines.SetText(Read(Key));
  }
  void Lines(const char* Name, const char* Key, TStringList& Lines) {
    if (!File_.ValueExists(Name, Numbered(Key, 0))) return;
    Lines.Clear();
    for (int i = 0; File_.ValueExists(Name, Numbered(Key, i)); ++i) {
      Lines.Add(File_.ReadString(Name, Numbered(Key, i), {}));
    }
  }
  void Entries(const char* Name, TStringList& List) {
    for (const std::string& key : File_.ReadSectionKeys(Name)) {
      // SetValue would take an empty text for none.
      const std::string entry = key + "=" + File_.ReadString(Name, key, {});
      const int old = List.IndexOfName(key);
      if (old < 0) {
        List.Add(entry);
      } else {
        List[old] = entry;
      }
    }
  }
  void Integers(const char* Name, TStringList& List) {
    Section(Name);
    for (const std::string& key : File_.ReadSectionKeys(Name)) {
      std::int32_t number = 0;
      Integer(key.c_str(), number);
    }
    Entries(Name, List);
  }

  /// Whether Color has changed a colour.
  bool ColorsChanged() const { return ColorsChanged_; }
  bool Has(const char* Key) const { return File_.ValueExists(Section_, Key); }
  std::string Read(const char* Key, const std::string& Default = {}) const {
    return File_.ReadString(Section_, Key, Default);
  }
  [[noreturn]] void Fail(const char* Key, const std::string& Expected) const {
    throw EIniError(MsgIniValue, Section_, Key, Read(Key), Expected);
  }

 private:
  const TIniFile& File_;
  std::string Section_;
  bool ColorsChanged_ = false;
};

}  // namespace norva::internal
