#include "Core/Metadata/DarkTags.h"

#include "Core/KLV/Keys.h"
#include "Core/KLV/LocalSet.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor {

void reserveDarkTags(const KLV::Key& key, const uint8* octets, std::size_t size, PartitionDictionary& tags) {
  if (!KLV::isLocalSet(key)) return;
  try {
    for (const auto& item : KLV::readLocalSet(KLV::localSetCoding(key), octets, size)) {
      tags.reserve(Types::LocalTag(item.tag));
    }
  } catch (const Exceptions::BaseException&) {
    // Its key says local set; its value is not one.
  }
}

}  // namespace Vantor
