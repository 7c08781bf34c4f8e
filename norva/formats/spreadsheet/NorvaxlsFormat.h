/// How the cells of a workbook look: fonts, borders, fills, alignment, and the palette of 40
/// colours through which every colour is expressed.
///
///   Export.Options.CaptionsFormat.Fill.Pattern = ptSolid;
///   Export.Options.CaptionsFormat.Fill.Background = clrPaleBlue;
///   Export.FieldFormats.Add().FieldName = "Price";
///
/// Every class here has three operations of one meaning: SetDefault restores the values a new
/// object has, Assign copies all published values and throws EConvertError for an object of an
/// unrelated class, and IsEqual compares them and is false for null.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <norva/platform/Collection.h>
#include <norva/platform/Colors.h>
#include <norva/platform/Enums.h>
#include <norva/platform/Export.h>
#include <norva/platform/Fonts.h>
#include <norva/platform/IniFile.h>
#include <norva/platform/Persistent.h>
#include <norva/platform/Sets.h>

namespace norva {

class TxlsXFormat;

/// A colour of the palette. PaletteIndex and PaletteColor tell its number in the workbook and its
/// RGB value.
enum TxlsColor : std::uint8_t {
  clrBlack,
  clrBrown,
  clrOliveGreen,
  clrDarkGreen,
  clrDarkTeal,
  clrDarkBlue,
  clrIndigo,
  clrGray80Percent,
  clrDarkRed,
  clrOrange,
  clrDarkYellow,
  clrGreen,
  clrTeal,
  clrBlue,
  clrBlueGray,
  clrGray50Percent,
  clrRed,
  clrLightOrange,
  clrLime,
  clrSeaGreen,
  clrAqua,
  clrLightBlue,
  clrViolet,
  clrGray40Percent,
  clrPink,
  clrGold,
  clrYellow,
  clrBrightGreen,
  clrTurquoise,
  clrSkyBlue,
  clrPlum,
  clrGray25Percent,
  clrRose,
  clrTan,
  clrLightYellow,
  clrLihtGreen,  // On purpose: the published spelling.
  clrLightTurquoise,
  clrPaleBlue,
  clrLavender,
  clrWhite,
};
inline constexpr std::string_view TxlsColorNames[] = {"clrBlack",
                                                      "clrBrown",
                                                      "clrOliveGreen",
                                                      "clrDarkGreen",
                                                      "clrDarkTeal",
                                                      "clrDarkBlue",
                                                      "clrIndigo",
                                                      "clrGray80Percent",
                                                      "clrDarkRed",
                                                      "clrOrange",
                                                      "clrDarkYellow",
                                                      "clrGreen",
                                                      "clrTeal",
                                                      "clrBlue",
                                                      "clrBlueGray",
                                                      "clrGray50Percent",
                                                      "clrRed",
                                                      "clrLightOrange",
                                                      "clrLime",
                                                      "clrSeaGreen",
                                                      "clrAqua",
                                                      "clrLightBlue",
                                                      "clrViolet",
                                                      "clrGray40Percent",
                                                      "clrPink",
                                                      "clrGold",
                                                      "clrYellow",
                                                      "clrBrightGreen",
                                                      "clrTurquoise",
                                                      "clrSkyBlue",
                                                      "clrPlum",
                                                      "clrGray25Percent",
                                                      "clrRose",
                                                      "clrTan",
                                                      "clrLightYellow",
                                                      "clrLihtGreen",
                                                      "clrLightTurquoise",
                                                      "clrPaleBlue",
                                                      "clrLavender",
                                                      "clrWhite"};
constexpr TEnumInfo EnumInfo(TxlsColor) { return {"TxlsColor", TxlsColorNames}; }

/// Index of `Color` in the BIFF8 palette, 8 to 63.
NORVA_EXPORT int PaletteIndex(TxlsColor Color);
/// The RGB value of `Color`, as $00BBGGRR.
NORVA_EXPORT TColor PaletteColor(TxlsColor Color);
/// The first member with exactly that value; clrBlack when there is none, as for system colours.
NORVA_EXPORT TxlsColor PaletteMember(TColor Color);
/// The host's name of the member's value, "clRed" or "$00003399": ColorToString of it.
NORVA_EXPORT std::string XLSClr2Str(TxlsColor Color);
/// The member whose value `Text` names; clrBlack when the palette lacks it. Throws EConvertError
/// for text that is no colour.
NORVA_EXPORT TxlsColor Str2XLSClr(std::string_view Text);

enum TxlsFontStyle : std::uint8_t { xfsBold, xfsItalic, xfsStrikeOut };
inline constexpr std::string_view TxlsFontStyleNames[] = {"xfsBold", "xfsItalic", "xfsStrikeOut"};
constexpr TEnumInfo EnumInfo(TxlsFontStyle) { return {"TxlsFontStyle", TxlsFontStyleNames}; }
using TxlsFontStyles = TSet<TxlsFontStyle>;

/// The value is the BIFF escapement.
enum TxlsFontScript : std::uint8_t { fscNone, fscSuperscript, fscSubscript };
inline constexpr std::string_view TxlsFontScriptNames[] = {"fscNone", "fscSuperscript",
                                                           "fscSubscript"};
constexpr TEnumInfo EnumInfo(TxlsFontScript) { return {"TxlsFontScript", TxlsFontScriptNames}; }

enum TxlsFontUnderline : std::uint8_t {
  fulNone,
  fulSingle,
  fulDouble,
  fulSingleAccounting,
  fulDoubleAccounting,
};
inline constexpr std::string_view TxlsFontUnderlineNames[] = {
    "fulNone", "fulSingle", "fulDouble", "fulSingleAccounting", "fulDoubleAccounting"};
constexpr TEnumInfo EnumInfo(TxlsFontUnderline) {
  return {"TxlsFontUnderline", TxlsFontUnderlineNames};
}

/// The value is the BIFF code.
enum TxlsHorizontalAlignment : std::uint8_t { halGeneral, halLeft, halCenter, halRight, halFill };
inline constexpr std::string_view TxlsHorizontalAlignmentNames[] = {
    "halGeneral", "halLeft", "halCenter", "halRight", "halFill"};
constexpr TEnumInfo EnumInfo(TxlsHorizontalAlignment) {
  return {"TxlsHorizontalAlignment", TxlsHorizontalAlignmentNames};
}

/// The value is the BIFF code.
enum TxlsVerticalAlignment : std::uint8_t { valTop, valCenter, valBottom, valJustify };
inline constexpr std::string_view TxlsVerticalAlignmentNames[] = {"valTop", "valCenter",
                                                                  "valBottom", "valJustify"};
constexpr TEnumInfo EnumInfo(TxlsVerticalAlignment) {
  return {"TxlsVerticalAlignment", TxlsVerticalAlignmentNames};
}

/// The value is the BIFF8 line style.
enum TxlsBorderStyle : std::uint8_t {
  bstNone,
  bstThin,
  bstMedium,
  bstDashed,
  bstDotted,
  bstThick,
  bstDouble,
  bstHair,
  bstMediumDashed,
  bstDashDot,
  bstMediumDashDot,
  bstDashDotDot,
  bstMediumDashDotDot,
  bstSlantedDashDot,
};
inline constexpr std::string_view TxlsBorderStyleNames[] = {"bstNone",
                                                            "bstThin",
                                                            "bstMedium",
                                                            "bstDashed",
                                                            "bstDotted",
                                                            "bstThick",
                                                            "bstDouble",
                                                            "bstHair",
                                                            "bstMediumDashed",
                                                            "bstDashDot",
                                                            "bstMediumDashDot",
                                                            "bstDashDotDot",
                                                            "bstMediumDashDotDot",
                                                            "bstSlantedDashDot"};
constexpr TEnumInfo EnumInfo(TxlsBorderStyle) { return {"TxlsBorderStyle", TxlsBorderStyleNames}; }

/// The value is the BIFF8 fill pattern.
enum TxlsPattern : std::uint8_t {
  ptNone,
  ptSolid,
  ptChess,
  ptWhiteSpots,
  ptBlackSpots,
  ptBoldHorizontal,
  ptBoldVertical,
  ptBoldDiagRight,
  ptBoldDiagLeft,
  ptBoldChess,
  ptRingMail,
  ptThinGorizontal,  // On purpose: the published spelling.
  ptThinVertical,
  ptThinDiagLeft,
  ptThinDiagRight,
  ptCells,
  ptCrissCross,
  ptThinSpots,
  ptThinThinSpots,
};
inline constexpr std::string_view TxlsPatternNames[] = {
    "ptNone",           "ptSolid",          "ptChess",         "ptWhiteSpots",   "ptBlackSpots",
    "ptBoldHorizontal", "ptBoldVertical",   "ptBoldDiagRight", "ptBoldDiagLeft", "ptBoldChess",
    "ptRingMail",       "ptThinGorizontal", "ptThinVertical",  "ptThinDiagLeft", "ptThinDiagRight",
    "ptCells",          "ptCrissCross",     "ptThinSpots",     "ptThinThinSpots"};
constexpr TEnumInfo EnumInfo(TxlsPattern) { return {"TxlsPattern", TxlsPatternNames}; }

/// What stands below a column.
enum TxlsAggregate : std::uint8_t { aggNone, aggSum, aggAvg, aggMin, aggMax };
inline constexpr std::string_view TxlsAggregateNames[] = {"aggNone", "aggSum", "aggAvg", "aggMin",
                                                          "aggMax"};
constexpr TEnumInfo EnumInfo(TxlsAggregate) { return {"TxlsAggregate", TxlsAggregateNames}; }

/// Which of the style lists alternates.
enum TxlsStripStyle : std::uint8_t { ssNone, ssCol, ssRow };
inline constexpr std::string_view TxlsStripStyleNames[] = {"ssNone", "ssCol", "ssRow"};
constexpr TEnumInfo EnumInfo(TxlsStripStyle) { return {"TxlsStripStyle", TxlsStripStyleNames}; }

/// What an export of a workbook is writing.
enum TxlsExportStage : std::uint8_t { esNone, esHeader, esCaption, esData, esAggregate, esFooter };

/// What the programs that read workbooks take, in points.
inline constexpr std::int32_t MaxFontSize = 409;

/// Font of a cell.
class NORVA_EXPORT TxlsFont : public TPersistent {
 public:
  /// In points, 1 to MaxFontSize; others end the export.
  std::int32_t Size = 10;
  TxlsFontStyles Style;
  TxlsColor Color = clrBlack;
  TxlsFontScript Script = fscNone;
  TxlsFontUnderline Underline = fulNone;
  std::uint8_t Charset = 1;
  std::string Name = "arial";
  /// Not published: the index under which the workbook's font list holds this font.
  std::uint16_t FontIndex = 0;

