/// Published properties: one list a class, with name, type, stored default and access.
///
///   const TPropertyList& TNorvaASCII::Properties() const {
///     static const TPropertyList list(TNorvaFormatText::Properties(), {
///         Published("ExportType", &TNorvaASCII::ExportType, &TNorvaASCII::SetExportType, etTXT),
///         Published("CSVQuoteStrings", &TNorvaASCII::CSVQuoteStrings, true),
///         PublishedList("ColumnsAlign", &TNorvaASCII::ColumnsAlign),
///     });
///     return list;
///   }
///
/// Values have a text form: numbers in decimal, `true` and `false`, enumeration members by name,
/// sets as `[a,b]`, colours as ColorToString writes them, a single character as itself or, when it
/// is not printable, as `#9`.
#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <norva/platform/Collection.h>
#include <norva/platform/Component.h>
#include <norva/platform/Enums.h>
#include <norva/platform/Export.h>
#include <norva/platform/Persistent.h>
#include <norva/platform/Sets.h>
#include <norva/platform/StringList.h>

namespace norva {

enum TPropertyKind : std::uint8_t {
  pkValue,       ///< has a text form: Get and Set
  pkList,        ///< an owned TStringList: Object
  pkGroup,       ///< an owned object with properties of its own: Object
  pkCollection,  ///< an owned TCollection: Object
  pkReference,   ///< another component, not owned: GetReference and SetReference
  pkEvent,       ///< a handler; neither stored nor set by text
};

/// One published property of a class; made by the Published functions below.
struct NORVA_EXPORT TProperty {
  std::string Name;
  TPropertyKind Kind = pkValue;
  /// "Integer", "String", "Boolean", "Char", "Colour", an enumeration's name, "set of ...".
  std::string TypeName;
  /// The text of the stored default: a value equal to it is not streamed. Absent: always streamed.
  std::optional<std::string> Default;
  /// Whether a value that differs from Default in letter case only counts as equal to it.
  bool DefaultIgnoresCase = false;
  /// For enumerations and sets: the member names.
  std::vector<std::string_view> Members;

  std::function<std::string(const TPersistent&)> Get;
  /// Throws EConvertError naming the property, the value and what would be right.
  std::function<void(TPersistent&, std::string_view)> Set;
  std::function<TPersistent&(TPersistent&)> Object;
  std::function<TComponent*(const TPersistent&)> GetReference;
  /// Returns false when the component is of a class that the property does not take.
  std::function<bool(TPersistent&, TComponent*)> SetReference;

  /// Whether `Text`, the text of a value, is the stored default.
  bool IsDefault(std::string_view Text) const;
};

/// The properties of a class: those of its base, then its own, in declaration order.
class NORVA_EXPORT TPropertyList {
 public:
  TPropertyList() = default;
  TPropertyList(std::initializer_list<TProperty> Own);
  TPropertyList(const TPropertyList& Inherited, std::initializer_list<TProperty> Own);

  /// The property named `Name`, case ignored; null when there is none.
  const TProperty* Find(std::string_view Name) const;

  std::vector<TProperty>::const_iterator begin() const { return Items_.begin(); }
  std::vector<TProperty>::const_iterator end() const { return Items_.end(); }
  std::size_t size() const { return Items_.size(); }

