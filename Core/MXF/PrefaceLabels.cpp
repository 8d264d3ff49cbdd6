#include "Core/MXF/PrefaceLabels.h"

#include "Core/Metadata/CollectionElements.h"
#include "Core/Platform/Raise.h"

namespace Vantor::MXF {

namespace {

/// Preface properties of ST 377-1.
constexpr KLV::Key kOperationalPattern({0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x05,  //
                                        0x01, 0x02, 0x02, 0x03, 0x00, 0x00, 0x00, 0x00});
constexpr KLV::Key kEssenceContainers({0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x05,  //
                                       0x01, 0x02, 0x02, 0x10, 0x02, 0x01, 0x00, 0x00});

/// Reads the 16 octets of a value that is a label by its meaning, of any type in the dictionary.
Types::UniversalLabel labelFrom(const Types::SimpleDataType& value) {
  if (value.encodedSize() == KLV::Key::kSize) return Types::UniversalLabel(value.rawBuffer());
  Exceptions::raise<Exceptions::InvalidFormat>("a label of the Preface has {} octets instead of 16",
                                               value.encodedSize());
}

}  // namespace

std::optional<Types::UniversalLabel> operationalPatternOf(const MetadataSet& preface) {
  const Element* property = preface.find(Types::UniversalLabel(kOperationalPattern));
  if (property == nullptr || property->wireValue() == nullptr) return std::nullopt;
  return labelFrom(*property->wireValue());
}

std::vector<Types::UniversalLabel> essenceContainersOf(const MetadataSet& preface) {
  std::vector<Types::UniversalLabel> labels;
  const Element* element = preface.find(Types::UniversalLabel(kEssenceContainers));
  const auto* property = dynamic_cast<const CollectionElement*>(element);
  for (uint32 i = 0; property != nullptr && i < property->size(); ++i) {
    labels.push_back(labelFrom(property->value()->at(i)));
  }
  return labels;
}

}  // namespace Vantor::MXF
