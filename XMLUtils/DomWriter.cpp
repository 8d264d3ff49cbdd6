#include "XMLUtils/DomWriter.h"

#include <string_view>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMDocumentType.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include "Core/Platform/Limits.h"
#include "XMLUtils/CharacterWriter.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XMLUtils {

namespace {

using std::u16string_view;
using xercesc::DOMNode;

bool isIndented(EncodingType encoding) {
  return encoding == EncodingType::kUTF8Indented || encoding == EncodingType::kUTF16Indented;
}

bool isText(const DOMNode* node) { return node != nullptr && node->getNodeType() == DOMNode::TEXT_NODE; }

bool hasText(const DOMNode& node) {
  for (const auto* child = node.getFirstChild(); child != nullptr; child = child->getNextSibling()) {
    const auto type = child->getNodeType();
    if (type == DOMNode::TEXT_NODE || type == DOMNode::CDATA_SECTION_NODE || type == DOMNode::ENTITY_REFERENCE_NODE) {
      return true;
    }
  }
  return false;
}

bool preservesSpace(const DOMNode& element) {
  const auto* space = element.getAttributes()->getNamedItem(u"xml:space");
  return space != nullptr && viewOf(space->getNodeValue()) == u"preserve";
}

void appendQuoted(wstring& out, u16string_view identifier) {
  const char16_t quote = identifier.find(u'"') == u16string_view::npos ? u'"' : u'\'';
  out += u' ';
  out += quote;
  out.append(identifier) += quote;
}

}  // namespace

DomWriter::DomWriter(wstring& out, EncodingType encoding, Bound bound)
    : out_(out), encoding_(encoding), bound_(bound), indented_(isIndented(encoding)), startTags_(out) {}

void DomWriter::write(const DOMNode& top) {
  const DOMNode* node = &top;
  while (node != nullptr) {
    const auto* child = open(*node);
    keepBound();
    node = child != nullptr ? child : nextAfter(node);
  }
  const auto type = top.getNodeType();
  if (indented_ && (type == DOMNode::DOCUMENT_NODE || type == DOMNode::ELEMENT_NODE)) out_ += u'\n';
  keepBound();
}

void DomWriter::keepBound() const {
  if (out_.size() > bound_.bytes / bound_.unitSize) refuseBeyond(&Limits::outputSize, bound_.bytes);
}

/// Writes what precedes a node's children. Returns the first child, after pushing a frame, or null for a finished node.
const DOMNode* DomWriter::open(const DOMNode& node) {
  switch (node.getNodeType()) {
    case DOMNode::ELEMENT_NODE:
      return openElement(node);
    case DOMNode::DOCUMENT_NODE:
      return openDocument(node);
    case DOMNode::DOCUMENT_FRAGMENT_NODE:
      return openFragment(node);
    case DOMNode::TEXT_NODE:
      return writeText(node), nullptr;
    case DOMNode::CDATA_SECTION_NODE:
      return writeSection(node), nullptr;
    case DOMNode::COMMENT_NODE:
      return writeComment(node), nullptr;
    case DOMNode::PROCESSING_INSTRUCTION_NODE:
      return writeInstruction(node), nullptr;
    case DOMNode::DOCUMENT_TYPE_NODE:
      return writeDoctype(node), nullptr;
    case DOMNode::ENTITY_REFERENCE_NODE:
      out_.append(u"&").append(node.getNodeName()).append(u";");
      return nullptr;
    case DOMNode::ATTRIBUTE_NODE:
    case DOMNode::ENTITY_NODE:
    case DOMNode::NOTATION_NODE:
      return nullptr;
  }
  return nullptr;
}

const DOMNode* DomWriter::openDocument(const DOMNode& document) {
  out_.append(u"<?xml version=\"1.0\" encoding=\"").append(isUTF16(encoding_) ? u"UTF-16\"" : u"UTF-8\"");
  if (static_cast<const xercesc::DOMDocument&>(document).getXmlStandalone()) out_.append(u" standalone=\"yes\"");
  out_.append(u"?>");
  return openFragment(document);
}

