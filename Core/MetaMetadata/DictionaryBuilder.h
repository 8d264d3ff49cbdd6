#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Core/MetaMetadata/Dictionary.h"
#include "Core/MetaMetadata/ExtensionAttributes.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Core/MetaMetadata/Vocabulary.h"
#include "Core/Platform/Containers.h"
#include "Core/Types/Identifiers.h"

namespace Vantor::MetaMetadata {

/// The type of a property: one of the value types, or an array or a batch of one.
struct DataType {
  constexpr DataType(Types::Identifiers::Identifier type,  // NOLINT(google-explicit-constructor): a type is one
                     Types::Identifiers::Identifier itemType = Types::Identifiers::kNone)
      : type(type), itemType(itemType) {}

  Types::Identifiers::Identifier type;
  Types::Identifiers::Identifier itemType;  ///< `kNone` but for arrays and batches.
};
constexpr DataType arrayOf(DataType item) { return {Types::Identifiers::kArray, item.type}; }
constexpr DataType batchOf(DataType item) { return {Types::Identifiers::kBatch, item.type}; }

/// Makes dictionaries. Not for use by several threads at once.
///
///     DictionaryBuilder builder;
///     builder.addElement("060e2b34.01010101.01011502.00000000", "InstanceID", kUUID);
///     builder.addSet("060e2b34.02530101.0d010101.01010100", "InterchangeObject");
///     builder.addAttribute("060e2b34.01010101.01011502.00000000", 0x3c0a, kRequired);
///     builder.addSet("060e2b34.02530101.0d010101.01012f00", "Preface", "InterchangeObject");
///     const auto dictionary = builder.build();
///
/// By default a definition gets its symbol as tag name, and the namespace and prefix of the builder's vocabulary. The
/// definition's own extension attributes, even empty ones, override these.
class DictionaryBuilder {
 public:
  static constexpr uint32 kRequired = 0;
  static constexpr uint32 kOptional = 4;

  explicit DictionaryBuilder(Vocabulary vocabulary = Vocabulary::kLegacy);
  DictionaryBuilder(DictionaryBuilder&&) noexcept;
  DictionaryBuilder& operator=(DictionaryBuilder&&) noexcept;
  ~DictionaryBuilder();

  /// Reserves room for this many definitions; more are possible.
  void reserve(std::size_t elements, std::size_t sets);

  /// Defines a property. Defining a key again changes nothing. A key that differs from an earlier one in octet 8 only
  /// makes a definition that is listed but never found.
  void addElement(std::string_view key, std::string_view symbol, DataType type,
                  const ExtensionAttributes& extensionAttributes = {});
  void addElement(const Types::UniversalLabel& label, std::string_view symbol, DataType type,
                  const ExtensionAttributes& extensionAttributes = {});

  /// Defines a set; the following `addAttribute` calls list its own properties.
  /// @param key     octet 6 may be 0x7f, the registers' wild card; the definition has 0x53 then.
  /// @param parent  the symbol of the set to inherit from, defined before or after; empty for a root.
  void addSet(std::string_view key, std::string_view symbol, std::string_view parent = {}, bool isConcrete = true,
              const ExtensionAttributes& extensionAttributes = {});
  void addSet(const KLV::Key& key, std::string_view symbol, std::string_view parent, bool isConcrete,
              const ExtensionAttributes& extensionAttributes);

  /// Lists a property in the set defined last.
  /// @param elementKey  of a property that is defined already; octet 8 counts only among keys that differ in nothing
  ///                    else.
  /// @param extensionAttributes  a "SchemaIndex" here replaces the automatic one in this set and in those that inherit
  ///        from it; an empty one leaves the attribute without. The order of the attributes stays that of definition.
  /// @throws Exceptions::InvalidFormat when there is no set yet or no such property.
  void addAttribute(std::string_view elementKey, uint16 staticLocalTag = 0, uint32 requiredStatus = kOptional,
                    const ExtensionAttributes& extensionAttributes = {});
  void addAttribute(const Types::UniversalLabel& elementLabel, uint16 staticLocalTag = 0,
                    uint32 requiredStatus = kOptional, const ExtensionAttributes& extensionAttributes = {});

  /// Defines an enumeration; the dictionary owns it.
  const Enumeration& addEnumeration(std::string_view name, const NamedNumbers& numbers);
  /// Gives the numbers of a property names.
  /// @param elementLabel  of a property that is defined already.
  /// @param enumeration   a result of `addEnumeration`.
  /// @throws Exceptions::InvalidFormat when there is no such property.
  void setEnumeration(const Types::UniversalLabel& elementLabel, const Enumeration& enumeration);
  /// Gives the references of a property a target.
  /// @param elementLabel  of a property that is defined already.
  /// @param set           the symbol of a set that is defined already.
  /// @throws Exceptions::InvalidFormat when there is no such property or set.
  void setTarget(const Types::UniversalLabel& elementLabel, std::string_view set);

  /// Gives a set, or a property of a set and of all that inherit from it, a name that people use (`CommonNames`).
  /// @param set           of a set that is defined already.
  /// @param elementLabel  of a property that is defined already.
  /// @throws Exceptions::InvalidFormat when there is no such set or property.
  void addCommonName(const KLV::Key& set, std::string_view name);
  void addCommonName(const KLV::Key& set, const Types::UniversalLabel& elementLabel, std::string_view name);

  /// Adds a label. @param name  for people, in UTF-8.
  void addLabel(const Types::UniversalLabel& label, std::string_view symbol, std::string_view name);
  /// Other labels, which `Dictionary::labels` finds, too. Asked when they are needed.
  void setLabelSource(LabelSource source);

  /// The dictionary of what was added; the builder is empty afterwards.
  /// @throws Exceptions::InvalidFormat naming the set when a parent is not defined or a set inherits from itself;
  ///         the builder can only be destroyed then.
  SharedPtr<const Dictionary> build();

 private:
  /// @throws Exceptions::InvalidFormat when there is none.
  MetaElement& definedElement(const Types::UniversalLabel& label);
  const MetaMetadataSet& definedSet(const KLV::Key& key) const;

  struct State;
  auto_ptr<State> state_;
};

}  // namespace Vantor::MetaMetadata