  void SetDefault();
  /// Copies a TxlsFont, or takes over a TFont: its underline becomes fulSingle, and a colour other
  /// than the 15 that have a counterpart becomes clrBlack. FontIndex stays.
  void Assign(const TPersistent& Source) override;
  /// Names are compared character for character; FontIndex does not count.
  bool IsEqual(const TxlsFont* Other) const;
  std::string_view ClassName() const override { return "TxlsFont"; }
  const TPropertyList& Properties() const override;
};

/// One side of a cell's border.
class NORVA_EXPORT TxlsBorder : public TPersistent {
 public:
  TxlsBorderStyle Style = bstNone;
  TxlsColor Color = clrBlack;

  void SetDefault();
  void Assign(const TPersistent& Source) override;
  bool IsEqual(const TxlsBorder* Other) const;
  std::string_view ClassName() const override { return "TxlsBorder"; }
  const TPropertyList& Properties() const override;
};

/// The four sides and the two diagonals of a cell.
class NORVA_EXPORT TxlsBorders : public TPersistent {
 public:
  TxlsBorder Left, Right, Top, Bottom, DiagDown, DiagUp;

  void SetDefault();
  void Assign(const TPersistent& Source) override;
  bool IsEqual(const TxlsBorders* Other) const;
  /// Whether any side has a style.
  bool HasStyle() const;
  std::string_view ClassName() const override { return "TxlsBorders"; }
  const TPropertyList& Properties() const override;
};

/// What fills a cell behind its text.
class NORVA_EXPORT TxlsFill : public TPersistent {
 public:
  TxlsColor Background = clrWhite;
  TxlsPattern Pattern = ptNone;
  TxlsColor Foreground = clrBlack;

