/// A stream that only goes forward: standard output, a pipe, a device.
#pragma once

#include <cstdint>
#include <string>

#include <norva/platform/Streams.h>

namespace norva::tool {

inline constexpr const char* StandardOutputName = "standard output";

/// Writes to an open descriptor, which is not owned, through a buffer. Flush at the end: nothing
/// else tells of the last error. After a failed write all others fail at once, and Ctrl-C is a
/// failure too: the reader may never take any more.
class THandleStream : public TStream {
 public:
  /// `Name` is what errors call it.
  THandleStream(int Handle, std::string Name);

  using TStream::Write;
  void Write(const void* Buffer, std::size_t Count) override;
  void Flush() override;
  /// Bytes written so far.
  std::int64_t Written() const { return Size_; }
  std::int64_t Size() override { return Size_; }
  /// Only asks for the position; everything else throws EStreamError.
  std::int64_t Seek(std::int64_t Offset, TSeekOrigin Origin) override;
  /// Throws EReadError.
  std::size_t Read(void* Buffer, std::size_t Count) override;

 private:
  void WriteOut(const char* Bytes, std::size_t Count);

  int Handle_;
  std::string Name_;
  std::string Buffer_;
  std::int64_t Size_ = 0;
  int Error_ = 0;  // errno of the write that failed
};

}  // namespace norva::tool
