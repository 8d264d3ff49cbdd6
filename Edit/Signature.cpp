#include "Edit/Signature.h"

#include <fmt/chrono.h>

#include <chrono>

#include "Core/Platform/Raise.h"
#include "Core/Types/AUID.h"
#include "Core/Types/Factories.h"
#include "Edit/EditedSets.h"

namespace Vantor::Edit {

namespace {

using Types::Timestamp;
using Types::UUID;

Timestamp now() {
  const auto time = std::chrono::system_clock::now();
  const auto milliSeconds =
      std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count() % 1000;
  const std::tm utc = fmt::gmtime(std::chrono::system_clock::to_time_t(time));
  return {static_cast<uint16>(utc.tm_year + 1900), static_cast<uint8>(utc.tm_mon + 1), static_cast<uint8>(utc.tm_mday),
          static_cast<uint8>(utc.tm_hour),         static_cast<uint8>(utc.tm_min),     static_cast<uint8>(utc.tm_sec),
          static_cast<uint16>(milliSeconds)};
}

MetadataSet& addIdentification(PartitionMetadata& metadata, MetadataSet& preface, const Signature& signature) {
  auto& identification = metadata.createMetadataSet("Identification");
  identification.set("ApplicationSupplierName", signature.company);
  identification.set("ApplicationName", signature.product);
  identification.set("ApplicationVersion", signature.version);
  identification.set("ApplicationVersionString", signature.versionText);
  identification.set("ApplicationProductID", Types::AUID(signature.productUID.rawBuffer()));
  identification.set("GenerationID", Types::AUID(Types::Factories::UID::generateUUID().rawBuffer()));
  preface.append("IdentificationList", identification);
  return identification;
}

void giveGeneration(MetadataSet& set, const UUID& generation) {
  const bool hasGeneration =
      set.definition() != nullptr && set.definition()->findAttribute("LinkedGenerationID") != nullptr;
  if (hasGeneration) set.set("LinkedGenerationID", generation);
}

}  // namespace

UUID sign(const PartitionMetadata& before, PartitionMetadata& after, const Signature& signature,
          const std::optional<UUID>& earlier) {
  auto* preface = after.preface();
  if (preface == nullptr) {
    Exceptions::raise<Exceptions::InvalidFormat>("the header metadata has no Preface to list an Identification");
  }
  const auto& found = earlier ? after.findByInstanceUID(*earlier) : PartitionMetadata::Sets();
  auto& identification = found.empty() ? addIdentification(after, *preface, signature) : *found.front();
  const UUID generation(identification.get<Types::AUID>("GenerationID").rawBuffer());
  const auto time = signature.time.value_or(now());
  identification.set("FileModificationDate", time);
  preface->set("FileLastModified", time);
  for (const auto& edited : editedSets(before, after)) giveGeneration(*edited.after, generation);
  for (MetadataSet* set : after.sets()) {
    const auto* instanceUID = set->instanceUID();
    const bool isNew = instanceUID != nullptr && before.findByInstanceUID(*instanceUID).empty();
    if (isNew && set != &identification) giveGeneration(*set, generation);
  }
  return *identification.instanceUID();
}

}  // namespace Vantor::Edit
