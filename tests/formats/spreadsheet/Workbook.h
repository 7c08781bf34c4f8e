/// Takes workbooks apart: the records of the stream "Workbook", and what cells and formats say.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <norva/platform/Format.h>
#include <norva/platform/Numbers.h>
#include <tests/Binary.h>

namespace norva::tests {

/// Character for character; above U+00FF as \uXXXX.
inline std::string Narrow(std::string_view Utf16) {
  std::string text;
  for (std::size_t i = 0; i + 1 < Utf16.size(); i += 2) {
    const std::uint64_t unit = NumberAt(Utf16, i);
    if (unit < 0x80) {
      text += static_cast<char>(unit);
    } else {
      text += "\\u" + HexNumber(unit, 4);
    }
  }
  return text;
}

/// The stream "Workbook", the first of its document.
inline std::string WorkbookStream(std::string_view File) {
  TCompoundReader reader(File);
  EXPECT_EQ(reader.Entries.at(1).Name, u"Workbook");
  return reader.Content(reader.Entries.at(1));
}

/// With blanks between; equal ones in a row as "00E0*16".
inline std::string Row(const std::vector<std::string>& Words) {
  std::string row;
  for (std::size_t i = 0; i < Words.size();) {
    std::size_t end = i;
    while (end < Words.size() && Words[end] == Words[i]) ++end;
    row += (i > 0 ? " " : "") + Words[i];
    if (end - i > 1) row += "*" + std::to_string(end - i);
    i = end;
  }
  return row;
}

struct TRecord {
  int Number;
  std::size_t Offset;
  std::string Body;
};

class TWorkbook {
 public:
  std::string Stream;
  std::vector<TRecord> Records;

  explicit TWorkbook(std::string_view File) : Stream(WorkbookStream(File)) {
    for (std::size_t at = 0; at < Stream.size();) {
      const std::size_t length = NumberAt(Stream, at + 2);
      EXPECT_LE(length, 8224U);
      Records.push_back(
          {static_cast<int>(NumberAt(Stream, at)), at, Stream.substr(at + 4, length)});
      at += 4 + length;
    }
    ReadStrings();
  }

  std::vector<std::string> Bodies(int Number) const {
    std::vector<std::string> bodies;
    for (const TRecord& record : Records) {
      if (record.Number == Number) bodies.push_back(record.Body);
    }
    return bodies;
  }
  std::string Body(int Number, std::size_t Index = 0) const { return Bodies(Number).at(Index); }

  /// The numbers of all records.
  std::string Order() const {
    std::vector<std::string> numbers;
    for (const TRecord& record : Records) {
      numbers.push_back(HexNumber(static_cast<unsigned>(record.Number), 4));
    }
    return Row(numbers);
  }

  /// The shared strings, read as the format says: a piece may begin with a byte of options.
  std::vector<std::string> Strings;

  /// The cells, a row a line: "B3 x16 12.5", BLANK as -, texts in '', TRUE, FALSE, SUM(3:5).
  std::string Cells() const {
    std::string text;
    std::uint64_t row = 0;
    for (const TRecord& record : Records) {
      const std::string cell = CellText(record);
      if (cell.empty()) continue;
      if (!text.empty()) text += NumberAt(record.Body, 0) == row ? " | " : "\n";
      row = NumberAt(record.Body, 0);
      text += Name(record.Body) + " x" + std::to_string(NumberAt(record.Body, 4)) + " " + cell;
    }
    return text;
  }

  /// FONT records from the fifth on: "5: Arial 10".
  std::string UserFonts() const {
    const std::vector<std::string> fonts = Bodies(0x0031);
    std::string text;
    for (std::size_t i = 4; i < fonts.size(); ++i) {
      text += (text.empty() ? "" : "/") + Narrow(fonts[i].substr(16)) + " " +
              std::to_string(NumberAt(fonts[i], 0) / 20);
    }
    return text;
  }
  /// FORMAT records: "50: #,##0".
  std::string UserFormats() const {
    std::string text;
    for (const std::string& body : Bodies(0x041E)) {
      text += (text.empty() ? "" : "/") + std::to_string(NumberAt(body, 0)) + ": " + body.substr(5);
    }
    return text;
  }
  /// XF records from 16 on, as font, number format and fill pattern: "16: f5 n50 p1".
  std::string UserXFs() const {
    const std::vector<std::string> xfs = Bodies(0x00E0);
    std::string text;
    for (std::size_t i = 16; i < xfs.size(); ++i) {
      text += Format("%s%d: f%d n%d p%d", text.empty() ? "" : "/", i, NumberAt(xfs[i], 0),
                     NumberAt(xfs[i], 2), NumberAt(xfs[i], 14, 4) >> 26);
    }
    return text;
  }

 private:
  static std::string Name(std::string_view Body) {
    const auto col = static_cast<int>(NumberAt(Body, 2));
    std::string name(1, static_cast<char>('A' + col % 26));
    if (col >= 26) name.insert(0, 1, static_cast<char>('A' + col / 26 - 1));
    return name + std::to_string(NumberAt(Body, 0) + 1);
  }
  std::string CellText(const TRecord& Record) const {
    const std::string& body = Record.Body;
    switch (Record.Number) {
      case 0x0201:
        return "-";
      case 0x00FD:
        return "'" + Strings.at(NumberAt(body, 6, 4)) + "'";
      case 0x0203:
        return FloatToStr(std::bit_cast<double>(NumberAt(body, 6, 8)));
      case 0x0205:
        return body.substr(6) == std::string("\1\0", 2) ? "TRUE" : "FALSE";
      case 0x0006: {
        const char* const functions[] = {"SUM", "AVERAGE", "MIN", "MAX"};
        return Format("%s(%d:%d)", functions[NumberAt(body, 33) - 4], NumberAt(body, 23) + 1,
                      NumberAt(body, 25) + 1);
      }
      default:
        return {};
    }
  }

  void ReadStrings() {
    std::vector<std::string> pieces;
    for (const TRecord& record : Records) {
      if (record.Number == 0x00FC || record.Number == 0x003C) pieces.push_back(record.Body);
    }
    if (pieces.empty()) return;
    std::size_t piece = 0, at = 8;
    const std::uint64_t count = NumberAt(pieces[0], 4, 4);
    while (Strings.size() < count) {
      if (at == pieces.at(piece).size()) ++piece, at = 0;
      std::size_t left = 2 * NumberAt(pieces.at(piece), at);
      EXPECT_EQ(pieces[piece].at(at + 2), 1);
      at += 3;
      std::string text;
      for (;;) {
        const std::size_t here = std::min(left, pieces[piece].size() - at);
        EXPECT_EQ(here % 2, 0U) << "a piece ends inside a character";
        text += pieces[piece].substr(at, here);
        at += here, left -= here;
        if (left == 0) break;
        EXPECT_EQ(pieces.at(++piece).at(0), 1);
        at = 1;
      }
      Strings.push_back(Narrow(text));
    }
    EXPECT_EQ(at, pieces[piece].size());
    EXPECT_EQ(piece + 1, pieces.size());
  }
};

}  // namespace norva::tests
