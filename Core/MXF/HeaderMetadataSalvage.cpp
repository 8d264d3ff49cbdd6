#include "Core/MXF/HeaderMetadataSalvage.h"

#include <algorithm>
#include <string>
#include <utility>

#include "Core/DataIO/KeptSource.h"
#include "Core/DataIO/OneState.h"
#include "Core/KLV/Keys.h"
#include "Core/MXF/KLVSearch.h"
#include "Core/MXF/MetadataReader.h"

namespace Vantor::MXF {

namespace {

using DataIO::SeekableSource;
using Exceptions::ParseError;
using DamageKind = MetadataDamage::Kind;

constexpr std::size_t kMostPlaces = 1000;

/// Takes what is whole, and notes what is not.
class Salvager final : public MetadataReader {
 public:
  Salvager(DataIO::DataSource& source, const GoTo& goTo, const SharedPtr<const MetaMetadata::Dictionary>& dictionary,
           const Limits& limits)
      : MetadataReader(source, dictionary, limits), goTo_(goTo), search_(source, goTo, *dictionary, limits) {}

  std::vector<MetadataDamage> takeMissing() { return std::move(missing_); }

 protected:
  void goWithoutPrimer(const PartitionInfo& partition) override {
    const bool isZero = key() == KLV::Key();
    const bool isOther = KLV::endsHeaderMetadata(key()) && !isZero;
    if (partition.pack.headerByteCount == 0 || isOther) return MetadataReader::goWithoutPrimer(partition);
    const uint64 next = search_.find(offset(), searchEnd());
    if (!isSetOrPrimerAt(next)) return MetadataReader::goWithoutPrimer(partition);
    const auto found = search_.keyAt(next);
    note(found && KLV::isPrimerPack(*found) ? DamageKind::kNoKLV : DamageKind::kNoPrimerPack, next);
  }

  bool goesOn() override {
    if (isOver_) return false;
    const bool areZeros = key() == KLV::Key() && keySize() == KLV::Key::kSize;
    if (areZeros && countedEnd() && offset() < *countedEnd()) skipZeros();
    return !isOver_ && MetadataReader::goesOn();
  }

  void readKLV() override {
    if (isCareful_) {
      if (!search_.isCredible(offset(), searchEnd())) return skipDamage();
      goTo_(offset() + keySize());
    }
    MetadataReader::readKLV();
  }

  void goPast(const ParseError& error) override {
    auto damage = look();
    const bool isLimit = dynamic_cast<const Exceptions::LimitExceeded*>(&error) != nullptr;
    if (isLimit && damage.kind != DamageKind::kTooLong) throw;
    skipDamage();
  }

 private:
  /// Where the metadata are searched for more of them.
  uint64 searchEnd() const {
    const auto& counted = countedEnd();
    return counted && *counted > offset() ? *counted : ~uint64{0};
  }

  MetadataDamage look() {
    MetadataDamage damage;
    damage.offset = offset();
    damage.kind = kindAt(damage.arguments);
    if (damage.kind == DamageKind::kNoKLV || keySize() < KLV::Key::kSize) return damage;
    damage.key = key();
    damage.set = symbolOf(key());
    return damage;
  }

  /// @param arguments  get those of the kind.
  DamageKind kindAt(std::vector<std::string>& arguments) {
    const bool isOfNothing = !KLV::isSmpteLabel(key()) && symbolOf(key()).empty();
    if (isCareful_ && isOfNothing) return DamageKind::kNoKLV;
    constexpr uint64 kMostHeaderOctets = KLV::Key::kSize + KLV::kMaxBEROctets;
    const auto klv = search_.headerAt(offset());
    if (!klv) return goTo_(offset() + kMostHeaderOctets) ? DamageKind::kLength : DamageKind::kCutOff;
    const uint64 length = klv->length.value, present = search_.presentOctets(*klv);
    if (present < length) arguments.push_back(std::to_string(present));
    arguments.push_back(std::to_string(length));
    if (present < length) return DamageKind::kCutOff;
    if (length > limits().valueSize) return DamageKind::kTooLong;
    if (KLV::isPrimerPack(key())) return DamageKind::kPrimerPack;
    if (KLV::isLocalSet(key())) return DamageKind::kItems;
    arguments.clear();
    return DamageKind::kNoKLV;
  }

  void skipDamage() {
    auto damage = look();
    const uint64 next = nextBehind(damage);
    leaveOut(std::move(damage), next);
  }

