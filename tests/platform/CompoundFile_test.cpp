#include <norva/platform/CompoundFile.h>

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <algorithm>
#include <cstring>
#include <numeric>

#include <norva/platform/Exceptions.h>
#include <tests/ErrorText.h>

namespace norva {
namespace {

using tests::ErrorText;

constexpr std::uint32_t Difat = 0xFFFFFFFC, Fat = 0xFFFFFFFD, End = 0xFFFFFFFE, None = 0xFFFFFFFF;

/// Bytes that differ from place to place, so that lost and doubled parts show.
std::string Pattern(std::size_t Size, std::size_t Seed = 0) {
  std::string bytes(Size, '\0');
  for (std::size_t i = 0; i < Size; ++i) bytes[i] = static_cast<char>((i + Seed) * 31 + i / 251);
  return bytes;
}

std::string Hex(std::string_view Bytes) {
  std::string hex;
  for (const char byte : Bytes) {
    hex += Format("%.2x", static_cast<unsigned char>(byte)) + ' ';
  }
  return hex;
}

/// A strict reader: every deviation from the structure is a failure of the test. It takes the
/// front of a document, as far as the directory, when the contents are checked otherwise.
class TReader {
 public:
  struct TEntry {
    std::u16string Name;
    unsigned Type, Color;
    std::uint32_t Left, Right, Child, First, Size;
  };
  std::uint32_t FatSectors, MiniFatSectors, DifatSectors;
  std::vector<TEntry> Entries;

  TReader(std::string_view Bytes, std::uint64_t FileSize) : Bytes_(Bytes) {
    EXPECT_EQ(FileSize % 512, 0U);
    Owners_.resize(FileSize / 512 - 1);
    FatSectors = Number(44);
    MiniFatSectors = Number(64);
    DifatSectors = Number(72);
    ReadFat();
    const std::uint32_t directory = Number(48);
    for (const std::uint32_t sector : Chain(Fat_, directory, true)) ReadEntries(sector);
    const auto miniFat = Chain(Fat_, Number(60), true);
    EXPECT_EQ(miniFat.size(), MiniFatSectors);
    for (const std::uint32_t sector : miniFat) AppendNumbers(sector, 128, MiniFat_);
    MiniStream_ = Chain(Fat_, Entries[0].First, true);
    EXPECT_EQ(MiniStream_.size(), (Entries[0].Size + 511) / 512);
    MiniOwners_.resize(Entries[0].Size / 64);
    for (std::size_t i = MiniOwners_.size(); i < MiniFat_.size(); ++i) EXPECT_EQ(MiniFat_[i], None);
  }

  /// The sectors of a stream, or its mini sectors, in order.
  std::vector<std::uint32_t> Sectors(const TEntry& Entry) {
    const bool isLong = Entry.Size >= 4096;
    const auto chain = Chain(isLong ? Fat_ : MiniFat_, Entry.First, isLong);
    EXPECT_EQ(chain.size(), isLong ? (Entry.Size + 511) / 512 : (Entry.Size + 63) / 64);
    return chain;
  }
  std::string Content(const TEntry& Entry) {
    std::string content;
    for (const std::uint32_t sector : Sectors(Entry)) {
      content += Entry.Size >= 4096
                     ? Bytes_.substr(Offset(sector), 512)
                     : Bytes_.substr(Offset(MiniStream_.at(sector / 8)) + 64 * (sector % 8), 64);
    }
    EXPECT_EQ(content.find_first_not_of('\0', Entry.Size), content.npos) << "not padded with zeros";
    return content.substr(0, Entry.Size);
  }
  /// The streams' names in the order of the tree, whose rules are checked.
  std::vector<std::u16string> Sorted() {
    std::vector<std::u16string> names;
    Walk(Entries[0].Child, false, names);
    return names;
  }
  /// After all streams were read: nothing is left over and nothing has two owners.
  void ExpectEverySectorUsedOnce() const {
    for (const int owners : Owners_) ASSERT_EQ(owners, 1);
    for (const int owners : MiniOwners_) ASSERT_EQ(owners, 1);
  }

