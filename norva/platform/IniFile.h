/// INI files: values by section and key, both without regard to case.
///
///   ; a comment is a whole line
///   [Options]                           blanks around a line, a name, a key and a value are
///   Title=Orders of May                 dropped ...
///   NullString=" - "                    ... unless the value stands in " or '
///
/// The file is read once, by the constructor, and written by UpdateFile or, when something has
/// changed, by the destructor; but not by one that runs because of an exception, so that half of
/// the changes never replaces an old file. Texts are bytes in the active code page.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <norva/platform/Export.h>
#include <norva/platform/StringList.h>

namespace norva {

/// An INI file. Sections of one name count as one; of equal keys the first counts. What stands
/// before the first header is the section with the empty name. Outer blanks of a section's name
/// never count.
class NORVA_EXPORT TIniFile {
 public:
  /// A missing file counts as empty. Throws EFOpenError or EReadError for one that cannot be read.
  explicit TIniFile(std::string FileName);
  /// Writes the file when something has changed and no exception has come up since the constructor.
  /// Errors are lost here: call UpdateFile to see them.
  ~TIniFile();
  TIniFile(const TIniFile&) = delete;
  TIniFile& operator=(const TIniFile&) = delete;

  const std::string& FileName() const { return FileName_; }

  /// `Default` stands for a missing key only: a key that is there with nothing is the empty text.
  std::string ReadString(std::string_view Section, std::string_view Key,
                         std::string_view Default) const;
  /// `Default` also for a value that StrToInt refuses.
  std::int32_t ReadInteger(std::string_view Section, std::string_view Key,
                           std::int32_t Default) const;
  /// An integer (0 is false), or `true` or `false` in any case; anything else is `Default`.
  bool ReadBool(std::string_view Section, std::string_view Key, bool Default) const;

  /// Every text without a line end survives; one with a line end, in the section or the key too,
  /// throws EIniError, as does a key that the file cannot hold. A new key goes to the end of its
  /// section, a new section to the end of the file; a changed key keeps its place and spelling.
  void WriteString(std::string_view Section, std::string_view Key, std::string_view Value);
  void WriteInteger(std::string_view Section, std::string_view Key, std::int32_t Value);
  /// As 1 or 0.
  void WriteBool(std::string_view Section, std::string_view Key, bool Value);

  /// The names of all sections, in the order of the file.
  TStringList ReadSections() const;
  /// The keys of a section, in the order of the file.
  TStringList ReadSectionKeys(std::string_view Section) const;
  bool SectionExists(std::string_view Section) const;
  bool ValueExists(std::string_view Section, std::string_view Key) const;
  /// Removes a section with all its lines, comments included.
  void EraseSection(std::string_view Section);
  void DeleteKey(std::string_view Section, std::string_view Key);

  /// Writes the file, changed or not: to a new file beside it that then takes its place and its
  /// permissions. On an error (EFCreateError, EWriteError) the old file stays as it was.
  void UpdateFile();

 private:
  /// A key with its value, or a comment or another line without meaning, kept as it stands.
  struct TLine {
    bool IsKey;
    std::string Key;
    std::string Text;
    bool IsEmpty() const;
    bool IsComment() const;
  };
  struct TSection {
    std::string Name;
    std::vector<TLine> Heading;  // the comment right above the header
    std::vector<TLine> Lines;
    bool Is(std::string_view OtherName) const;
    bool HasKeys() const;
  };

  void Load(std::string_view Text);
  void LoadLine(const std::string& Line);
  void AddSection(std::string_view Name);
  void CloseLastSection();
  bool IsShown(const TSection& Section) const;
  const TLine* FindLine(std::string_view Section, std::string_view Key) const;
  TSection& LastSection(std::string_view Name);
  std::string FileText() const;

  std::string FileName_;
  std::vector<TSection> Sections_;  // the first one stands above all headers
  bool Changed_ = false;
  const int Exceptions_;  // on their way when this object was made
};

}  // namespace norva