  void SetDefault();
  void Assign(const TPersistent& Source) override;
  bool IsEqual(const TxlsFill* Other) const;
  std::string_view ClassName() const override { return "TxlsFill"; }
  const TPropertyList& Properties() const override;
};

/// Where in the cell its text stands.
class NORVA_EXPORT TxlsAlignment : public TPersistent {
 public:
  TxlsHorizontalAlignment Horizontal = halGeneral;
  TxlsVerticalAlignment Vertical = valBottom;

  void SetDefault();
  void Assign(const TPersistent& Source) override;
  bool IsEqual(const TxlsAlignment* Other) const;
  std::string_view ClassName() const override { return "TxlsAlignment"; }
  const TPropertyList& Properties() const override;
};

/// How a cell looks.
class NORVA_EXPORT TxlsFormat : public TCollectionItem {
 public:
  using TCollectionItem::TCollectionItem;
  TxlsFont Font;
  TxlsBorders Borders;
  TxlsFill Fill;
  TxlsAlignment Alignment;
  bool Wrap = false;

  virtual void SetDefault();
  void Assign(const TPersistent& Source) override;
  bool IsEqual(const TxlsFormat* Other) const;
  /// On purpose: false for a format straight after SetDefault, whose fill foreground is black while
  /// this asks for white.
  bool IsDefault() const;
  /// Takes over font, borders, fill and wrap; without a font there this one's stays. On purpose:
  /// not the alignment.
  void LoadFromTxlsXFormat(const TxlsXFormat& XFormat);
  /// "Row_" or "Col_" and the index in a style list, else the class name.
  std::string GetDisplayName() const override;
  std::string_view ClassName() const override { return "TxlsFormat"; }
  const TPropertyList& Properties() const override;

