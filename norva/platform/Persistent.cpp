#include <norva/platform/Persistent.h>

#include <norva/platform/Exceptions.h>
#include <norva/platform/Messages.h>
#include <norva/platform/Property.h>

namespace norva {

TObject::~TObject() = default;
TPersistent::~TPersistent() = default;

void TPersistent::Assign(const TPersistent& Source) { AssignError(Source); }

void TPersistent::AssignError(const TPersistent& Source) const {
  throw EConvertError(MsgAssign, Source.ClassName(), ClassName());
}

const TPropertyList& TPersistent::Properties() const {
  static const TPropertyList none;
  return none;
}

}  // namespace norva
