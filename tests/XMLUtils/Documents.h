#pragma once

#include <gmock/gmock.h>

#include <string>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/sax/SAXException.hpp>

#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"
#include "XMLUtils/DomToBuffer.h"
#include "XMLUtils/Initializer.h"
#include "XMLUtils/LoadDocument.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XMLUtils {

constexpr const XMLCh* kXmlnsUri = u"http://www.w3.org/2000/xmlns/";

/// A document and, where it was parsed, its parser.
struct Document {
  Holder<xercesc::DOMLSParser> parser;
  Holder<xercesc::DOMDocument> made;
  xercesc::DOMDocument* dom = nullptr;

  xercesc::DOMDocument* operator->() const { return dom; }
  xercesc::DOMElement& root() const { return *dom->getDocumentElement(); }
};

/// A document with nothing but its root.
inline Document newDocument(const XMLCh* uri, const XMLCh* name) {
  Document document;
  document.made.reset(Initializer::instance().domImplementation().createDocument(uri, name, nullptr));
  document.dom = document.made.get();
  return document;
}

inline Document parsed(const void* bytes, std::size_t size) {
  Document document;
  document.parser = createParser();
  document.dom = loadDocumentFromBuffer(static_cast<const uint8*>(bytes), size, *document.parser);
  return document;
}
inline Document parsed(const std::string& bytes) { return parsed(bytes.data(), bytes.size()); }
inline Document parsed(const wstring& text) { return parsed(text.data(), text.size() * sizeof(char16_t)); }

/// The message of the exception that parsing throws; "" when it throws none.
template <class Text>
std::string refusal(const Text& text) {
  try {
    parsed(text);
    return "";
  } catch (const xercesc::SAXException& exception) {
    return Vantor::Utils::wstringToString(exception.getMessage());
  } catch (const Exceptions::LimitExceeded& exception) {
    return exception.message();
  }
}

inline wstring written(const xercesc::DOMNode& node, EncodingType encoding = EncodingType::kUTF8) {
  wstring text;
  domToBuffer(&node, text, encoding);
  return text;
}

/// What `node` is written as, in UTF-8 and without the XML declaration of a document.
inline std::string textOf(const xercesc::DOMNode& node, EncodingType encoding = EncodingType::kUTF8) {
  auto text = Vantor::Utils::wstringToString(written(node, encoding));
  const std::string declaration = R"(<?xml version="1.0" encoding="UTF-8"?>)";
  return text.compare(0, declaration.size(), declaration) == 0 ? text.substr(declaration.size()) : text;
}
inline std::string textOf(const Document& document, EncodingType encoding = EncodingType::kUTF8) {
  return textOf(*document.dom, encoding);
}

inline xercesc::DOMElement& appendElement(xercesc::DOMNode& parent, const XMLCh* uri, const XMLCh* name) {
  auto* element = parent.getOwnerDocument()->createElementNS(uri, name);
  parent.appendChild(element);
  return *element;
}

inline void appendText(xercesc::DOMNode& parent, const wstring& text) {
  parent.appendChild(parent.getOwnerDocument()->createTextNode(text.c_str()));
}

}  // namespace Vantor::XMLUtils
