#include "XMLUtils/RegisterHandler.h"

#include <algorithm>
#include <utility>
#include <xercesc/sax/SAXParseException.hpp>

#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XMLUtils {

namespace {

using std::u16string_view;

constexpr const char* kSource = "XMLUtils/RegisterHandler";

// Where the elements stand; what is deeper belongs to no register that is known.
constexpr std::size_t kRootDepth = 1;
constexpr std::size_t kEntriesDepth = 2;
constexpr std::size_t kEntryDepth = 3;
constexpr std::size_t kFieldDepth = 4;
constexpr std::size_t kItemDepth = 5;
constexpr std::size_t kItemFieldDepth = 6;

/// Without the position that messages of `InputCheck.h` begin with.
std::string messageOf(const xercesc::SAXParseException& exception) {
  const auto message = Vantor::Utils::wstringToString(utf16ToWstring(exception.getMessage()));
  const std::string position = "line " + std::to_string(exception.getLineNumber()) + ", column " +
                               std::to_string(exception.getColumnNumber()) + ": ";
  return message.compare(0, position.size(), position) == 0 ? message.substr(position.size()) : message;
}

}  // namespace

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
  throw Exceptions::InvalidFormat(
      file_ + ":" + std::to_string(exception.getLineNumber()) + ":" + std::to_string(exception.getColumnNumber()) +
          ": this is no XML that can be read: " + messageOf(exception) + "; give the file as SMPTE publishes it",
      kSource, __LINE__);
}

void RegisterHandler::beginField(RegisterFields& fields, u16string_view name) {
  text_ = fields.textOf(name);
  if (text_ == nullptr || text_->empty()) return;
  throw Exceptions::InvalidFormat(file_ + ":" + std::to_string(here().line) + ": there is one " +
                                      Vantor::Utils::wstringToString(wstring(name)) +
                                      " already; give the file as SMPTE publishes it",
                                  kSource, __LINE__);
}

void RegisterHandler::startRoot(u16string_view name) {
  const auto* const shape =
      std::find_if(kShapes.begin(), kShapes.end(), [&](const Shape& one) { return one.root == name; });
  if (shape == kShapes.end()) {
    refuse("the root element " + Vantor::Utils::wstringToString(wstring(name)) +
               " is none of a register; give a file whose root is GroupsRegister, ElementsRegister, TypesRegister or "
               "LabelsRegister",
           __LINE__);
  }
  const auto kind = static_cast<std::size_t>(shape - kShapes.begin());
  kind_ = static_cast<RegisterKind>(kind);
  found_.files[kind] = file_;
  if (into_.files[kind].empty()) return;
  refuse("the root element is " + Vantor::Utils::wstringToString(wstring(name)) + ", as in " + into_.files[kind] +
             "; give one of the two",
         __LINE__);
}

void RegisterHandler::finish() {
  if (found_.groups.empty() && found_.elements.empty() && found_.types.empty() && found_.labels.empty()) {
    throw Exceptions::InvalidFormat(
        file_ + ": the register has no entry of the kind LEAF; give the file as SMPTE publishes it", kSource, __LINE__);
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

void RegisterHandler::refuse(const std::string& what, int line) const {
  throw Exceptions::InvalidFormat(file_ + ":" + std::to_string(here().line) + ": " + what, kSource, line);
}

Origin RegisterHandler::here() const {
  return {static_cast<uint32>(kind_), static_cast<uint32>(locator_->getLineNumber())};
}

}  // namespace Vantor::XMLUtils
