/// Small files, read and written as a whole.
#pragma once

#include <string>
#include <string_view>

namespace norva::internal {

/// The bytes of a file; a missing one is empty. Throws EFOpenError or EReadError.
std::string ReadWholeFile(const std::string& FileName);

/// Writes a new file beside `FileName` and puts it in its place, with the old one's permissions;
/// through a symbolic link, in place of what the link names. Whoever reads the name sees the old
/// bytes or the new ones, never a part. On an error (EFCreateError, EWriteError, both naming
/// `FileName`) the old file stays and the new one is removed.
void ReplaceFile(const std::string& FileName, std::string_view Bytes);

}  // namespace norva::internal
