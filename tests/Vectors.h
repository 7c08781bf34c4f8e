/// Reads the tables of tests/vectors: one header line, fields separated by TAB, no quoting; `\t`,
/// `\n`, `\r` and `\\` stand for the characters, blanks count.
#pragma once

#include <fstream>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <norva/platform/Locale.h>

namespace norva::tests {

/// One row: its fields by column name, and where it stands.
struct TVector {
  std::map<std::string, std::string> Fields;
  std::string Place;
  const std::string& operator[](const std::string& Column) const { return Fields.at(Column); }
};

inline std::string Unescape(std::string_view Field) {
  constexpr std::string_view letters = "tnr\\", characters = "\t\n\r\\";
  std::string text;
  for (std::size_t i = 0; i < Field.size(); ++i) {
    const std::size_t letter =
        Field[i] == '\\' && i + 1 < Field.size() ? letters.find(Field[i + 1]) : letters.npos;
    text += letter == letters.npos ? Field[i] : characters[letter];
    if (letter != letters.npos) ++i;
  }
  return text;
}

inline std::vector<std::string> Split(std::string_view Text, char Separator) {
  std::vector<std::string> parts(1);
  for (const char c : Text) {
    if (c == Separator) {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

/// All rows of `tests/vectors/<Name>.tsv`. Fails the test when the file is missing or empty.
inline std::vector<TVector> ReadVectors(const std::string& Name) {
  std::ifstream file(std::string(NORVA_TEST_VECTORS) + "/" + Name + ".tsv", std::ios::binary);
  std::vector<TVector> rows;
  std::string line;
  if (!std::getline(file, line)) {
    ADD_FAILURE() << "no vectors: " << Name;
    return rows;
  }
  const std::vector<std::string> columns = Split(line, '\t');
  for (int number = 2; std::getline(file, line); ++number) {
    const std::vector<std::string> fields = Split(line, '\t');
    TVector row;
    row.Place = Name + ".tsv line " + std::to_string(number);
    for (std::size_t i = 0; i < columns.size(); ++i) {
      row.Fields[columns[i]] = i < fields.size() ? Unescape(fields[i]) : std::string();
    }
    rows.push_back(row);
  }
  EXPECT_FALSE(rows.empty()) << Name;
  return rows;
}

/// The settings that `locales.tsv` lists under `Name`.
inline TFormatSettings VectorLocale(const std::string& Name) {
  const auto split = [](const std::string& list, auto& target) {
    const std::vector<std::string> items = Split(list, '|');
    for (std::size_t i = 0; i < items.size(); ++i) target.at(i) = items[i];
  };
  for (const TVector& row : ReadVectors("locales")) {
    if (row["name"] != Name) continue;
    TFormatSettings settings;
    settings.DecimalSeparator = row["decimal"].at(0);
    settings.ThousandSeparator = row["thousand"];
    settings.ListSeparator = row["list"].at(0);
    settings.DateSeparator = row["date_sep"].at(0);
    settings.TimeSeparator = row["time_sep"].at(0);
    settings.CurrencyString = row["currency"];
    settings.ShortDateFormat = row["short_date"];
    settings.LongDateFormat = row["long_date"];
    settings.ShortTimeFormat = row["short_time"];
    settings.LongTimeFormat = row["long_time"];
    settings.TimeAMString = row["am"];
    settings.TimePMString = row["pm"];
    split(row["short_months"], settings.ShortMonthNames);
    split(row["long_months"], settings.LongMonthNames);
    split(row["short_days"], settings.ShortDayNames);
    split(row["long_days"], settings.LongDayNames);
    return settings;
  }
  ADD_FAILURE() << "no locale " << Name;
  return {};
}

/// Gives a test locale settings of its own and restores the thread's afterwards.
class TLocaleScope {
 public:
  explicit TLocaleScope(const TFormatSettings& Settings) : Saved_(FormatSettings()) {
    FormatSettings() = Settings;
  }
  ~TLocaleScope() { FormatSettings() = Saved_; }
  TLocaleScope(const TLocaleScope&) = delete;
  TLocaleScope& operator=(const TLocaleScope&) = delete;

 private:
  TFormatSettings Saved_;
};

}  // namespace norva::tests
