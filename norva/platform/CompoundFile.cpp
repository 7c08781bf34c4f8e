// A compound document, in the order written. Sector n begins at byte 512 * (n + 1); each part
// begins a new sector, and what it leaves of its last one is filled up. A part without content,
// say the mini FAT where no stream is short, has no sector.
//
//   header        512 bytes   sizes and places of the tables; the first 109 FAT sectors
//   DIFAT         512 each    127 further FAT sectors (4 bytes each), next DIFAT sector
//   FAT           512 each    for 128 sectors (4 bytes each): next sector of the same chain
//   directory     512 each    4 entries of 128 bytes: the root, then the streams as they came
//   mini FAT      512 each    for 128 mini sectors (4 bytes each): next one of the same stream
//   mini stream   64 per mini sector: the streams below 4096 bytes, one after another
//   long streams  512 each    the streams from 4096 bytes on, one after another
//
// Integers are little-endian, texts UTF-16. The root counts as the owner of the mini stream.
#include <norva/platform/CompoundFile.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <utility>

#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>
#include <norva/platform/internal/UnicodeCase.h>
#include <norva/platform/internal/Utf8.h>

namespace norva {
namespace {

constexpr std::uint32_t SectorSize = 512;
constexpr std::uint32_t MiniSectorSize = 64;
constexpr std::uint32_t MiniStreamCutoff = 4096;  // a stream of this size is a long one
constexpr std::uint32_t DirectoryEntrySize = 128;
constexpr std::uint32_t NumbersPerSector = SectorSize / 4;
constexpr std::uint32_t PlacesPerDifatSector = NumbersPerSector - 1;  // the last one is the link
constexpr std::uint32_t PlacesInHeader = 109;
constexpr std::size_t MaxNameLength = 31;  // without the zero at its end
// Version 3 ends below 2 GiB; the sector at its end would be the one for byte-range locks.
constexpr std::uint64_t MaxFileSize = 0x7FFFFFFF;

// Sector numbers with a meaning of their own, in the FAT and where a chain begins.
constexpr std::uint32_t DifatSector = 0xFFFFFFFC;
constexpr std::uint32_t FatSector = 0xFFFFFFFD;
constexpr std::uint32_t EndOfChain = 0xFFFFFFFE;
constexpr std::uint32_t FreeSector = 0xFFFFFFFF;
constexpr char FreeByte = '\xFF';  // four of them are FreeSector

constexpr std::uint32_t NoEntry = 0xFFFFFFFF;  // of the directory

template <class T>
constexpr T UnitsFor(T Count, std::uint32_t PerUnit) {
  return (Count + PerUnit - 1) / PerUnit;
}

/// Gathers small pieces and counts bytes, so that sectors can be filled up.
class TSectorWriter {
 public:
  explicit TSectorWriter(TStream& Output) : Output_(Output) { Buffer_.reserve(BufferSize); }

  void Put(std::string_view Bytes) {
    Written_ += Bytes.size();
    if (Buffer_.size() + Bytes.size() > BufferSize) Flush();
    if (Bytes.size() < BufferSize) {
      Buffer_ += Bytes;
    } else {
      Output_.Write(Bytes);
    }
  }
  void Put8(unsigned Value) {
    const char byte = static_cast<char>(Value);
    Put({&byte, 1});
  }
  void Put16(unsigned Value) {
    const char bytes[] = {static_cast<char>(Value), static_cast<char>(Value >> 8)};
    Put({bytes, sizeof bytes});
  }
  void Put32(std::uint32_t Value) {
    const char bytes[] = {static_cast<char>(Value), static_cast<char>(Value >> 8),
                          static_cast<char>(Value >> 16), static_cast<char>(Value >> 24)};
    Put({bytes, sizeof bytes});
  }
  /// `Count` times the same byte; at most one sector of it.
  void Fill(std::size_t Count, char Byte = '\0') {
    const std::string bytes(Count, Byte);
    Put(bytes);
  }
  /// Fills up to a multiple of `Unit`.
  void PadTo(std::uint32_t Unit, char Byte = '\0') {
    Fill(static_cast<std::size_t>(UnitsFor<std::uint64_t>(Written_, Unit) * Unit - Written_), Byte);
  }
  void Flush() {
    Output_.Write(Buffer_);
    Buffer_.clear();
  }

 private:
  static constexpr std::size_t BufferSize = 8192;  // spares the stream a call per number

