/// Clipboard exporter.
///
///   Title
///   Header lines, an empty line
///   captions     a;b;   or, fixed,   each cell padded on the left to its column's width
///   records
///   Footer lines, an empty line
///
/// Every line ends in CR LF; every cell, the last one too, is followed by the separator.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <norva/core/NorvaBases.h>
#include <norva/platform/Enums.h>
#include <norva/platform/Export.h>

namespace norva {

enum TLumClipboardExportType : std::uint8_t {
  etSeparated,
  etFixed,
};
inline constexpr std::string_view TLumClipboardExportTypeNames[] = {"etSeparated", "etFixed"};
constexpr TEnumInfo EnumInfo(TLumClipboardExportType) {
  return {"TLumClipboardExportType", TLumClipboardExportTypeNames};
}

/// Puts the records of a source on the clipboard as text.
class NORVA_EXPORT TNorvaClipboard : public TNorvaMemory {
 public:
  explicit TNorvaClipboard(TComponent* Owner = nullptr);
  std::string_view ClassName() const override { return "TNorvaClipboard"; }
  const TPropertyList& Properties() const override;

  /// Behind every cell of etSeparated. Initially the locale's list separator.
  char Separator;
  /// Stored for hosts; nothing here reads it.
  std::int32_t Spacing = 2;
  /// The program with which a host may show the clipboard; nothing here starts it.
  std::string ClipboardViewer = "Clipbrd.exe";

  TLumClipboardExportType ExportType() const { return ExportType_; }
  /// Also sets AutoCalcColWidth: on for etFixed, off for etSeparated.
  void SetExportType(TLumClipboardExportType Value);

 protected:
  void BeginExport() override;
  void WriteCaptionRow() override;
  void GetColCaption(int Index, std::string& Text) override;
  void WriteDataRow() override;
  void GetColData(int Index, bool NeedFormat, std::string& Text) override;
  void EndExport() override;

 private:
  void EndCell(int Index, std::size_t Start, std::string& Text) const;

  TLumClipboardExportType ExportType_ = etSeparated;
};

}  // namespace norva
