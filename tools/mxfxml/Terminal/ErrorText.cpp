#include "Terminal/ErrorText.h"

#include <cstdio>
#include <filesystem>
#include <new>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Platform/DocumentLine.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Limits.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Strings.h"
#include "Terminal/CharacterWidth.h"
#include "Terminal/RunLimits.h"
#include "XMLUtils/Strings.h"

namespace Vantor::Tool {

namespace {

template <class XercesException>
std::string messageOf(const XercesException& exception) {
  return Utils::wstringToString(XMLUtils::utf16ToWstring(exception.getMessage()));
}

/// Whether the exception that is being handled names the file that it is about.
bool currentExceptionNamesItsFile() {
  try {
    throw;
  } catch (const OtherFileError&) {
    return true;
  } catch (const Exceptions::IOError&) {
    return true;
  } catch (...) {
    return false;
  }
}

/// The extension of an MXF file in a folder, which may be in capitals; empty when there is none.
std::string extensionIn(const Path& folder) {
  std::error_code error;
  // increment() returns errors, where ++ would throw while another exception is handled.
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const auto extension = Platform::pathToUTF8(entry->path().extension());
    if (extension == ".mxf" || extension == ".MXF") return extension;
  }
  return {};
}

/// What to name instead of a folder with MXF files; nothing when the exception that is being handled, or the path, is
/// another one.
std::string folderHint(const Path& file) {
  try {
    throw;
  } catch (const Exceptions::IOError&) {
    const auto extension = extensionIn(file);
    return extension.empty() ? "" : "; name files, such as " + Platform::pathToUTF8((file / ("*" + extension)));
  } catch (...) {
    return {};
  }
}

/// How to raise the limit that a file is beyond: "; --limit memory=4G raises it".
std::string limitHint(const Exceptions::LimitExceeded& refused) {
  const auto& name = refused.arguments().back();
  const auto* limit = limitNamed(name);
  if (limit == nullptr) return "";
  return "; --limit " + name + "=" + limitText(2 * (limits().*limit->member)) + " raises it";
}

std::string textOf(const Exceptions::LimitExceeded& refused) { return refused.message() + limitHint(refused); }

std::string textOf(const Platform::MemoryLimitReached& reached) {
  try {
    refuseBeyond(&Limits::memory, reached.limit());
  } catch (const Exceptions::LimitExceeded& refused) {
    return textOf(refused);
  }
}

/// How to get what stands before the damage; nothing when the exception that is being handled is another one.
std::string salvageHint() {
  try {
    throw;
  } catch (const MXF::DamagedMetadata& damage) {
    return damage.wholeSets() == 0 ? "" : "; mxfxml export --salvage writes what is whole";
  } catch (...) {
    return {};
  }
}

bool isSilent = false;

constexpr const char* kNoMemory = "there is not enough memory";

}  // namespace

SilentMessages::SilentMessages() { isSilent = true; }
SilentMessages::~SilentMessages() { isSilent = false; }

void printMessage(const std::string& message) {
  if (isSilent) return;
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
  } catch (const Platform::MemoryLimitReached& reached) {
    return textOf(reached);
  } catch (const std::bad_alloc&) {
    return kNoMemory;
  } catch (const Exceptions::OutOfMemory&) {
    return kNoMemory;
  } catch (const Exceptions::LimitExceeded& refused) {
    return textOf(refused);
  } catch (const Exceptions::NestingTooDeep& tooDeep) {
    return tooDeep.message() + "; mxfxml export --flat nests nothing";
  } catch (const std::exception& exception) {
    return exception.what();
  } catch (...) {
    return "an error of an unknown kind";
  }
}

std::string currentExceptionText(const Path& file) {
  const std::string text = currentExceptionText() + folderHint(file) + salvageHint();
  return file.empty() || currentExceptionNamesItsFile() ? text : Platform::pathToUTF8(file) + ": " + text;
}

uint64 currentExceptionLine() {
  try {
    throw;
  } catch (const Exceptions::DocumentLine& line) {
    return line.documentLine();
  } catch (...) {
    return 0;
  }
}

std::string oneLine(std::string_view text) { return printable(text); }

}  // namespace Vantor::Tool
