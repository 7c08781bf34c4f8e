// Writes workbooks that the tool cannot ask for:  make_workbooks FOLDER
//
//   formats.xls     600 records, each with another font; cells by the rules in FormatOf
//   rows.xls        65,536 rows of 8 numbers, row * 8 + column: 9 MB, so that the container needs
//                   sectors for its own tables
//   aggregates.xls  header and footer lines and the four aggregates
//
// test_xls.py knows these rules and checks what readers make of the files.
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include <norva/formats/spreadsheet/Norvaxls.h>
#include <norva/sources/memory/MemoryDataSet.h>

namespace {

using namespace norva;

void Write(TNorvaXLS& Export, TMemoryDataSet& Source, const std::string& FileName) {
  Export.DataSet = &Source;
  Export.FileName = FileName;
  Export.Execute();
}

void FormatOf(int Record, TxlsFormat& Format, std::string& FormatText) {
  Format.Font.Size = 1 + Record % 100;
  Format.Font.Name = "Font " + std::to_string(Record / 100);
  Format.Font.Color = static_cast<TxlsColor>(Record % 40);
  Format.Font.Style.Include(Record % 2 ? xfsBold : xfsItalic);
  Format.Font.Underline = static_cast<TxlsFontUnderline>(Record % 5);
  Format.Font.Script = static_cast<TxlsFontScript>(Record % 3);
  Format.Borders.Left.Style = static_cast<TxlsBorderStyle>(Record % 14);
  Format.Borders.Left.Color = static_cast<TxlsColor>((Record + 1) % 40);
  Format.Borders.Bottom.Style = static_cast<TxlsBorderStyle>((Record + 5) % 14);
  Format.Borders.Bottom.Color = static_cast<TxlsColor>((Record + 2) % 40);
  Format.Fill.Pattern = static_cast<TxlsPattern>(Record % 19);
  Format.Fill.Background = static_cast<TxlsColor>((Record + 3) % 40);
  Format.Fill.Foreground = static_cast<TxlsColor>((Record + 4) % 40);
  Format.Alignment.Horizontal = static_cast<TxlsHorizontalAlignment>(Record % 5);
  Format.Alignment.Vertical = static_cast<TxlsVerticalAlignment>(Record % 4);
  Format.Wrap = Record % 3 == 0;
  FormatText = Record % 11 == 0 ? "yyyy-mm-dd" : "0." + std::string(1 + Record % 11, '0');
}

void WriteFormats(const std::string& FileName) {
  TMemoryDataSet source({
      {"Number", ftFloat}
  });
  for (int i = 0; i < 600; ++i) source.Append({40000 + i / 4.0});
  TNorvaXLS exporter;
  exporter.AllowCaptions = false;
  exporter.ColumnsWidth = {"Number=31"};
  exporter.OnGetDataParams = [&](TObject&, int, int row, TxlsFormat& format, std::string& text) {
    FormatOf(row, format, text);
  };
  Write(exporter, source, FileName);
}

void WriteRows(const std::string& FileName) {
  TMemoryDataSet source;
  for (int column = 0; column < 8; ++column) source.AddField(std::to_string(column), ftInteger);
  for (int row = 0; row < 65536; ++row) {
    std::vector<TMemoryValue> values;
    for (int column = 0; column < 8; ++column) values.emplace_back(row * 8 + column);
    source.Append(values);
  }
  TNorvaXLS exporter;
  exporter.AllowCaptions = false;
  Write(exporter, source, FileName);
}

void WriteAggregates(const std::string& FileName) {
  const TxlsAggregate aggregates[] = {aggSum, aggAvg, aggMin, aggMax};
  TMemoryDataSet source;
  TNorvaXLS exporter;
  for (const TxlsAggregate aggregate : aggregates) {
    const std::string name(EnumToStr(aggregate));
    source.AddField(name, ftFloat);
    TxlsFieldFormat& format = exporter.FieldFormats.Add();
    format.FieldName = name;
    format.Aggregate = aggregate;
  }
  for (const double value : {4.0, -2.5, 10.0, 1.0}) {
    source.Append({value, value, value, value});
  }
  exporter.StartDataCol = 1;
  exporter.HeaderRows = 3;
  exporter.Header = {"left\tright", "second"};
  exporter.Footer = {"\tfooter"};
  Write(exporter, source, FileName);
}

}  // namespace

int main(int Count, char** Arguments) {
  if (Count != 2) {
    std::fputs("usage: make_workbooks FOLDER\n", stderr);
    return 2;
  }
  const std::string folder = std::string(Arguments[1]) + "/";
  try {
    WriteFormats(folder + "formats.xls");
    WriteRows(folder + "rows.xls");
    WriteAggregates(folder + "aggregates.xls");
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_workbooks: %s\n", error.what());
    return 1;
  }
}
