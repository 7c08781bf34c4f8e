#include <norva/formats/document/Norvartflist.h>

#include <algorithm>
#include <new>

#include <norva/core/Norvaconsts.h>
#include <norva/platform/CodePages.h>
#include <norva/platform/Format.h>

namespace norva {
namespace {

constexpr std::size_t LineEnd = 2;           // CR LF
constexpr std::size_t MoveBlock = 1 << 20;   // bytes that Insert moves at a time
constexpr std::size_t FontTableFrame = 11;   // "{\fonttbl", the line end
constexpr std::size_t ColorTableFrame = 12;  // "{\colortbl", the line end

}  // namespace

std::string TRTFHeader::GetAsText() const {
  return Format("\\rtf%d\\%s\\deff%d\\deftab%d", RTFVersion, CharSet, DefaultFont, DefaultTab);
}

std::size_t TRTFHeader::GetSize() const { return GetAsText().size() + LineEnd; }

std::string TRTFFontTableItem::GetAsText() const {
  return Format("{\\f%d\\f%s %s;}", FontNumber, FontFamily, FontName);
}

TRTFColorTableItem::TRTFColorTableItem(TColor Color) {
  const TColor rgb = ColorToRGB(Color);
  Red = rgb & 0xFF;
  Green = rgb >> 8 & 0xFF;
  Blue = rgb >> 16 & 0xFF;
}

std::string TRTFColorTableItem::GetAsText() const {
  return Format("\\red%d\\green%d\\blue%d;", Red, Green, Blue);
}

int TRTFFontTable::GetFontIndexByName(std::string_view Name) const {
  for (int i = 0; i < Count(); ++i) {
    if (SameText((*this)[i].FontName, Name)) return i;
  }
  return -1;
}

int TRTFFontTable::GetNextNumber() const {
  if (Count() == 0) return -1;
  int highest = (*this)[0].FontNumber;
  for (const TRTFFontTableItem& item : *this) highest = std::max(highest, item.FontNumber);
  return highest + 1;
}

std::size_t TRTFFontTable::GetSize() const { return FontTableFrame + GetAsText().size(); }

int TRTFColorTable::GetColorIndex(TColor Color) const {
  const auto found = std::find_if(
      begin(), end(), [Color](const TRTFColorTableItem& item) { return item.GetColor() == Color; });
  return found == end() ? -1 : static_cast<int>(found - begin());
}

std::size_t TRTFColorTable::GetSize() const { return ColorTableFrame + GetAsText().size(); }

std::string TLumRTFWriter::AlignToStr(TNorvaColAlign Align) const {
  switch (Align) {
    case ecaLeft:
      return "\\ql";
    case ecaCenter:
      return "\\qc";
    case ecaRight:
      return "\\qr";
  }
  return "";
}

std::string TLumRTFWriter::SetFont(const TFont& Font, bool WriteIt) {
  int index = FontTable_.GetFontIndexByName(Font.Name);
  if (index < 0) {
    EnterFont(Font, Header_.GetSize() + FontTable_.GetSize() - 1);
    index = FontTable_[FontTable_.Count() - 1].FontNumber;
  }
  std::string text = Format("\\f%d\\fs%d", index, std::int64_t{Font.Size} * 2);
  if (WriteIt) WriteLn(text);
  return text;
}

std::string TLumRTFWriter::GetFontText(const TFont& Font, bool) {
  if (FontTable_.GetFontIndexByName(Font.Name) >= 0) return "";
  // On purpose: one byte further than in SetFont.
  EnterFont(Font, Header_.GetSize() + FontTable_.GetSize());
  return "\\f-1";
}

void TLumRTFWriter::EnterFont(const TFont& Font, std::size_t Position) {
  TRTFFontTableItem item{FontTable_.GetNextNumber(), Font.Name, "nil"};
  Insert(static_cast<std::int64_t>(Position), item.GetAsText());
  AddFont(std::move(item));  // not earlier: what Insert could not write is not in the table
}

std::string TLumRTFWriter::GetColorText(TColor Color, bool Background) {
  int index = ColorTable_.GetColorIndex(Color);
  if (index < 0) {
    const TRTFColorTableItem item(Color);
    const std::size_t position = Header_.GetSize() + FontTable_.GetSize() + ColorTable_.GetSize();
    Insert(static_cast<std::int64_t>(position), item.GetAsText());
    AddColor(item);
    index = ColorTable_.GetNextNumber();
  }
  return Format(Background ? "\\cbpat%d" : "\\cf%d", index);
}

void TLumRTFWriter::Insert(std::int64_t Position, const void* Buffer, std::size_t Count) {
  const std::int64_t tail = Stream().Size() - Position;
  auto left = static_cast<std::size_t>(std::max<std::int64_t>(tail, 0));
  // No block is shorter than the gap, so that none is put behind the end of the stream.
  const std::size_t block = std::min(left, std::max(MoveBlock, Count));
  // A tail that begins behind the stream's end cannot be moved either.
  const std::unique_ptr<char[]> scratch = tail < 0 ? nullptr : AllocateScratch(block);
  if (!scratch) throw Exception(MsgNoScratch);
  // From the end on, for each block makes its place free for the one before it.
  while (left > block) {
    left -= block;
    const std::int64_t from = Position + static_cast<std::int64_t>(left);
    Stream().SetPosition(from);
    Stream().ReadBuffer(scratch.get(), block);
    Stream().SetPosition(from + static_cast<std::int64_t>(Count));
    Stream().Write(scratch.get(), block);
  }
  Stream().SetPosition(Position);
  Stream().ReadBuffer(scratch.get(), left);
  Stream().SetPosition(Position);
  Stream().Write(Buffer, Count);
  Stream().Write(scratch.get(), left);
  Stream().Seek(0, soEnd);
}

std::unique_ptr<char[]> TLumRTFWriter::AllocateScratch(std::size_t Count) {
  return std::unique_ptr<char[]>(new (std::nothrow) char[Count]);
}

}  // namespace norva
