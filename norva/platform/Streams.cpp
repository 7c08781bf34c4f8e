#include <norva/platform/Streams.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>
#include <norva/platform/internal/Handles.h>

namespace norva {

namespace {

constexpr std::size_t WriteBufferSize = std::size_t{64} * 1024;

int OpenFlags(TFileMode Mode) {
  switch (Mode) {
    case fmCreate:
      return O_RDWR | O_CREAT | O_TRUNC;
    case fmOpenReadWrite:
      return O_RDWR;
    case fmOpenRead:
      break;
  }
  return O_RDONLY;
}

int OpenFile(const std::string& FileName, TFileMode Mode) {
  if (FileName.find('\0') != std::string::npos) {  // the system would open a shorter name
    errno = EINVAL;
    return -1;
  }
  constexpr mode_t everybody = 0666;  // less the process's umask
  int handle;
  do {
    handle = ::open(FileName.c_str(), OpenFlags(Mode) | O_CLOEXEC, everybody);
  } while (handle < 0 && errno == EINTR);
  return handle;
}

int SeekOrigin(TSeekOrigin Origin) {
  switch (Origin) {
    case soBeginning:
      return SEEK_SET;
    case soEnd:
      return SEEK_END;
    case soCurrent:
      break;
  }
  return SEEK_CUR;
}

}  // namespace

TStream::~TStream() = default;

void TStream::ReadBuffer(void* Buffer, std::size_t Count) {
  const std::size_t got = Read(Buffer, Count);
  if (got != Count) throw EReadError(MsgStreamEnds, got, Count);
}

void TStream::Overwrite(std::int64_t Offset, std::string_view Bytes) {
  const std::int64_t position = Position();
  SetPosition(Offset);
  Write(Bytes);
  SetPosition(position);
}

TFileStream::TFileStream(const std::string& FileName, TFileMode Mode)
    : Handle_(OpenFile(FileName, Mode)), FileName_(FileName) {
  if (Handle_ >= 0) return;
  const char* reason = std::strerror(errno);
  if (Mode == fmCreate) throw EFCreateError(MsgCannotCreate, FileName, reason);
  throw EFOpenError(MsgCannotOpen, FileName, reason);
}

TFileStream::~TFileStream() {
  try {
    Close();
  } catch (const Exception&) {  // a destructor has nobody to tell
  }
}

std::size_t TFileStream::Read(void* Buffer, std::size_t Count) {
  Flush();
  char* target = static_cast<char*>(Buffer);
  std::size_t done = 0;
  while (done < Count) {
    const ssize_t got = ::read(Handle_, target + done, Count - done);
    if (got == 0) break;
    if (got > 0) {
      done += static_cast<std::size_t>(got);
    } else if (errno != EINTR) {
      throw EReadError(MsgCannotRead, FileName_, std::strerror(errno));
    }
  }
  return done;
}

void TFileStream::Write(const void* Buffer, std::size_t Count) {
  if (Handle_ < 0) throw EWriteError(MsgCannotWrite, FileName_, std::strerror(EBADF));
  if (Count > WriteBufferSize - Buffer_.size()) Flush();
  const char* bytes = static_cast<const char*>(Buffer);
  if (Count < WriteBufferSize) {
    Buffer_.append(bytes, Count);
  } else if (internal::WriteAll(Handle_, bytes, Count) != Count) {  // the buffer is empty
    throw EWriteError(MsgCannotWrite, FileName_, std::strerror(errno));
  }
}

std::int64_t TFileStream::Seek(std::int64_t Offset, TSeekOrigin Origin) {
  // Asking for the position moves nothing, so it need not cost a write.
  const bool isQuery = Offset == 0 && Origin == soCurrent;
  if (!isQuery) Flush();
  const off_t position = ::lseek(Handle_, Offset, SeekOrigin(Origin));
  if (position < 0) throw EStreamError(MsgCannotSeek, FileName_, std::strerror(errno));
  return position + static_cast<std::int64_t>(Buffer_.size());
}

std::int64_t TFileStream::Size() {
  Flush();
  struct stat status;
  if (::fstat(Handle_, &status) != 0) {
    throw EStreamError(MsgCannotRead, FileName_, std::strerror(errno));
  }
  return status.st_size;
}

void TFileStream::Overwrite(std::int64_t Offset, std::string_view Bytes) {
  const bool samePlace = Offset == PatchOffset_ && Bytes.size() == Patch_.size();
  if (!samePlace) {
    if (!Patch_.empty()) Flush();
    // A patch is written last. Only what lies before the position cannot be written once more
    // meanwhile, unless somebody seeks, and that flushes.
    if (Offset < 0 || Offset + static_cast<std::int64_t>(Bytes.size()) > Position()) {
      return TStream::Overwrite(Offset, Bytes);
    }
  }
  Patch_ = Bytes;
  PatchOffset_ = Offset;
}

void TFileStream::Flush() {
  if (!WriteBuffer()) throw EWriteError(MsgCannotWrite, FileName_, std::strerror(errno));
}

bool TFileStream::WriteBuffer() {
  if (!Buffer_.empty()) {
    const std::size_t written = internal::WriteAll(Handle_, Buffer_.data(), Buffer_.size());
    Buffer_.erase(0, written);  // what is left is neither lost nor written twice by a retry
    if (!Buffer_.empty()) return false;
  }
  if (Patch_.empty()) return true;
  if (!internal::WriteAllAt(Handle_, Patch_, PatchOffset_)) return false;
  Patch_.clear();
  return true;
}

void TFileStream::Close() {
  if (Handle_ < 0) return;
  const bool flushed = WriteBuffer();
  const int flushError = errno;
  Buffer_.clear();
  Patch_.clear();
  const bool closed = internal::THandle(std::exchange(Handle_, -1)).Close();
  if (flushed && closed) return;
  throw EWriteError(MsgCannotWrite, FileName_, std::strerror(flushed ? errno : flushError));
}

TMemoryStream::TMemoryStream(std::string Bytes) : Bytes_(std::move(Bytes)) {}

std::size_t TMemoryStream::Read(void* Buffer, std::size_t Count) {
  const std::size_t left = Bytes_.size() - std::min(Position_, Bytes_.size());
  const std::size_t got = std::min(Count, left);
  if (got > 0) std::memcpy(Buffer, Bytes_.data() + Position_, got);
  Position_ += got;
  return got;
}

void TMemoryStream::Write(const void* Buffer, std::size_t Count) {
  if (Count == 0) return;
  if (Position_ > Bytes_.size()) Bytes_.resize(Position_);  // a gap reads as zeros, as in a file
  Bytes_.replace(Position_, Count, static_cast<const char*>(Buffer), Count);
  Position_ += Count;
}

std::int64_t TMemoryStream::Seek(std::int64_t Offset, TSeekOrigin Origin) {
  std::int64_t base = 0;
  if (Origin == soCurrent) base = static_cast<std::int64_t>(Position_);
  if (Origin == soEnd) base = Size();
  std::int64_t position;
  if (__builtin_add_overflow(base, Offset, &position) || position < 0) {
    throw EStreamError(MsgBadPosition, Offset, base);
  }
  Position_ = static_cast<std::size_t>(position);
  return position;
}

std::int64_t TMemoryStream::Size() { return static_cast<std::int64_t>(Bytes_.size()); }

}  // namespace norva