  /// Writes the format into one section, as keys "FontName" to "FillForeground": colours by their
  /// host name, other enumerations by number. Script, charset and diagonals are not stored.
  virtual void SaveToIniFile(TIniFile& File, const std::string& Section) const;
  /// Reads them back; a missing key leaves its value, a missing "FontName" gives "arial". Throws
  /// EIniError naming section, key and value for a number out of range or a text that is no colour;
  /// the values before it are set then.
  virtual void LoadFromIniFile(const TIniFile& File, const std::string& Section);
};

/// The format of one field, its column's width and what stands below it. In the INI file the key
/// "Aggregate" follows those of the format.
class NORVA_EXPORT TxlsFieldFormat : public TxlsFormat {
 public:
  using TxlsFormat::TxlsFormat;
  /// Matched without regard to case.
  std::string FieldName;
  /// In characters.
  std::int32_t Width = 0;
  TxlsAggregate Aggregate = aggNone;

  void SetDefault() override;
  void Assign(const TPersistent& Source) override;
  /// FieldName when there is one, else as for a TxlsFormat.
  std::string GetDisplayName() const override;
  std::string_view ClassName() const override { return "TxlsFieldFormat"; }
  const TPropertyList& Properties() const override;
  void SaveToIniFile(TIniFile& File, const std::string& Section) const override;
  void LoadFromIniFile(const TIniFile& File, const std::string& Section) override;
};

/// The column or row styles of an exporter.
class NORVA_EXPORT TxlsFormats : public TCollectionOf<TxlsFormat> {
 public:
  /// `DisplayPrefix` ("Row_", "Col_") begins the display names of the items.
  explicit TxlsFormats(TPersistent* Owner = nullptr, std::string_view DisplayPrefix = {})
      : TCollectionOf(Owner), DisplayPrefix_(DisplayPrefix) {}
  std::string_view DisplayPrefix() const { return DisplayPrefix_; }
  std::string_view ClassName() const override { return "TxlsFormats"; }

 private:
  std::string DisplayPrefix_;
};

/// The field formats of an exporter.
class NORVA_EXPORT TxlsFieldFormats : public TCollectionOf<TxlsFieldFormat> {
 public:
  /// New items start as copies of `Initial`, which is not owned, when it is given.
  explicit TxlsFieldFormats(TPersistent* Owner = nullptr, const TxlsFormat* Initial = nullptr)
      : TCollectionOf(Owner), Initial_(Initial) {}
  /// Position of the first item of that field name, letter case ignored; -1 when there is none.
  int IndexByName(std::string_view Name) const;
  std::string_view ClassName() const override { return "TxlsFieldFormats"; }

 protected:
  std::unique_ptr<TCollectionItem> NewItem() override;

 private:
  const TxlsFormat* Initial_;
};

/// Page, title and stage formats of a workbook.
class NORVA_EXPORT TXLSOptions : public TPersistent {
 public:
  /// CaptionsFormat starts bold, the others with the plain defaults.
  TXLSOptions();

  /// Printed above and below every page; & begins a field, "&P" being the page number.
  std::string PageHeader;
  std::string PageFooter = "Page &P of &N";
  /// "Sheet 1" at first. On purpose: set to the empty text it becomes "Sheet1", without a blank.
  const std::string& SheetTitle() const { return SheetTitle_; }
  void SetSheetTitle(const std::string& Value);
  TxlsFormat HeaderFormat, CaptionsFormat, DataFormat, AggregateFormat, FooterFormat;

  void Assign(const TPersistent& Source) override;
  std::string_view ClassName() const override { return "TXLSOptions"; }
  const TPropertyList& Properties() const override;

 private:
  std::string SheetTitle_ = "Sheet 1";
};

}  // namespace norva
