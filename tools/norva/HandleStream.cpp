#include <tools/norva/HandleStream.h>

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>
#include <tools/norva/Interrupt.h>

namespace norva::tool {
namespace {

constexpr std::size_t BufferSize = std::size_t{64} * 1024;

}  // namespace

THandleStream::THandleStream(int Handle, std::string Name)
    : Handle_(Handle), Name_(std::move(Name)) {}

void THandleStream::Write(const void* Buffer, std::size_t Count) {
  const char* bytes = static_cast<const char*>(Buffer);
  if (Buffer_.size() + Count > BufferSize) Flush();
  if (Count < BufferSize) {
    Buffer_.append(bytes, Count);
  } else {
    WriteOut(bytes, Count);
  }
  Size_ += static_cast<std::int64_t>(Count);
}

void THandleStream::Flush() {
  WriteOut(Buffer_.data(), Buffer_.size());
  Buffer_.clear();
}

void THandleStream::WriteOut(const char* Bytes, std::size_t Count) {
  while (Count > 0 && Error_ == 0) {
    // Asked before each write: the rest of one that a signal has cut short may wait for ever.
    const ssize_t written = Interrupted() ? -1 : ::write(Handle_, Bytes, Count);
    if (written >= 0) {
      Bytes += written;
      Count -= static_cast<std::size_t>(written);
    } else if (Interrupted()) {
      Error_ = EINTR;
    } else if (errno != EINTR) {
      Error_ = errno;
    }
  }
  if (Error_ != 0) throw EWriteError(norva::MsgCannotWrite, Name_, std::strerror(Error_));
}

std::int64_t THandleStream::Seek(std::int64_t Offset, TSeekOrigin Origin) {
  if (Offset == 0 && Origin == soCurrent) return Size_;
  throw EStreamError(norva::MsgCannotSeek, Name_, std::strerror(ESPIPE));
}

std::size_t THandleStream::Read(void*, std::size_t) {
  throw EReadError(norva::MsgCannotRead, Name_, std::strerror(EBADF));
}

}  // namespace norva::tool
