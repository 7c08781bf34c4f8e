// Packs files into a compound document:  make_compound DOCUMENT [STREAM FILE]...
// Each file goes in as two pieces, so that the border between pieces is tried, too.
#include <cstdio>
#include <deque>
#include <exception>
#include <string>
#include <vector>

#include <norva/platform/CompoundFile.h>
#include <norva/platform/Streams.h>

namespace {

std::string ReadFile(const char* FileName) {
  norva::TFileStream file(FileName, norva::fmOpenRead);
  std::string bytes(static_cast<std::size_t>(file.Size()), '\0');
  file.ReadBuffer(bytes.data(), bytes.size());
  return bytes;
}

void Pack(const char* Document, const std::vector<const char*>& NamesAndFiles) {
  std::deque<std::string> contents;  // where the pieces point to
  std::vector<norva::TCompoundStream> streams;
  for (std::size_t i = 0; i + 1 < NamesAndFiles.size(); i += 2) {
    const std::string_view bytes = contents.emplace_back(ReadFile(NamesAndFiles[i + 1]));
    const std::size_t middle = bytes.size() / 2;
    streams.push_back({
        NamesAndFiles[i], {bytes.substr(0, middle), bytes.substr(middle)}
    });
  }
  norva::TFileStream output(Document, norva::fmCreate);
  norva::WriteCompoundFile(output, streams);
  output.Close();
}

}  // namespace

int main(int Count, char** Arguments) {
  if (Count < 2 || Count % 2 != 0) {
    std::fputs("usage: make_compound DOCUMENT [STREAM FILE]...\n", stderr);
    return 2;
  }
  try {
    Pack(Arguments[1], {Arguments + 2, Arguments + Count});
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_compound: %s\n", error.what());
    return 1;
  }
}