 private:
  static std::size_t Offset(std::uint32_t Sector) { return 512 * (std::size_t{Sector} + 1); }
  std::uint32_t Number(std::size_t At, std::size_t Size = 4) const {
    std::uint32_t number = 0;
    while (Size-- > 0) number = number << 8 | static_cast<unsigned char>(Bytes_.at(At + Size));
    return number;
  }
  void AppendNumbers(std::uint32_t Sector, std::size_t Count, std::vector<std::uint32_t>& Numbers) {
    for (std::size_t i = 0; i < Count; ++i) Numbers.push_back(Number(Offset(Sector) + 4 * i));
  }
  void ReadFat() {
    std::vector<std::uint32_t> places, difat;
    for (std::size_t i = 0; i < 109; ++i) places.push_back(Number(76 + 4 * i));
    for (std::uint32_t next = Number(68); next != End; next = Number(Offset(next) + 508)) {
      difat.push_back(next);
      ASSERT_LE(difat.size(), DifatSectors);
      AppendNumbers(next, 127, places);
    }
    EXPECT_EQ(difat.size(), DifatSectors);
    for (std::size_t i = 0; i < places.size(); ++i) {
      if (i < FatSectors) {
        AppendNumbers(places[i], 128, Fat_);
      } else {
        EXPECT_EQ(places[i], None);
      }
    }
    ASSERT_EQ(Fat_.size(), FatSectors * 128);
    places.resize(FatSectors);
    for (const std::uint32_t sector : places) Own(sector, Fat);
    for (const std::uint32_t sector : difat) Own(sector, Difat);
    for (std::size_t i = Owners_.size(); i < Fat_.size(); ++i) EXPECT_EQ(Fat_[i], None);
  }
  void Own(std::uint32_t Sector, std::uint32_t Mark) {
    EXPECT_EQ(Fat_.at(Sector), Mark);
    ++Owners_.at(Sector);
  }
  std::vector<std::uint32_t> Chain(const std::vector<std::uint32_t>& Next, std::uint32_t First,
                                   bool Long) {
    std::vector<std::uint32_t> chain;
    for (; First != End && chain.size() <= Next.size(); First = Next.at(First)) {
      chain.push_back(First);
      ++(Long ? Owners_ : MiniOwners_).at(First);
    }
    return chain;
  }
  void ReadEntries(std::uint32_t Sector) {
    for (std::size_t at = Offset(Sector), end = at + 512; at < end; at += 128) {
      TEntry entry{{},
                   Number(at + 66, 1),
                   Number(at + 67, 1),
                   Number(at + 68),
                   Number(at + 72),
                   Number(at + 76),
                   Number(at + 116),
                   Number(at + 120)};
      const std::uint32_t length = Number(at + 64, 2);
      for (std::size_t i = 0; i + 2 < length; i += 2) {
        entry.Name += static_cast<char16_t>(Number(at + i, 2));
      }
      if (entry.Type == 0) {
        EXPECT_EQ(Hex(Bytes_.substr(at, 128)),
                  Hex(std::string(68, '\0') + std::string(12, '\xFF') + std::string(48, '\0')));
      } else {
        EXPECT_EQ(entry.Type, Entries.empty() ? 5U : 2U);
        Entries.push_back(entry);
      }
    }
  }
  /// Returns the black entries on every way down.
  int Walk(std::uint32_t At, bool BelowRed, std::vector<std::u16string>& Names) {
    if (At == None) return 0;
    const TEntry& entry = Entries.at(At);
    const bool red = entry.Color == 0;
    EXPECT_FALSE(red && BelowRed);
    EXPECT_FALSE(red && At == Entries[0].Child);
    const int left = Walk(entry.Left, red, Names);
    Names.push_back(entry.Name);
    EXPECT_EQ(Walk(entry.Right, red, Names), left) << "unequal ways down";
    return left + (red ? 0 : 1);
  }

