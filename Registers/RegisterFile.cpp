#include "Registers/RegisterFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>
#include <string_view>
#include <utility>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "Core/DataIO/File.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Core/Platform/Containers.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Raise.h"
#include "Registers/RegisterFields.h"
#include "XMLUtils/Initializer.h"
#include "XMLUtils/InputCheck.h"
#include "XMLUtils/Strings.h"
#include "XMLUtils/Utils.h"

namespace Vantor::Registers {

namespace {

using Exceptions::InvalidFormat;
using Exceptions::raise;
using std::u16string_view;
using xercesc::SAX2XMLReader;
using xercesc::XMLUni;

/// 0 for anything that is no number, which no integer has as its size.
uint32 sizeOf(const std::string& digits) {
  uint32 size = 0;
  const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), size).ptr;
  return end == digits.data() + digits.size() ? size : 0;
}

bool isSigned(const std::string& qualifiers) {
  return (" " + qualifiers + " ").find(" isSigned ") != std::string::npos;
}

EntryTexts textsOf(const RegisterFields& fields) {
  return {fields.text(u"Definition"), fields.text(u"DefiningDocument")};
}

/// Reads entries of registers from their fields. Malformed ones are refused.
class EntryReader {
 public:
  /// @param into  receives the entries; it holds the name of the file already.
  explicit EntryReader(Entries& into) : into_(into) {}

  /// A record of a group or a facet of a type, for the entry that is added next.
  void addItem(RegisterKind kind, const RegisterFields& fields) {
    if (kind == RegisterKind::kTypes) {
      values_.push_back({fields.text(u"Value"), fields.text(u"Symbol"), fields.origin()});
      return;
    }
    const auto key = fields.key(u"UL");
    if (!key) into_.refuse(fields.origin(), "a property has no UL; add that of its element");
    properties_.push_back({*key, fields.localTag(), fields.flag(u"IsOptional", false), fields.origin()});
  }

  /// Adds the entry if it is of the kind LEAF.
  void add(RegisterKind kind, const RegisterFields& fields) {
    const auto entryKind = fields.text(u"Kind");
    if (entryKind == "LEAF") {
      addLeaf(kind, fields);
    } else if (entryKind.empty()) {
      into_.refuse(fields.origin(),
                   "an entry has no Kind; write LEAF if it defines something, NODE if others stand below it");
    }
    properties_.clear();
    values_.clear();
  }

 private:
  void addLeaf(RegisterKind kind, const RegisterFields& fields) {
    const auto symbol = fields.text(u"Symbol");
    const auto key = fields.key(u"UL");
    if (!key) {
      into_.refuse(fields.origin(), "the entry '{}' has no UL; add the one that it is registered with", symbol);
    }
    if (symbol.empty()) {
      into_.refuse(fields.origin(), "the entry {} has no Symbol; add one", MetaMetadata::registerText(*key));
    }
    switch (kind) {
      case RegisterKind::kGroups:
        into_.groups.push_back({*key, symbol, fields.key(u"Parent"), fields.text(u"KLVSyntax"),
                                fields.flag(u"IsConcrete", true), std::exchange(properties_, {}), fields.origin(),
                                textsOf(fields)});
        return;
      case RegisterKind::kElements:
        into_.elements.push_back({*key, symbol, fields.key(u"Type"), fields.origin(), textsOf(fields)});
        return;
      case RegisterKind::kTypes:
        into_.types.push_back({*key, symbol, typeKindNamed(fields.text(u"TypeKind")), sizeOf(fields.text(u"TypeSize")),
                               isSigned(fields.text(u"TypeQualifiers")), fields.key(u"BaseType"),
                               std::exchange(values_, {}), fields.origin(), textsOf(fields)});
        return;
      case RegisterKind::kLabels:
        into_.labels.push_back({*key, symbol, fields.text(u"Name"), fields.origin(), textsOf(fields)});
        return;
    }
  }

  Entries& into_;
  Templates::vector<GroupProperty> properties_;
  Templates::vector<TypeValue> values_;
};

/// The elements around the fields of a register, from the root inwards. Fields stand in an entry and in its items,
/// which are the records of a group or the facets of a type.
using Frame = std::array<u16string_view, 5>;
constexpr std::size_t kEntryDepth = 3;
constexpr std::size_t kItemDepth = 5;

/// By `RegisterKind`.
constexpr std::array<Frame, kRegisterKinds> kFrames = {{
    {u"GroupsRegister", u"Entries", u"Entry", u"Contents", u"Record"},
    {u"ElementsRegister", u"Entries", u"Entry"},
    {u"TypesRegister", u"Entries", u"Entry", u"Facets", u"Facet"},
    {u"LabelsRegister", u"Entries", u"Entry"},
}};

