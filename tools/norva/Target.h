/// Where an export goes.
///
///   a file            made in a folder beside it and moved into place when it is whole
///   standard output,  written as the export runs or, by formats that seek or name files, from a
///   pipes, devices      temporary file afterwards
///   the clipboard     filled when the text is whole
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <norva/core/Norva.h>
#include <tools/norva/Formats.h>

namespace norva::tool {

class TTarget {
 public:
  virtual ~TTarget() = default;

  /// Runs the export. Throws what the exporter throws, with the name of the output as it was given.
  virtual void Write(TNorva& Exporter) = 0;
  /// Puts the output where it belongs, once the export has succeeded.
  virtual void Commit() = 0;
  /// Keeps what a failed export has written; returns the name of the file that holds it, empty
  /// when there is none.
  virtual std::string KeepPartial() { return {}; }
  /// What a failed export leaves: "; "out.csv" was not written". Empty when that cannot be said.
  virtual std::string Aftermath() const { return {}; }

  /// How messages call it.
  virtual const std::string& Name() const = 0;
  /// Size of the whole output.
  virtual std::int64_t Bytes() const = 0;
  /// The file to be shown; empty when it is none.
  virtual std::string FileName() const { return {}; }
};

/// The target that `Output` names: `-` is standard output; empty, for a format without files, the
/// clipboard. Throws EFCreateError when it cannot be written.
std::unique_ptr<TTarget> MakeTarget(const std::string& Output, const TFormat& Format);

/// A file that does not exist, or is a regular one.
std::unique_ptr<TTarget> MakeFileTarget(const std::string& FileName);
/// An open descriptor, which is taken over.
std::unique_ptr<TTarget> MakeHandleTarget(int Handle, const std::string& Name,
                                          const TFormat& Format);

}  // namespace norva::tool
