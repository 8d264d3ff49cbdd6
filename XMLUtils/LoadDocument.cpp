#include "XMLUtils/LoadDocument.h"

#include <cstring>
#include <new>
#include <optional>
#include <string_view>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/Wrapper4InputSource.hpp>
#include <xercesc/framework/XMLErrorCodes.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/parsers/DOMLSParserImpl.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "Core/Platform/Numbers.h"
#include "XMLUtils/ChildLookup.h"
#include "XMLUtils/ElementLines.h"
#include "XMLUtils/Escape.h"
#include "XMLUtils/Initializer.h"
#include "XMLUtils/InputFile.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XMLUtils {

namespace {

using xercesc::DOMDocument;
using xercesc::DOMLSParser;
using xercesc::DOMNode;
using xercesc::XMLUni;

xercesc::SAXParseException parseException(const wstring& message, const XMLCh* systemId, uint64 line, uint64 column) {
  const wstring located =
      u"line " + Platform::toDecimal(line) + u", column " + Platform::toDecimal(column) + u": " + message;
  return {located.c_str(), u"", systemId, line, column};
}

bool isBlankText(const DOMNode& node) {
  return node.getNodeType() == DOMNode::TEXT_NODE && isBlank(node.getNodeValue());
}

/// White space between elements has no meaning; its nodes would take as much memory as the elements. The document uses
/// the memory again.
void removeIndentation(DOMNode& node) {
  if (static_cast<xercesc::DOMElement&>(node).getFirstElementChild() == nullptr) return;
  for (DOMNode *child = node.getFirstChild(), *next = nullptr; child != nullptr; child = next) {
    next = child->getNextSibling();
    if (isBlankText(*child)) node.removeChild(child)->release();
  }
}

class Parser : public xercesc::DOMLSParserImpl {
 public:
  explicit Parser(ElementLines* lines) : lines_(lines) {
    if (lines == nullptr) useImplementation(Initializer::instance().features());
  }

  /// Whether the last error is a reference to an entity that is none of XML's five.
  bool lacksEntity() const { return lacksEntity_; }

  void startElement(const xercesc::XMLElementDecl& declaration, unsigned int uri, const XMLCh* prefix,
                    const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, XMLSize_t count, bool isEmpty,
                    bool isRoot) override {
    DOMLSParserImpl::startElement(declaration, uri, prefix, attributes, count, isEmpty, isRoot);
    if (lines_ != nullptr) lines_->enter(*getCurrentNode(), getScanner()->getLocator()->getLineNumber());
  }

  void endElement(const xercesc::XMLElementDecl& declaration, unsigned int uri, bool isRoot,
                  const XMLCh* prefix) override {
    DOMLSParserImpl::endElement(declaration, uri, isRoot, prefix);
    if (lines_ != nullptr) removeIndentation(*getCurrentNode());
  }

  /// Error handlers do not get the code.
  void error(unsigned int code, const XMLCh* domain, ErrTypes type, const XMLCh* text, const XMLCh* systemId,
             const XMLCh* publicId, XMLFileLoc line, XMLFileLoc column) override {
    lacksEntity_ =
        code == xercesc::XMLErrs::EntityNotFound && xercesc::XMLString::equals(domain, XMLUni::fgXMLErrDomain);
    DOMLSParserImpl::error(code, domain, type, text, systemId, publicId, line, column);
  }

 private:
  ElementLines* lines_;
  bool lacksEntity_ = false;
};

/// Keeps the first error of a parse. The parser swallows what a handler throws, so it has to be thrown afterwards.
class FirstError : public xercesc::DOMErrorHandler {
 public:
  FirstError(DOMLSParser& parser, const XMLCh* systemId)
      : parser_(dynamic_cast<const Parser*>(&parser)),
        systemId_(systemId),
        configuration_(*parser.getDomConfig()),
        previous_(configuration_.getParameter(XMLUni::fgDOMErrorHandler)) {
    configuration_.setParameter(XMLUni::fgDOMErrorHandler, this);
  }
  ~FirstError() override { configuration_.setParameter(XMLUni::fgDOMErrorHandler, previous_); }

