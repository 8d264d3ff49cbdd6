#pragma once

#include <initializer_list>
#include <string>
#include <utility>

#include "Core/Platform/Exceptions.h"
#include "Registers/Entries.h"
#include "Registers/RegisterKeys.h"

namespace Vantor::Registers {

/// Registers made by hand. Every entry and everything within one is on the next line of its file.
class SomeRegisters : public Entries {
 public:
  SomeRegisters() { files = {"Groups.xml", "Elements.xml", "Types.xml", "Labels.xml"}; }

  /// A local set; `tail` is what its key ends with.
  GroupEntry& group(uint64 tail, std::string symbol, uint64 parent = 0) {
    GroupEntry entry;
    entry.key = RegisterKeys::group(tail);
    entry.symbol = std::move(symbol);
    entry.klvSyntax = "06 53";
    if (parent != 0) entry.parent = RegisterKeys::group(parent);
    entry.origin = next(RegisterKind::kGroups);
    groups.push_back(std::move(entry));
    return groups.back();
  }

  /// A property of the group added last, without defining it.
  GroupProperty& property(uint64 element, uint16 tag = 0) {
    groups.back().properties.push_back({RegisterKeys::element(element), tag, true, next(RegisterKind::kGroups)});
    return groups.back().properties.back();
  }

  ElementEntry& element(uint64 tail, std::string symbol, uint64 type = 0) {
    ElementEntry entry;
    entry.key = RegisterKeys::element(tail);
    entry.symbol = std::move(symbol);
    if (type != 0) entry.type = RegisterKeys::type(type);
    entry.origin = next(RegisterKind::kElements);
    elements.push_back(std::move(entry));
    return elements.back();
  }

  TypeEntry& type(uint64 tail, std::string symbol, TypeKind kind, uint64 base = 0) {
    TypeEntry entry;
    entry.key = RegisterKeys::type(tail);
    entry.symbol = std::move(symbol);
    entry.kind = kind;
    if (base != 0) entry.base = RegisterKeys::type(base);
    entry.origin = next(RegisterKind::kTypes);
    types.push_back(std::move(entry));
    return types.back();
  }

  TypeEntry& integer(uint64 tail, std::string symbol, uint32 size, bool isSigned = false) {
    auto& entry = type(tail, std::move(symbol), TypeKind::kInteger);
    entry.size = size;
    entry.isSigned = isSigned;
    return entry;
  }

  TypeEntry& reference(uint64 tail, std::string symbol, TypeKind kind, uint64 group) {
    auto& entry = type(tail, std::move(symbol), kind);
    entry.base = RegisterKeys::group(group);
    return entry;
  }

  TypeEntry& enumeration(uint64 tail, std::string symbol, uint64 base,
                         std::initializer_list<std::pair<const char*, const char*>> values) {
    auto& entry = type(tail, std::move(symbol), TypeKind::kEnumeration, base);
    for (const auto& [value, name] : values) entry.values.push_back({value, name, next(RegisterKind::kTypes)});
    return entry;
  }

  LabelEntry& label(uint64 tail, std::string symbol, std::string name) {
    labels.push_back(
        {RegisterKeys::key(0x04, 0x01, tail), std::move(symbol), std::move(name), next(RegisterKind::kLabels)});
    return labels.back();
  }

 private:
  Origin next(RegisterKind kind) {
    const auto place = static_cast<uint32>(kind);
    return {place, ++lines_[place]};
  }

  std::array<uint32, kRegisterKinds> lines_{};
};

/// The message of an operation that refuses; "" when it does not.
template <class Operation>
std::string refusalOf(Operation&& operation) {
  try {
    operation();
    return "";
  } catch (const Exceptions::InvalidFormat& exception) {
    return exception.message();
  }
}

}  // namespace Vantor::Registers
