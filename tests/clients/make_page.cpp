// Writes a page whose cells have styles of their own, which the tool cannot ask for:
//   make_page FILE
//
// test_html.py has a browser say how the six cells of its one record look.
#include <cstdio>
#include <exception>

#include <norva/formats/document/Norvahtml.h>
#include <norva/sources/memory/MemoryDataSet.h>

namespace {

using namespace norva;

void LookOf(int Column, TNorvaColAlign& Align, TFont& Font, TColor& Background) {
  switch (Column) {
    case 0:
      Align = ecaCenter;
      Background = 0x332211;
      break;
    case 1:
      Font.Name = "Courier New";
      Font.Size = 20;
      break;
    case 2:
      Font.Color = clLime;
      break;
    case 3:
      Font.Style.Include(fsBold);
      break;
    case 4:
      Font.Style = {fsItalic, fsUnderline};
      break;
  }
}

void WritePage(const char* FileName) {
  TMemoryDataSet source;
  TNorvaHTML exporter;
  for (const char* name : {"back", "font", "color", "bold", "lines", "plain"}) {
    source.AddField(name, ftString, 10);
  }
  source.Append({"back", "font", "color", "bold", "lines", "plain"});
  exporter.DataSet = &source;
  exporter.FileName = FileName;
  exporter.OnGetCellParams = [](TObject&, std::int32_t, std::int32_t column, const std::string&,
                                TNorvaColAlign& align, TFont& font,
                                TColor& background) { LookOf(column, align, font, background); };
  exporter.Execute();
}

}  // namespace

int main(int Count, char** Arguments) {
  if (Count != 2) {
    std::fputs("usage: make_page FILE\n", stderr);
    return 2;
  }
  try {
    WritePage(Arguments[1]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_page: %s\n", error.what());
    return 1;
  }
}
