/// Streams: a file with its own buffer, and memory.
///
/// Every failed read, write, seek or close is an exception that names the file and the system's
/// reason; nothing fails silently. A destructor cannot throw: who wrote a file calls Close.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <norva/platform/Export.h>

namespace norva {

enum TSeekOrigin : std::uint8_t { soBeginning, soCurrent, soEnd };

/// A sequence of bytes with a position.
class NORVA_EXPORT TStream {
 public:
  TStream() = default;
  TStream(const TStream&) = delete;
  TStream& operator=(const TStream&) = delete;
  virtual ~TStream();

  /// Reads up to `Count` bytes; fewer only at the end. Returns the number read.
  virtual std::size_t Read(void* Buffer, std::size_t Count) = 0;
  /// Writes all `Count` bytes or throws EWriteError.
  virtual void Write(const void* Buffer, std::size_t Count) = 0;
  void Write(std::string_view Bytes) { Write(Bytes.data(), Bytes.size()); }
  /// Moves the position and returns it, counted from the start.
  virtual std::int64_t Seek(std::int64_t Offset, TSeekOrigin Origin) = 0;
  virtual std::int64_t Size() = 0;
  /// Writes `Bytes` over those at `Offset`, counted from the start; the position stays.
  virtual void Overwrite(std::int64_t Offset, std::string_view Bytes);
  /// Hands buffered bytes to the system.
  virtual void Flush() {}

  std::int64_t Position() { return Seek(0, soCurrent); }
  void SetPosition(std::int64_t Position) { Seek(Position, soBeginning); }
  /// Reads exactly `Count` bytes or throws EReadError.
  void ReadBuffer(void* Buffer, std::size_t Count);
};

enum TFileMode : std::uint8_t {
  fmCreate,         ///< created anew, truncated if it exists; read and write
  fmOpenRead,       ///< an existing file, to read
  fmOpenReadWrite,  ///< an existing file, to read and to write
};

/// A file. Writes go through a 64 KiB buffer, which is flushed before the file is read, sought
/// within or closed; reads are unbuffered. So that a count at the head of a file can follow every
/// record, one place before the position is overwritten without a flush: the bytes wait beside the
/// buffer and are written right behind it.
class NORVA_EXPORT TFileStream : public TStream {
 public:
  /// Throws EFCreateError or EFOpenError with the file's name and the system's reason.
  TFileStream(const std::string& FileName, TFileMode Mode);
  /// Closes the file; errors are lost here, so call Close after writing.
  ~TFileStream() override;

  using TStream::Write;
  std::size_t Read(void* Buffer, std::size_t Count) override;
  void Write(const void* Buffer, std::size_t Count) override;
  std::int64_t Seek(std::int64_t Offset, TSeekOrigin Origin) override;
  std::int64_t Size() override;
  void Overwrite(std::int64_t Offset, std::string_view Bytes) override;
  void Flush() override;
  /// Flushes and closes; throws EWriteError when either fails. The file counts as closed then.
  void Close();

  const std::string& FileName() const { return FileName_; }

 private:
  /// Writes the buffer out, then the patch; false, with errno set, when that fails.
  bool WriteBuffer();

  int Handle_;                    // -1 when closed
  std::string Buffer_;            // written by the caller, not yet by the system
  std::string Patch_;             // likewise, over the bytes at ...
  std::int64_t PatchOffset_ = 0;  // ... which end before the position
  std::string FileName_;
};

/// Bytes in memory.
class NORVA_EXPORT TMemoryStream : public TStream {
 public:
  TMemoryStream() = default;
  explicit TMemoryStream(std::string Bytes);

  using TStream::Write;
  std::size_t Read(void* Buffer, std::size_t Count) override;
  void Write(const void* Buffer, std::size_t Count) override;
  std::int64_t Seek(std::int64_t Offset, TSeekOrigin Origin) override;
  std::int64_t Size() override;
  /// The whole content, from position 0.
  const std::string& Bytes() const { return Bytes_; }

 private:
  std::string Bytes_;
  std::size_t Position_ = 0;
};

}  // namespace norva