  /// Where the next KLV is, by the length of this one, else by a search.
  uint64 nextBehind(const MetadataDamage& damage) {
    // Of a source of unknown size, what is far away would have to be read and kept.
    const bool isFar = damage.kind == DamageKind::kTooLong && source().remaining() == DataIO::kUnknownSize;
    const bool isThere = damage.kind != DamageKind::kCutOff && damage.kind != DamageKind::kLength && !isFar;
    if (const auto klv = search_.headerAt(offset()); klv && isThere) {
      const uint64 end = klv->valueOffset + klv->length.value;
      if (search_.canFollow(end, searchEnd())) return end;
    }
    const uint64 from = offset() + 1, next = search_.find(from, searchEnd());
    isOver_ = next == from + KLVSearch::kMostSearched && next != searchEnd();
    return next;
  }

  void leaveOut(MetadataDamage damage, uint64 next) {
    damage.size = next - damage.offset;
    goTo_(next);
    readKey();
    if (damage.kind == DamageKind::kCutOff && keySize() != 0) {
      // The file goes on, so it was the length that was wrong.
      damage.kind = DamageKind::kLength;
      if (!damage.arguments.empty()) damage.arguments.erase(damage.arguments.begin());
    }
    missing_.push_back(std::move(damage));
    isCareful_ = true;
    isOver_ = (isOver_ || missing_.size() == kMostPlaces) && keySize() != 0;
    if (isOver_) missing_.push_back({DamageKind::kSearchEnded, next, 0, {}, {}, {}});
  }

  void note(DamageKind kind, uint64 next) {
    MetadataDamage damage;
    damage.kind = kind;
    damage.offset = offset();
    leaveOut(std::move(damage), next);
  }

  bool isSetOrPrimerAt(uint64 place) {
    const auto key = search_.keyAt(place);
    return key && (KLV::canBeSet(*key) || KLV::isPrimerPack(*key));
  }

  /// Zeros may be padding up to the end of the metadata.
  void skipZeros() {
    const uint64 end = searchEnd();
    uint64 next = search_.find(offset() + KLV::Key::kSize, end);
    for (auto found = search_.keyAt(next); next < end && found && KLV::isFill(*found); found = search_.keyAt(next)) {
      next = search_.find(next + 1, end);
    }
    if (next < end && isSetOrPrimerAt(next)) note(DamageKind::kNoKLV, next);
  }

  const GoTo& goTo_;
  KLVSearch search_;
  std::vector<MetadataDamage> missing_;
  bool isCareful_ = false;  // behind the first damage
  bool isOver_ = false;
};

SalvagedMetadata salvage(DataIO::DataSource& source, const GoTo& goTo,
                         SharedPtr<const MetaMetadata::Dictionary> dictionary, const PartitionInfo& partition,
                         const Limits& limits, uint64& end) {
  Salvager salvager(source, goTo, std::move(dictionary), limits);
  SalvagedMetadata salvaged;
  salvaged.metadata = salvager.read(partition);
  salvaged.missing = salvager.takeMissing();
  end = salvager.end();
  return salvaged;
}

}  // namespace

SalvagedMetadata salvageHeaderMetadata(SeekableSource& source, SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                       const PartitionInfo& partition, const Limits& limits) {
  return withinMemory(limits, [&] {
    const GoTo goTo = [&source](uint64 offset) {
      source.seek(std::min(offset, source.size()));
      return offset <= source.size();
    };
    source.seek(partition.packEnd);
    uint64 end = 0;
    auto salvaged = salvage(source, goTo, std::move(dictionary), partition, limits, end);
    source.seek(end);
    return salvaged;
  });
}

SalvagedMetadata salvageHeaderMetadata(SeekableSource& source, SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                       const PartitionChoice& choice, const Limits& limits) {
  return salvageHeaderMetadata(source, std::move(dictionary), findPartition(source, choice), limits);
}

SalvagedMetadata salvageHeaderMetadata(DataIO::DataSource& source, SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                       const Limits& limits) {
  return withinMemory(limits, [&] {
    const PartitionInfo header = readHeaderPartition(source);
    DataIO::KeptSource kept(source);
    const GoTo goTo = [&kept](uint64 offset) { return kept.goTo(offset); };
    uint64 end = 0;
    return salvage(kept, goTo, std::move(dictionary), header, limits, end);
  });
}

SalvagedMetadata salvageHeaderMetadata(const Path& path, SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                       const PartitionChoice& choice, const Limits& limits) {
  return DataIO::File::readInOneState(
      path, [&](SeekableSource& source) { return salvageHeaderMetadata(source, dictionary, choice, limits); });
}

}  // namespace Vantor::MXF
