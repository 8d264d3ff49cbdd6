#include "Edit/DescriptiveSchemes.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/Types/AUID.h"
#include "Core/Types/Batch.h"
#include "Edit/Differences.h"

namespace Vantor::Edit {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kList = "DescriptiveSchemes";  // of the Preface

/// The frameworks of a scheme by what the keys of their sets have from octet 9 on, and the symbol of the scheme's
/// label.
struct Scheme {
  std::string_view frameworks;
  std::string_view label;
  std::string_view others = {};  // what further labels of the scheme have from octet 9 on
};
constexpr Scheme kSchemes[] = {
    {"\x0d\x01\x04\x01\x01"sv, "MXFDMS1Version1Constrained"sv, "\x0d\x01\x04\x01\x01"sv},  // ST 380
    {"\x0d\x01\x04\x01\x02"sv, "MXFCryptographicFrameworkLabel"sv},                        // ST 429-6
    {"\x0d\x01\x04\x01\x04"sv, "MXFTextBasedFramework"sv},                                 // RP 2057
    {"\x0d\x01\x04\x01\x05"sv, "MXFEIDRDMSchemeVersion1"sv},                               // RP 2079
    {"\x0d\x01\x07\x01\x0a\x01"sv, "DMS_AS_10_Core"sv},                                    // AMWA AS-10
    {"\x0d\x01\x07\x01\x0b\x01"sv, "DM_AS_11_Core"sv},                                     // AMWA AS-11
    {"\x0d\x01\x07\x01\x0b\x02"sv, "DM_AS_11_Segmentation"sv},                             // AMWA AS-11
    {"\x0d\x0c\x01\x01\x01"sv, "DM_AS_11_UKDPP"sv},                                        // AMWA AS-11
    {"\x0d\x01\x07\x01\x0c\x01"sv, "DMS_AS_12"sv},                                         // AMWA AS-12
    {"\x0d\x02\x01\x01"sv, "ebucore"sv},                                                   // EBU Tech 3293
    {"\x0d\x04\x01\x01\x01"sv, "APP_PreservationDescriptiveScheme"sv},
    {"\x0d\x0e\x01\x01\x07\x01"sv, "AS_07_Core_DMS"sv},          // RDD 48
    {"\x0d\x0e\x01\x01\x07\x02"sv, "AS_07_GSP_DMS"sv},           // RDD 48
    {"\x0d\x0e\x01\x01\x07\x03"sv, "AS_07_Segmentation_DMS"sv},  // RDD 48
};

bool startsWith(const uint8* key, std::string_view octets) {
  return std::equal(octets.begin(), octets.end(), key + 8,
                    [](char left, uint8 right) { return static_cast<uint8>(left) == right; });
}

bool isFramework(const MetadataSet& set) {
  const auto* at = set.definition();
  while (at != nullptr && at->symbol() != "DescriptiveFramework") at = at->parent();
  return at != nullptr;
}

using Schemes = std::set<const Scheme*>;

/// The schemes of all frameworks in header metadata.
Schemes schemesOf(const PartitionMetadata& metadata) {
  Schemes schemes;
  for (const MetadataSet* set : metadata.sets()) {
    if (!isFramework(*set)) continue;
    for (const auto& scheme : kSchemes) {
      if (startsWith(set->key().rawBuffer(), scheme.frameworks)) schemes.insert(&scheme);
    }
  }
  return schemes;
}

bool isOf(const Scheme& scheme, const uint8* label) {
  if (!scheme.others.empty() && startsWith(label, scheme.others)) return true;
  const auto* definition = builtInLabels().findLabel(scheme.label);
  return definition != nullptr && KLV::Key(definition->key.rawBuffer()).matches(KLV::Key(label));
}

bool hasList(const MetadataSet& preface) {
  const auto* element = preface.find(kList);
  return element != nullptr && element->isPresent();
}

/// The batch in which the Preface lists schemes, empty when it has no list; null when that is something else.
std::unique_ptr<Types::Batch> listOf(const MetadataSet& preface) {
  if (!hasList(preface)) return std::make_unique<Types::Batch>(KLV::Key::kSize);
  const auto* value = preface.find(kList)->wireValue();
  if (value == nullptr || value->identifier() != Types::Batch::kIdentifier) return nullptr;
  return std::unique_ptr<Types::Batch>(static_cast<Types::Batch*>(value->clone().release()));
}

bool isUnedited(const PartitionMetadata& before, const MetadataSet& preface, const Types::Batch& list) {
  if (before.preface() == nullptr || hasList(*before.preface()) != hasList(preface)) return false;
  const auto old = listOf(*before.preface());
  return old != nullptr && list.equals(*old);
}

/// The schemes of the first that are not among the others.
std::vector<const Scheme*> without(const Schemes& schemes, const Schemes& others) {
  std::vector<const Scheme*> rest;
  std::set_difference(schemes.begin(), schemes.end(), others.begin(), others.end(), std::back_inserter(rest));
  return rest;
}

bool isOfAny(const std::vector<const Scheme*>& schemes, const Types::SimpleDataType& label) {
  return label.encodedSize() == KLV::Key::kSize &&
         std::any_of(schemes.begin(), schemes.end(),
                     [&](const Scheme* scheme) { return isOf(*scheme, label.rawBuffer()); });
}

}  // namespace

bool isSchemeOf(const Types::UniversalLabel& label, const KLV::Key& framework) {
  return std::any_of(std::begin(kSchemes), std::end(kSchemes), [&](const Scheme& scheme) {
    return startsWith(framework.rawBuffer(), scheme.frameworks) && isOf(scheme, label.rawBuffer());
  });
}

std::optional<MergePlace> followFrameworks(const PartitionMetadata& before, PartitionMetadata& after) {
  const auto had = schemesOf(before), has = schemesOf(after);
  MetadataSet* preface = after.preface();
  const auto old = had == has || preface == nullptr ? nullptr : listOf(*preface);
  if (old == nullptr || !isUnedited(before, *preface, *old)) return std::nullopt;
  const auto gone = without(had, has);
  Types::Batch list(KLV::Key::kSize);
  for (uint32 i = 0; i < old->size(); ++i) {
    if (!isOfAny(gone, old->at(i))) list.append(old->at(i).clone());
  }
  for (const auto* scheme : without(has, had)) {
    const auto* label = builtInLabels().findLabel(scheme->label);
    bool isListed = label == nullptr;
    for (uint32 i = 0; i < old->size(); ++i) isListed = isListed || isOfAny({scheme}, old->at(i));
    if (!isListed) list.append(std::make_unique<Types::AUID>(label->key.rawBuffer()));
  }
  if (!preface->set(kList, list)) return std::nullopt;
  return MergePlace{preface->fullName(), std::string(kList)};
}

}  // namespace Vantor::Edit
