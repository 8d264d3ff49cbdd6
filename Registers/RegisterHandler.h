#pragma once

#include <string>
#include <string_view>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>

#include "Registers/Entries.h"
#include "Registers/EntryReader.h"
#include "Registers/RegisterFields.h"

namespace Vantor::Registers {

/// Collects a register from the events of a parser: the fields of each entry and of its items, which are the records of
/// a group or the facets of a type.
///
///     <GroupsRegister><Entries><Entry>fields <Contents><Record>fields</Record>...</Contents></Entry>...
///
/// For one document. Exceptions that it throws pass through the parser.
class RegisterHandler : public xercesc::DefaultHandler {
 public:
  /// @param file  for messages.
  /// @param into  is not changed before `finish`.
  RegisterHandler(std::string file, Entries& into) : file_(std::move(file)), into_(into) {}

  /// Hands over the entries, once the document was parsed to its end.
  /// @throws Exceptions::InvalidFormat when there are none.
  void finish();

  void setDocumentLocator(const xercesc::Locator* const locator) override { locator_ = locator; }
  void startElement(const XMLCh* const uri, const XMLCh* const localName, const XMLCh* const qualifiedName,
                    const xercesc::Attributes& attributes) override;
  void endElement(const XMLCh* const uri, const XMLCh* const localName, const XMLCh* const qualifiedName) override;
  void characters(const XMLCh* const text, const XMLSize_t units) override;
  void error(const xercesc::SAXParseException& exception) override { fatalError(exception); }
  /// @throws Exceptions::InvalidFormat always.
  [[noreturn]] void fatalError(const xercesc::SAXParseException& exception) override;

 private:
  /// The names of elements in a register of one kind.
  struct Shape {
    std::u16string_view root;
    std::u16string_view items;
    std::u16string_view item;
  };
  static const std::array<Shape, kRegisterKinds> kShapes;

  void startRoot(std::u16string_view name);
  void beginField(RegisterFields& fields, std::u16string_view name);
  /// Throws, naming the file and the line of the open element.
  template <class... Arguments>
  [[noreturn]] void refuse(const Exceptions::Format& what, const Arguments&... arguments) const;
  Origin here() const;

  std::string file_;
  Entries& into_;
  Entries found_;
  EntryReader entries_{found_};
  RegisterKind kind_ = RegisterKind::kGroups;
  const xercesc::Locator* locator_ = nullptr;
  std::size_t depth_ = 0;  // of the element that is open; the root has 1
  bool isInEntries_ = false;
  bool isInEntry_ = false;
  bool isInItems_ = false;
  bool isInItem_ = false;
  RegisterFields entry_;
  RegisterFields item_;
  wstring* text_ = nullptr;  // of the field that is open
};

}  // namespace Vantor::Registers
