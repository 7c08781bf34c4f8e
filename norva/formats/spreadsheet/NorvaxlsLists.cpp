#include <norva/formats/spreadsheet/NorvaxlsLists.h>

namespace norva {

namespace {

/// Null is equal to null only.
template <class TItem>
bool BothAbsentOrEqual(const TItem* Left, const TItem* Right) {
  return Left ? Left->IsEqual(Right) : !Right;
}

/// Gathers the values of an item into one number.
class THasher {
 public:
  template <class... TValues>
  void Put(TValues... Values) {
    (PutOne(static_cast<std::uint64_t>(Values)), ...);
  }
  void PutText(std::string_view Text) { PutOne(std::hash<std::string_view>()(Text)); }
  std::size_t Result() const { return static_cast<std::size_t>(Hash_); }

 private:
  void PutOne(std::uint64_t Value) {
    // The golden ratio as a 64-bit fraction: an odd factor that spreads neighbouring values.
    Hash_ = (Hash_ ^ Value) * 0x9E3779B97F4A7C15U;
    Hash_ ^= Hash_ >> 32;
  }

  std::uint64_t Hash_ = 0;
};

}  // namespace

bool TxlsTextFormat::IsEqual(const TxlsTextFormat* Other) const {
  return Other && FormatString == Other->FormatString;
}

bool TxlsXFormat::IsEqual(const TxlsXFormat* Other) const {
  return Other && BothAbsentOrEqual(TextFormat, Other->TextFormat) &&
         BothAbsentOrEqual(Font, Other->Font) && Borders.IsEqual(&Other->Borders) &&
         Fill.IsEqual(&Other->Fill) && Alignment.IsEqual(&Other->Alignment) && Wrap == Other->Wrap;
}

std::size_t internal::TxlsHash::operator()(const TxlsFont* Font) const {
  THasher hasher;
  hasher.Put(Font->Size, Font->Style.Bits(), Font->Color, Font->Script, Font->Underline,
             Font->Charset);
  hasher.PutText(Font->Name);
  return hasher.Result();
}

std::size_t internal::TxlsHash::operator()(const TxlsXFormat* XFormat) const {
  THasher hasher;
  if (XFormat->TextFormat) hasher.PutText(XFormat->TextFormat->FormatString);
  if (XFormat->Font) hasher.Put((*this)(XFormat->Font));
  const TxlsBorders& borders = XFormat->Borders;
  for (const TxlsBorder* side : {&borders.Left, &borders.Right, &borders.Top, &borders.Bottom,
                                 &borders.DiagDown, &borders.DiagUp}) {
    hasher.Put(side->Style << 8 | side->Color);
  }
  hasher.Put(XFormat->Fill.Background, XFormat->Fill.Pattern, XFormat->Fill.Foreground,
             XFormat->Alignment.Horizontal, XFormat->Alignment.Vertical, XFormat->Wrap);
  return hasher.Result();
}

int TxlsFontList::FontIndexByFont(const TxlsFont& Font) const {
  const int position = ListIndexByFont(Font);
  return position < 0 ? -1 : (*this)[position].FontIndex;
}

int TxlsFontList::ListIndexByFont(const TxlsFont& Font) const { return ByFont_.Find(&Font); }

void TxlsFontList::EnterKeys(const TxlsFont& Item, int Position) { ByFont_.Add(&Item, Position); }

void TxlsFontList::ClearKeys() { ByFont_.Clear(); }

int TxlsTextFormatList::FormatIndexByString(std::string_view FormatString) const {
  const int position = ListIndexByString(FormatString);
  return position < 0 ? -1 : (*this)[position].FormatIndex;
}

int TxlsTextFormatList::ListIndexByString(std::string_view FormatString) const {
  return ByString_.Find(FormatString);
}

void TxlsTextFormatList::EnterKeys(const TxlsTextFormat& Item, int Position) {
  ByString_.Add(Item.FormatString, Position);
}

void TxlsTextFormatList::ClearKeys() { ByString_.Clear(); }

int TxlsXFormatList::FormatIndexByFormat(const TxlsXFormat& XFormat) const {
  const int position = ByFormat_.Find(&XFormat);
  return position < 0 ? -1 : (*this)[position].XFIndex;
}

int TxlsXFormatList::ListIndexByFormatIndex(int XFIndex) const { return ByXFIndex_.Find(XFIndex); }

const TxlsXFormat* TxlsXFormatList::FormatByFormatIndex(int XFIndex) const {
  const int position = ListIndexByFormatIndex(XFIndex);
  return position < 0 ? nullptr : &(*this)[position];
}

void TxlsXFormatList::EnterKeys(const TxlsXFormat& Item, int Position) {
  ByFormat_.Add(&Item, Position);
  ByXFIndex_.Add(Item.XFIndex, Position);
}

void TxlsXFormatList::ClearKeys() {
  ByFormat_.Clear();
  ByXFIndex_.Clear();
}

int TxlsXFormatFieldList::FormatIndexByFieldName(std::string_view FieldName) const {
  const int position = ListIndexByFieldName(FieldName);
  return position < 0 ? -1 : (*this)[position].XFIndex;
}

int TxlsXFormatFieldList::ListIndexByFieldName(std::string_view FieldName) const {
  return ByFieldName_.Find(FieldName);
}

void TxlsXFormatFieldList::EnterKeys(const TxlsXFormatField& Item, int Position) {
  ByFieldName_.Add(Item.FieldName, Position);
}

void TxlsXFormatFieldList::ClearKeys() { ByFieldName_.Clear(); }

int TxlsXFormatColRowList::IndexByXF(int XFIndex) const { return ByXFIndex_.Find(XFIndex); }

int TxlsXFormatColRowList::XFIndexByNumber(std::int32_t Number) const {
  const int position = ByNumber_.Find(Number);
  return position < 0 ? -1 : (*this)[position].XFIndex;
}

void TxlsXFormatColRowList::EnterKeys(const TxlsXFormatColRow& Item, int Position) {
  ByXFIndex_.Add(Item.XFIndex, Position);
  ByNumber_.Add(Item.Number, Position);
}

void TxlsXFormatColRowList::ClearKeys() {
  ByXFIndex_.Clear();
  ByNumber_.Clear();
}

}  // namespace norva
