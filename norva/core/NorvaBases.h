/// The bases between TNorva and the formats: where the output goes, and which shared settings are
/// published.
///
///   TNorva
///     TNorvaText            a file: FileName, ShowFile, PrintFile
///       TNorvaAdvancedText  publishes Header and Footer
///         TNorvaFormatText  publishes AllowCaptions, Captions, Formats, UserFormats
///     TNorvaMemory          the clipboard, as text
#pragma once

#include <string>

#include <norva/core/Norva.h>
#include <norva/platform/Export.h>

namespace norva {

/// Exports to a file.
class NORVA_EXPORT TNorvaText : public TNorva {
 public:
  using TNorva::TNorva;
  const TPropertyList& Properties() const override;

  /// Path of the output file, which is created anew. A failed or aborted export leaves what was
  /// written.
  std::string FileName;
  /// Opens the file with its associated program after an export that was not aborted.
  bool ShowFile = false;
  /// Prints it likewise.
  bool PrintFile = false;

  /// Throws EFCreateError when the file cannot be created, before any event; EWriteError when it
  /// cannot be written or closed; and what ExportToStream throws.
  void Execute() override;

 protected:
  /// Opens and prints as asked; failures of the desktop are ignored.
  virtual void ShowResult();
};

/// Publishes Header and Footer.
class NORVA_EXPORT TNorvaAdvancedText : public TNorvaText {
 public:
  using TNorvaText::TNorvaText;
  const TPropertyList& Properties() const override;
};

/// Publishes AllowCaptions, Captions, Formats and UserFormats.
class NORVA_EXPORT TNorvaFormatText : public TNorvaAdvancedText {
 public:
  using TNorvaAdvancedText::TNorvaAdvancedText;
  const TPropertyList& Properties() const override;
};

/// Exports to the clipboard.
class NORVA_EXPORT TNorvaMemory : public TNorva {
 public:
  using TNorva::TNorva;
  /// Replaces the clipboard's content. When the export throws, the clipboard is not touched.
  void Execute() override;
};

}  // namespace norva
