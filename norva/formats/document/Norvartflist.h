/// The RTF writer, with its font and colour tables.
///
///   {\rtf1\ansi\deff0\deftab720                        WriteBOF, WriteHeader
///   {\fonttbl{\f0\fnil Arial;}{\f1\fnil Courier;}}     WriteFontTable
///   {\colortbl\red0\green0\blue0;}                     WriteColorTable
///   \f1\fs20                                           SetFont, with WriteIt
///   ... \cf0 ... \qr ...                               body: GetColorText, AlignToStr
///   \par                                               WritePara
///   }                                                  WriteEOF
///
/// A font or colour that the body asks for and the tables lack is entered into them at once, in the
/// stream too: its entry is spliced in where the table stands. For this the stream must be able to
/// seek and to read, and the document must begin at the stream's position 0 and with the lines
/// above in that order, the tables as they were when WriteFontTable and WriteColorTable wrote them.
/// Every new entry moves the rest of the document once. A host that knows its fonts and colours
/// adds them before the tables are written, which moves nothing.
///
/// What may not be expected, and is meant:
/// - Colour numbers begin at 0 with the first entry, which other programs may take for "automatic".
/// - A system colour is never found in the table, so each request for one adds an entry; a host
///   passes it through ColorToRGB first.
/// - The first font of an empty table gets the number -1.
/// - GetFontText puts the entry of a new font behind the table's closing brace.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <norva/core/NorvaWriter.h>
#include <norva/platform/Colors.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Export.h>
#include <norva/platform/Fonts.h>
#include <norva/platform/Messages.h>

namespace norva {

/// The control words of the first line.
struct NORVA_EXPORT TRTFHeader {
  int RTFVersion;
  /// Without the first backslash; may bring further control words, as in `ansi\ansicpg1250`.
  std::string CharSet;
  /// Font number of text without one.
  int DefaultFont;
  /// In twips.
  int DefaultTab;

  /// The line without its end: "\rtf1\ansi\deff0\deftab720".
  std::string GetAsText() const;
  /// Bytes of the line with its end, without the brace in front of it.
  std::size_t GetSize() const;
};

/// One entry of the font table.
struct NORVA_EXPORT TRTFFontTableItem {
  int FontNumber;
  std::string FontName;
  /// "nil", "roman", "swiss", "modern" ...
  std::string FontFamily;

  /// "{\f0\fnil Arial;}"
  std::string GetAsText() const;
  std::size_t GetSize() const { return GetAsText().size(); }
};

/// One entry of the colour table.
class NORVA_EXPORT TRTFColorTableItem {
 public:
  TRTFColorTableItem(int R, int G, int B) : Red(R), Green(G), Blue(B) {}
  /// Resolves a system colour.
  explicit TRTFColorTableItem(TColor Color);

  /// From 0 to 255.
  int Red, Green, Blue;

  TColor GetColor() const { return Red | Green << 8 | Blue << 16; }
  /// "\red255\green0\blue0;"
  std::string GetAsText() const;
  std::size_t GetSize() const { return GetAsText().size(); }
};

/// A list that owns its entries. Operations by index throw EListError when it is out of range.
template <class TItem>
class TRTFTable {
 public:
  int Count() const { return static_cast<int>(Items_.size()); }
  const TItem& operator[](int Index) const { return Items_[Checked(Index)]; }
  void Put(int Index, TItem Item) { Items_[Checked(Index)] = std::move(Item); }
  void Add(TItem Item) { Items_.push_back(std::move(Item)); }
  void FreeAll() { Items_.clear(); }

  typename std::vector<TItem>::const_iterator begin() const { return Items_.begin(); }
  typename std::vector<TItem>::const_iterator end() const { return Items_.end(); }

  /// The entries one after the other, as the document holds them.
  std::string GetAsText() const {
    std::string text;
    for (const TItem& item : Items_) text += item.GetAsText();
    return text;
  }

