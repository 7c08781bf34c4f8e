#include <norva/platform/FileNames.h>

#include <cstddef>

namespace norva {

namespace {

std::size_t NameStart(std::string_view FileName) {
  return FileName.rfind('/') + 1;  // npos + 1 is 0
}

/// Where the extension starts; the end of the name when there is none.
std::size_t ExtensionStart(std::string_view FileName) {
  const std::size_t start = NameStart(FileName);
  const std::string_view name = FileName.substr(start);
  const std::size_t point = name.rfind('.');
  const bool pointsOnly = name.find_first_not_of('.') == name.npos;
  return point == name.npos || point == 0 || pointsOnly ? FileName.size() : start + point;
}

}  // namespace

std::string ExtractFileExt(std::string_view FileName) {
  return std::string(FileName.substr(ExtensionStart(FileName)));
}

std::string ChangeFileExt(std::string_view FileName, std::string_view Extension) {
  return std::string(FileName.substr(0, ExtensionStart(FileName))).append(Extension);
}

std::string ExtractFileName(std::string_view FileName) {
  return std::string(FileName.substr(NameStart(FileName)));
}

std::string ExtractFilePath(std::string_view FileName) {
  return std::string(FileName.substr(0, NameStart(FileName)));
}

}  // namespace norva
