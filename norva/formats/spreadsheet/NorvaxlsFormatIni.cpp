// A cell format in a section of an INI file, for instance
//
//   FontName=arial          the font: a text
//   FontSize=10             in points
//   FontColor=clRed         colours by the host's name or as $00BBGGRR
//   FontBold=1              1 or 0, as FontItalic and FontStrikeOut
//   ...
//   HorAlignment=2          enumerations by the member's number
//   ...
//   FillForeground=clBlack
//   Aggregate=1             in field formats only

#include <norva/formats/spreadsheet/NorvaxlsFormat.h>

#include <norva/core/Norvaconsts.h>
#include <norva/platform/Exceptions.h>

namespace norva {

namespace {

/// Writes values of a format under their keys.
class TFormatSaver {
 public:
  TFormatSaver(TIniFile& File, const std::string& Section) : File_(File), Section_(Section) {}

  void Text(const char* Key, const std::string& Value) { File_.WriteString(Section_, Key, Value); }
  void Integer(const char* Key, std::int32_t Value) { File_.WriteInteger(Section_, Key, Value); }
  void Boolean(const char* Key, bool Value) { File_.WriteBool(Section_, Key, Value); }
  void Color(const char* Key, TxlsColor Value) { Text(Key, XLSClr2Str(Value)); }

  void Border(const std::string& Key, const TxlsBorder& Value) {
    Integer(Key.c_str(), Value.Style);
    Color((Key + "Color").c_str(), Value.Color);
  }

 private:
  TIniFile& File_;
  const std::string& Section_;
};

/// Reads values of a format; each stays as it is when its key is missing.
class TFormatLoader {
 public:
  TFormatLoader(const TIniFile& File, const std::string& Section)
      : File_(File), Section_(Section) {}

  std::string Text(const char* Key, std::string_view Default) const {
    return File_.ReadString(Section_, Key, Default);
  }
  void FontSize(const char* Key, std::int32_t& Value) const {
    Value = File_.ReadInteger(Section_, Key, Value);
    if (Value < 1 || Value > MaxFontSize) Fail(Key, Format("a number from 1 to %d", MaxFontSize));
  }

  void Style(const char* Key, TxlsFontStyle Style, TxlsFontStyles& Styles) const {
    if (File_.ReadBool(Section_, Key, Styles.Contains(Style))) {
      Styles.Include(Style);
    } else {
      Styles.Exclude(Style);
    }
  }

  template <NamedEnum TEnum>
  void Member(const char* Key, TEnum& Value) const {
    const std::int32_t number = File_.ReadInteger(Section_, Key, Value);
    const auto last = static_cast<std::int32_t>(EnumInfo(Value).Names.size()) - 1;
    if (number < 0 || number > last) Fail(Key, Format("a number from 0 to %d", last));
    Value = static_cast<TEnum>(number);
  }

  void Color(const char* Key, TxlsColor& Value) const {
    try {
      Value = Str2XLSClr(Text(Key, XLSClr2Str(Value)));
    } catch (const EConvertError&) {
      Fail(Key, "a colour as $00BBGGRR, #RRGGBB or a standard name");
    }
  }

  void Border(const std::string& Key, TxlsBorder& Value) const {
    Member(Key.c_str(), Value.Style);
    Color((Key + "Color").c_str(), Value.Color);
  }

 private:
  [[noreturn]] void Fail(const char* Key, const std::string& Expected) const {
    throw EIniError(MsgIniValue, Section_, Key, Text(Key, ""), Expected);
  }

  const TIniFile& File_;
  const std::string& Section_;
};

}  // namespace

void TxlsFormat::SaveToIniFile(TIniFile& File, const std::string& Section) const {
  TFormatSaver save(File, Section);
  save.Text("FontName", Font.Name);
  save.Integer("FontSize", Font.Size);
  save.Color("FontColor", Font.Color);
  save.Boolean("FontBold", Font.Style.Contains(xfsBold));
  save.Boolean("FontItalic", Font.Style.Contains(xfsItalic));
  save.Boolean("FontStrikeOut", Font.Style.Contains(xfsStrikeOut));
  save.Integer("FontUnderline", Font.Underline);
  save.Integer("HorAlignment", Alignment.Horizontal);
  save.Integer("VertAlignment", Alignment.Vertical);
  save.Border("BorderTop", Borders.Top);
  save.Border("BorderBottom", Borders.Bottom);
  save.Border("BorderLeft", Borders.Left);
  save.Border("BorderRight", Borders.Right);
  save.Integer("FillPattern", Fill.Pattern);
  save.Color("FillBackground", Fill.Background);
  save.Color("FillForeground", Fill.Foreground);
}

void TxlsFormat::LoadFromIniFile(const TIniFile& File, const std::string& Section) {
  const TFormatLoader load(File, Section);
  // On purpose: not the font's present name, unlike every other value.
  Font.Name = load.Text("FontName", "arial");
  load.FontSize("FontSize", Font.Size);
  load.Color("FontColor", Font.Color);
  load.Style("FontBold", xfsBold, Font.Style);
  load.Style("FontItalic", xfsItalic, Font.Style);
  load.Style("FontStrikeOut", xfsStrikeOut, Font.Style);
  load.Member("FontUnderline", Font.Underline);
  load.Member("HorAlignment", Alignment.Horizontal);
  load.Member("VertAlignment", Alignment.Vertical);
  load.Border("BorderTop", Borders.Top);
  load.Border("BorderBottom", Borders.Bottom);
  load.Border("BorderLeft", Borders.Left);
  load.Border("BorderRight", Borders.Right);
  load.Member("FillPattern", Fill.Pattern);
  load.Color("FillBackground", Fill.Background);
  load.Color("FillForeground", Fill.Foreground);
}

void TxlsFieldFormat::SaveToIniFile(TIniFile& File, const std::string& Section) const {
  TxlsFormat::SaveToIniFile(File, Section);
  TFormatSaver(File, Section).Integer("Aggregate", Aggregate);
}

void TxlsFieldFormat::LoadFromIniFile(const TIniFile& File, const std::string& Section) {
  TxlsFormat::LoadFromIniFile(File, Section);
  TFormatLoader(File, Section).Member("Aggregate", Aggregate);
}

}  // namespace norva
