/// The error hierarchy of the library. Every failure is one of these; what() is the finished
/// message, which names the thing, the place and the value.
#pragma once

#include <stdexcept>
#include <string>

#include <norva/platform/Export.h>
#include <norva/platform/Format.h>

namespace norva {

/// Base of every error this library throws.
class NORVA_EXPORT Exception : public std::runtime_error {
 public:
  template <class... TArgs>
  explicit Exception(std::string_view Message, const TArgs&... Args)
      : std::runtime_error(Format(Message, Args...)) {}
  ~Exception() override;
};

/// Text that is no number, date, colour ..., or a character outside the code page.
class NORVA_EXPORT EConvertError : public Exception {
 public:
  using Exception::Exception;
  ~EConvertError() override;
};

/// A source that cannot give its records: unknown field, bad query, damaged database.
class NORVA_EXPORT EDatabaseError : public Exception {
 public:
  using Exception::Exception;
  ~EDatabaseError() override;
};

/// Base of the errors of streams and files.
class NORVA_EXPORT EStreamError : public Exception {
 public:
  using Exception::Exception;
  ~EStreamError() override;
};

/// A file that cannot be created.
class NORVA_EXPORT EFCreateError : public EStreamError {
 public:
  using EStreamError::EStreamError;
  ~EFCreateError() override;
};

/// A file that cannot be opened.
class NORVA_EXPORT EFOpenError : public EStreamError {
 public:
  using EStreamError::EStreamError;
  ~EFOpenError() override;
};

/// A stream that gives fewer bytes than asked for, or cannot be read.
class NORVA_EXPORT EReadError : public EStreamError {
 public:
  using EStreamError::EStreamError;
  ~EReadError() override;
};

/// A write, flush or close that failed: what was written may be incomplete.
class NORVA_EXPORT EWriteError : public EStreamError {
 public:
  using EStreamError::EStreamError;
  ~EWriteError() override;
};

/// A list index out of range.
class NORVA_EXPORT EListError : public Exception {
 public:
  using Exception::Exception;
  ~EListError() override;
};

/// Text that an INI file cannot hold.
class NORVA_EXPORT EIniError : public Exception {
 public:
  using Exception::Exception;
  ~EIniError() override;
};

/// A compound document that cannot be made: bad name, too much content.
class NORVA_EXPORT EOleError : public Exception {
 public:
  using Exception::Exception;
  ~EOleError() override;
};

}  // namespace norva