  TStream& Output_;
  std::string Buffer_;
  std::uint64_t Written_ = 0;
};

/// Neighbouring sectors, or mini sectors. Nothing is ever changed or deleted here, so that every
/// chain is one run.
struct TRun {
  std::uint32_t First = EndOfChain;
  std::uint32_t Count = 0;
};

/// An entry of the directory.
struct TEntry {
  std::u16string Name;
  std::u16string Key;  // the name in capitals
  std::uint32_t Size = 0;
  TRun Run;  // in mini sectors for a short stream
  std::uint32_t Left = NoEntry;
  std::uint32_t Right = NoEntry;
  std::uint32_t Child = NoEntry;
  bool Red = false;

  bool IsShort() const { return Size < MiniStreamCutoff; }
};

/// The UTF-16 form of a stream's name.
std::u16string CheckedName(const std::string& Name) {
  std::u16string name;
  bool valid = true;
  for (std::size_t at = 0; at < Name.size();) {
    const internal::TUtf8Char next = internal::DecodeUtf8(Name, at);
    at += next.Length;
    constexpr std::u32string_view forbidden(U"/\\:!\0", 5);
    valid = valid && next.WellFormed && forbidden.find(next.Code) == forbidden.npos;
    // 0xD7C0 is 0xD800 less the 0x10000 >> 10 that a surrogate pair does not count.
    if (next.Code >= 0x10000) name += static_cast<char16_t>(0xD7C0 + (next.Code >> 10));
    name += static_cast<char16_t>(next.Code < 0x10000 ? next.Code : 0xDC00 | (next.Code & 0x3FF));
  }
  if (valid && !name.empty() && name.size() <= MaxNameLength) return name;
  std::string shown = Name;
  std::replace(shown.begin(), shown.end(), '\0', '?');  // what() would end there
  throw EOleError(MsgOleName, shown);
}

/// What names are compared by: each 16-bit character capitalised for itself.
std::u16string Capitals(std::u16string Name) {
  for (char16_t& unit : Name) unit = static_cast<char16_t>(internal::UnicodeUpper(unit));
  return Name;
}

std::uint32_t CheckedSize(const TCompoundStream& Stream) {
  std::uint64_t size = 0;
  for (const std::string_view piece : Stream.Pieces) {
    size += piece.size();
    if (size > MaxFileSize) throw EOleError(MsgOleStreamSize, Stream.Name, MaxFileSize);
  }
  return static_cast<std::uint32_t>(size);
}

/// One document: laid out by the constructor, then written.
class TCompoundFile {
 public:
  explicit TCompoundFile(std::span<const TCompoundStream> Streams);
  void Write(TStream& Output) const;

 private:
  void ListEntries();
  void LinkEntries();
  std::uint32_t LinkBranch(std::span<const std::uint32_t> Sorted, int LevelsBelow);
  void PlaceSectors();

  void WriteHeader(TSectorWriter& Writer) const;
  void WriteDifat(TSectorWriter& Writer) const;
  void WriteFatPlaces(TSectorWriter& Writer, std::uint32_t First, std::uint32_t Count) const;
  void WriteFat(TSectorWriter& Writer) const;
  void WriteDirectory(TSectorWriter& Writer) const;
  void WriteMiniFat(TSectorWriter& Writer) const;
  void WriteStreams(TSectorWriter& Writer, bool Short, std::uint32_t Unit) const;

