#include <tools/norva/Target.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include <norva/core/NorvaBases.h>
#include <norva/platform/Clipboard.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/FileNames.h>
#include <norva/platform/Messages.h>
#include <norva/platform/Streams.h>
#include <tools/norva/Errors.h>
#include <tools/norva/HandleStream.h>
#include <tools/norva/Interrupt.h>
#include <tools/norva/Messages.h>
#include <tools/norva/StagingFolder.h>

namespace norva::tool {
namespace {

constexpr std::size_t CopySize = std::size_t{64} * 1024;
constexpr int MostLinks = 40;  // what Linux follows before it reports a loop

[[noreturn]] void CannotCreate(const std::string& Name, const char* Reason) {
  throw EFCreateError(MsgCreateAdvice, Format(norva::MsgCannotCreate, Name, Reason));
}

/// Exports into a file of the current folder.
void WriteFile(TNorva& Exporter, const std::string& BareName) {
  if (auto* const toFile = dynamic_cast<TNorvaText*>(&Exporter)) {
    toFile->FileName = BareName;
    toFile->Execute();
    return;
  }
  TFileStream file(BareName, fmCreate);  // of the clipboard's text
  Exporter.ExportToStream(file);
  file.Close();
}

/// The file at the end of a chain of symbolic links, so that the links stay what they are.
std::string BehindLinks(std::string FileName) {
  for (int i = 0; i < MostLinks; ++i) {
    std::error_code error;
    const std::string target = std::filesystem::read_symlink(FileName, error).string();
    if (error) break;
    FileName = target.starts_with('/') ? target : ExtractFilePath(FileName).append(target);
  }
  return FileName;
}

class TFileTarget : public TTarget {
 public:
  explicit TFileTarget(const std::string& FileName)
      : Name_(FileName),
        Path_(BehindLinks(FileName)),
        Exists_(::access(Path_.c_str(), F_OK) == 0),
        Folder_(NewFolder()) {}

  void Write(TNorva& Exporter) override {
    const std::string bare = ExtractFileName(Path_);
    Folder_->Enter();
    try {
      WriteFile(Exporter, bare);
    } catch (const EFCreateError& error) {
      throw EFCreateError(MsgCreateAdvice, AsGiven(error.what(), bare));
    } catch (const EWriteError& error) {
      throw EWriteError(MsgWriteAdvice, AsGiven(error.what(), bare));
    }
    Folder_->Leave();
  }

  // The main file last: who waits for it finds the others there.
  void Commit() override {
    Bytes_ = Folder_->Bytes();
    const std::string bare = ExtractFileName(Path_);
    for (const std::string& name : Folder_->Names()) {
      if (name != bare) Folder_->Move(name, Place(name));
    }
    Folder_->Move(bare, Place(bare));
  }

  std::string KeepPartial() override {
    Folder_->Leave();
    std::string kept;
    for (const std::string& name : Folder_->Names()) {
      if (Folder_->Bytes(name) == 0) continue;
      const std::string partial = Place(name) + ".partial";
      Folder_->Move(name, partial);
      if (kept.empty() || name == ExtractFileName(Path_)) kept = partial;
    }
    return kept;
  }

  std::string Aftermath() const override {
    return Format(Exists_ ? MsgUntouched : MsgNotWritten, Name_);
  }
  const std::string& Name() const override { return Name_; }
  std::int64_t Bytes() const override { return Bytes_; }
  std::string FileName() const override { return Path_; }

 private:
  std::unique_ptr<TStagingFolder> NewFolder() const {
    if (ExtractFileName(Path_).empty()) CannotCreate(Name_, MsgIsFolder);
    // Replacing it needs no right to it, but who has protected a file means it.
    if (Exists_ && ::access(Path_.c_str(), W_OK) != 0) CannotCreate(Name_, std::strerror(errno));
    try {
      return std::make_unique<TStagingFolder>(ExtractFilePath(Path_));
    } catch (const std::system_error& error) {
      CannotCreate(Name_, std::strerror(error.code().value()));
    }
  }

  std::string Place(const std::string& BareName) const { return ExtractFilePath(Path_) + BareName; }

  /// The message with the name that the user knows instead of the bare one.
  std::string AsGiven(std::string Message, const std::string& BareName) const {
    const std::string quoted = '"' + BareName + '"';
    const std::size_t at = Message.find(quoted);
    return at == std::string::npos ? Message
                                   : Message.replace(at, quoted.size(), '"' + Name_ + '"');
  }

