#include "ErrorText.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"
#include "XMLUtils/Strings.h"

namespace Vantor::Tool {

namespace {

template <class XercesException>
std::string messageOf(const XercesException& exception) {
  return Utils::wstringToString(XMLUtils::utf16ToWstring(exception.getMessage()));
}

bool isControl(char character) {
  const auto octet = static_cast<unsigned char>(character);
  return octet < 0x20 || octet == 0x7F;
}

/// Messages of the XML parser start with the name that the compiler gives the kind of their exception, which tells a
/// user nothing.
std::string withoutKind(const std::string& message) {
  const auto end = message.find(": ");
  const bool hasKind = end != std::string::npos && message.substr(0, end).find("xercesc_") != std::string::npos;
  return hasKind ? message.substr(end + 2) : message;
}

bool names(const std::string& message, const std::string& file) {
  return message.find("'" + file + "'") != std::string::npos || message.find(" " + file + ": ") != std::string::npos;
}

/// Whether the message of the exception that is being handled tells which file it is about. What goes wrong at the
/// system tells the path that the system was given, in quotes.
bool currentExceptionNames(const std::string& message, const std::string& file) {
  try {
    throw;
  } catch (const OtherFileError&) {
    return true;
  } catch (const Exceptions::IOError&) {
    return message.find('\'') != std::string::npos;
  } catch (...) {
    return names(message, file);
  }
}

constexpr const char* kNoMemory = "there is not enough memory";

}  // namespace

void printMessage(const std::string& message) {
  std::fputs((std::string(kProgramName) + ": " + oneLine(message) + "\n").c_str(), stderr);
}

std::string currentExceptionText() {
  try {
    throw;
  } catch (const xercesc::OutOfMemoryException&) {
    return kNoMemory;
  } catch (const xercesc::XMLException& exception) {
    return messageOf(exception);
  } catch (const xercesc::SAXException& exception) {
    return messageOf(exception);
  } catch (const xercesc::DOMException& exception) {
    return messageOf(exception);
  } catch (const std::bad_alloc&) {
    return kNoMemory;
  } catch (const std::exception& exception) {
    return withoutKind(exception.what());
  } catch (...) {
    return "an error of an unknown kind";
  }
}

std::string currentExceptionText(const Path& file) {
  const std::string text = currentExceptionText();
  return file.empty() || currentExceptionNames(text, file.u8string()) ? text : file.u8string() + ": " + text;
}

std::string oneLine(std::string text) {
  std::replace_if(text.begin(), text.end(), isControl, '?');
  return text;
}

}  // namespace Vantor::Tool
