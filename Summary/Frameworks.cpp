#include "Summary/Frameworks.h"

#include <unordered_map>
#include <unordered_set>

#include "Core/Metadata/PropertyText.h"
#include "Core/Metadata/ReferenceTargets.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Collection.h"
#include "Core/Types/Text/OctetText.h"
#include "Core/Types/Text/StringText.h"
#include "Summary/PackageIndex.h"
#include "Summary/Values.h"

namespace Vantor::Summary {

namespace {

using Types::Identifiers::Identifier;

bool isText(Identifier type) { return Types::isTextType(type); }

/// Whether a value means something to people by itself.
bool isReadable(Identifier type) {
  using namespace Types::Identifiers;
  const bool isIdentifier = type == kUUID || type == kAUID || type == kUMID32 || type == kUMID64;
  const bool isReference = type == kStrongReference || type == kWeakReference;
  return !isIdentifier && !isReference && !Types::isOctetType(type) && type != kUnknown;
}

/// The type of a value, or of the items of a collection.
Identifier typeOf(const MetaMetadata::MetaElement& definition) {
  const auto* list = MetaMetadata::asCollection(definition);
  return list == nullptr ? definition.dataType() : list->dataSubType();
}

/// A text in XML whose octets stand in the other order than those of MXF, put right: it begins with the mark of that
/// order, or with "<?" (XML 1.0, appendix F).
wstring inOrder(wstring text) {
  const bool isMarked = text.compare(0, 1, u"\xfffe") == 0;
  if (!isMarked && text.compare(0, 2, u"\x3c00\x3f00") != 0) return text;
  for (auto& unit : text) unit = static_cast<char16_t>((unit & 0xff) << 8 | unit >> 8);
  return isMarked ? text.substr(1) : text;
}

class FrameworkReader {
 public:
  explicit FrameworkReader(const PartitionMetadata& metadata) : metadata_(metadata) { findTracks(); }

  Framework read(const MetadataSet& set) {
    Framework framework;
    framework.set = set.name();
    const auto track = tracks_.find(&set);
    if (track != tracks_.end()) framework.track = textIn(*track->second, "TrackName");
    addValues(set, isReadable, framework);
    for (const auto* object : reached(set)) addValues(*object, isText, framework);
    return framework;
  }

 private:
  void findTracks() {
    const PackageIndex packages(metadata_);
    std::unordered_set<const MetadataSet*> segments;     // which tracks may share
    for (const MetadataSet* track : metadata_.sets()) {  // by that name, TimelineTracks alone would be found
      if (track->find("TrackSegment") == nullptr) continue;
      if (segments.insert(targetIn(metadata_, *track, "TrackSegment")).second) {
        for (const auto* framework : packages.frameworksOf(*track)) tracks_.emplace(framework, track);
      }
    }
  }

  /// The sets that a framework refers to and no framework before it, depth first. Keeps its own stack, since files may
  /// chain as many sets as they have bytes for.
  std::vector<const MetadataSet*> reached(const MetadataSet& framework) {
    std::vector<const MetadataSet*> found, pending;
    const auto push = [&](const MetadataSet& set) {
      const auto targets = targetsOf(set, metadata_, ReferenceKinds{});
      pending.insert(pending.end(), targets.rbegin(), targets.rend());
    };
    seen_.insert(&framework);
    for (push(framework); !pending.empty();) {
      const auto* set = pending.back();
      pending.pop_back();
      if (!seen_.insert(set).second) continue;
      found.push_back(set);
      push(*set);
    }
    return found;
  }

  template <class IsWanted>
  static void addValues(const MetadataSet& set, const IsWanted& isWanted, Framework& framework) {
    for (const auto* element : set.inDefinitionOrder()) {
      const auto* definition = element->metaAttribute().metaElement();
      const auto* value = element->wireValue();
      if (definition == nullptr || value == nullptr || !isWanted(typeOf(*definition))) continue;
      auto text = Utils::wstringToString(inOrder(printProperty({&set, definition}, *value)));
      if (!text.empty()) framework.values.push_back({set.name(), definition->symbol(), std::move(text)});
    }
  }

  const PartitionMetadata& metadata_;
  std::unordered_map<const MetadataSet*, const MetadataSet*> tracks_;  // by framework
  std::unordered_set<const MetadataSet*> seen_;
};

}  // namespace

std::vector<Framework> frameworksOf(const PartitionMetadata& metadata) {
  std::vector<Framework> frameworks;
  FrameworkReader reader(metadata);
  for (const auto& set : metadata.findAll("DescriptiveFramework")) frameworks.push_back(reader.read(set));
  return frameworks;
}

}  // namespace Vantor::Summary
