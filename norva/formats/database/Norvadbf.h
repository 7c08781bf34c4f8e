/// DBF exporter: a dBASE III table without memo file.
///
///   TNorvaDBF Export;
///   Export.DataSet = &Orders;
///   Export.FileName = "orders.dbf";
///   Export.Formats.SetIntegerFormat("0");        // see below
///   Export.Formats.SetFloatFormat("0.0000");
///   Export.Formats.SetCurrencyFormat("0.0000");
///   Export.Formats.NullString.clear();
///   Export.Execute();
///
/// The file; numbers are little-endian:
///
///   header, 32 bytes      0x03, date, record count, header length, record length
///   descriptors           32 bytes for each field
///   0x0D
///   records               a blank (not deleted), then the fields, no separators
///   0x1A
///
/// A field is made of the column's caption and type; its bytes of the formatted cell text:
///
///   Integer               N 11      the text, right-aligned
///   Float, Currency       N 15.4    the number that the text is; empty is 0. Grouping and currency
///                                   symbol of the column's own picture do not count
///   Date, Time, DateTime  D 8       yyyymmdd of what StrToDateTime reads; empty stays blank
///   String                C Length  the text, cut
///   Boolean               L 1       T for TRUE, F for FALSE anywhere in the text, else blank
///   Unknown               C 10      the text, cut
///
/// What a host does: pictures without grouping for integers, which are written as they are
/// formatted; an empty NullString, for "null" is neither a number nor a date; date pictures that
/// StrToDateTime reads; a ColumnsLength for texts whose field has no Size, since theirs is 0 bytes
/// long. It checks Overflows and CutTexts. Readers learn nothing of the code page.
///
/// What the format cannot hold:
/// - Names longer than 10 bytes. Captions are cut and upper-cased, and nothing renames those that
///   are the same then. Such a name, or an empty one, is an OnUnsafeText.
/// - Times of day: a time alone is 30 December 1899.
/// - Null numbers: a null Float is 0.
/// - Texts longer than 254 bytes. Lengths are bytes in UTF-8, too; a cut never splits a character.
/// - Numbers wider than their field, which become `*` throughout: integers of more than 11
///   characters, others of more than 10 digits (9 below 0) before the point; infinities.
/// - More than four decimals.
/// - More than 255 fields, which is an error before anything is written.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <norva/core/NorvaBases.h>
#include <norva/platform/Export.h>

namespace norva {

/// Where a table keeps its memo texts. For derived classes: nothing here writes any.
enum TMemoType : std::uint8_t { mtNone, mtDBT, mtFPT };

/// What the file says of a field, laid out as there.
struct TDBFFieldDescriptor {
  std::array<char, 11> Name{};     ///< ends with a zero
  char FieldType = 0;              ///< C, N, D or L
  std::uint32_t Displacement = 0;  ///< the lengths of all fields before
  std::uint8_t Length = 0;         ///< in bytes
  std::uint8_t Decimals = 0;
  std::array<char, 14> Reserved{};
};
static_assert(sizeof(TDBFFieldDescriptor) == 32);

/// Writes a table to a stream that can seek. The record count in the header is that of the records
/// written at every moment.
class NORVA_EXPORT TLumDBFWriter : public TNorvaWriter {
 public:
  static constexpr int MaxFields = 255;

  using TNorvaWriter::TNorvaWriter;

  void AddFieldDef(const TDBFFieldDescriptor& Descriptor) { Fields_.push_back(Descriptor); }
  /// Writes the header and the descriptors. Throws Exception, with nothing written, when there are
  /// more than MaxFields.
  void CreateDBF();
  /// Writes one field of the current record; with field 0 a new record begins. The fields of a
  /// record come in order. Throws EConvertError, with nothing written, for a D value that is no
  /// date.
  void WriteData(int FieldIndex, std::string_view Value);

  // The same for a whole record: RecordLength blanks, into which its fields are encoded in place.
  std::uint32_t RecordLength() const { return RecordLength_; }
  const TDBFFieldDescriptor& FieldDef(int FieldIndex) const {
    return Fields_[static_cast<std::size_t>(FieldIndex)];
  }
  /// Puts a value into the blanks of its field. False when it does not fit: a C value that is cut,
  /// or an N value shown as `*`. Throws as WriteData does.
  bool EncodeField(int FieldIndex, std::string_view Value, char* Target) const;
  void WriteRecord(std::string_view Record);

 private:
  void CountRecord();

  std::array<char, 32> Header_{};
  std::vector<TDBFFieldDescriptor> Fields_;
  std::uint32_t RecordLength_ = 0;
  std::int64_t Start_ = 0;   // of the header in the stream
  std::uint32_t Count_ = 0;  // of records
};

/// Writes the records of a source as a DBF table.
class NORVA_EXPORT TNorvaDBF : public TNorvaText {
 public:
  using TNorvaText::TNorvaText;
  std::string_view ClassName() const override { return "TNorvaDBF"; }
  const TPropertyList& Properties() const override;

  // ColumnsLength, published here, gives text columns their field lengths, whatever the source.
  // On purpose: only the low 8 bits of a length count, so 256 is 0.

  /// N values of the last export that were wider than their fields and are `*` there.
  std::int64_t Overflows() const { return Overflows_; }
  /// C values of the last export that were longer than their fields and are cut there.
  std::int64_t CutTexts() const { return CutTexts_; }

 protected:
  TNorvaWriterClass GetWriterClass() const override;
  void BeginExport() override;
  /// The thread's decimal separator is a point from here on, until AfterExport or, after a failure,
  /// EndExport.
  bool CopiesTexts() const override;
  void BeforeExport() override;
  void WriteDataRow() override;
  void AfterExport() override;
  void EndExport() override;

  TLumDBFWriter& GetWriter() const;

 private:
  TDBFFieldDescriptor FieldDef(int Index);
  void CheckName(std::string_view FieldName, int Index, std::vector<std::string>& Names);
  void GetNumberText(int Index);
  void RestoreSeparator();

  std::string Text_;                      // of the cell under way
  std::optional<char> DecimalSeparator_;  // the thread's own, while an export has changed it
  std::int64_t Overflows_ = 0;
  std::int64_t CutTexts_ = 0;
};

}  // namespace norva