  std::string_view Bytes_;
  std::vector<std::uint32_t> Fat_, MiniFat_, MiniStream_;
  std::vector<int> Owners_, MiniOwners_;
};

struct SizeCase {
  std::vector<std::size_t> Sizes;
  std::uint32_t Fat, Difat, MiniFat;  // sectors
};

const SizeCase SizeCases[] = {
    {{},                                     1,   0, 0},
    {{0},                                    1,   0, 0},
    {{1},                                    1,   0, 1},
    {{63},                                   1,   0, 1},
    {{64},                                   1,   0, 1},
    {{65},                                   1,   0, 1},
    {{511},                                  1,   0, 1},
    {{512},                                  1,   0, 1},
    {{513},                                  1,   0, 1},
    {{4095},                                 1,   0, 1},
    {{4096},                                 1,   0, 0},
    {{4097},                                 1,   0, 0},
    {{8191},                                 1,   0, 0},
    {{8192},                                 1,   0, 0},
    {{8193},                                 1,   0, 0},
    {{4095, 4096, 0, 1, 70000, 64, 4097, 5}, 2,   0, 1},
    {{4095, 4095},                           1,   0, 1}, // 128 mini sectors: a full mini FAT
    {{4095, 1, 4095},                        1,   0, 2}, // one more
    {{64512},                                1,   0, 0}, // 126 + directory + FAT = 128 sectors
    {{64513},                                2,   0, 0},
    {{7087104},                              109, 0, 0}, // 13842 + directory + FAT = 109 * 128
    {{7087105},                              110, 1, 0},
    {{7143424},                              110, 1, 0},
    {{15344640},                             236, 1, 0}, // 29970 + directory + FAT + DIFAT
    {{15344641},                             237, 2, 0},
    {{100, 15344640, 4096},                  237, 2, 1},
};

TEST(WriteCompoundFile, EveryContentIsFoundAgain) {
  for (const SizeCase& c : SizeCases) {
    std::vector<std::string> contents;
    std::vector<TCompoundStream> streams;
    for (const std::size_t size : c.Sizes) contents.push_back(Pattern(size, contents.size()));
    for (const std::string& content : contents) {
      streams.push_back({"Stream" + std::to_string(streams.size()), {content}});
    }
    SCOPED_TRACE(testing::PrintToString(c.Sizes));
    TMemoryStream file;
    WriteCompoundFile(file, streams);

    TReader reader(file.Bytes(), static_cast<std::uint64_t>(file.Size()));
    EXPECT_EQ(reader.FatSectors, c.Fat);
    EXPECT_EQ(reader.DifatSectors, c.Difat);
    EXPECT_EQ(reader.MiniFatSectors, c.MiniFat);
    ASSERT_EQ(reader.Entries.size(), contents.size() + 1);
    for (std::size_t i = 0; i < contents.size(); ++i) {
      EXPECT_EQ(reader.Entries[i + 1].Name,
                u"Stream" + std::u16string(1, static_cast<char16_t>(u'0' + i)));
      EXPECT_TRUE(reader.Content(reader.Entries[i + 1]) == contents[i]) << i;
    }
    reader.ExpectEverySectorUsedOnce();
  }
}

TEST(WriteCompoundFile, TheBytesAreTheFormats) {
  TMemoryStream file;
  const TCompoundStream book = {"Workbook", {"abc"}};
  WriteCompoundFile(file, {&book, 1});
  const std::string_view bytes = file.Bytes();
  ASSERT_EQ(bytes.size(), 5 * 512U);  // header, FAT, directory, mini FAT, mini stream
  EXPECT_EQ(Hex(bytes.substr(0, 84)),
            "d0 cf 11 e0 a1 b1 1a e1 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
            "3e 00 03 00 fe ff 09 00 06 00 00 00 00 00 00 00 00 00 00 00 01 00 00 00 "
            "01 00 00 00 00 00 00 00 00 10 00 00 02 00 00 00 01 00 00 00 fe ff ff ff "
            "00 00 00 00 00 00 00 00 ff ff ff ff ");
  EXPECT_EQ(Hex(bytes.substr(512, 20)),
            "fd ff ff ff fe ff ff ff fe ff ff ff fe ff ff ff ff ff ff ff ");
  EXPECT_EQ(Hex(bytes.substr(1024, 24)),
            "52 00 6f 00 6f 00 74 00 20 00 45 00 6e 00 74 00 72 00 79 00 00 00 00 00 ");
  EXPECT_EQ(Hex(bytes.substr(1024 + 64, 64)),
            "16 00 05 01 ff ff ff ff ff ff ff ff 01 00 00 00 "
            "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
            "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
            "00 00 00 00 03 00 00 00 40 00 00 00 00 00 00 00 ");
  EXPECT_EQ(Hex(bytes.substr(1152 + 64, 64)),
            "12 00 02 01 ff ff ff ff ff ff ff ff ff ff ff ff "
            "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
            "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
            "00 00 00 00 00 00 00 00 03 00 00 00 00 00 00 00 ");
}

TEST(WriteCompoundFile, PiecesAreJoined) {
  const std::string content = Pattern(60000);
  for (const std::size_t piece : {1U, 100U, 4095U, 8191U, 8192U, 8193U, 20000U}) {
    TCompoundStream stream = {"A", {}};
    for (std::size_t at = 0; at < content.size(); at += piece) {
      stream.Pieces.push_back(std::string_view(content).substr(at, piece));
      stream.Pieces.push_back("");
    }
    TMemoryStream file;
    WriteCompoundFile(file, {&stream, 1});
    TReader reader(file.Bytes(), static_cast<std::uint64_t>(file.Size()));
    EXPECT_TRUE(reader.Content(reader.Entries.at(1)) == content) << piece;
  }
}

// --- Names --------------------------------------------------------------------------------------

TEST(WriteCompoundFile, NamesAreSortedByLengthThenCapitals) {
  // The longest name; then 16-bit characters, not code points, are compared; a capital of U+00FF
  // stands behind U+0100; supplementary letters have no case here; and a-z stand before _.
  const std::vector<std::u16string> sorted = {u"a",
                                              u"B",
                                              u"_",
                                              u"\u0100",
                                              u"\u00FF",
                                              u"_a",
                                              u"__",
                                              u"\U00010400",
                                              u"\U00010428",
                                              u"\U0001F600",
                                              u"\uFF21\uFF21",
                                              u"\u0001ABCDEFGHIJKLMNOPQRSTUVWXYZ3456"};
  std::vector<TCompoundStream> streams;
  for (const char* name :
       {"_", "\U00010428", "\uFF21\uFF21", "\u00FF", "__", "a",
        "\u0001ABCDEFGHIJKLMNOPQRSTUVWXYZ3456", "\u0100", "\U0001F600", "_a", "\U00010400", "B"}) {
    streams.push_back({name, {}});
  }
  TMemoryStream file;
  WriteCompoundFile(file, streams);
  EXPECT_EQ(TReader(file.Bytes(), static_cast<std::uint64_t>(file.Size())).Sorted(), sorted);
}

TEST(WriteCompoundFile, TheDirectoryIsARedBlackTreeOfAnySize) {
  std::vector<TCompoundStream> streams;
  std::vector<std::u16string> sorted;
  for (int count = 0; count <= 70; ++count) {
    SCOPED_TRACE(count);
    TMemoryStream file;
    WriteCompoundFile(file, streams);
    TReader reader(file.Bytes(), static_cast<std::uint64_t>(file.Size()));
    EXPECT_EQ(reader.Sorted(), sorted);
    // Two digits, and ascending; added in a stirred order: 37 and 71 have no common divisor.
    const int number = 10 + count * 37 % 71;
    streams.push_back({std::to_string(number), {}});
    const std::u16string name = {static_cast<char16_t>(u'0' + number / 10),
                                 static_cast<char16_t>(u'0' + number % 10)};
    sorted.insert(std::lower_bound(sorted.begin(), sorted.end(), name), name);
  }
}

struct BadNameCase {
  std::string Name;
  std::string Shown;
};

const std::string Letters30(30, 'a');

const BadNameCase BadNameCases[] = {
    {"",                       ""                      },
    {"a/b",                    "a/b"                   },
    {"a\\b",                   "a\\b"                  },
    {"a:",                     "a:"                    },
    {"!",                      "!"                     },
    {{'a', '\0', 'b'},         "a?b"                   }, // the message does not end there
    {Letters30 + "bc",         Letters30 + "bc"        },
    {Letters30 + "\U0001F600", Letters30 + "\U0001F600"}, // counts as two
    {"a\xC3",                  "a\xC3"                 },
    {"\xED\xA0\x80",           "\xED\xA0\x80"          }, // half a surrogate pair
};

TEST(WriteCompoundFile, RefusesNamesThatTheFormatForbids) {
  for (const BadNameCase& c : BadNameCases) {
    const TCompoundStream streams[] = {
        {"Good", {"abc"}},
        {c.Name, {"abc"}}
    };
    TMemoryStream file;
    EXPECT_EQ(ErrorText<EOleError>([&] { WriteCompoundFile(file, streams); }),
              "\"" + c.Shown +
                  "\" cannot name a stream of a compound document: give 1 to 31 "
                  "characters of UTF-8 without / \\ : ! and zero");
    EXPECT_EQ(file.Size(), 0);
  }
}

TEST(WriteCompoundFile, RefusesANameGivenTwice) {
  const TCompoundStream streams[] = {
      {"b\u00E4r", {}},
      {"Book",     {}},
      {"B\u00C4R", {}}
  };
  TMemoryStream file;
  EXPECT_EQ(ErrorText<EOleError>([&] { WriteCompoundFile(file, streams); }),
            "A compound document cannot hold the streams \"b\u00E4r\" and \"B\u00C4R\" together: "
            "upper and lower case are the same in their names");
  EXPECT_EQ(file.Size(), 0);
}

// --- Large documents ----------------------------------------------------------------------------

/// Keeps the front and compares what follows with `Block`, again and again; then come zeros.
class TComparingStream : public TStream {
 public:
  TComparingStream(std::size_t FrontSize, std::string_view Block, std::uint64_t ContentSize)
      : FrontSize_(FrontSize), Block_(Block), ContentEnd_(FrontSize + ContentSize) {}
  using TStream::Write;
  void Write(const void* Buffer, std::size_t Count) override {
    std::string_view bytes(static_cast<const char*>(Buffer), Count);
    for (std::size_t size; !bytes.empty(); bytes.remove_prefix(size), Total += size) {
      if (Total < FrontSize_) {
        size = std::min(bytes.size(), FrontSize_ - static_cast<std::size_t>(Total));
        Front += bytes.substr(0, size);
      } else if (Total < ContentEnd_) {
        const std::size_t at = (Total - FrontSize_) % Block_.size();
        size = std::min(
            {bytes.size(), Block_.size() - at, static_cast<std::size_t>(ContentEnd_ - Total)});
        if (bytes.substr(0, size) != Block_.substr(at, size)) ++Differences;
      } else {
        size = bytes.size();
        if (bytes.find_first_not_of('\0') != bytes.npos) ++Differences;
      }
    }
  }
  std::size_t Read(void*, std::size_t) override { throw EReadError("not readable"); }
  std::int64_t Seek(std::int64_t, TSeekOrigin) override { throw EStreamError("not seekable"); }
  std::int64_t Size() override { return static_cast<std::int64_t>(Total); }

