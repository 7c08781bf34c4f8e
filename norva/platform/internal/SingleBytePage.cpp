#include <norva/platform/internal/SingleBytePage.h>

#include <algorithm>
#include <vector>

#include <norva/platform/internal/UnicodeCase.h>

namespace norva::internal {
namespace {

constexpr std::size_t PlaceMask = 511;

// Multiplicative hashing by 2^32 over the golden ratio: blocks of consecutive code points, of
// which the pages consist, spread evenly. A byte is found in 1.05 steps on average, in 3 at most.
std::size_t FirstPlace(char32_t Code) {
  return static_cast<std::uint32_t>(Code) * 0x9E3779B1U >> 23;
}

}  // namespace

TSingleBytePage::TSingleBytePage(const TPageTable& Table) : Table_(Table) {
  for (unsigned byte = 0x80; byte <= 0xFF; ++byte) {
    const char32_t code = CodePointOf(static_cast<unsigned char>(byte));
    if (code == ReplacementCharacter) continue;
    std::size_t place = FirstPlace(code);
    while (Places_[place] != 0) place = (place + 1) & PlaceMask;
    Places_[place] = static_cast<unsigned char>(byte);
  }
  for (unsigned byte = 0; byte <= 0xFF; ++byte) {
    const int upper = ByteOf(UnicodeUpper(CodePointOf(static_cast<unsigned char>(byte))));
    Upper_[byte] = static_cast<unsigned char>(upper < 0 ? static_cast<int>(byte) : upper);
  }
}

int TSingleBytePage::ByteOf(char32_t Code) const {
  if (Code < 0x80) return static_cast<int>(Code);
  for (std::size_t place = FirstPlace(Code); Places_[place] != 0; place = (place + 1) & PlaceMask) {
    if (CodePointOf(Places_[place]) == Code) return Places_[place];
  }
  return -1;
}

const TSingleBytePage* FindSingleBytePage(int CodePage) {
  static const std::vector<TSingleBytePage> pages(PageTables.begin(), PageTables.end());
  const auto page = std::find_if(pages.begin(), pages.end(), [CodePage](const auto& Page) {
    return Page.Number() == CodePage;
  });
  return page == pages.end() ? nullptr : &*page;
}

}  // namespace norva::internal