  bool handleError(const xercesc::DOMError& error) override {
    if (error.getSeverity() == xercesc::DOMError::DOM_SEVERITY_WARNING) return true;
    if (hasFailed_) return false;
    hasFailed_ = true;
    wstring message = utf16ToWstring(error.getMessage());
    if (parser_ != nullptr && parser_->lacksEntity()) {
      message += u"; document type declarations, which define entities, are not read";
    }
    const auto& place = *error.getLocation();
    error_ = parseException(message, systemId_, place.getLineNumber(), place.getColumnNumber());
    return false;
  }

  void throwIfAny() const {
    if (error_) throw *error_;
    if (hasFailed_) throw std::bad_alloc();  // there was no memory for the error, which the parser kept quiet
  }

 private:
  const Parser* parser_;  // null for the parser of somebody else
  const XMLCh* systemId_;
  xercesc::DOMConfiguration& configuration_;
  const void* previous_;
  bool hasFailed_ = false;
  std::optional<xercesc::SAXParseException> error_;
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

void unescapeValue(DOMNode& node) {
  const auto value = viewOf(node.getNodeValue());
  if (value.find(kEscapeStart) != value.npos) node.setNodeValue(unescapeForbidden(wstring(value), true).c_str());
}

void unescapeAll(DOMDocument& document) {
  for (DOMNode* node = &document; node != nullptr; node = nextInTree(*node, document)) {
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

}  // namespace

Holder<DOMLSParser> createParser(ElementLines* lines) {
  Initializer::instance();
  return Holder<DOMLSParser>(new Parser(lines));
}

Input checkedInput(const uint8* buffer, std::size_t size, const XMLCh* systemId, const Limits& limits) {
  if (size > limits.documentSize) refuseBeyond(&Limits::documentSize, limits.documentSize);
  try {
    const auto input = recognise(buffer, size);
    checkLimits(input, limits);
    return input;
  } catch (const xercesc::SAXParseException& refusal) {
    throw parseException(refusal.getMessage(), systemId, refusal.getLineNumber(), refusal.getColumnNumber());
  }
}

DOMDocument* loadDocument(const Input& input, DOMLSParser& parser, const XMLCh* systemId) {
  if (parser.getBusy()) throw xercesc::DOMException(xercesc::DOMException::INVALID_STATE_ERR);
  xercesc::MemBufInputSource source(input.bytes, input.size, systemId, false);
  source.setEncoding(input.encoding.c_str());
  const xercesc::Wrapper4InputSource wrapper(&source, false);
  configure(*parser.getDomConfig());
  const FirstError error(parser, systemId);
  auto* document = parser.parse(&wrapper);
  error.throwIfAny();
  if (mayHoldEscapes(input)) unescapeAll(*document);
  return document;
}

DOMDocument* loadDocumentFromBuffer(const uint8* buffer, std::size_t size, DOMLSParser& parser, const Limits& limits) {
  return loadDocument(checkedInput(buffer, size, u"", limits), parser);
}

DOMDocument* loadDocumentFromFile(const uint16* path, DOMLSParser& parser, const Limits& limits) {
  const auto name = utf16ToWstring(path);
  const auto bytes = readInputFile(name, limits);
  return loadDocument(checkedInput(bytes.data(), bytes.size(), name.c_str(), limits), parser, name.c_str());
}

void cleanEmptyTextNodes(DOMNode& node) {
  DOMNode* next = nextInTree(node, node);
  while (next != nullptr) {
    auto& current = *next;
    next = nextInTree(current, node);
    if (isBlankText(current)) current.getParentNode()->removeChild(&current)->release();
  }
}

}  // namespace Vantor::XMLUtils
