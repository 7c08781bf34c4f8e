#include <norva/platform/Exceptions.h>

namespace norva {

// Out-of-line destructors anchor each type's run-time information in the library, so that a host
// catches across the library boundary by one and the same type.
Exception::~Exception() = default;
EConvertError::~EConvertError() = default;
EDatabaseError::~EDatabaseError() = default;
EStreamError::~EStreamError() = default;
EFCreateError::~EFCreateError() = default;
EFOpenError::~EFOpenError() = default;
EReadError::~EReadError() = default;
EWriteError::~EWriteError() = default;
EListError::~EListError() = default;
EIniError::~EIniError() = default;
EOleError::~EOleError() = default;

}  // namespace norva
