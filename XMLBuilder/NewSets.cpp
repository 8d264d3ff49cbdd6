#include "XMLBuilder/NewSets.h"

#include <algorithm>

#include "Core/Platform/DocumentLine.h"
#include "Core/Types/Factories.h"
#include "Core/Types/ValueText.h"
#include "XMLBuilder/LosslessRules.h"

namespace Vantor::XML2Partition {

using Exceptions::InvalidFormat;
using Exceptions::raiseAt;

namespace {

constexpr std::u16string_view kPrefix = u"new:";

}  // namespace

bool NewSets::isName(std::u16string_view text) { return Types::trimmed(text).substr(0, kPrefix.size()) == kPrefix; }

NewSets::Names::value_type& NewSets::at(std::u16string_view name) {
  const auto [entry, isNew] = names_.try_emplace(wstring(Types::trimmed(name)));
  if (isNew) entry->second.instanceUID = Types::Factories::UID::generateUUID();
  return *entry;
}

const Types::UUID& NewSets::define(std::u16string_view name, uint64 line, const std::string& kind) {
  auto& [text, named] = at(name);
  if (named.isSet) {
    raiseAt<Clash>(line, "line {}: the {} is named {}, as is the {} at line {}; give one of them another name", line,
                   kind, Types::excerpt(text), named.kind, named.line);
  }
  named.isSet = true;
  named.kind = kind;
  named.line = line;
  return named.instanceUID;
}

const Types::UUID& NewSets::refer(std::u16string_view name, uint64 line) {
  auto& named = at(name).second;
  if (named.reference == 0 || line < named.reference) named.reference = line;
  return named.instanceUID;
}

void NewSets::noteUnknown(std::u16string_view name, uint64 line, const std::string& element) {
  auto& named = at(name).second;
  if (named.isSet || !named.kind.empty()) return;
  named.kind = element;
  named.line = line;
}

void NewSets::requireAllDefined() const {
  const Names::value_type* first = nullptr;
  for (const auto& entry : names_) {
    const auto& named = entry.second;
    if (named.isSet || named.reference == 0) continue;
    if (first == nullptr || named.reference < first->second.reference) first = &entry;
  }
  if (first == nullptr) return;
  const auto& [text, named] = *first;
  const auto name = Types::excerpt(text);
  if (named.kind.empty())
    raiseAt<InvalidFormat>(named.reference, "line {}: no set of the document is named {}", named.reference, name);
  raiseAt<InvalidFormat>(named.reference,
                         "line {}: no set of the document is named {}; the {} at line {} is, which is no known set",
                         named.reference, name, named.kind, named.line);
}

}  // namespace Vantor::XML2Partition
