#include "XMLBuilder/WrittenSets.h"

#include "Core/Platform/Raise.h"

namespace Vantor::XMLBuilder {

WrittenSets::Level::Level(WrittenSets& sets, const MetadataSet& set) : sets_(sets) {
  if (sets_.depth_ > kMaximumDepth) {
    Exceptions::raise<Exceptions::NestingTooDeep>("references nest more than {} deep at set {}", kMaximumDepth,
                                                  set.fullName());
  }
  ++sets_.depth_;
}

}  // namespace Vantor::XMLBuilder
