/// Parts of a file name. Only `/` separates folders.
#pragma once

#include <string>
#include <string_view>

#include <norva/platform/Export.h>

namespace norva {

/// The last point of the last component and what follows it, or nothing. A point that begins the
/// component begins no extension, and a name of points alone has none: `.profile`, `..`.
NORVA_EXPORT std::string ExtractFileExt(std::string_view FileName);
/// The name with `Extension`, which brings its own point, in place of its extension or at the end.
NORVA_EXPORT std::string ChangeFileExt(std::string_view FileName, std::string_view Extension);
/// What follows the last `/`.
NORVA_EXPORT std::string ExtractFileName(std::string_view FileName);
/// The name up to its last `/`, which is part of it; empty without one.
NORVA_EXPORT std::string ExtractFilePath(std::string_view FileName);

}  // namespace norva