  std::span<const TCompoundStream> Streams_;
  std::vector<TEntry> Entries_;  // the root, then one for each stream
  TRun Difat_;
  TRun Fat_;
  TRun Directory_;
  TRun MiniFat_;
};

// --- Layout -------------------------------------------------------------------------------------

TCompoundFile::TCompoundFile(std::span<const TCompoundStream> Streams) : Streams_(Streams) {
  ListEntries();
  LinkEntries();
  PlaceSectors();
}

void TCompoundFile::ListEntries() {
  Entries_.reserve(Streams_.size() + 1);
  Entries_.emplace_back().Name = u"Root Entry";
  for (const TCompoundStream& stream : Streams_) {
    TEntry& entry = Entries_.emplace_back();
    entry.Name = CheckedName(stream.Name);
    entry.Key = Capitals(entry.Name);
    entry.Size = CheckedSize(stream);
  }
}

// The root's streams form a red-black search tree; a shorter name comes before a longer one.
void TCompoundFile::LinkEntries() {
  std::vector<std::uint32_t> sorted(Streams_.size());
  std::iota(sorted.begin(), sorted.end(), 1);
  std::stable_sort(sorted.begin(), sorted.end(), [this](std::uint32_t A, std::uint32_t B) {
    const std::u16string &a = Entries_[A].Key, &b = Entries_[B].Key;
    return a.size() != b.size() ? a.size() < b.size() : a < b;
  });
  const auto twin = std::adjacent_find(
      sorted.begin(), sorted.end(),
      [this](std::uint32_t A, std::uint32_t B) { return Entries_[A].Key == Entries_[B].Key; });
  if (twin != sorted.end()) {
    throw EOleError(MsgOleNameTwice, Streams_[twin[0] - 1].Name, Streams_[twin[1] - 1].Name);
  }
  if (sorted.empty()) return;
  const std::uint32_t top = LinkBranch(sorted, static_cast<int>(std::bit_width(sorted.size())) - 1);
  Entries_[top].Red = false;
  Entries_[0].Child = top;
}

// With the middle one on top of every branch only the lowest level can have gaps. So that level is
// red and all others are black: every way down passes the same number of blacks.
std::uint32_t TCompoundFile::LinkBranch(std::span<const std::uint32_t> Sorted, int LevelsBelow) {
  if (Sorted.empty()) return NoEntry;
  const std::size_t middle = Sorted.size() / 2;
  TEntry& entry = Entries_[Sorted[middle]];
  entry.Red = LevelsBelow == 0;
  entry.Left = LinkBranch(Sorted.first(middle), LevelsBelow - 1);
  entry.Right = LinkBranch(Sorted.subspan(middle + 1), LevelsBelow - 1);
  return Sorted[middle];
}

/// The next `Count` places behind `Next`.
TRun Place(std::uint64_t Count, std::uint32_t& Next) {
  if (Count == 0) return {};
  const auto count = static_cast<std::uint32_t>(Count);
  return {std::exchange(Next, Next + count), count};
}

void TCompoundFile::PlaceSectors() {
  const std::span<TEntry> streams = std::span(Entries_).subspan(1);
  std::uint64_t miniSectors = 0;
  std::uint64_t longSectors = 0;
  for (const TEntry& stream : streams) {
    if (stream.IsShort()) {
      miniSectors += UnitsFor(stream.Size, MiniSectorSize);
    } else {
      longSectors += UnitsFor(stream.Size, SectorSize);
    }
  }
  const std::uint64_t directory =
      UnitsFor<std::uint64_t>(Entries_.size(), SectorSize / DirectoryEntrySize);
  const std::uint64_t miniFat = UnitsFor(miniSectors, NumbersPerSector);
  const std::uint64_t miniStream = UnitsFor(miniSectors, SectorSize / MiniSectorSize);

  // The FAT lists its own sectors and the DIFAT's, too: the counts grow until they fit.
  const std::uint64_t others = directory + miniFat + miniStream + longSectors;
  std::uint64_t fat = 0, difat = 0, sectors = others;
  while (fat * NumbersPerSector < sectors) {
    fat = UnitsFor(sectors, NumbersPerSector);
    difat = fat <= PlacesInHeader ? 0 : UnitsFor(fat - PlacesInHeader, PlacesPerDifatSector);
    sectors = others + fat + difat;
  }
  const std::uint64_t fileSize = (1 + sectors) * SectorSize;
  if (fileSize > MaxFileSize) throw EOleError(MsgOleFileSize, fileSize, MaxFileSize);

  std::uint32_t next = 0;
  Difat_ = Place(difat, next);
  Fat_ = Place(fat, next);
  Directory_ = Place(directory, next);
  MiniFat_ = Place(miniFat, next);
  Entries_[0].Run = Place(miniStream, next);
  Entries_[0].Size = static_cast<std::uint32_t>(miniSectors * MiniSectorSize);
  std::uint32_t nextMini = 0;
  for (TEntry& stream : streams) {
    stream.Run = stream.IsShort() ? Place(UnitsFor(stream.Size, MiniSectorSize), nextMini)
                                  : Place(UnitsFor(stream.Size, SectorSize), next);
  }
}

// --- Writing ------------------------------------------------------------------------------------

void TCompoundFile::Write(TStream& Output) const {
  TSectorWriter writer(Output);
  WriteHeader(writer);
  WriteDifat(writer);
  WriteFat(writer);
  WriteDirectory(writer);
  WriteMiniFat(writer);
  WriteStreams(writer, true, MiniSectorSize);
  writer.PadTo(SectorSize);  // the mini stream, as a whole
  WriteStreams(writer, false, SectorSize);
  writer.Flush();
}

void TCompoundFile::WriteHeader(TSectorWriter& Writer) const {
  Writer.Put("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1");
  Writer.Fill(16);       // class
  Writer.Put16(0x003E);  // minor version
  Writer.Put16(3);       // major version
  Writer.Put16(0xFFFE);  // byte order: little-endian
  Writer.Put16(9);       // sectors of 2^9 bytes
  Writer.Put16(6);       // mini sectors of 2^6 bytes
  Writer.Fill(6);        // reserved
  Writer.Put32(0);       // directory sectors: not counted in version 3
  Writer.Put32(Fat_.Count);
  Writer.Put32(Directory_.First);
  Writer.Put32(0);  // transaction
  Writer.Put32(MiniStreamCutoff);
  Writer.Put32(MiniFat_.First);
  Writer.Put32(MiniFat_.Count);
  Writer.Put32(Difat_.First);
  Writer.Put32(Difat_.Count);
  WriteFatPlaces(Writer, 0, PlacesInHeader);
}

void TCompoundFile::WriteDifat(TSectorWriter& Writer) const {
  for (std::uint32_t i = 0; i < Difat_.Count; ++i) {
    WriteFatPlaces(Writer, PlacesInHeader + i * PlacesPerDifatSector, PlacesPerDifatSector);
    Writer.Put32(i + 1 < Difat_.Count ? Difat_.First + i + 1 : EndOfChain);
  }
}

// The numbers of `Count` FAT sectors from the `First` on, as far as there are so many.
void TCompoundFile::WriteFatPlaces(TSectorWriter& Writer, std::uint32_t First,
                                   std::uint32_t Count) const {
  for (std::uint32_t i = First; i < First + Count; ++i) {
    Writer.Put32(i < Fat_.Count ? Fat_.First + i : FreeSector);
  }
}

/// Each sector's successor, in either FAT.
void WriteChain(TSectorWriter& Writer, TRun Run) {
  for (std::uint32_t i = 1; i < Run.Count; ++i) Writer.Put32(Run.First + i);
  if (Run.Count > 0) Writer.Put32(EndOfChain);
}

void TCompoundFile::WriteFat(TSectorWriter& Writer) const {
  for (std::uint32_t i = 0; i < Difat_.Count; ++i) Writer.Put32(DifatSector);
  for (std::uint32_t i = 0; i < Fat_.Count; ++i) Writer.Put32(FatSector);
  WriteChain(Writer, Directory_);
  WriteChain(Writer, MiniFat_);
  WriteChain(Writer, Entries_[0].Run);
  for (const TEntry& stream : std::span(Entries_).subspan(1)) {
    if (!stream.IsShort()) WriteChain(Writer, stream.Run);
  }
  Writer.PadTo(SectorSize, FreeByte);
}

void WriteEntry(TSectorWriter& Writer, const TEntry& Entry, bool Root) {
  for (const char16_t unit : Entry.Name) Writer.Put16(unit);
  Writer.Fill(64 - 2 * Entry.Name.size());
  Writer.Put16(static_cast<unsigned>(2 * Entry.Name.size() + 2));  // with the zero at its end
  Writer.Put8(Root ? 5 : 2);
  Writer.Put8(Entry.Red ? 0 : 1);
  Writer.Put32(Entry.Left);
  Writer.Put32(Entry.Right);
  Writer.Put32(Entry.Child);
  Writer.Fill(16 + 4 + 8 + 8);  // class, state bits, times of creation and change
  Writer.Put32(Entry.Run.First);
  Writer.Put32(Entry.Size);
  Writer.Put32(0);  // upper half of the size, in version 4
}

void TCompoundFile::WriteDirectory(TSectorWriter& Writer) const {
  for (const TEntry& entry : Entries_) WriteEntry(Writer, entry, &entry == Entries_.data());
  const std::uint32_t perSector = SectorSize / DirectoryEntrySize;
  for (std::size_t i = Entries_.size(); i % perSector != 0; ++i) {  // unused entries
    Writer.Fill(68);
    Writer.Fill(12, FreeByte);  // NoEntry on the left, on the right and as child
    Writer.Fill(48);
  }
}

void TCompoundFile::WriteMiniFat(TSectorWriter& Writer) const {
  for (const TEntry& stream : std::span(Entries_).subspan(1)) {
    if (stream.IsShort()) WriteChain(Writer, stream.Run);
  }
  Writer.PadTo(SectorSize, FreeByte);
}

// The short or the long streams, each in units of `Unit` bytes.
void TCompoundFile::WriteStreams(TSectorWriter& Writer, bool Short, std::uint32_t Unit) const {
  for (std::size_t i = 0; i < Streams_.size(); ++i) {
    if (Entries_[i + 1].IsShort() != Short) continue;
    for (const std::string_view piece : Streams_[i].Pieces) Writer.Put(piece);
    Writer.PadTo(Unit);
  }
}

}  // namespace

void WriteCompoundFile(TStream& Output, std::span<const TCompoundStream> Streams) {
  TCompoundFile(Streams).Write(Output);
}

}  // namespace norva
