#include "XMLBuilder/WrittenSets.h"

#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"

namespace Vantor::XMLBuilder {

namespace {

std::string describe(const MetadataSet& set) {
  const auto* instanceUID = set.instanceUID();
  if (instanceUID == nullptr) return set.name();
  return set.name() + " with InstanceUID " + Utils::wstringToString(instanceUID->toString(kDottedForm));
}

}  // namespace

WrittenSets::Level::Level(WrittenSets& sets, const MetadataSet& set) : sets_(sets) {
  if (sets_.depth_ > kMaximumDepth) {
    throw Exceptions::NestingTooDeep(
        "references nest more than " + std::to_string(kMaximumDepth) + " deep at set " + describe(set),
        "XMLBuilder/WrittenSets", __LINE__);
  }
  ++sets_.depth_;
}

}  // namespace Vantor::XMLBuilder
