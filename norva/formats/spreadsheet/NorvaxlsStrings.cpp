#include <norva/formats/spreadsheet/NorvaxlsStrings.h>

#include <algorithm>
#include <bit>
#include <functional>

namespace norva {

std::uint32_t TxlsStrings::Add(std::string_view Text) {
  ++References_;
  if (3 * Entries_.size() >= 2 * Places_.size()) Grow();
  const auto hash = static_cast<std::uint32_t>(std::hash<std::string_view>()(Text));
  const std::size_t mask = Places_.size() - 1;
  std::size_t place = hash & mask;
  for (; Places_[place] != 0; place = (place + 1) & mask) {
    const std::uint32_t index = Places_[place] - 1;
    if (Entries_[index].Hash == hash && (*this)[index] == Text) return index;
  }
  const char* const kept = Texts_.Append(Text);
  Entries_.push_back({kept, static_cast<std::uint32_t>(Text.size()), hash});
  return (Places_[place] = Count()) - 1;
}

void TxlsStrings::Grow() {
  constexpr std::size_t firstPlaces = 256;
  Places_.assign(std::bit_ceil(std::max(firstPlaces, 2 * Entries_.size())), 0);
  const std::size_t mask = Places_.size() - 1;
  for (std::uint32_t i = 0; i < Count(); ++i) {
    std::size_t place = Entries_[i].Hash & mask;
    while (Places_[place] != 0) place = (place + 1) & mask;
    Places_[place] = i + 1;
  }
}

}  // namespace norva
