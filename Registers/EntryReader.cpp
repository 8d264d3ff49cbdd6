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

}  // namespace

void EntryReader::addItem(RegisterKind kind, const RegisterFields& fields) {
  if (kind == RegisterKind::kTypes) {
    values_.push_back({fields.text(RegisterField::kValue), fields.text(RegisterField::kSymbol), fields.origin()});
    return;
  }
  const auto key = fields.key(RegisterField::kUL, into_);
  if (!key) into_.refuse(fields.origin(), "a property has no UL; add that of its element");
  properties_.push_back(
      {*key, fields.localTag(into_), fields.flag(RegisterField::kIsOptional, false, into_), fields.origin()});
}

void EntryReader::add(RegisterKind kind, const RegisterFields& fields) {
  const auto entryKind = fields.text(RegisterField::kKind);
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
  const auto symbol = fields.text(RegisterField::kSymbol);
  const auto key = fields.key(RegisterField::kUL, into_);
  if (!key) {
    into_.refuse(fields.origin(), "the entry '{}' has no UL; add the one that it is registered with", symbol);
  }
  if (symbol.empty()) {
    into_.refuse(fields.origin(), "the entry {} has no Symbol; add one", MetaMetadata::registerText(*key));
  }
  switch (kind) {
    case RegisterKind::kGroups:
      return addGroup(*key, fields);
    case RegisterKind::kElements:
      return addElement(*key, fields);
    case RegisterKind::kTypes:
      return addType(*key, fields);
    case RegisterKind::kLabels:
      return addLabel(*key, fields);
  }
}

void EntryReader::addGroup(const KLV::Key& key, const RegisterFields& fields) {
  GroupEntry entry;
  entry.key = key;
  entry.symbol = fields.text(RegisterField::kSymbol);
  entry.parent = fields.key(RegisterField::kParent, into_);
  entry.klvSyntax = fields.text(RegisterField::kKLVSyntax);
  entry.isConcrete = fields.flag(RegisterField::kIsConcrete, true, into_);
  entry.properties = std::exchange(properties_, {});
  entry.origin = fields.origin();
  into_.groups.push_back(std::move(entry));
}

void EntryReader::addElement(const KLV::Key& key, const RegisterFields& fields) {
  into_.elements.push_back(
      {key, fields.text(RegisterField::kSymbol), fields.key(RegisterField::kType, into_), fields.origin()});
}

void EntryReader::addType(const KLV::Key& key, const RegisterFields& fields) {
  TypeEntry entry;
  entry.key = key;
  entry.symbol = fields.text(RegisterField::kSymbol);
  entry.kind = typeKindNamed(fields.text(RegisterField::kTypeKind));
  entry.size = sizeOf(fields.text(RegisterField::kTypeSize));
  const auto qualifiers = " " + fields.text(RegisterField::kTypeQualifiers) + " ";
  entry.isSigned = qualifiers.find(" isSigned ") != std::string::npos;
  entry.base = fields.key(RegisterField::kBaseType, into_);
  entry.values = std::exchange(values_, {});
  entry.origin = fields.origin();
  into_.types.push_back(std::move(entry));
}

void EntryReader::addLabel(const KLV::Key& key, const RegisterFields& fields) {
  into_.labels.push_back(
      {key, fields.text(RegisterField::kSymbol), fields.text(RegisterField::kName), fields.origin()});
}

}  // namespace Vantor::Registers
