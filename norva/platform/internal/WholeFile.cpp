#include <norva/platform/internal/WholeFile.h>

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>

#include <norva/platform/Exceptions.h>
#include <norva/platform/FileNames.h>
#include <norva/platform/Messages.h>
#include <norva/platform/Streams.h>
#include <norva/platform/internal/Handles.h>

namespace norva::internal {

namespace {

/// The file that a chain of links ends at; the name itself when there is no such file.
std::string LinkTarget(const std::string& FileName) {
  const std::unique_ptr<char, decltype(&std::free)> path(::realpath(FileName.c_str(), nullptr),
                                                         &std::free);
  return path ? path.get() : FileName;
}

/// What is known of the file to be replaced; throws for one that must not be.
std::optional<struct stat> OldStatus(const std::string& Path, const std::string& FileName) {
  struct stat status;
  if (::stat(Path.c_str(), &status) != 0) return std::nullopt;
  if (!S_ISREG(status.st_mode)) throw EWriteError(MsgCannotWrite, FileName, "not a regular file");
  // Renaming asks for the folder's permission only; a file that is write-protected stays so.
  if (::euidaccess(Path.c_str(), W_OK) != 0) {
    throw EWriteError(MsgCannotWrite, FileName, std::strerror(errno));
  }
  return status;
}

/// Creates a file under a free name in the folder of `Path`. The name is short whatever the
/// length of the old one, so that it always fits.
int CreateBeside(const std::string& Path, mode_t Permissions, std::string& NewPath) {
  const std::string stem = ExtractFilePath(Path) + ".norva" + std::to_string(::getpid()) + "-";
  for (int attempt = 0;; ++attempt) {
    NewPath = stem + std::to_string(attempt);
    const int handle =
        ::open(NewPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, Permissions);
    if (handle >= 0 || (errno != EEXIST && errno != EINTR)) return handle;
  }
}

bool CopyPermissions(int Handle, const struct stat& Old) {
  // Only root may give a file away; others go on with a file of their own.
  if (::fchown(Handle, Old.st_uid, Old.st_gid) != 0 && errno != EPERM) return false;
  return ::fchmod(Handle, Old.st_mode & 07777) == 0;
}

}  // namespace

std::string ReadWholeFile(const std::string& FileName) {
  std::string bytes;
  if (::access(FileName.c_str(), F_OK) != 0 && errno == ENOENT) return bytes;
  TFileStream file(FileName, fmOpenRead);
  char chunk[16 * 1024];
  while (const std::size_t got = file.Read(chunk, sizeof chunk)) bytes.append(chunk, got);
  return bytes;
}

void ReplaceFile(const std::string& FileName, std::string_view Bytes) {
  const std::string path = LinkTarget(FileName);
  const std::optional<struct stat> old = OldStatus(path, FileName);
  std::string newPath;
  THandle file(CreateBeside(path, old ? old->st_mode & 0777 : 0666, newPath));
  if (!file) throw EFCreateError(MsgCannotCreate, FileName, std::strerror(errno));
  // fsync: a full disk or quota may show only then, and must show before the old file is gone.
  const bool replaced = (!old || CopyPermissions(file.Get(), *old)) &&
                        WriteAll(file.Get(), Bytes.data(), Bytes.size()) == Bytes.size() &&
                        ::fsync(file.Get()) == 0 && file.Close() &&
                        ::rename(newPath.c_str(), path.c_str()) == 0;
  if (replaced) return;
  const int error = errno;
  ::unlink(newPath.c_str());
  throw EWriteError(MsgCannotWrite, FileName, std::strerror(error));
}

}  // namespace norva::internal
