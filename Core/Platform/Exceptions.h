#pragma once

#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "Core/Platform/Types.h"

/// What the libraries throw. Each exception carries a message, the name of the source file that raised it and a line.
namespace Vantor::Exceptions {

class BaseException : public std::exception {
 public:
  /// @param message  UTF-8.
  /// @param file     the source's name without directories of the building machine, such as `XMLBuilder\XML2Partition`.
  BaseException(std::string message, std::string file, int line);
  BaseException(const wstring& message, std::string file, int line);

  /// The message alone, in UTF-8; valid as long as the exception.
  const char* what() const noexcept override { return message_.c_str(); }
  const std::string& message() const noexcept { return message_; }
  const std::string& file() const noexcept { return file_; }
  int line() const noexcept { return line_; }

  /// What the message was made of, for programs: a format of libfmt and its arguments. Empty when the exception was
  /// made from a plain message.
  const std::string& format() const noexcept { return format_; }
  const std::vector<std::string>& arguments() const noexcept { return arguments_; }
  void setDetails(std::string format, std::vector<std::string> arguments) {
    format_ = std::move(format);
    arguments_ = std::move(arguments);
  }

 private:
  std::string message_;
  std::string file_;
  int line_;
  std::string format_;
  std::vector<std::string> arguments_;
};

/// Input that is not what its format demands, such as damaged KLV.
class ParseError : public BaseException {
 public:
  using BaseException::BaseException;
};

/// Input, or a document of it, beyond one of the limits (`Limits`), whose place, value and name are its `arguments()`.
class LimitExceeded : public ParseError {
 public:
  using ParseError::ParseError;
};

/// There is not enough memory, where a function promises a ParseError for whatever fails.
class OutOfMemory : public ParseError {
 public:
  using ParseError::ParseError;
};

/// A value's text or bytes that cannot be what its type demands.
class InvalidFormat : public BaseException {
 public:
  using BaseException::BaseException;
};

/// A size or count that does not fit.
class InvalidLength : public BaseException {
 public:
  using BaseException::BaseException;
};

/// A dynamic local tag that the primer pack does not list.
class NotFoundInPrimer : public BaseException {
 public:
  using BaseException::BaseException;
};

/// References that nest deeper than their written form can hold.
class NestingTooDeep : public BaseException {
 public:
  using BaseException::BaseException;
};

/// A library that this one depends on cannot start, for instance because memory is short.
class StartFailure : public BaseException {
 public:
  using BaseException::BaseException;
};

/// A file that cannot be opened, read or written.
class IOError : public BaseException {
 public:
  using BaseException::BaseException;
};

}  // namespace Vantor::Exceptions