  std::string Name_;  // as given
  std::string Path_;  // what it stands for
  bool Exists_;
  std::unique_ptr<TStagingFolder> Folder_;
  std::int64_t Bytes_ = 0;
};

class THandleTarget : public TTarget {
 public:
  THandleTarget(int Handle, const std::string& Name, bool Streams)
      : Handle_(Handle), Name_(Name), Stream_(Handle, Name), Streams_(Streams) {}
  ~THandleTarget() override { ::close(Handle_); }

  void Write(TNorva& Exporter) override {
    if (Streams_) {
      Exporter.ExportToStream(Stream_);
    } else {
      Spool(Exporter);
    }
  }

  void Commit() override {
    if (Folder_) CopyFile();
    Stream_.Flush();
    // Some devices and network files report a full disk only now.
    if (::close(std::exchange(Handle_, -1)) == 0 || errno == EINTR) return;
    throw EWriteError(norva::MsgCannotWrite, Name_, std::strerror(errno));
  }

  const std::string& Name() const override { return Name_; }
  std::int64_t Bytes() const override { return Stream_.Written(); }

 private:
  void Spool(TNorva& Exporter) {
    const std::string parent = std::filesystem::temp_directory_path().string() + "/";
    try {
      Folder_ = std::make_unique<TStagingFolder>(parent);
    } catch (const std::system_error& error) {
      CannotCreate(parent, std::strerror(error.code().value()));
    }
    Folder_->Enter();
    WriteFile(Exporter, "output");
    Folder_->Leave();
  }

  void CopyFile() {
    const std::vector<std::string> names = Folder_->Names();
    if (names.size() != 1) throw EUsage(MsgSeveralFiles);
    TFileStream file(Folder_->Path(names.front()), fmOpenRead);
    std::string buffer(CopySize, '\0');
    while (const std::size_t got = file.Read(buffer.data(), buffer.size())) {
      Stream_.Write(buffer.data(), got);
    }
  }

  int Handle_;
  std::string Name_;
  THandleStream Stream_;
  bool Streams_;
  std::unique_ptr<TStagingFolder> Folder_;
};

class TClipboardTarget : public TTarget {
 public:
  void Write(TNorva& Exporter) override { Exporter.ExportToStream(Text_); }
  void Commit() override {
    try {
      SetClipboardText(Text_.Bytes());
    } catch (const Exception& error) {
      throw Exception(MsgClipboardAdvice, error.what());
    }
  }
  std::string Aftermath() const override { return Format(MsgUntouched, Name_); }
  const std::string& Name() const override { return Name_; }
  std::int64_t Bytes() const override { return static_cast<std::int64_t>(Text_.Bytes().size()); }

 private:
  std::string Name_ = "clipboard";
  TMemoryStream Text_;
};

std::unique_ptr<TTarget> OpenDevice(const std::string& FileName, const TFormat& Format) {
  int handle;
  do {  // a pipe without a reader is waited for
    handle = ::open(FileName.c_str(), O_WRONLY | O_CLOEXEC);
  } while (handle < 0 && errno == EINTR && !Interrupted());
  if (handle < 0) CannotCreate(FileName, std::strerror(errno));
  return MakeHandleTarget(handle, FileName, Format);
}

}  // namespace

std::unique_ptr<TTarget> MakeTarget(const std::string& Output, const TFormat& Format) {
  if (Output.empty()) return std::make_unique<TClipboardTarget>();
  if (Output == "-") {
    const int handle = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0);
    if (handle < 0) CannotCreate(StandardOutputName, std::strerror(errno));
    return MakeHandleTarget(handle, StandardOutputName, Format);
  }
  struct stat status;
  const bool exists = ::stat(Output.c_str(), &status) == 0;
  if (exists && S_ISDIR(status.st_mode)) CannotCreate(Output, MsgIsFolder);
  if (exists && !S_ISREG(status.st_mode)) return OpenDevice(Output, Format);
  return MakeFileTarget(Output);
}

std::unique_ptr<TTarget> MakeFileTarget(const std::string& FileName) {
  return std::make_unique<TFileTarget>(FileName);
}

std::unique_ptr<TTarget> MakeHandleTarget(int Handle, const std::string& Name,
                                          const TFormat& Format) {
  return std::make_unique<THandleTarget>(Handle, Name, Format.Streams);
}

}  // namespace norva::tool