  std::string Front;
  std::uint64_t Total = 0;
  int Differences = 0;

 private:
  std::size_t FrontSize_;
  std::string_view Block_;
  std::uint64_t ContentEnd_;
};

TEST(WriteCompoundFile, HundredsOfMegabytesArePassedOn) {
  const std::string block = Pattern(999999);  // no multiple of a sector
  TCompoundStream stream = {"Workbook", std::vector<std::string_view>(300, block)};
  stream.Pieces.push_back(std::string_view(block).substr(0, 1));
  // 585937 sectors, directory, 4614 of FAT, 36 of DIFAT
  constexpr std::size_t size = 300 * 999999 + 1;
  TComparingStream file((1 + 36 + 4614 + 1) * 512, block, size);
  WriteCompoundFile(file, {&stream, 1});
  EXPECT_EQ(file.Differences, 0);
  TReader reader(file.Front, file.Total);
  EXPECT_EQ(reader.FatSectors, 4614U);
  EXPECT_EQ(reader.DifatSectors, 36U);
  const TReader::TEntry& entry = reader.Entries.at(1);
  EXPECT_EQ(entry.Size, size);
  std::vector<std::uint32_t> expected(585937);
  std::iota(expected.begin(), expected.end(), 36 + 4614 + 1);
  EXPECT_TRUE(reader.Sectors(entry) == expected);
  reader.ExpectEverySectorUsedOnce();
}

/// Addresses without memory behind them: whoever reads them crashes.
class TAddresses {
 public:
  explicit TAddresses(std::size_t Size)
      : Start_(
            ::mmap(nullptr, Size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0)),
        Size_(Size) {
    if (Start_ == MAP_FAILED) throw std::runtime_error(std::strerror(errno));
  }
  ~TAddresses() { ::munmap(Start_, Size_); }
  TAddresses(const TAddresses&) = delete;
  TAddresses& operator=(const TAddresses&) = delete;
  std::string_view Take(std::size_t Size) const { return {static_cast<const char*>(Start_), Size}; }

