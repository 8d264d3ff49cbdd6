#include "Registers/EntryReader.h"

#include <charconv>
#include <string_view>
#include <utility>

#include "Core/MetaMetadata/RegisterKey.h"

namespace Vantor::Registers {

namespace {

constexpr std::pair<std::string_view, TypeKind> kTypeKinds[] = {
    {"Integer", TypeKind::kInteger},
    {"Rename", TypeKind::kRename},
    {"Enumeration", TypeKind::kEnumeration},
    {"VariableArray", TypeKind::kVariableArray},
    {"Set", TypeKind::kSet},
    {"String", TypeKind::kString},
    {"StrongReference", TypeKind::kStrongReference},
    {"WeakReference", TypeKind::kWeakReference},
};

TypeKind typeKindNamed(std::string_view name) {
  for (const auto& [known, kind] : kTypeKinds) {
    if (known == name) return kind;
  }
  return TypeKind::kOther;
}

/// 0 for anything that is no number, which no integer has as its size.
uint32 sizeOf(const std::string& digits) {
  uint32 size = 0;
  const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), size).ptr;
  return end == digits.data() + digits.size() ? size : 0;
}

bool isSigned(const std::string& qualifiers) {
  return (" " + qualifiers + " ").find(" isSigned ") != std::string::npos;
}

}  // namespace

void EntryReader::addItem(RegisterKind kind, const RegisterFields& fields) {
  if (kind == RegisterKind::kTypes) {
    values_.push_back({fields.text(u"Value"), fields.text(u"Symbol"), fields.origin()});
    return;
  }
  const auto key = fields.key(u"UL");
  if (!key) into_.refuse(fields.origin(), "a property has no UL; add that of its element");
  properties_.push_back({*key, fields.localTag(), fields.flag(u"IsOptional", false), fields.origin()});
}

void EntryReader::add(RegisterKind kind, const RegisterFields& fields) {
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

void EntryReader::addLeaf(RegisterKind kind, const RegisterFields& fields) {
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
                              fields.flag(u"IsConcrete", true), std::exchange(properties_, {}), fields.origin()});
      return;
    case RegisterKind::kElements:
      into_.elements.push_back({*key, symbol, fields.key(u"Type"), fields.origin()});
      return;
    case RegisterKind::kTypes:
      into_.types.push_back({*key, symbol, typeKindNamed(fields.text(u"TypeKind")), sizeOf(fields.text(u"TypeSize")),
                             isSigned(fields.text(u"TypeQualifiers")), fields.key(u"BaseType"),
                             std::exchange(values_, {}), fields.origin()});
      return;
    case RegisterKind::kLabels:
      into_.labels.push_back({*key, symbol, fields.text(u"Name"), fields.origin()});
      return;
  }
}

}  // namespace Vantor::Registers
