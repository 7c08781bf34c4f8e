// Any file: what an INI file reads survives being written again.
#include <cstdio>
#include <string>
#include <unistd.h>

#include <norva/platform/IniFile.h>
#include <norva/platform/Streams.h>

#include "Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  using namespace norva;
  static const std::string fileName = "fuzz." + std::to_string(getpid()) + ".ini";
  TFileStream file(fileName, fmCreate);
  file.Write(Data, Size);
  file.Close();
  std::string value;
  {
    TIniFile ini(fileName);
    value = ini.ReadString("s", "k", "default");
    ini.WriteString("other", "key", "value");
    ini.UpdateFile();
  }
  fuzz::Require(TIniFile(fileName).ReadString("s", "k", "default") == value);
  std::remove(fileName.c_str());
  return 0;
}
