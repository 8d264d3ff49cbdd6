#include "Core/MXF/Unchecked.h"

namespace Vantor::MXF {

std::string describe(const Unchecked& unchecked) {
  const auto at = std::to_string(unchecked.offset), number = std::to_string(unchecked.partition);
  switch (unchecked.kind) {
    case Unchecked::Kind::kNoFooter:
      return "the header partition is open and there is no footer partition: a writer that is still at work may write "
             "over the edit";
    case Unchecked::Kind::kMissingFooter:
      return "the footer partition that the header partition names is not at byte offset " + at;
    case Unchecked::Kind::kEnd:
      return "the file cannot be followed behind byte offset " + at + ", where further partitions may be";
    case Unchecked::Kind::kPack:
      return "the pack of partition " + number + " at byte offset " + at + " cannot be read";
    case Unchecked::Kind::kMetadata:
      return "the header metadata of partition " + number + " at byte offset " + at + " stay as they are";
    case Unchecked::Kind::kRandomIndex:
      return "the random index pack cannot be read, or lists partitions that are not there";
  }
  return "";
}

}  // namespace Vantor::MXF
