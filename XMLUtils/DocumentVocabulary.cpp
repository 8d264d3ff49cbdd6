#include "XMLUtils/DocumentVocabulary.h"

#include <memory>
#include <string_view>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "XMLUtils/Initializer.h"
#include "XMLUtils/InputCheck.h"
#include "XMLUtils/InputFile.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XMLUtils {

namespace {

using MetaMetadata::Vocabulary;
using xercesc::XMLUni;

/// The root is in the legacy namespace whatever the vocabulary is.
class VocabularyFinder : public xercesc::DefaultHandler {
 public:
  void startElement(const XMLCh* uri, const XMLCh*, const XMLCh*, const xercesc::Attributes&) override {
    if (depth_++ != 0 && !found_) found_ = vocabularyOfNamespace(uri);
  }
  void fatalError(const xercesc::SAXParseException&) override { isDamaged_ = true; }

  bool isDone() const { return found_ || isDamaged_; }
  std::optional<Vocabulary> found() const { return found_; }

 private:
  static std::optional<Vocabulary> vocabularyOfNamespace(std::u16string_view uri) {
    using namespace MetaMetadata;
    if (uri == kLegacySets.uri || uri == kLegacyElements.uri) return Vocabulary::kLegacy;
    if (uri == kST434Sets.uri || uri == kST434Elements.uri) return Vocabulary::kST434_2014;
    return std::nullopt;
  }

  uint64 depth_ = 0;
  bool isDamaged_ = false;
  std::optional<Vocabulary> found_;
};

void configure(xercesc::SAX2XMLReader& reader, VocabularyFinder& handler) {
  reader.setProperty(XMLUni::fgXercesScannerName, const_cast<XMLCh*>(XMLUni::fgWFXMLScanner));
  for (const auto* feature : {XMLUni::fgSAX2CoreValidation, XMLUni::fgXercesLoadExternalDTD, XMLUni::fgXercesSchema}) {
    reader.setFeature(feature, false);
  }
  reader.setFeature(XMLUni::fgSAX2CoreNameSpaces, true);
  reader.setFeature(XMLUni::fgXercesDisableDefaultEntityResolution, true);
  reader.setContentHandler(&handler);
  reader.setErrorHandler(&handler);
}

std::optional<Vocabulary> find(const Input& input) {
  xercesc::MemBufInputSource source(input.bytes, input.size, u"", false);
  source.setEncoding(input.encoding.c_str());
  const std::unique_ptr<xercesc::SAX2XMLReader> reader(xercesc::XMLReaderFactory::createXMLReader());
  VocabularyFinder finder;
  configure(*reader, finder);
  xercesc::XMLPScanToken token;
  bool goesOn = reader->parseFirst(source, token);
  while (goesOn && !finder.isDone()) goesOn = reader->parseNext(token);
  if (goesOn) reader->parseReset(token);
  return finder.found();
}

}  // namespace

std::optional<Vocabulary> vocabularyOf(const uint8* buffer, std::size_t size) {
  if (buffer == nullptr || size == 0) return std::nullopt;
  Initializer::instance();
  try {
    const auto input = recognise(buffer, size);
    checkLimits(input);
    return find(input);
  } catch (const xercesc::SAXException&) {
  } catch (const xercesc::XMLException&) {
  }
  return std::nullopt;
}

std::optional<Vocabulary> vocabularyOfFile(const uint16* path) {
  Initializer::instance();
  const auto bytes = readInputFile(utf16ToWstring(path));
  return vocabularyOf(bytes.data(), bytes.size());
}

}  // namespace Vantor::XMLUtils
