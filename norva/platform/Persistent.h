/// Objects with published properties that can be copied, and stored with a host's forms.
#pragma once

#include <string_view>

#include <norva/platform/Export.h>

namespace norva {

class TPropertyList;

/// Root of the classes that an event may name as its sender.
class NORVA_EXPORT TObject {
 public:
  virtual ~TObject();

 protected:
  TObject() = default;
  TObject(const TObject&) = default;
  TObject& operator=(const TObject&) = default;
};

/// Base of everything with published properties: components, option groups, string lists.
class NORVA_EXPORT TPersistent : public TObject {
 public:
  TPersistent() = default;
  ~TPersistent() override;

  /// Copies the contents of `Source`; throws EConvertError when the classes are unrelated.
  virtual void Assign(const TPersistent& Source);
  /// The class's name, as messages and stored forms spell it.
  virtual std::string_view ClassName() const = 0;
  /// The published properties, in declaration order; the one list that form streaming, tools and
  /// dialogs read. Empty unless a class publishes something.
  virtual const TPropertyList& Properties() const;

 protected:
  TPersistent(const TPersistent&) = default;
  TPersistent& operator=(const TPersistent&) = default;
  /// Throws the assignment error for `Source`.
  [[noreturn]] void AssignError(const TPersistent& Source) const;
};

}  // namespace norva
