#include "Core/MXF/TrackKind.h"

#include <algorithm>
#include <array>

namespace Vantor::MXF {

namespace {

struct OldDefinition {
  std::array<uint8, 8> octets;  // 9 to 16 in MXF files, which are the first ones of the AUID
  TrackKind kind;
};
constexpr OldDefinition kOldDefinitions[] = {{{0x6f, 0x3c, 0x8c, 0xe1, 0x6c, 0xef, 0x11, 0xd2}, TrackKind::kPicture},
                                             {{0x78, 0xe1, 0xeb, 0xe1, 0x6c, 0xef, 0x11, 0xd2}, TrackKind::kSound},
                                             {{0x7f, 0x27, 0x5e, 0x81, 0x77, 0xe5, 0x11, 0xce}, TrackKind::kTimecode}};

/// Octets 9 to 11 of the labels of ST 400; the 12th is the branch, the 13th the definition.
constexpr std::array<uint8, 3> kDataDefinitions = {1, 3, 2};
constexpr uint8 kDescriptionBranch = 1, kEssenceBranch = 2;

TrackKind essenceKind(uint8 definition) {
  if (definition == 1) return TrackKind::kPicture;
  return definition == 2 ? TrackKind::kSound : TrackKind::kData;
}

TrackKind describingKind(uint8 definition) {
  if (definition == 0x10) return TrackKind::kDescriptive;
  return definition >= 1 && definition <= 3 ? TrackKind::kTimecode : TrackKind::kOther;
}

}  // namespace

TrackKind trackKindOf(const Types::UniversalLabel& dataDefinition) {
  const uint8* octets = dataDefinition.rawBuffer() + 8;
  for (const auto& old : kOldDefinitions) {
    if (std::equal(old.octets.begin(), old.octets.end(), octets)) return old.kind;
  }
  if (!std::equal(kDataDefinitions.begin(), kDataDefinitions.end(), octets)) return TrackKind::kOther;
  const uint8 branch = dataDefinition.octet(12), definition = dataDefinition.octet(13);
  if (branch >= kEssenceBranch) return branch == kEssenceBranch ? essenceKind(definition) : TrackKind::kData;
  return branch == kDescriptionBranch ? describingKind(definition) : TrackKind::kOther;
}

}  // namespace Vantor::MXF
