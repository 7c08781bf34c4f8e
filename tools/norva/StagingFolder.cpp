#include <tools/norva/StagingFolder.h>

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>

namespace norva::tool {

TStagingFolder::TStagingFolder(const std::string& Parent)
    : Folder_(Parent + ".norva-XXXXXX"), Home_(::open(".", O_PATH | O_DIRECTORY | O_CLOEXEC)) {
  if (Home_ >= 0 && ::mkdtemp(Folder_.data()) != nullptr) return;
  const int reason = errno;
  ::close(Home_);
  throw std::system_error(reason, std::generic_category());
}

TStagingFolder::~TStagingFolder() {
  Leave();
  std::error_code ignored;
  std::filesystem::remove_all(Folder_, ignored);
  ::close(Home_);
}

void TStagingFolder::Enter() {
  if (::chdir(Folder_.c_str()) != 0) throw std::system_error(errno, std::generic_category());
  Entered_ = true;
}

void TStagingFolder::Leave() {
  // It was the current folder, so that one can go there whatever its permissions are by now.
  if (Entered_ && ::fchdir(Home_) == 0) Entered_ = false;
}

std::vector<std::string> TStagingFolder::Names() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(Folder_)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::int64_t TStagingFolder::Bytes() const {
  std::int64_t bytes = 0;
  for (const std::string& name : Names()) bytes += Bytes(name);
  return bytes;
}

std::int64_t TStagingFolder::Bytes(const std::string& Name) const {
  return static_cast<std::int64_t>(std::filesystem::file_size(Path(Name)));
}

void TStagingFolder::Move(const std::string& Name, const std::string& Target) const {
  if (std::rename(Path(Name).c_str(), Target.c_str()) == 0) return;
  throw EWriteError(norva::MsgCannotWrite, Target, std::strerror(errno));
}

}  // namespace norva::tool