 private:
  void* Start_;
  std::size_t Size_;
};

/// Counts what is written, unread.
class TCountingStream : public TComparingStream {
 public:
  TCountingStream() : TComparingStream(0, {}, 0) {}
  using TStream::Write;
  void Write(const void*, std::size_t Count) override { Total += Count; }
};

TEST(WriteCompoundFile, EndsBelowTwoGibibytes) {
  const TAddresses addresses(std::size_t{1} << 31);
  constexpr std::size_t most =
      2130572800;  // 4161275 sectors, directory, 32768 of FAT, 258 of DIFAT
  TCountingStream file;
  TCompoundStream stream = {"Workbook", {addresses.Take(most)}};
  WriteCompoundFile(file, {&stream, 1});
  EXPECT_EQ(file.Total, 0x7FFFFE00U);

  struct TooLongCase {
    std::vector<std::size_t> Pieces;
    const char* Error;
  };
  const TooLongCase cases[] = {
      {{most, 1},
       "The compound document would be 2147483648 bytes long: the format ends at 2147483647 bytes"},
      {{2147483647},
       "The compound document would be 2164528640 bytes long: the format ends at 2147483647 bytes"},
      {{2147483647, 1},
       "Stream \"Workbook\" is too long for a compound document: the format ends at 2147483647 "
       "bytes"                                                                                    },
  };
  for (const TooLongCase& c : cases) {
    stream.Pieces.clear();
    for (const std::size_t size : c.Pieces) stream.Pieces.push_back(addresses.Take(size));
    TMemoryStream nothing;
    EXPECT_EQ(ErrorText<EOleError>([&] { WriteCompoundFile(nothing, {&stream, 1}); }), c.Error);
    EXPECT_EQ(nothing.Size(), 0);
  }
}

TEST(WriteCompoundFile, AFullDiskIsTheStreamsError) {
  const std::string content(200000, 'a');
  const TCompoundStream stream = {"Workbook", {content}};
  TFileStream file("/dev/full", fmCreate);
  EXPECT_EQ(ErrorText<EWriteError>([&] {
              WriteCompoundFile(file, {&stream, 1});
            }),
            "Cannot write \"/dev/full\": No space left on device");
}

}  // namespace
}  // namespace norva
