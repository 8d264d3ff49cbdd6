#pragma once

#include <array>
#include <optional>
#include <string>

#include "Core/Dictionary/Definition.h"
#include "Core/KLV/Key.h"
#include "Core/Platform/Containers.h"
#include "Core/Platform/Types.h"

/// What the metadata registers of SMPTE say, entry by entry. Only entries that define something are kept: those of the
/// kind LEAF, deprecated ones included, since files hold them. Keys are as registered, octet 8, the version, included.
namespace Vantor {

/// The registers by what they list: sets (ST 395), properties (ST 335), types (ST 2003) and labels (ST 400).
enum class RegisterKind : uint8 { kGroups, kElements, kTypes, kLabels };

constexpr std::size_t kRegisterKinds = 4;

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
  std::string klvSyntax;  ///< values of octet 6 that the group may have: two digits each, between blanks
  bool isConcrete = true;
  Templates::vector<GroupProperty> properties;  ///< in the order of the register
  Origin origin;
};

struct ElementEntry {
  KLV::Key key;
  std::string symbol;
  std::optional<KLV::Key> type;
  Origin origin;
};

/// How a type is made; the kinds that no rule asks for are one.
enum class TypeKind : uint8 {
  kOther,
  kInteger,
  kRename,
  kEnumeration,
  kVariableArray,
  kSet,
  kString,
  kStrongReference,
  kWeakReference,
};

/// One of the values that an enumeration names; its texts are as they stand in the register, even empty.
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
};

struct LabelEntry {
  KLV::Key key;
  std::string symbol;
  std::string name;  ///< UTF-8; white space is single blanks
  Origin origin;
};

/// The registers that were read. `Origin::source` of an entry is the number of its kind.
struct Registers {
  /// The name of each register's file by its kind, for messages; empty for a register that was not read.
  std::array<std::string, kRegisterKinds> files;
  Templates::vector<GroupEntry> groups;
  Templates::vector<ElementEntry> elements;
  Templates::vector<TypeEntry> types;
  Templates::vector<LabelEntry> labels;

  std::string& file(RegisterKind kind) { return files[static_cast<std::size_t>(kind)]; }
  const std::string& file(RegisterKind kind) const { return files[static_cast<std::size_t>(kind)]; }

  /// @param source, line  where the library says so.
  /// @throws Exceptions::InvalidFormat "FILE:LINE: what".
  [[noreturn]] void refuse(const Origin& origin, const std::string& what, const char* source, int line) const;
  /// "FILE:LINE".
  std::string where(const Origin& origin) const;
};

}  // namespace Vantor