const DOMNode* DomWriter::openFragment(const DOMNode& fragment) {
  const auto* child = fragment.getFirstChild();
  if (child != nullptr) frames_.push_back({&fragment, 0, !indented_ || hasText(fragment)});
  return child;
}

const DOMNode* DomWriter::openElement(const DOMNode& element) {
  separate();
  const auto scope = startTags_.enter(element);
  const auto* child = element.getFirstChild();
  if (child == nullptr) {
    startTags_.leave(scope);
    out_.append(u"/>");
    return nullptr;
  }
  out_ += u'>';
  frames_.push_back({&element, scope, isVerbatim() || hasText(element) || preservesSpace(element)});
  ++depth_;
  return child;
}

/// Closes every node that ends with `node`. Returns the next one to open, or null at the end.
const DOMNode* DomWriter::nextAfter(const DOMNode* node) {
  while (!frames_.empty()) {
    if (const auto* next = node->getNextSibling()) return next;
    const auto frame = frames_.back();
    frames_.pop_back();
    node = frame.node;
    if (node->getNodeType() == DOMNode::ELEMENT_NODE) closeElement(frame);
  }
  return nullptr;
}

void DomWriter::closeElement(const Frame& frame) {
  --depth_;
  startTags_.leave(frame.scope);
  if (!frame.verbatim) breakLine();
  out_.append(u"</").append(frame.node->getNodeName()) += u'>';
}

/// Adjacent text nodes read back as one, so the first writes all of them: an escape's start or a surrogate pair may be
/// spread over two.
void DomWriter::writeText(const DOMNode& text) {
  const bool isAlone = frames_.empty();
  if (!isAlone && isText(text.getPreviousSibling())) return;
  if (isAlone || !isText(text.getNextSibling())) return writeCharacters(out_, text.getNodeValue(), Place::kText);
  wstring run;
  for (const DOMNode* node = &text; isText(node); node = node->getNextSibling()) run.append(node->getNodeValue());
  writeCharacters(out_, run.c_str(), Place::kText);
}

void DomWriter::writeSection(const DOMNode& section) {
  out_.append(u"<![CDATA[");
  writeCharacters(out_, section.getNodeValue(), Place::kCDATA);
  out_.append(u"]]>");
}

void DomWriter::writeComment(const DOMNode& comment) {
  separate();
  out_.append(u"<!--");
  writeCharacters(out_, comment.getNodeValue(), Place::kComment);
  out_.append(u"-->");
}

void DomWriter::writeInstruction(const DOMNode& instruction) {
  separate();
  out_.append(u"<?").append(instruction.getNodeName());
  const auto data = viewOf(instruction.getNodeValue());
  if (!data.empty()) out_ += u' ';
  writeCharacters(out_, data.data(), Place::kInstruction);
  out_.append(u"?>");
}

void DomWriter::writeDoctype(const DOMNode& node) {
  const auto& doctype = static_cast<const xercesc::DOMDocumentType&>(node);
  const auto publicId = viewOf(doctype.getPublicId());
  const auto systemId = viewOf(doctype.getSystemId());
  const auto subset = viewOf(doctype.getInternalSubset());
  separate();
  out_.append(u"<!DOCTYPE ").append(doctype.getName());
  if (!publicId.empty()) appendQuoted(out_.append(u" PUBLIC"), publicId);
  if (!systemId.empty() && publicId.empty()) out_.append(u" SYSTEM");
  if (!systemId.empty() || !publicId.empty()) appendQuoted(out_, systemId);
  if (!subset.empty()) out_.append(u" [").append(subset).append(u"]");
  out_ += u'>';
}

void DomWriter::separate() {
  if (!isVerbatim()) breakLine();
}

void DomWriter::breakLine() {
  if (!out_.empty()) out_ += u'\n';
  out_.append(2 * depth_, u' ');
}

}  // namespace Vantor::XMLUtils
