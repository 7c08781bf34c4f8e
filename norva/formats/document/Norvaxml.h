/// XML exporter: one document in the data-packet layout, values as attributes.
///
///   <?xml version="1.0" standalone="yes"?>
///   <DATAPACKET Version="2.0">
///   <METADATA>                                                                  if AllowCaptions
///   <FIELDS>
///   <FIELD FieldName="Id" DisplayLabel="No." FieldType="Integer" FieldClass="TField"/>
///   <FIELD FieldName="Name" DisplayLabel="Name" FieldType="String" FieldClass="TField"/>
///   </FIELDS>
///   </METADATA>
///   <ROWDATA>
///   <ROW Id="1" Name="Ann &quot;A&quot; O"/>                                    one per record
///   </ROWDATA>
///   </DATAPACKET>
///
/// Every line ends in CR LF. What readers of XML may not expect, and is meant:
/// - Values are formatted, so a number may be "1,234.50". Give an empty picture for plain numbers.
/// - In values `"`, `&`, `<` and `>` are escaped. Names and captions are written as they stand, and
///   so are NullString, cells of boolean and unknown type, and what OnGetExportText leaves.
/// - A column's name is the name of an attribute. One that holds a blank, begins with a digit (as
///   all names of a string grid do) or occurs twice breaks the document: rename the column in the
///   query. A colon is a breach, too, for the readers that know name spaces.
/// - A `"`, `&` or `<` breaks a caption: give an escaped one in Captions, `Name=R&amp;D`. The same
///   goes for the other texts that are not escaped; OnGetExportText can escape or clean a cell.
/// - Control characters other than tab, LF and CR cannot be written in XML at all. They are copied:
///   take them out with OnGetExportText.
/// - Tabs and line breaks in values are written as they are, and readers make blanks of them.
/// The first such text of an export, line breaks excepted, fires OnUnsafeText.
///
/// The bytes are in the active code page, and Encoding only says which that is: a document in page
/// 1252 needs "windows-1252" there, one in UTF-8 needs nothing.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <norva/core/NorvaBases.h>
#include <norva/platform/Export.h>
#include <norva/platform/Persistent.h>

namespace norva {

/// What the XML declaration says.
class NORVA_EXPORT TXMLOptions : public TPersistent {
 public:
  bool StandAlone = true;
  /// Left out when empty. Converts nothing.
  std::string Encoding;
  std::string Version = "1.0";

  /// Copies a TXMLOptions.
  void Assign(const TPersistent& Source) override;
  std::string_view ClassName() const override { return "TXMLOptions"; }
  const TPropertyList& Properties() const override;
};

/// Writes tags. Texts are written as they stand; the Ln forms end the line.
class NORVA_EXPORT TLumXMLWriter : public TNorvaWriter {
 public:
  using TNorvaWriter::TNorvaWriter;

  /// `<Tag Attrs>`, without the blank when `Attrs` is empty.
  void StartTag(std::string_view Tag, std::string_view Attrs = {});
  void StartTagLn(std::string_view Tag, std::string_view Attrs = {});
  void EndTag(std::string_view Tag);
  void EndTagLn(std::string_view Tag);
  /// `<Tag Attrs/>`, with the blank always.
  void StartEndTag(std::string_view Tag, std::string_view Attrs = {});
  void StartEndTagLn(std::string_view Tag, std::string_view Attrs = {});
};

/// Writes the records of a source as an XML document.
class NORVA_EXPORT TNorvaXML : public TNorvaText {
 public:
  using TNorvaText::TNorvaText;
  std::string_view ClassName() const override { return "TNorvaXML"; }
  const TPropertyList& Properties() const override;

  TXMLOptions Options;

 protected:
  TNorvaWriterClass GetWriterClass() const override;
  void BeginExport() override;
  void WriteCaptionRow() override;
  /// The attributes of a FIELD element.
  void GetColCaption(int Index, std::string& Text) override;
  void BeforeExport() override;
  void WriteDataRow() override;
  /// The attributes of a ROW element.
  void GetDataRow(bool NeedFormat, std::string& Row) override;
  TSpecialCharacters GetSpecialCharacters() const override;
  void NormalString(std::string_view S, std::string& Text) override;
  void AfterExport() override;

  TLumXMLWriter& GetWriter() const { return static_cast<TLumXMLWriter&>(TNorva::GetWriter()); }

 private:
  struct TAttribute {
    std::string Opening;  // `Name="`, behind the end of the one before, `" `
    bool Escaped;         // whether NormalString has the last word on a cell's text
  };

  void CheckNames();
  void MakeAttributes();

  std::vector<TAttribute> Attributes_;  // one a column; made by BeginExport
};

}  // namespace norva
