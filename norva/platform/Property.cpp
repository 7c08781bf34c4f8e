#include <norva/platform/Property.h>

#include <algorithm>
#include <cctype>

#include <norva/platform/CodePages.h>
#include <norva/platform/Colors.h>
#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>
#include <norva/platform/Numbers.h>

namespace norva {

bool TProperty::IsDefault(std::string_view Text) const {
  if (!Default) return false;
  return DefaultIgnoresCase ? SameText(*Default, Text) : *Default == Text;
}

TPropertyList::TPropertyList(std::initializer_list<TProperty> Own) : Items_(Own) {}

TPropertyList::TPropertyList(const TPropertyList& Inherited, std::initializer_list<TProperty> Own)
    : Items_(Inherited.Items_) {
  Items_.insert(Items_.end(), Own);
}

const TProperty* TPropertyList::Find(std::string_view Name) const {
  const auto found = std::find_if(Items_.begin(), Items_.end(), [Name](const TProperty& property) {
    return SameText(property.Name, Name);
  });
  return found == Items_.end() ? nullptr : &*found;
}

TPropertyPath FindProperty(TPersistent& Root, std::string_view Path) {
  TPersistent* object = &Root;
  for (;;) {
    const std::size_t dot = Path.find('.');
    const TProperty* property = object->Properties().Find(Path.substr(0, dot));
    if (!property) return {};
    if (dot == std::string_view::npos) return {object, property};
    if (property->Kind != pkGroup) return {};
    object = &property->Object(*object);
    Path.remove_prefix(dot + 1);
  }
}

TProperty IgnoringCase(TProperty Property) {
  Property.DefaultIgnoresCase = true;
  return Property;
}

TProperty PublishedEvent(const char* Name, const char* TypeName) {
  TProperty property;
  property.Name = Name;
  property.Kind = pkEvent;
  property.TypeName = TypeName;
  return property;
}

namespace internal {
namespace {

std::string Joined(const TEnumInfo& Info) {
  std::string text;
  for (const std::string_view name : Info.Names) {
    if (!text.empty()) text += ", ";
    text += name;
  }
  return text;
}

std::string_view Trimmed(std::string_view Text) {
  while (!Text.empty() && Text.front() == ' ') Text.remove_prefix(1);
  while (!Text.empty() && Text.back() == ' ') Text.remove_suffix(1);
  return Text;
}

}  // namespace

void PropertyValueError(std::string_view Name, std::string_view Text, std::string_view Expected) {
  throw EConvertError(MsgPropertyValue, Text, Name, Expected);
}

std::int64_t PropertyInteger(std::string_view Name, std::string_view Text, std::int64_t Min,
                             std::int64_t Max) {
  std::int64_t value = 0;
  if (!TryStrToInt64(Text, value) || value < Min || value > Max) {
    PropertyValueError(Name, Text, Format("a whole number from %d to %d", Min, Max));
  }
  return value;
}

bool PropertyBoolean(std::string_view Name, std::string_view Text) {
  if (SameText(Text, "true")) return true;
  if (!SameText(Text, "false")) PropertyValueError(Name, Text, "true or false");
  return false;
}

char PropertyChar(std::string_view Name, std::string_view Text) {
  if (Text.size() == 1) return Text.front();
  std::int32_t code = 0;
  if (Text.empty() || Text.front() != '#' || !TryStrToInt(Text.substr(1), code) || code < 0 ||
      code > 255) {
    PropertyValueError(Name, Text, "one character, or # and its code from 0 to 255");
  }
  return static_cast<char>(code);
}

std::string CharText(char Value) {
  const auto code = static_cast<unsigned char>(Value);
  // Bytes from 127 on are written by code: alone they are no character in UTF-8.
  if (code < 32 || code > 126) return "#" + std::to_string(code);
  return std::string(1, Value);
}

std::size_t PropertyMember(std::string_view Name, std::string_view Text, const TEnumInfo& Info) {
  for (std::size_t i = 0; i < Info.Names.size(); ++i) {
    if (SameText(Info.Names[i], Text)) return i;
  }
  PropertyValueError(Name, Text, "one of " + Joined(Info));
}

std::uint64_t PropertySet(std::string_view Name, std::string_view Text, const TEnumInfo& Info) {
  if (Text.size() < 2 || Text.front() != '[' || Text.back() != ']') {
    PropertyValueError(Name, Text, "a set in brackets of " + Joined(Info));
  }
  std::string_view rest = Trimmed(Text.substr(1, Text.size() - 2));
  std::uint64_t bits = 0;
  while (!rest.empty()) {
    const std::size_t comma = std::min(rest.find(','), rest.size());
    bits |= std::uint64_t{1} << PropertyMember(Name, Trimmed(rest.substr(0, comma)), Info);
    rest.remove_prefix(std::min(comma + 1, rest.size()));
  }
  return bits;
}

std::string SetText(std::uint64_t Bits, const TEnumInfo& Info) {
  std::string text = "[";
  for (std::size_t i = 0; i < Info.Names.size(); ++i) {
    if ((Bits >> i & 1) == 0) continue;
    if (text.size() > 1) text += ',';
    text += Info.Names[i];
  }
  return text + "]";
}

std::int32_t PropertyColor(std::string_view Name, std::string_view Text) {
  try {
    return StringToColor(Text);
  } catch (const EConvertError&) {
    PropertyValueError(Name, Text, "a colour as $00BBGGRR, #RRGGBB or a standard name");
  }
}

std::string ColorText(std::int32_t Value) { return ColorToString(Value); }

}  // namespace internal
}  // namespace norva
