#include "Core/Platform/Exceptions.h"

#include "Core/Platform/Strings.h"

namespace Vantor::Exceptions {

BaseException::BaseException(std::string message, std::string file, int line)
    : message_(std::move(message)), file_(std::move(file)), line_(line) {}

BaseException::BaseException(const wstring& message, std::string file, int line)
    : BaseException(Utils::wstringToString(message), std::move(file), line) {}

}  // namespace Vantor::Exceptions
