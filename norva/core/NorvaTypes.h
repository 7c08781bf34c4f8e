/// Enumerations and event types that the engine and all formats share.
#pragma once

#include <bitset>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include <norva/platform/Colors.h>
#include <norva/platform/Enums.h>
#include <norva/platform/Fonts.h>
#include <norva/platform/Persistent.h>

namespace norva {

/// The kind of source an exporter reads from.
enum TNorvaSource : std::uint8_t {
  esDataSet,
  esListView,
  esDBGrid,  ///< a data-aware grid, through its data source's data set
  esStringGrid,
};
inline constexpr std::string_view TNorvaSourceNames[] = {"esDataSet", "esListView", "esDBGrid",
                                                         "esStringGrid"};
constexpr TEnumInfo EnumInfo(TNorvaSource) { return {"TNorvaSource", TNorvaSourceNames}; }

/// The value type of a column; decides its default format and alignment.
enum TNorvaColType : std::uint8_t {
  ectInteger,
  ectFloat,
  ectCurrency,
  ectDate,
  ectTime,
  ectDateTime,
  ectString,
  ectBoolean,
  ectUnknown,
};
inline constexpr std::string_view TNorvaColTypeNames[] = {"ectInteger", "ectFloat",   "ectCurrency",
                                                          "ectDate",    "ectTime",    "ectDateTime",
                                                          "ectString",  "ectBoolean", "ectUnknown"};
constexpr TEnumInfo EnumInfo(TNorvaColType) { return {"TNorvaColType", TNorvaColTypeNames}; }

enum TNorvaColAlign : std::uint8_t { ecaLeft, ecaCenter, ecaRight };
inline constexpr std::string_view TNorvaColAlignNames[] = {"ecaLeft", "ecaCenter", "ecaRight"};
constexpr TEnumInfo EnumInfo(TNorvaColAlign) { return {"TNorvaColAlign", TNorvaColAlignNames}; }

enum TNorvaPageOrientation : std::uint8_t { poPortrait, poLandscape };
inline constexpr std::string_view TNorvaPageOrientationNames[] = {"poPortrait", "poLandscape"};
constexpr TEnumInfo EnumInfo(TNorvaPageOrientation) {
  return {"TNorvaPageOrientation", TNorvaPageOrientationNames};
}

/// The bytes that a format must escape.
using TSpecialCharacters = std::bitset<256>;

// Events are called on the exporting thread. `Sender` is the exporter, but for OnFetchedRecord in
// the width pass, where it is the exporter's column list. An exception that a handler throws ends
// the export and reaches the caller of Execute.
using TNotifyEvent = std::function<void(TObject& Sender)>;
/// `RecNo` counts as each event says.
using TExportedRecordEvent = std::function<void(TObject& Sender, std::int32_t RecNo)>;
/// What the handler leaves in `Text` is written.
using TGetExportTextEvent =
    std::function<void(TObject& Sender, std::int32_t ColNo, std::string& Text)>;
/// `Value` is the formatted cell text; alignment, font and background may be changed.
using TGetCellParamsEvent = std::function<void(
    TObject& Sender, std::int32_t RecNo, std::int32_t ColNo, const std::string& Value,
    TNorvaColAlign& Align, TFont& AFont, TColor& Background)>;
/// `Text` is what the format writes as it stands: a cell of column `ColNo`, or, with `ColNo` -1, a
/// column's name or caption.
using TUnsafeTextEvent =
    std::function<void(TObject& Sender, std::int32_t ColNo, std::string_view Text)>;
/// `CanContinue` is false when the export was aborted; setting it true lets it go on.
using TNorvaStopEvent = std::function<void(TObject& Sender, bool& CanContinue)>;

}  // namespace norva
