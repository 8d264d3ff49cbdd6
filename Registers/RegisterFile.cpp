#include "Registers/RegisterFile.h"

#include <memory>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "Core/DataIO/File.h"
#include "Core/Platform/Containers.h"
#include "Registers/RegisterHandler.h"
#include "XMLUtils/Initializer.h"
#include "XMLUtils/InputCheck.h"
#include "XMLUtils/Utils.h"

namespace Vantor::Registers {

namespace {

using xercesc::SAX2XMLReader;
using xercesc::XMLUni;

Bytes readFile(const Path& path) {
  DataIO::File::FileDataSource file(path);
  Bytes bytes(file.size());
  file.read(bytes.data(), bytes.size());
  return bytes;
}

/// WFXMLScanner knows no document type, and with it no entities, defaults and anything else that would have to be
/// bounded or fetched.
std::unique_ptr<SAX2XMLReader> createReader() {
  std::unique_ptr<SAX2XMLReader> reader(xercesc::XMLReaderFactory::createXMLReader());
  // The reader copies the name; the interface only asks for what is not const.
  reader->setProperty(XMLUni::fgXercesScannerName, const_cast<XMLCh*>(XMLUni::fgWFXMLScanner));
  for (const auto* feature : {XMLUni::fgSAX2CoreValidation, XMLUni::fgXercesDynamic, XMLUni::fgXercesSchema,
                              XMLUni::fgXercesLoadSchema, XMLUni::fgXercesLoadExternalDTD,
                              XMLUni::fgXercesContinueAfterFatalError, XMLUni::fgSAX2CoreNameSpacePrefixes}) {
    reader->setFeature(feature, false);
  }
  for (const auto* feature : {XMLUni::fgSAX2CoreNameSpaces, XMLUni::fgXercesDisableDefaultEntityResolution}) {
    reader->setFeature(feature, true);
  }
  return reader;
}

void parse(const Bytes& bytes, RegisterHandler& handler) {
  constexpr uint8 kNothing = 0;
  XMLUtils::Initializer::instance();  // first, as sources and exceptions take their memory from Xerces
  const auto input = XMLUtils::recognise(bytes.empty() ? &kNothing : bytes.data(), bytes.size());
  XMLUtils::checkLimits(input);
  xercesc::MemBufInputSource source(input.bytes, input.size, u"", false);
  source.setEncoding(input.encoding.c_str());
  const auto reader = createReader();
  reader->setContentHandler(&handler);
  reader->setErrorHandler(&handler);
  reader->parse(source);
}

}  // namespace

void readRegister(const Path& path, Entries& into) {
  const auto bytes = readFile(path);
  RegisterHandler handler(path.u8string(), into);
  XMLUtils::Utils::convertingExceptions(
      [&] {
        try {
          parse(bytes, handler);
        } catch (const xercesc::SAXParseException& exception) {
          handler.fatalError(exception);
        }
      },
      "Registers/RegisterFile", __LINE__);
  handler.finish();
}

}  // namespace Vantor::Registers
