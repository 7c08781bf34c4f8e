/// A folder of its own for one test, and environment variables that are put back.
#pragma once

#include <stdlib.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace norva::tests {

/// An empty folder, removed with all it holds at the end.
class TTempFolder {
 public:
  TTempFolder() {
    std::string path = (std::filesystem::temp_directory_path() / "norva-XXXXXX").string();
    if (::mkdtemp(path.data()) == nullptr) throw std::runtime_error(std::strerror(errno));
    Folder_ = path;
  }
  ~TTempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(Folder_, ignored);
  }
  TTempFolder(const TTempFolder&) = delete;
  TTempFolder& operator=(const TTempFolder&) = delete;

  std::string Path() const { return Folder_.string(); }
  std::string Path(std::string_view Name) const { return (Folder_ / Name).string(); }

  /// Creates the file `Name` and returns its full path.
  std::string Write(std::string_view Name, std::string_view Bytes) const {
    std::ofstream(Folder_ / Name, std::ios::binary) << Bytes;
    return Path(Name);
  }
  std::string Read(std::string_view Name) const {
    std::ifstream file(Folder_ / Name, std::ios::binary);
    if (!file) throw std::runtime_error("no file " + Path(Name));
    return std::string(std::istreambuf_iterator<char>(file), {});
  }
  /// Creates the program `Name`, a script for /bin/sh.
  std::string WriteProgram(std::string_view Name, std::string_view Script) const {
    const std::string path = Write(Name, "#!/bin/sh\n" + std::string(Script) + "\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    return path;
  }
  /// The names in the folder.
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(Folder_)) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }

 private:
  std::filesystem::path Folder_;
};

/// Sets an environment variable, or unsets it (null), for the length of a test.
class TEnvironmentScope {
 public:
  TEnvironmentScope(const char* Name, const char* Value) : Name_(Name) {
    if (const char* saved = ::getenv(Name)) Saved_ = saved;
    Set(Value);
  }
  ~TEnvironmentScope() { Set(Saved_ ? Saved_->c_str() : nullptr); }
  TEnvironmentScope(const TEnvironmentScope&) = delete;
  TEnvironmentScope& operator=(const TEnvironmentScope&) = delete;

 private:
  void Set(const char* Value) {
    if (Value != nullptr) {
      ::setenv(Name_, Value, 1);
    } else {
      ::unsetenv(Name_);
    }
  }

  const char* Name_;
  std::optional<std::string> Saved_;
};

}  // namespace norva::tests
