#include "Registers/RegisterHandler.h"

#include <algorithm>
#include <utility>
#include <xercesc/sax/SAXParseException.hpp>

#include "Core/Platform/Raise.h"
#include "XMLUtils/Strings.h"

namespace Vantor::Registers {

namespace {

using std::u16string_view;

// Depths of the elements; deeper ones belong to no known register.
constexpr std::size_t kRootDepth = 1;
constexpr std::size_t kEntriesDepth = 2;
constexpr std::size_t kEntryDepth = 3;
constexpr std::size_t kFieldDepth = 4;
constexpr std::size_t kItemDepth = 5;
constexpr std::size_t kItemFieldDepth = 6;

}  // namespace

template <class... Arguments>
void RegisterHandler::refuse(const Exceptions::Format& what, const Arguments&... arguments) const {
  const auto text = std::string("{}:{}: ") + what.text();
  Exceptions::raise<Exceptions::InvalidFormat>({text.c_str(), {what.file().c_str(), what.line()}}, file_, here().line,
                                               arguments...);
}

const std::array<RegisterHandler::Shape, kRegisterKinds> RegisterHandler::kShapes = {{
    {u"GroupsRegister", u"Contents", u"Record"},
    {u"ElementsRegister", u"", u""},
    {u"TypesRegister", u"Facets", u"Facet"},
    {u"LabelsRegister", u"", u""},
}};

void RegisterHandler::startElement(const XMLCh* const, const XMLCh* const localName, const XMLCh* const,
                                   const xercesc::Attributes&) {
  const u16string_view name = localName;
  switch (++depth_) {
    case kRootDepth:
      return startRoot(name);
    case kEntriesDepth:
      isInEntries_ = name == u"Entries";
      return;
    case kEntryDepth:
      isInEntry_ = isInEntries_ && name == u"Entry";
      if (isInEntry_) entry_.begin(here());
      return;
    case kFieldDepth:
      if (isInEntry_) beginField(entry_, name);
      isInItems_ = isInEntry_ && name == kShapes[static_cast<std::size_t>(kind_)].items;
      return;
    case kItemDepth:
      isInItem_ = isInItems_ && name == kShapes[static_cast<std::size_t>(kind_)].item;
      if (isInItem_) item_.begin(here());
      return;
    case kItemFieldDepth:
      if (isInItem_) beginField(item_, name);
      return;
    default:
      return;
  }
}

void RegisterHandler::endElement(const XMLCh* const, const XMLCh* const, const XMLCh* const) {
  switch (depth_--) {
    case kEntryDepth:
      if (isInEntry_) entries_.add(kind_, entry_);
      isInEntry_ = false;
      return;
    case kFieldDepth:
      text_ = nullptr;
      return;
    case kItemDepth:
      if (isInItem_) entries_.addItem(kind_, item_);
      isInItem_ = false;
      return;
    case kItemFieldDepth:
      if (isInItem_) text_ = nullptr;
      return;
    default:
      return;
  }
}

void RegisterHandler::characters(const XMLCh* const text, const XMLSize_t units) {
  if (text_ != nullptr) text_->append(text, units);
}

void RegisterHandler::fatalError(const xercesc::SAXParseException& exception) {
  Exceptions::raise<Exceptions::InvalidFormat>(
      "{}:{}:{}: this is no XML that can be read: {}; give the file as SMPTE publishes it", file_,
      exception.getLineNumber(), exception.getColumnNumber(), XMLUtils::utf16ToWstring(exception.getMessage()));
}

void RegisterHandler::beginField(RegisterFields& fields, u16string_view name) {
  text_ = fields.textOf(name);
  if (text_ == nullptr || text_->empty()) return;
  refuse("there is one {} already; give the file as SMPTE publishes it", wstring(name));
}

void RegisterHandler::startRoot(u16string_view name) {
  const auto* const shape =
      std::find_if(kShapes.begin(), kShapes.end(), [&](const Shape& one) { return one.root == name; });
  if (shape == kShapes.end()) {
    refuse(
        "the root element {} is none of a register; give a file whose root is GroupsRegister, ElementsRegister, "
        "TypesRegister or LabelsRegister",
        wstring(name));
  }
  const auto kind = static_cast<std::size_t>(shape - kShapes.begin());
  kind_ = static_cast<RegisterKind>(kind);
  found_.files[kind] = file_;
  if (into_.files[kind].empty()) return;
  refuse("the root element is {}, as in {}; give one of the two", wstring(name), into_.files[kind]);
}

void RegisterHandler::finish() {
  if (found_.groups.empty() && found_.elements.empty() && found_.types.empty() && found_.labels.empty()) {
    Exceptions::raise<Exceptions::InvalidFormat>(
        "{}: the register has no entry of the kind LEAF; give the file as SMPTE publishes it", file_);
  }
  into_.file(kind_) = file_;
  switch (kind_) {
    case RegisterKind::kGroups:
      into_.groups = std::move(found_.groups);
      return;
    case RegisterKind::kElements:
      into_.elements = std::move(found_.elements);
      return;
    case RegisterKind::kTypes:
      into_.types = std::move(found_.types);
      return;
    case RegisterKind::kLabels:
      into_.labels = std::move(found_.labels);
      return;
  }
}

Origin RegisterHandler::here() const {
  return {static_cast<uint32>(kind_), static_cast<uint32>(locator_->getLineNumber())};
}

}  // namespace Vantor::Registers
