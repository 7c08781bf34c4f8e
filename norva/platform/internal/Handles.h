/// File descriptors: ownership, and writes that are complete or failed.
#pragma once

#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace norva::internal {

/// Owns a file descriptor; -1 is none.
class THandle {
 public:
  explicit THandle(int Handle = -1) : Handle_(Handle) {}
  THandle(const THandle&) = delete;
  THandle& operator=(const THandle&) = delete;
  ~THandle() { Close(); }

  int Get() const { return Handle_; }
  explicit operator bool() const { return Handle_ >= 0; }

  /// False, with errno set, when the system reports that written data was lost. The descriptor
  /// is gone either way.
  bool Close() {
    const int handle = Handle_;
    Handle_ = -1;
    // An interrupted close has released the descriptor all the same; a retry could hit another's.
    return handle < 0 || ::close(handle) == 0 || errno == EINTR;
  }

 private:
  int Handle_;
};

/// Writes until done or failed. Returns the bytes written: fewer than `Count` is a failure that
/// errno explains.
inline std::size_t WriteAll(int Handle, const char* Bytes, std::size_t Count) {
  std::size_t done = 0;
  while (done < Count) {
    const ssize_t written = ::write(Handle, Bytes + done, Count - done);
    if (written >= 0) {
      done += static_cast<std::size_t>(written);
    } else if (errno != EINTR) {
      break;
    }
  }
  return done;
}

/// The same at `Offset`, without moving the position. False, with errno set, when that fails.
inline bool WriteAllAt(int Handle, std::string_view Bytes, std::int64_t Offset) {
  while (!Bytes.empty()) {
    const ssize_t written = ::pwrite(Handle, Bytes.data(), Bytes.size(), Offset);
    if (written >= 0) {
      Bytes.remove_prefix(static_cast<std::size_t>(written));
      Offset += written;
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

}  // namespace norva::internal
