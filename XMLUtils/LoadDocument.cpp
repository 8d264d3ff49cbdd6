#include "XMLUtils/LoadDocument.h"

#include <cstring>
#include <string_view>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/Wrapper4InputSource.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "Core/Platform/Numbers.h"
#include "XMLUtils/Escape.h"
#include "XMLUtils/Initializer.h"
#include "XMLUtils/InputCheck.h"
#include "XMLUtils/InputFile.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XMLUtils {

namespace {

using std::u16string_view;
using xercesc::DOMDocument;
using xercesc::DOMLSParser;
using xercesc::DOMNode;
using xercesc::XMLUni;

xercesc::SAXParseException parseException(const wstring& message, const XMLCh* systemId, uint64 line, uint64 column) {
  const wstring located =
      u"line " + Platform::toDecimal(line) + u", column " + Platform::toDecimal(column) + u": " + message;
  return {located.c_str(), u"", systemId, line, column};
}

/// Keeps the first error of a parse. The parser swallows what a handler throws, so it has to be thrown afterwards.
class FirstError : public xercesc::DOMErrorHandler {
 public:
  explicit FirstError(xercesc::DOMConfiguration& configuration)
      : configuration_(configuration), previous_(configuration.getParameter(XMLUni::fgDOMErrorHandler)) {
    configuration_.setParameter(XMLUni::fgDOMErrorHandler, this);
  }
  ~FirstError() override { configuration_.setParameter(XMLUni::fgDOMErrorHandler, previous_); }

  bool handleError(const xercesc::DOMError& error) override {
    if (error.getSeverity() == xercesc::DOMError::DOM_SEVERITY_WARNING) return true;
    if (hasFailed_) return false;
    hasFailed_ = true;  // first: should memory for the text be lacking, the parse has failed all the same
    line_ = error.getLocation()->getLineNumber();
    column_ = error.getLocation()->getColumnNumber();
    message_ = utf16ToWstring(error.getMessage());
    return false;
  }

  void throwIfAny(const XMLCh* systemId) const {
    if (!hasFailed_) return;
    const bool isEntity = message_.find(u"entity '") == 0 && message_.find(u"' not found") != wstring::npos;
    const wstring help = isEntity ? u"; document type declarations, which define entities, are not read" : u"";
    throw parseException(message_ + help, systemId, line_, column_);
  }

