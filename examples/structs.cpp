// A data set over the program's own structs, and events that change and count what is written.
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include <norva/formats/text/Norvaascii.h>
#include <norva/sources/memory/RangeDataSet.h>

struct TMountain {
  std::string Name;
  int Height;
  std::optional<int> FirstAscent;
};

int main() {
  const std::vector<TMountain> mountains = {
      {"Galdhøpiggen",  2469, 1850        },
      {"Rysy",           2499, 1840        },
      {"Gora Narodnaya", 1895, std::nullopt}
  };
  norva::TRangeDataSet Source(mountains, norva::Column("Name", &TMountain::Name),
                              norva::Column("Height", &TMountain::Height),
                              norva::Column("FirstAscent", &TMountain::FirstAscent));
  norva::TNorvaASCII Export;
  Export.SetExportType(norva::etCSV);
  Export.CSVComma = ';';
  Export.DataSet = &Source;
  Export.Captions.Add("Height=Height (m)");
  Export.UserFormats.Add("FirstAscent=0");
  Export.Formats.NullString = "unknown";
  Export.FileName = "mountains.csv";

  int written = 0;
  Export.OnExportedRecord = [&](norva::TObject&, int) { ++written; };
  try {
    Export.Execute();
  } catch (const norva::Exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
  std::cout << written << " mountains\n";
}
