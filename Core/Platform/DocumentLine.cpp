#include "Core/Platform/DocumentLine.h"

namespace Vantor::Exceptions {

DocumentLine::~DocumentLine() = default;

}  // namespace Vantor::Exceptions