/// Collects a register from the events of a parser, through which its exceptions pass. For one document.
class RegisterHandler : public xercesc::DefaultHandler {
 public:
  /// @param file  for messages.
  RegisterHandler(const std::string& file, const Entries& known) : known_(known) { found_.files.fill(file); }

  /// Hands over the entries, once the document was parsed to its end.
  void finish(Entries& into) {
    const auto& file = found_.file(kind_);
    if (found_.groups.empty() && found_.elements.empty() && found_.types.empty() && found_.labels.empty()) {
      raise<InvalidFormat>("{}: the register has no entry of the kind LEAF; give the file as SMPTE publishes it", file);
    }
    into.file(kind_) = file;
    const auto take = [](auto& list, auto& target) {
      if (!list.empty()) target = std::move(list);
    };
    take(found_.groups, into.groups);
    take(found_.elements, into.elements);
    take(found_.types, into.types);
    take(found_.labels, into.labels);
  }

  void setDocumentLocator(const xercesc::Locator* const locator) override { locator_ = locator; }
  void startElement(const XMLCh* const, const XMLCh* const localName, const XMLCh* const,
                    const xercesc::Attributes&) override {
    const u16string_view name = localName;
    if (depth_ == 0) startRoot(name);
    if (depth_++ != frameDepth_) return;
    const bool isInEntry = frameDepth_ == kEntryDepth, isInItem = frameDepth_ == kItemDepth;
    if (!isInItem && name == kFrames[static_cast<std::size_t>(kind_)][frameDepth_]) {
      ++frameDepth_;
      if (frameDepth_ == kEntryDepth) entry_.begin(here());
      if (frameDepth_ == kItemDepth) item_.begin(here());
    } else if (isInEntry || isInItem) {
      beginField(isInItem ? item_ : entry_, name);
    }
  }
  void endElement(const XMLCh* const, const XMLCh* const, const XMLCh* const) override {
    if (--depth_ == frameDepth_) text_ = nullptr;
    if (depth_ >= frameDepth_) return;
    if (frameDepth_ == kEntryDepth) entries_.add(kind_, entry_);
    if (frameDepth_ == kItemDepth) entries_.addItem(kind_, item_);
    --frameDepth_;
  }
  void characters(const XMLCh* const text, const XMLSize_t units) override {
    if (text_ != nullptr) text_->append(text, units);
  }
  void error(const xercesc::SAXParseException& exception) override { fatalError(exception); }
  [[noreturn]] void fatalError(const xercesc::SAXParseException& exception) override {
    raise<InvalidFormat>("{}:{}:{}: this is no XML that can be read: {}; give the file as SMPTE publishes it",
                         found_.file(kind_), exception.getLineNumber(), exception.getColumnNumber(),
                         XMLUtils::utf16ToWstring(exception.getMessage()));
  }

 private:
  void startRoot(u16string_view name) {
    const auto* const frame =
        std::find_if(kFrames.begin(), kFrames.end(), [&](const Frame& one) { return one.front() == name; });
    if (frame == kFrames.end()) {
      found_.refuse(here(),
                    "the root element {} is none of a register; give a file whose root is GroupsRegister, "
                    "ElementsRegister, TypesRegister or LabelsRegister",
                    wstring(name));
    }
    kind_ = static_cast<RegisterKind>(frame - kFrames.begin());
    if (known_.file(kind_).empty()) return;
    found_.refuse(here(), "the root element is {}, as in {}; give one of the two", wstring(name), known_.file(kind_));
  }

  void beginField(RegisterFields& fields, u16string_view name) {
    text_ = fields.textOf(name);
    if (text_ == nullptr || text_->empty()) return;
    found_.refuse(here(), "there is one {} already; give the file as SMPTE publishes it", wstring(name));
  }

  Origin here() const { return {static_cast<uint32>(kind_), static_cast<uint32>(locator_->getLineNumber())}; }

  const Entries& known_;
  Entries found_;
  EntryReader entries_{found_};
  RegisterKind kind_ = RegisterKind::kGroups;
  const xercesc::Locator* locator_ = nullptr;
  std::size_t depth_ = 0;       // number of open elements
  std::size_t frameDepth_ = 0;  // how many of them are those of the frame
  RegisterFields entry_{found_};
  RegisterFields item_{found_};
  wstring* text_ = nullptr;  // of the field that is open
};

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
  RegisterHandler handler(Platform::pathToUTF8(path), into);
  XMLUtils::Utils::convertingExceptions(
      [&] {
        try {
          parse(bytes, handler);
        } catch (const xercesc::SAXParseException& exception) {
          handler.fatalError(exception);
        } catch (const Exceptions::LimitExceeded& limit) {
          Exceptions::raise<Exceptions::InvalidFormat>("{}: {}", Platform::pathToUTF8(path), limit.message());
        }
      },
      "Registers/RegisterFile", __LINE__);
  handler.finish(into);
}

}  // namespace Vantor::Registers
