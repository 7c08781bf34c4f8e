/// The formats that a workbook under way uses, each kept once: what the exporter registers and the
/// record writer turns into FONT, FORMAT and XF records.
///
///   auto font = std::make_unique<TxlsFont>(Format.Font);
///   font->FontIndex = 5;
///   Fonts.Add(std::move(font));
///   Fonts.FontIndexByFont(Format.Font);  // 5
///
/// A look-up gives the first match and takes the same time however long the list is, for it may be
/// asked for every cell. The lists therefore hand out their items for reading only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include <norva/formats/spreadsheet/NorvaxlsFormat.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Export.h>
#include <norva/platform/Messages.h>

namespace norva {

/// A number format and its index in the workbook.
class NORVA_EXPORT TxlsTextFormat {
 public:
  std::uint16_t FormatIndex = 0;
  std::string FormatString = "General";

  /// By the text, case counting. False when `Other` is null.
  bool IsEqual(const TxlsTextFormat* Other) const;
};

/// A cell format and its index in the workbook. Font and text format may be absent; they belong to
/// their lists and must outlive this.
class NORVA_EXPORT TxlsXFormat {
 public:
  const TxlsFont* Font = nullptr;              // not owned
  const TxlsTextFormat* TextFormat = nullptr;  // not owned
  TxlsBorders Borders;
  TxlsFill Fill;
  TxlsAlignment Alignment;
  bool Wrap = false;
  std::uint16_t XFIndex = 0;

  /// By everything but the index; fonts and text formats by what they hold. False when `Other` is
  /// null.
  bool IsEqual(const TxlsXFormat* Other) const;
};

/// A cell format registered for a field.
struct NORVA_EXPORT TxlsXFormatField {
  std::string FieldName;
  std::uint16_t XFIndex = 0;
};

/// A cell format registered for a column, or a row style's column, by number.
struct NORVA_EXPORT TxlsXFormatColRow {
  std::int32_t Number = 0;
  std::uint16_t XFIndex = 0;
};

namespace internal {

/// Hash and equality of what an item is looked up by, IsEqual of its class.
struct NORVA_EXPORT TxlsHash {
  std::size_t operator()(const TxlsFont* Font) const;
  std::size_t operator()(const TxlsXFormat* XFormat) const;
};
struct TxlsEqual {
  template <class TItem>
  bool operator()(const TItem* Left, const TItem* Right) const {
    return Left->IsEqual(Right);
  }
};

/// The list position of the first item with a key.
template <class TKey, class THash = std::hash<TKey>, class TEqual = std::equal_to<TKey>>
class TxlsIndex {
 public:
  /// Later positions of a key that is there already are passed over.
  void Add(const TKey& Key, int Position) { Positions_.try_emplace(Key, Position); }
  void Clear() { Positions_.clear(); }
  /// -1 when no item has that key.
  int Find(const TKey& Key) const {
    const auto found = Positions_.find(Key);
    return found == Positions_.end() ? -1 : found->second;
  }

 private:
  std::unordered_map<TKey, int, THash, TEqual> Positions_;
};

}  // namespace internal

/// An owning list. Operations by index throw EListError when it is out of range.
template <class TItem>
class TxlsList {
 public:
  TxlsList() = default;
  TxlsList(const TxlsList&) = delete;
  TxlsList& operator=(const TxlsList&) = delete;
  virtual ~TxlsList() = default;

  int Count() const { return static_cast<int>(Items_.size()); }
  const TItem& operator[](int Index) const { return *Items_[Checked(Index)]; }

  /// Appends `Item` and returns it as the list keeps it; equal items may stand in the list.
  const TItem& Add(std::unique_ptr<TItem> Item) {
    Items_.push_back(std::move(Item));
    EnterKeys(*Items_.back(), Count() - 1);
    return *Items_.back();
  }
  const TItem& Add(TItem Item) { return Add(std::make_unique<TItem>(std::move(Item))); }

  /// Puts `Item` in the place of the one at `Index`, which is destroyed.
  void Put(int Index, std::unique_ptr<TItem> Item) {
    const std::size_t position = Checked(Index);
    ClearKeys();
    Items_[position] = std::move(Item);
    EnterAllKeys();
  }
  void Put(int Index, TItem Item) { Put(Index, std::make_unique<TItem>(std::move(Item))); }

