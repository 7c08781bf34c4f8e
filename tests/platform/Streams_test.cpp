#include <norva/platform/Streams.h>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <limits>
#include <set>
#include <sstream>
#include <thread>

#include <norva/platform/Exceptions.h>
#include <tests/ErrorText.h>
#include <tests/TempFolder.h>

namespace norva {
namespace {

using tests::ErrorText;
using tests::TTempFolder;

constexpr std::size_t BufferSize = 65536;

/// Bytes that differ from place to place, so that lost and doubled parts show.
std::string Pattern(std::size_t Size) {
  std::string bytes(Size, '\0');
  for (std::size_t i = 0; i < Size; ++i) bytes[i] = static_cast<char>(i * 31 + i / 251);
  return bytes;
}

TEST(TFileStream, WritesEveryByteAroundTheBufferSize) {
  const TTempFolder folder;
  const std::size_t sizes[] = {0, 1, BufferSize - 1, BufferSize, BufferSize + 1, 3 * BufferSize};
  for (const std::size_t first : sizes) {
    for (const std::size_t second : sizes) {
      SCOPED_TRACE(testing::Message() << first << ", then " << second);
      const std::string bytes = Pattern(first + second);
      TFileStream stream(folder.Path("a"), fmCreate);
      stream.Write(std::string_view(bytes).substr(0, first));
      stream.Write(std::string_view(bytes).substr(first));
      EXPECT_EQ(stream.Position(), static_cast<std::int64_t>(bytes.size()));
      EXPECT_EQ(stream.Size(), static_cast<std::int64_t>(bytes.size()));
      stream.Close();
      EXPECT_TRUE(folder.Read("a") == bytes);
    }
  }
}

TEST(TFileStream, FlushesBeforeReadingAndSeeking) {
  const TTempFolder folder;
  TFileStream stream(folder.Path("a"), fmCreate);
  stream.Write("header____body");
  EXPECT_EQ(stream.Seek(-8, soCurrent), 6);
  stream.Write("1234");
  char tail[10];
  EXPECT_EQ(stream.Read(tail, sizeof tail), 4U);  // fewer only at the end
  EXPECT_EQ(std::string(tail, 4), "body");
  EXPECT_EQ(stream.Seek(-1, soEnd), 13);
  stream.Write("Y");
  stream.SetPosition(0);
  stream.Write("H");
  stream.Close();
  EXPECT_EQ(folder.Read("a"), "Header1234bodY");
}

TEST(TFileStream, OverwritesWithoutLosingTheOrder) {
  struct Case {
    const char* Steps;  // @n: seek; !n:text: overwrite; f: flush; else write
    const char* Expected;
  };
  const Case cases[] = {
      {"head0 body !4:1 more !4:2",      "head2bodymore"},
      {"head00 !4:12 !5:3 body",         "head13body"   }, // another place, another length
      {"0123 @0 !2:xx ab @4 cd",         "abxxcd"       }, // behind the position, then before it
      {"0123 @1 !1:xy AB",               "0AB3"         }, // what is written later wins
      {"0123 !1:x @1 A !0:B f @4 !2:yy", "BAyy"         },
      {"01 !1:xyz",                      "0xyz"         }, // past the end
  };
  for (const Case& c : cases) {
    const TTempFolder folder;
    TFileStream file(folder.Path("a"), fmCreate);
    TMemoryStream memory;  // has no patch: the plain way
    std::istringstream steps(c.Steps);
    for (std::string step; steps >> step;) {
      for (TStream* const stream : {static_cast<TStream*>(&file), static_cast<TStream*>(&memory)}) {
        const std::string_view text = std::string_view(step).substr(1);
        if (step[0] == '@') {
          stream->SetPosition(text[0] - '0');
        } else if (step[0] == '!') {
          stream->Overwrite(text[0] - '0', text.substr(2));
        } else if (step == "f") {
          stream->Flush();
          EXPECT_EQ(folder.Read("a"), memory.Bytes()) << c.Steps;
        } else {
          stream->Write(step);
        }
      }
      EXPECT_EQ(file.Position(), memory.Position()) << c.Steps << " at " << step;
    }
    file.Close();
    EXPECT_EQ(folder.Read("a"), c.Expected) << c.Steps;
    EXPECT_EQ(memory.Bytes(), c.Expected) << c.Steps;
  }
}

TEST(TFileStream, ACountIsRightWheneverTheBufferIsWritten) {
  const TTempFolder folder;
  TFileStream stream(folder.Path("a"), fmCreate);
  stream.Write("0000");
  std::set<std::uintmax_t> sizes = {0};
  for (int n = 1; n <= 3000; ++n) {
    stream.Write(Pattern(100));
    stream.Overwrite(0, std::to_string(10000 + n).substr(1));
    const std::uintmax_t size = std::filesystem::file_size(folder.Path("a"));
    if (!sizes.insert(size).second) continue;
    EXPECT_EQ(std::stoul(folder.Read("a").substr(0, 4)), (size - 4) / 100);
  }
  EXPECT_EQ(sizes.size(), 5U);  // 300 KB: written when the buffer was full, not for every count
}

TEST(TFileStream, ModesKeepOrTruncate) {
  const TTempFolder folder;
  const std::string name = folder.Write("a", "12345");
  TFileStream(name, fmOpenReadWrite).Write("ab");
  EXPECT_EQ(folder.Read("a"), "ab345");
  TFileStream(name, fmCreate).Close();
  EXPECT_EQ(folder.Read("a"), "");
}

TEST(TFileStream, OpeningErrorsNameTheFile) {
  const TTempFolder folder;
  const std::string lost = folder.Path("no/such");
  EXPECT_EQ(ErrorText<EFCreateError>([&] { TFileStream(lost, fmCreate); }),
            "Cannot create \"" + lost + "\": No such file or directory");
  EXPECT_EQ(ErrorText<EFOpenError>([&] { TFileStream(lost, fmOpenRead); }),
            "Cannot open \"" + lost + "\": No such file or directory");
  EXPECT_EQ(ErrorText<EFOpenError>([&] { TFileStream(folder.Path(), fmOpenReadWrite); }),
            "Cannot open \"" + folder.Path() + "\": Is a directory");
  // Cut at the zero it would be another file's name.
  EXPECT_THROW(TFileStream(folder.Path("a") + std::string("\0b", 2), fmCreate), EFCreateError);
  EXPECT_TRUE(folder.Names().empty());
}

TEST(TFileStream, ReadAndSeekErrorsNameTheFile) {
  const TTempFolder folder;
  TFileStream stream(folder.Write("a", "abc"), fmOpenRead);
  char buffer[4];
  EXPECT_EQ(ErrorText<EReadError>([&] { stream.ReadBuffer(buffer, 4); }),
            "The stream ended after 3 of 4 bytes");
  EXPECT_EQ(ErrorText<EStreamError>([&] { stream.Seek(-1, soBeginning); }),
            "Cannot seek in \"" + stream.FileName() + "\": Invalid argument");
  TFileStream itself(folder.Path(), fmOpenRead);
  EXPECT_EQ(ErrorText<EReadError>([&] { itself.Read(buffer, 1); }),
            "Cannot read \"" + folder.Path() + "\": Is a directory");
}

TEST(TFileStream, AFullDiskIsAnErrorOfWriteFlushAndClose) {
  const std::string expected = "Cannot write \"/dev/full\": No space left on device";
  TFileStream stream("/dev/full", fmCreate);
  stream.Write("buffered");
  EXPECT_EQ(ErrorText<EWriteError>([&] { stream.Flush(); }), expected);
  EXPECT_EQ(ErrorText<EWriteError>([&] { stream.Write(Pattern(BufferSize)); }), expected);
  EXPECT_EQ(ErrorText<EWriteError>([&] { stream.Close(); }), expected);
  stream.Close();  // closed by the failure: nothing left to do
  EXPECT_EQ(ErrorText<EWriteError>([&] { stream.Write("x"); }),
            "Cannot write \"/dev/full\": Bad file descriptor");
}

/// Writes 150000 bytes in pieces where the system takes 100000; the last write is a short one.
[[noreturn]] void ReachSizeLimit(const std::string& FileName, std::size_t Piece) {
  ::signal(SIGXFSZ, SIG_IGN);
  const rlimit limit = {100000, 100000};
  ::setrlimit(RLIMIT_FSIZE, &limit);
  const std::string bytes = Pattern(150000);
  const std::string error = ErrorText<EWriteError>([&] {
    TFileStream stream(FileName, fmCreate);
    for (std::size_t i = 0; i < bytes.size(); i += Piece) {
      stream.Write(std::string_view(bytes).substr(i, Piece));
    }
    stream.Close();
  });
  ::_exit(error == "Cannot write \"" + FileName + "\": File too large" ? 0 : 1);
}

TEST(TFileStream, AShortWriteIsContinuedAndReported) {
  for (const std::size_t piece : {1000U, 150000U}) {
    const TTempFolder folder;
    EXPECT_EXIT(ReachSizeLimit(folder.Path("a"), piece), testing::ExitedWithCode(0), "");
    EXPECT_TRUE(folder.Read("a") == Pattern(100000)) << piece;
  }
}

TEST(TFileStream, AFailedCloseIsAnError) {
  const TTempFolder folder;
  const int next = ::open("/dev/null", O_RDONLY);
  ::close(next);
  TFileStream stream(folder.Path("a"), fmCreate);  // takes the descriptor that is free now
  ASSERT_EQ(::close(next), 0);
  EXPECT_EQ(ErrorText<EWriteError>([&] { stream.Close(); }),
            "Cannot write \"" + stream.FileName() + "\": Bad file descriptor");
}

TEST(TFileStream, InterruptedWritesGoOn) {
  std::array<int, 2> ends;
  ASSERT_EQ(::pipe(ends.data()), 0);
  struct sigaction interrupt = {}, oldAction;
  interrupt.sa_handler = [](int) {};  // without SA_RESTART: write returns early or with EINTR
  ::sigaction(SIGALRM, &interrupt, &oldAction);
  sigset_t alarm, oldMask;
  ::sigemptyset(&alarm);
  ::sigaddset(&alarm, SIGALRM);
  ::pthread_sigmask(SIG_BLOCK, &alarm, &oldMask);  // in the reader: the writer is to be hit

  const std::string bytes = Pattern(1000000);
  std::string received;
  std::thread reader([&] {
    char chunk[65536];
    while (received.size() < bytes.size()) {
      const ssize_t got = ::read(ends[0], chunk, sizeof chunk);
      if (got <= 0) break;
      received.append(chunk, static_cast<std::size_t>(got));
      // Several signals while the pipe is full: some writes are cut short, others fail at once.
      std::this_thread::sleep_for(std::chrono::milliseconds(3));
    }
  });
  ::pthread_sigmask(SIG_SETMASK, &oldMask, nullptr);
  itimerval often, never = {};
  often.it_interval = often.it_value = {0, 1000};
  ::setitimer(ITIMER_REAL, &often, nullptr);
  {
    TFileStream stream("/dev/fd/" + std::to_string(ends[1]), fmOpenReadWrite);
    EXPECT_NO_THROW(stream.Write(bytes));
  }
  ::setitimer(ITIMER_REAL, &never, nullptr);
  ::close(ends[1]);  // the reader sees the end, also after a failure
  reader.join();
  ::close(ends[0]);
  ::sigaction(SIGALRM, &oldAction, nullptr);
  EXPECT_TRUE(received == bytes);
}

TEST(TMemoryStream, OverwritesAppendsAndFillsGaps) {
  TMemoryStream stream("abcdef");
  stream.Seek(-2, soEnd);
  stream.Write("XYZ");
  EXPECT_EQ(stream.Bytes(), "abcdXYZ");
  stream.SetPosition(9);
  EXPECT_EQ(stream.Size(), 7);  // a seek alone adds nothing
  char byte;
  EXPECT_EQ(stream.Read(&byte, 1), 0U);
  stream.Write("!");
  EXPECT_EQ(stream.Bytes(), std::string("abcdXYZ\0\0!", 10));
  stream.SetPosition(2);
  char middle[3];
  stream.ReadBuffer(middle, 3);
  EXPECT_EQ(std::string(middle, 3), "cdX");
  EXPECT_EQ(stream.Position(), 5);
}

TEST(TMemoryStream, RefusesPositionsThatDoNotExist) {
  constexpr std::int64_t far = std::numeric_limits<std::int64_t>::max();
  TMemoryStream stream("abc");
  EXPECT_EQ(ErrorText<EStreamError>([&] { stream.Seek(-4, soEnd); }),
            "Cannot seek by -4 bytes from position 3");
  EXPECT_EQ(ErrorText<EStreamError>([&] { stream.Seek(far, soEnd); }),
            "Cannot seek by 9223372036854775807 bytes from position 3");
  EXPECT_EQ(stream.Position(), 0);
}

}  // namespace
}  // namespace norva
