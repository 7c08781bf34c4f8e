#include <norva/platform/CompoundFile.h>

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <algorithm>
#include <cstring>

#include <norva/platform/Exceptions.h>
#include <tests/Binary.h>
#include <tests/ErrorText.h>

namespace norva {
namespace {

using tests::ErrorText;
using tests::Hex;
using tests::TCompoundReader;

/// Bytes that differ from place to place, so that lost and doubled parts show.
std::string Pattern(std::size_t Size, std::size_t Seed = 0) {
  std::string bytes(Size, '\0');
  for (std::size_t i = 0; i < Size; ++i) bytes[i] = static_cast<char>((i + Seed) * 31 + i / 251);
  return bytes;
}

/// The streams' names in the order of the tree, which must be a red-black one.
class TTree {
 public:
  std::vector<std::u16string> Names;

  explicit TTree(const std::string& File) : Entries_(TCompoundReader(File).Entries) {
    Walk(Entries_[0].Child, true);
  }

 private:
  /// Returns the black entries on every way down.
  int Walk(std::size_t At, bool MustBeBlack) {
    if (At == 0xFFFFFFFF) return 0;
    const TCompoundReader::TEntry& entry = Entries_.at(At);
    EXPECT_TRUE(entry.IsBlack || !MustBeBlack);
    const int left = Walk(entry.Left, !entry.IsBlack);
    Names.push_back(entry.Name);
    EXPECT_EQ(Walk(entry.Right, !entry.IsBlack), left) << "unequal ways down";
    return left + (entry.IsBlack ? 1 : 0);
  }

  std::vector<TCompoundReader::TEntry> Entries_;
};

struct SizeCase {
  std::vector<std::size_t> Sizes;
  std::size_t Fat, Difat, MiniFat;  // sectors
};

const SizeCase SizeCases[] = {
    {{},                                     1,   0, 0},
    {{0},                                    1,   0, 0},
    {{1},                                    1,   0, 1},
    {{65},                                   1,   0, 1},
    {{4095},                                 1,   0, 1},
    {{4096},                                 1,   0, 0},
    {{4095, 4096, 0, 1, 70000, 64, 4097, 5}, 2,   0, 1},
    {{4095, 4095},                           1,   0, 1}, // 128 mini sectors: a full mini FAT
    {{4095, 1, 4095},                        1,   0, 2}, // one more
    {{64512},                                1,   0, 0}, // 126 + directory + FAT = 128 sectors
    {{64513},                                2,   0, 0},
    {{7087104},                              109, 0, 0}, // 13842 + directory + FAT = 109 * 128
    {{7087105},                              110, 1, 0},
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

    TCompoundReader reader(file.Bytes());
    EXPECT_EQ(reader.FatSectors, c.Fat);
    EXPECT_EQ(reader.DifatSectors, c.Difat);
    EXPECT_EQ(reader.MiniFatSectors, c.MiniFat);
    ASSERT_EQ(reader.Entries.size(), contents.size() + 1);
    for (std::size_t i = 0; i < contents.size(); ++i) {
      EXPECT_EQ(reader.Entries[i + 1].Name,
                u"Stream" + std::u16string(1, static_cast<char16_t>(u'0' + i)));
      EXPECT_TRUE(reader.Content(reader.Entries[i + 1]) == contents[i]) << i;
    }
    reader.ExpectAllSectorsUsed();
  }
}

TEST(WriteCompoundFile, TheBytesAreTheFormats) {
  TMemoryStream file;
  const TCompoundStream book = {"Workbook", {"ABC"}};
  WriteCompoundFile(file, {&book, 1});
  const std::string_view bytes = file.Bytes();
  ASSERT_EQ(bytes.size(), 5 * 512U);  // header, FAT, directory, mini FAT, mini stream
  EXPECT_EQ(Hex(bytes.substr(0, 84)),
            "D0 CF 11 E0 A1 B1 1A E1 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
            "3E 00 03 00 FE FF 09 00 06 00 00 00 00 00 00 00 00 00 00 00 01 00 00 00 "
            "01 00 00 00 00 00 00 00 00 10 00 00 02 00 00 00 01 00 00 00 FE FF FF FF "
            "00 00 00 00 00 00 00 00 FF FF FF FF");
  EXPECT_EQ(Hex(bytes.substr(512, 20)),
            "FD FF FF FF FE FF FF FF FE FF FF FF FE FF FF FF FF FF FF FF");
  EXPECT_EQ(Hex(bytes.substr(1024, 24)),
            "52 00 6F 00 6F 00 74 00 20 00 45 00 6E 00 74 00 72 00 79 00 00 00 00 00");
  EXPECT_EQ(Hex(bytes.substr(1024 + 64, 64)),
            "16 00 05 01 FF FF FF FF FF FF FF FF 01 00 00 00 "
            "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
            "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
            "00 00 00 00 03 00 00 00 40 00 00 00 00 00 00 00");
  EXPECT_EQ(Hex(bytes.substr(1152 + 64, 64)),
            "12 00 02 01 FF FF FF FF FF FF FF FF FF FF FF FF "
            "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
            "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
            "00 00 00 00 00 00 00 00 03 00 00 00 00 00 00 00");
  EXPECT_EQ(bytes.substr(1280, 128),  // not in use
            std::string(68, '\0') + std::string(12, '\xFF') + std::string(48, '\0'));
}

TEST(WriteCompoundFile, PiecesAreJoined) {
  const std::string content = Pattern(60000);
  for (const std::size_t piece : {1U, 8191U, 8192U, 20000U}) {
    TCompoundStream stream = {"A", {}};
    for (std::size_t at = 0; at < content.size(); at += piece) {
      stream.Pieces.push_back(std::string_view(content).substr(at, piece));
      stream.Pieces.push_back("");
    }
    TMemoryStream file;
    WriteCompoundFile(file, {&stream, 1});
    TCompoundReader reader(file.Bytes());
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
  EXPECT_EQ(TTree(file.Bytes()).Names, sorted);
}

TEST(WriteCompoundFile, TheDirectoryIsARedBlackTreeOfAnySize) {
  std::vector<TCompoundStream> streams;
  std::vector<std::u16string> sorted;
  for (int count = 0; count <= 70; ++count) {
    SCOPED_TRACE(count);
    TMemoryStream file;
    WriteCompoundFile(file, streams);
    EXPECT_EQ(TTree(file.Bytes()).Names, sorted);
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
    {"!",                      "!"                     },
    {{'a', '\0', 'b'},         "a?b"                   }, // the message does not end there
    {Letters30 + "bc",         Letters30 + "bc"        },
    {Letters30 + "\U0001F600", Letters30 + "\U0001F600"}, // counts as two
    {"a\xC3",                  "a\xC3"                 },
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
class TCountingStream : public TStream {
 public:
  using TStream::Write;
  void Write(const void*, std::size_t Count) override { Total += Count; }
  std::size_t Read(void*, std::size_t) override { throw EReadError("not readable"); }
  std::int64_t Seek(std::int64_t, TSeekOrigin) override { throw EStreamError("not seekable"); }
  std::int64_t Size() override { return static_cast<std::int64_t>(Total); }

  std::uint64_t Total = 0;
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
