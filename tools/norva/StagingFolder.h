/// A fresh folder in which an export's files are made before they go to their places.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace norva::tool {

/// Created empty, named `.norva-` and six characters; removed with all that is still in it.
class TStagingFolder {
 public:
  /// In `Parent`, which is empty or ends with `/`. Throws std::system_error.
  explicit TStagingFolder(const std::string& Parent);
  ~TStagingFolder();
  TStagingFolder(const TStagingFolder&) = delete;
  TStagingFolder& operator=(const TStagingFolder&) = delete;

  /// Makes it the current folder, so that exporters see and write bare names; Leave goes back.
  void Enter();
  void Leave();

  /// The names of its files, sorted.
  std::vector<std::string> Names() const;
  std::string Path(const std::string& Name) const { return Folder_ + "/" + Name; }
  std::int64_t Bytes() const;
  std::int64_t Bytes(const std::string& Name) const;
  /// Moves the file `Name` to `Target`, replacing what is there. Throws EWriteError.
  void Move(const std::string& Name, const std::string& Target) const;

 private:
  std::string Folder_;
  int Home_;  // the folder that was the current one
  bool Entered_ = false;
};

}  // namespace norva::tool