 private:
  std::size_t Checked(int Index) const {
    if (Index < 0 || Index >= Count()) throw EListError(MsgListIndex, Index);
    return static_cast<std::size_t>(Index);
  }

  std::vector<TItem> Items_;
};

/// The fonts of a document.
class NORVA_EXPORT TRTFFontTable : public TRTFTable<TRTFFontTableItem> {
 public:
  /// Position of the first font of that name, case ignored, or -1.
  int GetFontIndexByName(std::string_view Name) const;
  /// The highest number plus one. On purpose: -1 when the table is empty.
  int GetNextNumber() const;
  /// Bytes of the table's line, less one.
  std::size_t GetSize() const;
};

/// The colours of a document.
class NORVA_EXPORT TRTFColorTable : public TRTFTable<TRTFColorTableItem> {
 public:
  /// Position of the first entry with that RGB value, or -1. On purpose: `Color` is not resolved.
  int GetColorIndex(TColor Color) const;
  /// On purpose: the position of the last entry.
  int GetNextNumber() const { return Count() - 1; }
  /// Bytes of the table's line, less one.
  std::size_t GetSize() const;
};

/// Writes the fixed parts of an RTF document and hands out control words for fonts and colours.
class NORVA_EXPORT TLumRTFWriter : public TNorvaWriter {
 public:
  using TNorvaWriter::TNorvaWriter;

  const TRTFHeader& Header() const { return Header_; }
  /// Copies the four values. Before WriteHeader.
  void SetHeader(const TRTFHeader& Source) { Header_ = Source; }
  const TRTFFontTable& FontTable() const { return FontTable_; }
  const TRTFColorTable& ColorTable() const { return ColorTable_; }
  /// Write nothing. Before WriteFontTable and WriteColorTable.
  void AddFont(TRTFFontTableItem Item) { FontTable_.Add(std::move(Item)); }
  void AddColor(TRTFColorTableItem Item) { ColorTable_.Add(Item); }

  void WriteBOF() { Write("{"); }
  void WriteHeader() { WriteLn(Header_.GetAsText()); }
  void WriteFontTable() { WriteLn("{\\fonttbl" + FontTable_.GetAsText() + "}"); }
  void WriteColorTable() { WriteLn("{\\colortbl" + ColorTable_.GetAsText() + "}"); }
  void WritePara() { WriteLn("\\par"); }
  void WriteEOF() { Write("}"); }

  /// "\ql", "\qc", "\qr", else empty.
  std::string AlignToStr(TNorvaColAlign Align) const override;
  /// The words that select `Font` and its size, as "\f1\fs20"; with `WriteIt` they are written too,
  /// as a line. Enters a new font into the table; only its name counts.
  std::string SetFont(const TFont& Font, bool WriteIt);
  /// On purpose: empty for a font in the table; "\f-1" for a new one, whose entry comes to stand
  /// behind the table's closing brace. `Flag` is not used.
  std::string GetFontText(const TFont& Font, bool Flag);
  /// The word that selects `Color`, as "\cf1", or "\cbpat1" for a background. Enters a new colour
  /// into the table.
  std::string GetColorText(TColor Color, bool Background);

  /// Splices `Count` bytes into the stream and leaves its position at the end. Throws Exception
  /// when there is no memory to move what follows; the stream is unchanged then. A tail of any
  /// length takes no more than 1 MiB.
  void Insert(std::int64_t Position, const void* Buffer, std::size_t Count);
  void Insert(std::int64_t Position, std::string_view Bytes) {
    Insert(Position, Bytes.data(), Bytes.size());
  }

 protected:
  /// Memory for moving a part of the document; null when there is none.
  virtual std::unique_ptr<char[]> AllocateScratch(std::size_t Count);

 private:
  void EnterFont(const TFont& Font, std::size_t Position);

  TRTFHeader Header_{1, "ansi", 0, 720};
  TRTFFontTable FontTable_;
  TRTFColorTable ColorTable_;
};

}  // namespace norva
