#include <norva/platform/FormText.h>

#include <algorithm>

#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>
#include <norva/platform/Numbers.h>
#include <norva/platform/Property.h>

namespace norva {
namespace {

bool IsQuotedType(const TProperty& Property) {
  return Property.TypeName == "String" || Property.TypeName == "Char";
}

std::string Quoted(std::string_view Text) {
  std::string out;
  bool open = false;
  const auto toggle = [&](bool wanted) {
    if (open != wanted) out += '\'';
    open = wanted;
  };
  for (const char c : Text) {
    const auto code = static_cast<unsigned char>(c);
    const bool control = code < 32 || code == 127;
    toggle(!control);
    if (control) {
      out += '#';
      out += std::to_string(code);
    } else {
      if (c == '\'') out += '\'';
      out += c;
    }
  }
  toggle(false);
  return out.empty() ? "''" : out;
}

/// Writes the stored form of properties, line by line.
class TFormWriter {
 public:
  explicit TFormWriter(std::string& Out) : Out_(Out) {}

  /// `Prefix` is the path to `Object`, with a dot behind each group.
  void WriteProperties(TPersistent& Object, const std::string& Prefix) {
    for (const TProperty& property : Object.Properties()) {
      WriteProperty(Object, property, Prefix + property.Name);
    }
  }

 private:
  void WriteProperty(TPersistent& Object, const TProperty& Property, const std::string& Path) {
    switch (Property.Kind) {
      case pkValue: {
        const std::string value = Property.Get(Object);
        if (Property.IsDefault(value)) break;
        WriteLine(Path + " = " + (IsQuotedType(Property) ? Quoted(value) : value));
        break;
      }
      case pkList:
        WriteList(static_cast<TStringList&>(Property.Object(Object)), Path);
        break;
      case pkGroup:
        WriteProperties(Property.Object(Object), Path + ".");
        break;
      case pkCollection:
        WriteCollection(static_cast<TCollection&>(Property.Object(Object)), Path);
        break;
      case pkReference:
        if (const TComponent* target = Property.GetReference(Object);
            target && !target->Name.empty()) {
          WriteLine(Path + " = " + target->Name);
        }
        break;
      case pkEvent:
        break;
    }
  }

  void WriteList(const TStringList& List, const std::string& Path) {
    Out_ += Indent_ + Path + " = (";
    for (const std::string& line : List) Out_ += "\n" + Indent_ + "  " + Quoted(line);
    Out_ += ")\n";
  }

  void WriteCollection(const TCollection& Collection, const std::string& Path) {
    Out_ += Indent_ + Path + " = <";
    const std::string outer = Indent_;
    for (int i = 0; i < Collection.Count(); ++i) {
      Out_ += "\n" + outer + "  item\n";
      Indent_ = outer + "    ";
      WriteProperties(Collection.Item(i), "");
      Out_ += outer + "  end";
    }
    Indent_ = outer;
    Out_ += ">\n";
  }

  void WriteLine(const std::string& Line) { Out_ += Indent_ + Line + "\n"; }

  std::string& Out_;
  std::string Indent_ = "  ";
};

/// Reads the stored form, line by line.
class TFormReader {
 public:
  TFormReader(std::string_view Text, TComponent& Component) : Rest_(Text), Component_(Component) {}

  void Load() {
    ReadHeader(NextLine());
    for (std::string_view line = NextLine(); line != "end"; line = NextLine()) {
      ReadProperty(Component_, line);
    }
  }

 private:
  [[noreturn]] void Fail(const std::string& Reason) const {
    throw EConvertError(MsgFormLine, Line_, Reason);
  }

  /// The next line without outer blanks; blank lines are skipped.
  std::string_view NextLine() {
    while (!Rest_.empty()) {
      const std::size_t end = std::min(Rest_.find('\n'), Rest_.size());
      std::string_view line = Rest_.substr(0, end);
      Rest_.remove_prefix(std::min(end + 1, Rest_.size()));
      ++Line_;
      while (!line.empty() && (line.back() == ' ' || line.back() == '\r')) line.remove_suffix(1);
      while (!line.empty() && line.front() == ' ') line.remove_prefix(1);
      if (!line.empty()) return line;
    }
    Fail(Format(MsgFormExpected, "end"));
  }

  void ReadHeader(std::string_view Line) {
    constexpr std::string_view keyword = "object ";
    const std::size_t colon = Line.find(": ");
    if (Line.substr(0, keyword.size()) != keyword || colon == std::string_view::npos) {
      Fail(Format(MsgFormExpected, "object Name: Class"));
    }
    const std::string_view className = Line.substr(colon + 2);
    if (className != Component_.ClassName()) {
      Fail(Format(MsgFormClass, Component_.ClassName(), className));
    }
    Component_.Name = Line.substr(keyword.size(), colon - keyword.size());
  }