  /// Destroys the item at `Index`; the later ones move up.
  void Delete(int Index) {
    const std::size_t position = Checked(Index);
    ClearKeys();
    Items_.erase(Items_.begin() + static_cast<std::ptrdiff_t>(position));
    EnterAllKeys();
  }
  void Clear() {
    ClearKeys();
    Items_.clear();
  }

 protected:
  /// Enters `Item`, which stands at `Position`, into the indexes of the list.
  virtual void EnterKeys(const TItem& Item, int Position) = 0;
  virtual void ClearKeys() = 0;

 private:
  std::size_t Checked(int Index) const {
    if (Index < 0 || Index >= Count()) throw EListError(MsgListIndex, Index);
    return static_cast<std::size_t>(Index);
  }
  void EnterAllKeys() {
    for (int i = 0; i < Count(); ++i) EnterKeys((*this)[i], i);
  }

  std::vector<std::unique_ptr<TItem>> Items_;
};

/// The fonts of a workbook; each carries its FontIndex before it is added.
class NORVA_EXPORT TxlsFontList : public TxlsList<TxlsFont> {
 public:
  /// FontIndex of the first font equal to `Font`, or -1.
  int FontIndexByFont(const TxlsFont& Font) const;
  /// Its position in the list, or -1.
  int ListIndexByFont(const TxlsFont& Font) const;

 protected:
  void EnterKeys(const TxlsFont& Item, int Position) override;
  void ClearKeys() override;

 private:
  internal::TxlsIndex<const TxlsFont*, internal::TxlsHash, internal::TxlsEqual> ByFont_;
};

/// The number formats of a workbook.
class NORVA_EXPORT TxlsTextFormatList : public TxlsList<TxlsTextFormat> {
 public:
  /// FormatIndex of the first format with that text, case counting, or -1.
  int FormatIndexByString(std::string_view FormatString) const;
  /// Its position in the list, or -1.
  int ListIndexByString(std::string_view FormatString) const;

 protected:
  void EnterKeys(const TxlsTextFormat& Item, int Position) override;
  void ClearKeys() override;

 private:
  internal::TxlsIndex<std::string_view> ByString_;
};

/// The cell formats of a workbook.
class NORVA_EXPORT TxlsXFormatList : public TxlsList<TxlsXFormat> {
 public:
  /// XFIndex of the first cell format equal to `XFormat`, or -1. `XFormat` may refer to fonts and
  /// text formats that are in no list.
  int FormatIndexByFormat(const TxlsXFormat& XFormat) const;
  /// Position in the list of the first cell format with that XFIndex, or -1.
  int ListIndexByFormatIndex(int XFIndex) const;
  /// The first cell format with that XFIndex; null when there is none.
  const TxlsXFormat* FormatByFormatIndex(int XFIndex) const;

 protected:
  void EnterKeys(const TxlsXFormat& Item, int Position) override;
  void ClearKeys() override;

 private:
  internal::TxlsIndex<const TxlsXFormat*, internal::TxlsHash, internal::TxlsEqual> ByFormat_;
  internal::TxlsIndex<int> ByXFIndex_;
};

/// The cell formats registered for fields. Names are the columns' own, so letter case counts.
class NORVA_EXPORT TxlsXFormatFieldList : public TxlsList<TxlsXFormatField> {
 public:
  /// XFIndex registered first under that name, or -1.
  int FormatIndexByFieldName(std::string_view FieldName) const;
  /// Position in the list of that entry, or -1.
  int ListIndexByFieldName(std::string_view FieldName) const;

 protected:
  void EnterKeys(const TxlsXFormatField& Item, int Position) override;
  void ClearKeys() override;

 private:
  internal::TxlsIndex<std::string_view> ByFieldName_;
};

/// The cell formats registered for columns and row styles.
class NORVA_EXPORT TxlsXFormatColRowList : public TxlsList<TxlsXFormatColRow> {
 public:
  /// Position in the list of the first entry with that XFIndex, or -1.
  int IndexByXF(int XFIndex) const;
  /// XFIndex registered first under that number, or -1.
  int XFIndexByNumber(std::int32_t Number) const;

 protected:
  void EnterKeys(const TxlsXFormatColRow& Item, int Position) override;
  void ClearKeys() override;

 private:
  internal::TxlsIndex<int> ByXFIndex_;
  internal::TxlsIndex<std::int32_t> ByNumber_;
};

}  // namespace norva