 private:
  std::vector<TProperty> Items_;
};

/// A property reached by a dotted path, `Options.TextFont.Name`: the object that has it, and it.
struct TPropertyPath {
  TPersistent* Object = nullptr;
  const TProperty* Property = nullptr;
};
/// Follows `Path` from `Root` through its groups. Both members are null when a step is unknown.
NORVA_EXPORT TPropertyPath FindProperty(TPersistent& Root, std::string_view Path);

namespace internal {

[[noreturn]] NORVA_EXPORT void PropertyValueError(std::string_view Name, std::string_view Text,
                                                  std::string_view Expected);
NORVA_EXPORT std::int64_t PropertyInteger(std::string_view Name, std::string_view Text,
                                          std::int64_t Min, std::int64_t Max);
NORVA_EXPORT bool PropertyBoolean(std::string_view Name, std::string_view Text);
NORVA_EXPORT char PropertyChar(std::string_view Name, std::string_view Text);
NORVA_EXPORT std::string CharText(char Value);
/// The index of `Text` among `Names`, which an error lists.
NORVA_EXPORT std::size_t PropertyMember(std::string_view Name, std::string_view Text,
                                        const TEnumInfo& Info);
/// The bits of a set written `[a,b]`.
NORVA_EXPORT std::uint64_t PropertySet(std::string_view Name, std::string_view Text,
                                       const TEnumInfo& Info);
NORVA_EXPORT std::string SetText(std::uint64_t Bits, const TEnumInfo& Info);
NORVA_EXPORT std::int32_t PropertyColor(std::string_view Name, std::string_view Text);
NORVA_EXPORT std::string ColorText(std::int32_t Value);

template <class T>
struct TValueTraits;

template <std::integral T>
struct TValueTraits<T> {
  static std::string TypeName() { return "Integer"; }
  static std::string ToText(T Value) { return std::to_string(Value); }
  static T FromText(std::string_view Name, std::string_view Text) {
    return static_cast<T>(
        PropertyInteger(Name, Text, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()));
  }
  static std::vector<std::string_view> Members() { return {}; }
};

template <>
struct TValueTraits<bool> {
  static std::string TypeName() { return "Boolean"; }
  static std::string ToText(bool Value) { return Value ? "true" : "false"; }
  static bool FromText(std::string_view Name, std::string_view Text) {
    return PropertyBoolean(Name, Text);
  }
  static std::vector<std::string_view> Members() { return {}; }
};

template <>
struct TValueTraits<char> {
  static std::string TypeName() { return "Char"; }
  static std::string ToText(char Value) { return CharText(Value); }
  static char FromText(std::string_view Name, std::string_view Text) {
    return PropertyChar(Name, Text);
  }
  static std::vector<std::string_view> Members() { return {}; }
};

template <>
struct TValueTraits<std::string> {
  static std::string TypeName() { return "String"; }
  static std::string ToText(const std::string& Value) { return Value; }
  static std::string FromText(std::string_view, std::string_view Text) { return std::string(Text); }
  static std::vector<std::string_view> Members() { return {}; }
};

template <NamedEnum T>
struct TValueTraits<T> {
  static std::string TypeName() { return std::string(EnumInfo(T{}).TypeName); }
  static std::string ToText(T Value) { return std::string(EnumToStr(Value)); }
  static T FromText(std::string_view Name, std::string_view Text) {
    return static_cast<T>(PropertyMember(Name, Text, EnumInfo(T{})));
  }
  static std::vector<std::string_view> Members() {
    const TEnumInfo info = EnumInfo(T{});
    return {info.Names.begin(), info.Names.end()};
  }
};

template <NamedEnum T>
struct TValueTraits<TSet<T>> {
  static std::string TypeName() { return "set of " + std::string(EnumInfo(T{}).TypeName); }
  static std::string ToText(TSet<T> Value) { return SetText(Value.Bits(), EnumInfo(T{})); }
  static TSet<T> FromText(std::string_view Name, std::string_view Text) {
    const std::uint64_t bits = PropertySet(Name, Text, EnumInfo(T{}));
    TSet<T> set;
    for (std::size_t i = 0; i < 64; ++i) {
      if (bits >> i & 1) set.Include(static_cast<T>(i));
    }
    return set;
  }
  static std::vector<std::string_view> Members() { return TValueTraits<T>::Members(); }
};

/// Chosen by PublishedColor: a colour is a plain 32-bit integer with a text form of its own.
struct TColorTraits {
  static std::string TypeName() { return "Colour"; }
  static std::string ToText(std::int32_t Value) { return ColorText(Value); }
  static std::int32_t FromText(std::string_view Name, std::string_view Text) {
    return PropertyColor(Name, Text);
  }
  static std::vector<std::string_view> Members() { return {}; }
};

/// A value property read by `Read(object)` and written by `Write(object, value)`.
template <class TTraits, class TOwner, class TRead, class TWrite>
TProperty ValueProperty(const char* Name, TRead Read, TWrite Write,
                        std::optional<std::string> Default) {
  TProperty property;
  property.Name = Name;
  property.TypeName = TTraits::TypeName();
  property.Members = TTraits::Members();
  property.Default = std::move(Default);
  property.Get = [Read](const TPersistent& object) {
    return TTraits::ToText(Read(static_cast<const TOwner&>(object)));
  };
  property.Set = [Write, Name](TPersistent& object, std::string_view text) {
    Write(static_cast<TOwner&>(object), TTraits::FromText(Name, text));
  };
  return property;
}

template <class TTraits, class TOwner, class T>
TProperty MemberProperty(const char* Name, T TOwner::*Member, std::optional<std::string> Default) {
  return ValueProperty<TTraits, TOwner>(
      Name, [Member](const TOwner& object) -> const T& { return object.*Member; },
      [Member](TOwner& object, T value) { object.*Member = std::move(value); }, std::move(Default));
}

}  // namespace internal

/// A data member with stored default `Default`.
template <class TOwner, class T, class TDefault>
TProperty Published(const char* Name, T TOwner::*Member, const TDefault& Default) {
  using TTraits = internal::TValueTraits<T>;
  return internal::MemberProperty<TTraits>(Name, Member, TTraits::ToText(T(Default)));
}

/// A data member that is streamed whatever its value.
template <class TOwner, class T>
requires(!std::is_member_function_pointer_v<T TOwner::*>) TProperty
    PublishedAlways(const char* Name, T TOwner::*Member) {
  return internal::MemberProperty<internal::TValueTraits<T>>(Name, Member, std::nullopt);
}

/// A getter and a setter with stored default `Default`; no default: streamed whatever the value.
template <class TOwner, class TResult, class TValue>
TProperty Published(const char* Name, TResult (TOwner::*Getter)() const,
                    void (TOwner::*Setter)(TValue), std::optional<std::decay_t<TResult>> Default) {
  using TTraits = internal::TValueTraits<std::decay_t<TResult>>;
  return internal::ValueProperty<TTraits, TOwner>(
      Name, [Getter](const TOwner& object) { return (object.*Getter)(); },
      [Setter](TOwner& object, const std::decay_t<TResult>& value) { (object.*Setter)(value); },
      Default ? std::optional(TTraits::ToText(*Default)) : std::nullopt);
}

/// A colour held in a data member.
template <class TOwner>
TProperty PublishedColor(const char* Name, std::int32_t TOwner::*Member,
                         std::optional<std::int32_t> Default = std::nullopt) {
  using TTraits = internal::TColorTraits;
  return internal::MemberProperty<TTraits>(
      Name, Member, Default ? std::optional(TTraits::ToText(*Default)) : std::nullopt);
}

/// An owned string list.
template <class TOwner>
TProperty PublishedList(const char* Name, TStringList TOwner::*Member) {
  TProperty property;
  property.Name = Name;
  property.Kind = pkList;
  property.TypeName = "String list";
  property.Object = [Member](TPersistent& object) -> TPersistent& {
    return static_cast<TOwner&>(object).*Member;
  };
  return property;
}

/// An owned object with published properties of its own.
template <class TOwner, std::derived_from<TPersistent> T>
TProperty PublishedGroup(const char* Name, T TOwner::*Member) {
  TProperty property;
  property.Name = Name;
  property.Kind = pkGroup;
  property.TypeName = T().ClassName();
  property.Object = [Member](TPersistent& object) -> TPersistent& {
    return static_cast<TOwner&>(object).*Member;
  };
  return property;
}

/// An owned collection, whose items have published properties of their own.
template <class TOwner, std::derived_from<TCollection> T>
TProperty PublishedCollection(const char* Name, T TOwner::*Member) {
  TProperty property = PublishedGroup(Name, Member);
  property.Kind = pkCollection;
  return property;
}

/// A reference to another component.
template <class TOwner, class T>
TProperty PublishedReference(const char* Name, const char* TypeName,
                             TReference<T> TOwner::*Member) {
  TProperty property;
  property.Name = Name;
  property.Kind = pkReference;
  property.TypeName = TypeName;
  property.GetReference = [Member](const TPersistent& object) -> TComponent* {
    return (static_cast<const TOwner&>(object).*Member).Get();
  };
  property.SetReference = [Member](TPersistent& object, TComponent* target) {
    T* typed = dynamic_cast<T*>(target);
    if (target && !typed) return false;
    static_cast<TOwner&>(object).*Member = typed;
    return true;
  };
  return property;
}

/// `Property`, not streamed either when its value differs from the default in letter case only.
NORVA_EXPORT TProperty IgnoringCase(TProperty Property);

/// An event; listed so that a designer can show it.
NORVA_EXPORT TProperty PublishedEvent(const char* Name, const char* TypeName);

}  // namespace norva
