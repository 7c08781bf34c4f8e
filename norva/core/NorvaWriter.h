/// The line writer between an exporter and its output stream.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <norva/core/NorvaTypes.h>
#include <norva/platform/Export.h>
#include <norva/platform/Streams.h>

namespace norva {

/// Writes 8-bit text as it stands, lines ended by CR LF. Formats with a language of their own
/// derive writers from it. It keeps no state but the stream, which is not owned.
class NORVA_EXPORT TNorvaWriter : public TObject {
 public:
  explicit TNorvaWriter(TStream& Stream) : Stream_(&Stream) {}
  TNorvaWriter(const TNorvaWriter&) = delete;
  TNorvaWriter& operator=(const TNorvaWriter&) = delete;

  void Write(std::string_view S) { Stream_->Write(S); }
  void WriteLn(std::string_view S);
  void EmptyLine() { WriteLn({}); }
  /// A line of `Count` times `Ch`; an empty line when `Count` is below 1.
  void CharLine(char Ch, int Count);

  // Padding counts characters of the active code page and never cuts a longer text.
  /// `Ch` before `S`: the text ends up on the right.
  static std::string PadL(std::string_view S, char Ch, int Len);
  /// `Ch` behind `S`: the text ends up on the left.
  static std::string PadR(std::string_view S, char Ch, int Len);
  /// `Ch` on both sides; the odd one goes to the right.
  static std::string PadC(std::string_view S, char Ch, int Len);
  /// Pads the tail of `Row` that begins at byte `Start` to `Len` characters: PadR for ecaLeft, PadC
  /// for ecaCenter, PadL for ecaRight. `Gap` more of `Ch` follow in any case.
  static void PadTail(std::string& Row, std::size_t Start, char Ch, int Len, TNorvaColAlign Align,
                      int Gap = 0);

  /// "Left alignment", "Center alignment", "Right alignment", else "Unknown alignment"; formats
  /// with alignment keywords of their own give those.
  virtual std::string AlignToStr(TNorvaColAlign Align) const;

 protected:
  TStream& Stream() const { return *Stream_; }
  /// For a format that spreads its output over several files.
  void SetStream(TStream& Stream) { Stream_ = &Stream; }

 private:
  TStream* Stream_;
};

/// Makes a writer over a stream: what an exporter names as its writer class.
using TNorvaWriterClass = std::unique_ptr<TNorvaWriter> (*)(TStream& Stream);

template <class TWriter>
std::unique_ptr<TNorvaWriter> NewWriter(TStream& Stream) {
  return std::make_unique<TWriter>(Stream);
}

}  // namespace norva
