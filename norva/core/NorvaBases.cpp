#include <norva/core/NorvaBases.h>

#include <norva/platform/Clipboard.h>
#include <norva/platform/Property.h>
#include <norva/platform/Shell.h>
#include <norva/platform/Streams.h>

namespace norva {

const TPropertyList& TNorvaText::Properties() const {
  static const TPropertyList list(TNorva::Properties(),
                                  {
                                      Published("FileName", &TNorvaText::FileName, ""),
                                      Published("ShowFile", &TNorvaText::ShowFile, false),
                                      Published("PrintFile", &TNorvaText::PrintFile, false),
                                  });
  return list;
}

void TNorvaText::Execute() {
  TFileStream file(FileName, fmCreate);
  ExportToStream(file);
  file.Close();
  ShowResult();
}

void TNorvaText::ShowResult() {
  if (Aborted) return;
  if (ShowFile) ShellOpen(FileName);
  if (PrintFile) ShellPrint(FileName);
}

const TPropertyList& TNorvaAdvancedText::Properties() const {
  static const TPropertyList list(TNorvaText::Properties(),
                                  {
                                      PublishedList("Header", &TNorva::Header),
                                      PublishedList("Footer", &TNorva::Footer),
                                  });
  return list;
}

const TPropertyList& TNorvaFormatText::Properties() const {
  static const TPropertyList list(TNorvaAdvancedText::Properties(),
                                  {
                                      Published("AllowCaptions", &TNorva::AllowCaptions, true),
                                      PublishedList("Captions", &TNorva::Captions),
                                      PublishedGroup("Formats", &TNorva::Formats),
                                      PublishedList("UserFormats", &TNorva::UserFormats),
                                  });
  return list;
}

void TNorvaMemory::Execute() {
  TMemoryStream memory;
  ExportToStream(memory);
  SetClipboardText(memory.Bytes());
}

}  // namespace norva
