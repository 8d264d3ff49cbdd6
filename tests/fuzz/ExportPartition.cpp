#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <set>
#include <string>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMLSParser.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Platform/Exceptions.h"
#include "XMLBuilder.h"
#include "XMLUtils/DomToBuffer.h"
#include "XMLUtils/LoadDocument.h"
#include "XMLUtils/Strings.h"

/// Takes the input for an MXF file and exports its header metadata, nested and flat. Whatever the file, this ends with
/// a document or with one of the libraries' exceptions; and the document's text, parsed and written again, is the same.
namespace {

using namespace Vantor;

/// The file that metadata is read from; it is removed with the process.
class InputFile {
 public:
  InputFile()
      : path_(std::filesystem::temp_directory_path() /
              ("vantor-fuzz-" + std::to_string(std::random_device()()) + ".mxf")) {}
  ~InputFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  const Path& fill(const std::uint8_t* data, std::size_t size) const {
    std::ofstream file(path_, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    if (!file.flush()) fail("cannot write the input file");
    return path_;
  }

  [[noreturn]] static void fail(const char* reason) {
    std::fprintf(stderr, "%s\n", reason);
    std::abort();
  }

 private:
  Path path_;
};

bool isDeclaration(const xercesc::DOMNode& attribute) {
  return attribute.getNamespaceURI() != nullptr &&
         XMLUtils::utf16ToWstring(attribute.getNamespaceURI()) == u"http://www.w3.org/2000/xmlns/";
}

wstring describe(const xercesc::DOMNode& node) {
  return u"{" + XMLUtils::utf16ToWstring(node.getNamespaceURI()) + u"}" +
         XMLUtils::utf16ToWstring(node.getLocalName()) + u"=" + XMLUtils::utf16ToWstring(node.getNodeValue());
}

/// Appends the content of a document, whatever the places of namespace declarations and the boundaries of text nodes.
void appendContent(wstring& content, const xercesc::DOMNode& node) {
  if (node.getNodeType() == xercesc::DOMNode::TEXT_NODE) {
    content += XMLUtils::utf16ToWstring(node.getNodeValue());
    return;
  }
  content += u"<" + describe(node);
  const auto* attributes = node.getAttributes();
  std::multiset<wstring> sorted;
  for (XMLSize_t i = 0; attributes != nullptr && i < attributes->getLength(); ++i) {
    if (!isDeclaration(*attributes->item(i))) sorted.insert(describe(*attributes->item(i)));
  }
  for (const wstring& attribute : sorted) content += u" " + attribute;
  content += u">";
  for (const auto* child = node.getFirstChild(); child != nullptr; child = child->getNextSibling()) {
    appendContent(content, *child);
  }
  content += u"</>";
}

wstring contentOf(const xercesc::DOMNode& document) {
  wstring content;
  appendContent(content, document);
  return content;
}

void checkText(const xercesc::DOMNode& document) {
  std::string text;
  XMLUtils::domToBytes(&document, text, XMLUtils::EncodingType::kUTF8);
  const auto parser = XMLUtils::createParser();
  const auto* readBack =
      XMLUtils::loadDocumentFromBuffer(reinterpret_cast<const uint8*>(text.data()), text.size(), *parser);
  if (contentOf(*readBack) != contentOf(document)) InputFile::fail("the document read back is another one");
}

void exportPartition(const Path& path, bool nestStrongReferences) {
  const auto metadata = MXF::readHeaderMetadata(path, builtInDictionary());
  const auto document = XMLBuilder::partition2XML(metadata.get(), nestStrongReferences, false);
  if (document.get() != nullptr) checkText(*document);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const InputFile input;
  const Path& path = input.fill(data, size);
  for (const bool nestStrongReferences : {true, false}) {
    try {
      exportPartition(path, nestStrongReferences);
    } catch (const Exceptions::BaseException&) {
      // A damaged file is refused.
    }
  }
  return 0;
}
