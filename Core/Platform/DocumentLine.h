#pragma once

#include <utility>

#include "Core/Platform/Raise.h"

/// Exceptions about a line of a document, such as one in XML or JSON.
namespace Vantor::Exceptions {

/// Beside the kind of an exception, the line that it is about. To be caught on its own, or found by dynamic_cast.
class DocumentLine {
 public:
  /// @param line  from 1; 0 when it is not known.
  explicit DocumentLine(uint64 line) : documentLine_(line) {}
  virtual ~DocumentLine();
  DocumentLine(const DocumentLine&) = default;
  DocumentLine& operator=(const DocumentLine&) = default;

  uint64 documentLine() const { return documentLine_; }

 private:
  uint64 documentLine_;
};

/// An exception of a kind with the line of a document.
template <class Kind>
class WithDocumentLine final : public Kind, public DocumentLine {
 public:
  WithDocumentLine(Kind exception, uint64 line) : Kind(std::move(exception)), DocumentLine(line) {}
};

/// The line that an exception carries; 0 for none.
template <class Exception>
uint64 documentLineOf(const Exception& exception) {
  const auto* line = dynamic_cast<const DocumentLine*>(&exception);
  return line == nullptr ? 0 : line->documentLine();
}

/// The same as `raise`, with the line of a document beside the message, which may have it, too.
template <class Kind, class... Arguments>
[[noreturn]] void raiseAt(uint64 line, const Format& format, const Arguments&... arguments) {
  try {
    raise<Kind>(format, arguments...);
  } catch (Kind& exception) {
    throw WithDocumentLine<Kind>(std::move(exception), line);
  }
}

}  // namespace Vantor::Exceptions