  /// Sets the property of `Object` that `Line` stores.
  void ReadProperty(TPersistent& Object, std::string_view Line) {
    const std::size_t equals = Line.find(" =");
    if (equals == std::string_view::npos) Fail(Format(MsgFormExpected, "Property = value"));
    const std::string_view path = Line.substr(0, equals);
    std::string_view value = Line.substr(equals + 2);
    while (!value.empty() && value.front() == ' ') value.remove_prefix(1);
    const TPropertyPath target = FindProperty(Object, path);
    if (!target.Property || target.Property->Kind == pkGroup || target.Property->Kind == pkEvent) {
      Fail(Format(MsgFormProperty, Object.ClassName(), path));
    }
    Store(*target.Object, *target.Property, value);
  }

  void Store(TPersistent& Object, const TProperty& Property, std::string_view Value) {
    if (Property.Kind == pkList) {
      ReadList(static_cast<TStringList&>(Property.Object(Object)), Value);
    } else if (Property.Kind == pkCollection) {
      ReadCollection(static_cast<TCollection&>(Property.Object(Object)), Value);
    } else if (Property.Kind == pkReference) {
      TComponent* owner = Component_.Owner();
      TComponent* found = owner ? owner->FindComponent(Value) : nullptr;
      if (!found || !Property.SetReference(Object, found)) {
        Fail(Format(MsgFormReference, Property.Name, Value));
      }
    } else {
      const std::string text = IsQuotedType(Property) ? Unquoted(Value) : std::string(Value);
      try {
        Property.Set(Object, text);
      } catch (const EConvertError& error) {
        Fail(error.what());
      }
    }
  }

  void ReadList(TStringList& List, std::string_view Value) {
    bool last = Value == "()";
    if (!last && Value != "(") Fail(Format(MsgFormExpected, "("));
    List.Clear();
    while (!last) {
      std::string_view line = NextLine();
      if (line == ")") return;
      last = line.back() == ')';
      if (last) line.remove_suffix(1);
      List.Add(Unquoted(line));
    }
  }

  void ReadCollection(TCollection& Collection, std::string_view Value) {
    bool last = Value == "<>";
    if (!last && Value != "<") Fail(Format(MsgFormExpected, "<"));
    Collection.Clear();
    while (!last) {
      std::string_view line = NextLine();
      if (line == ">") return;
      if (line != "item") Fail(Format(MsgFormExpected, "item"));
      TCollectionItem& item = Collection.AddItem();
      SetDefaults(item);
      for (line = NextLine(); line != "end" && line != "end>"; line = NextLine()) {
        ReadProperty(item, line);
      }
      last = line == "end>";
    }
  }

  /// A collection may start its items with other values than the stored defaults, and what is
  /// equal to those was left out.
  static void SetDefaults(TPersistent& Object) {
    for (const TProperty& property : Object.Properties()) {
      if (property.Kind == pkGroup) SetDefaults(property.Object(Object));
      if (property.Kind == pkValue && property.Default) property.Set(Object, *property.Default);
    }
  }

  std::string Unquoted(std::string_view Text) const {
    std::string out;
    while (!Text.empty()) {
      if (Text.front() == '#') {
        const std::size_t end = std::min(Text.find_first_not_of("0123456789", 1), Text.size());
        const std::int32_t code = StrToIntDef(Text.substr(1, end - 1), -1);
        if (code < 0 || code > 255) Fail(Format(MsgFormExpected, "# and a code from 0 to 255"));
        out += static_cast<char>(code);
        Text.remove_prefix(end);
      } else if (Text.front() == '\'') {
        Text.remove_prefix(1);
        ReadQuoted(Text, out);
      } else {
        Fail(Format(MsgFormExpected, "'"));
      }
    }
    return out;
  }

  /// Reads up to the closing quote; a doubled quote stands for one.
  void ReadQuoted(std::string_view& Text, std::string& Out) const {
    for (;;) {
      const std::size_t quote = Text.find('\'');
      if (quote == std::string_view::npos) Fail(MsgFormText);
      Out += Text.substr(0, quote);
      Text.remove_prefix(quote + 1);
      if (Text.empty() || Text.front() != '\'') return;
      Out += '\'';
      Text.remove_prefix(1);
    }
  }

  std::string_view Rest_;
  TComponent& Component_;
  int Line_ = 0;
};

}  // namespace

std::string SaveComponent(const TComponent& Component) {
  std::string out = "object " + Component.Name + ": " + std::string(Component.ClassName()) + "\n";
  // Object accessors take a mutable object because loading shares them; saving changes nothing.
  TFormWriter(out).WriteProperties(const_cast<TComponent&>(Component), "");
  return out + "end\n";
}

void LoadComponent(std::string_view Text, TComponent& Component) {
  TFormReader(Text, Component).Load();
}

}  // namespace norva
