/// Compound documents: a file that holds several named streams, the structured storage format in
/// its version 3 (sectors of 512 bytes).
///
///   TFileStream file("book.xls", fmCreate);
///   const TCompoundStream book = {"Workbook", {globals, sheet}};
///   WriteCompoundFile(file, {&book, 1});
///   file.Close();
///
/// All sizes are known at the start, so that the document is written from front to back, in one
/// pass, without seeking, and without a copy of what goes in. There is one folder, the root.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <norva/platform/Export.h>
#include <norva/platform/Streams.h>

namespace norva {

/// A stream of a compound document. Its bytes are referenced, not copied: they must stay as they
/// are until the document is written.
struct TCompoundStream {
  /// In UTF-8: 1 to 31 16-bit characters without / \ : ! and zero. Letter case counts for nothing
  /// when names are compared.
  std::string Name;
  /// The content, in order.
  std::vector<std::string_view> Pieces;
};

/// Writes a compound document with `Streams`, in any order, at the position of `Output`.
/// Throws EOleError, before the first byte is written, for a name that the format forbids, for a
/// name given twice and for more than it can hold: 2147483647 bytes in all. Write errors are
/// those of `Output`.
NORVA_EXPORT void WriteCompoundFile(TStream& Output, std::span<const TCompoundStream> Streams);

}  // namespace norva
