#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Core/Dictionary/Definition.h"
#include "Core/KLV/Key.h"
#include "Core/Platform/Containers.h"
#include "Core/Platform/Raise.h"
#include "Core/Platform/Types.h"

/// The entries of SMPTE's metadata registers that define something: those of the kind LEAF, deprecated ones included,
/// since files hold them. Keys are as registered, with their version in octet 8.
namespace Vantor::Registers {

/// A register by what it lists: sets (ST 395), properties (ST 335), types (ST 2003) or labels (ST 400).
enum class RegisterKind : uint8 { kGroups, kElements, kTypes, kLabels };

constexpr std::size_t kRegisterKinds = 4;

/// By `RegisterKind`; SMPTE publishes each as a file of this name and the extension ".xml".
inline constexpr std::array<const char*, kRegisterKinds> kRegisterNames = {"Groups", "Elements", "Types", "Labels"};

/// The texts of an entry for people; empty where it has none.
struct EntryTexts {
  std::string definition;
  std::string document;
};

/// A property among those of a group.
struct GroupProperty {
  KLV::Key element;
  uint16 staticLocalTag = 0;  ///< 0 when there is none
  bool isOptional = false;
  Origin origin;
};

struct GroupEntry {
  KLV::Key key;  ///< octet 6 is 0x7f, whatever the coding
  std::string symbol;
  std::optional<KLV::Key> parent;
  std::string klvSyntax;  ///< values of octet 6 that the group may have: two digits each, separated by blanks
  bool isConcrete = true;
  Templates::vector<GroupProperty> properties;  ///< in the order of the register
  Origin origin;
  EntryTexts texts = {};
};

struct ElementEntry {
  KLV::Key key;
  std::string symbol;
  std::optional<KLV::Key> type;
  Origin origin;
  EntryTexts texts = {};
};

/// How a type is made.
enum class TypeKind : uint8 {
  kOther,  ///< a kind of no name here
  kInteger,
  kRename,
  kEnumeration,
  kVariableArray,
  kSet,
  kString,
  kStrongReference,
  kWeakReference,
  kCharacter,
  kFixedArray,
  kIndirect,
  kOpaque,
  kRecord,
  kStream,
};

/// The kinds by their names in the Types register.
inline constexpr std::pair<std::string_view, TypeKind> kTypeKinds[] = {
    {"Integer", TypeKind::kInteger},
    {"Rename", TypeKind::kRename},
    {"Enumeration", TypeKind::kEnumeration},
    {"VariableArray", TypeKind::kVariableArray},
    {"Set", TypeKind::kSet},
    {"String", TypeKind::kString},
    {"StrongReference", TypeKind::kStrongReference},
    {"WeakReference", TypeKind::kWeakReference},
    {"Character", TypeKind::kCharacter},
    {"FixedArray", TypeKind::kFixedArray},
    {"Indirect", TypeKind::kIndirect},
    {"Opaque", TypeKind::kOpaque},
    {"Record", TypeKind::kRecord},
    {"Stream", TypeKind::kStream},
};

constexpr TypeKind typeKindNamed(std::string_view name) {
  for (const auto& [known, kind] : kTypeKinds) {
    if (known == name) return kind;
  }
  return TypeKind::kOther;
}
/// "Other" for a kind without a name.
constexpr std::string_view nameOf(TypeKind wanted) {
  for (const auto& [name, kind] : kTypeKinds) {
    if (kind == wanted) return name;
  }
  return "Other";
}

/// A value of an enumeration; its texts are those of the register, even empty.
struct TypeValue {
  std::string value;
  std::string symbol;
  Origin origin;
};

struct TypeEntry {
  KLV::Key key;
  std::string symbol;
  TypeKind kind = TypeKind::kOther;
  uint32 size = 0;  ///< of an integer, in octets
  bool isSigned = false;
  /// The type that is renamed or whose values are named, the type of the items, or the group that a reference leads to.
  std::optional<KLV::Key> base;
  Templates::vector<TypeValue> values;
  Origin origin;
  EntryTexts texts = {};
};

struct LabelEntry {
  KLV::Key key;
  std::string symbol;
  std::string name;  ///< UTF-8, with single blanks for white space
  Origin origin;
  EntryTexts texts = {};
};

/// The entries of all registers that were read. `Origin::source` of an entry is the number of its kind.
struct Entries {
  /// Each register's file name by its kind, for messages; empty for a register that was not read.
  std::array<std::string, kRegisterKinds> files;
  Templates::vector<GroupEntry> groups;
  Templates::vector<ElementEntry> elements;
  Templates::vector<TypeEntry> types;
  Templates::vector<LabelEntry> labels;

  std::string& file(RegisterKind kind) { return files[static_cast<std::size_t>(kind)]; }
  const std::string& file(RegisterKind kind) const { return files[static_cast<std::size_t>(kind)]; }

  /// "FILE:LINE".
  std::string where(const Origin& origin) const { return files[origin.source] + ":" + std::to_string(origin.line); }
  /// @throws Exceptions::InvalidFormat "FILE:LINE: what".
  template <class... Arguments>
  [[noreturn]] void refuse(const Origin& origin, const Exceptions::Format& what, const Arguments&... arguments) const {
    const auto text = std::string("{}:{}: ") + what.text();
    Exceptions::raise<Exceptions::InvalidFormat>({text.c_str(), {what.file().c_str(), what.line()}},
                                                 files[origin.source], origin.line, arguments...);
  }
};

}  // namespace Vantor::Registers