 private:
  xercesc::DOMConfiguration& configuration_;
  const void* previous_;
  bool hasFailed_ = false;
  uint64 line_ = 0;
  uint64 column_ = 0;
  wstring message_;
};

/// WFXMLScanner knows no document type: it skips the declaration, and with it entities, defaults and everything else
/// that would have to be bounded or fetched. A security manager must not be set with it, as it counts `&amp;` and its
/// like as expansions.
void configure(xercesc::DOMConfiguration& configuration) {
  configuration.setParameter(XMLUni::fgXercesScannerName, static_cast<const void*>(XMLUni::fgWFXMLScanner));
  configuration.setParameter(XMLUni::fgXercesSecurityManager, static_cast<const void*>(nullptr));
  for (const auto* feature :
       {XMLUni::fgDOMValidate, XMLUni::fgXercesSchema, XMLUni::fgXercesLoadSchema, XMLUni::fgXercesLoadExternalDTD,
        XMLUni::fgXercesDoXInclude, XMLUni::fgXercesContinueAfterFatalError, XMLUni::fgXercesUserAdoptsDOMDocument}) {
    configuration.setParameter(feature, false);
  }
  for (const auto* feature : {XMLUni::fgDOMNamespaces, XMLUni::fgDOMElementContentWhitespace,
                              XMLUni::fgXercesDisableDefaultEntityResolution}) {
    configuration.setParameter(feature, true);
  }
}

/// The node after `node` in document order, within `top`; null at the end. Does not recurse, whatever the depth.
DOMNode* nextInTree(DOMNode* node, const DOMNode* top) {
  if (auto* child = node->getFirstChild()) return child;
  while (node != top) {
    if (auto* sibling = node->getNextSibling()) return sibling;
    node = node->getParentNode();
  }
  return nullptr;
}

/// A DOM string ends at a NUL, so the escape of one stays.
wstring unescapeForDom(const XMLCh* value) {
  const auto unescaped = unescapeForbidden(value);
  wstring text;
  text.reserve(unescaped.size());
  for (const char16_t unit : unescaped) {
    if (unit == u'\0') {
      appendEscape(text, unit);
    } else {
      text += unit;
    }
  }
  return text;
}

void unescapeValue(DOMNode& node) {
  const auto* value = node.getNodeValue();
  if (value != nullptr && u16string_view(value).find(kEscapeStart) != u16string_view::npos) {
    node.setNodeValue(unescapeForDom(value).c_str());
  }
}

void unescapeAll(DOMDocument& document) {
  for (DOMNode* node = &document; node != nullptr; node = nextInTree(node, &document)) {
    unescapeValue(*node);
    const auto* attributes = node->getAttributes();
    for (XMLSize_t i = 0, count = attributes == nullptr ? 0 : attributes->getLength(); i < count; ++i) {
      unescapeValue(*attributes->item(i));
    }
  }
}

/// Whether the text may hold an escape, spelt out or with character references. In every accepted encoding it has the
/// byte of '#' then.
bool mayHoldEscapes(const Input& input) {
  return input.size != 0 && std::memchr(input.bytes, '#', input.size) != nullptr;
}

Input checkedInput(const uint8* buffer, std::size_t size, const XMLCh* systemId) {
  try {
    auto input = recognise(buffer, size);
    checkLimits(input);
    return input;
  } catch (const xercesc::SAXParseException& refusal) {
    throw parseException(refusal.getMessage(), systemId, refusal.getLineNumber(), refusal.getColumnNumber());
  }
}

DOMDocument* load(const uint8* buffer, std::size_t size, const XMLCh* systemId, DOMLSParser& parser) {
  if (parser.getBusy()) throw xercesc::DOMException(xercesc::DOMException::INVALID_STATE_ERR);
  const auto input = checkedInput(buffer, size, systemId);
  xercesc::MemBufInputSource source(input.bytes, input.size, systemId, false);
  source.setEncoding(input.encoding.c_str());
  const xercesc::Wrapper4InputSource wrapper(&source, false);
  auto& configuration = *parser.getDomConfig();
  configure(configuration);
  const FirstError error(configuration);
  auto* document = parser.parse(&wrapper);
  error.throwIfAny(systemId);
  if (mayHoldEscapes(input)) unescapeAll(*document);
  return document;
}

bool isBlank(const XMLCh* text) { return u16string_view(text).find_first_not_of(u" \t\r\n") == u16string_view::npos; }

}  // namespace

Holder<DOMLSParser> createParser() {
  using LS = xercesc::DOMImplementationLS;
  auto& implementation = Initializer::instance().domImplementationLS();
  return Holder<DOMLSParser>(implementation.createLSParser(LS::MODE_SYNCHRONOUS, nullptr,
                                                           xercesc::XMLPlatformUtils::fgMemoryManager, nullptr));
}

DOMDocument* loadDocumentFromBuffer(const uint8* buffer, std::size_t size, DOMLSParser& parser) {
  constexpr uint8 kNothing = 0;
  return buffer == nullptr ? load(&kNothing, 0, u"", parser) : load(buffer, size, u"", parser);
}

DOMDocument* loadDocumentFromFile(const uint16* path, DOMLSParser& parser) {
  const auto name = utf16ToWstring(path);
  const auto bytes = readInputFile(name);
  return load(bytes.data(), bytes.size(), name.c_str(), parser);
}

void cleanEmptyTextNodes(DOMNode& node) {
  DOMNode* next = nextInTree(&node, &node);
  while (next != nullptr) {
    auto* current = next;
    next = nextInTree(current, &node);
    if (current->getNodeType() != DOMNode::TEXT_NODE || !isBlank(current->getNodeValue())) continue;
    current->getParentNode()->removeChild(current)->release();
  }
}

}  // namespace Vantor::XMLUtils
