#pragma once

#include <memory>

namespace Vantor::XMLUtils {

/// Gives an object back the way Xerces wants it: by its own `release()`.
struct Releaser {
  template <class T>
  void operator()(T* object) const {
    object->release();
  }
};

/// Owns one DOM parser, serializer, input, document, expression or XPath result until the end of its scope.
/// To be filled on the line that gets the object: `const Holder<DOMLSParser> parser(ls.createLSParser(...));`
template <class T>
using Holder = std::unique_ptr<T, Releaser>;

}  // namespace Vantor::XMLUtils
