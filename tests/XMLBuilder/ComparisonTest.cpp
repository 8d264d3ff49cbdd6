#include <random>

#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/ElementFactory.h"
#include "Core/Metadata/StructuralMetadataKeys.h"
#include "tests/Sanitized.h"
#include "tests/XMLBuilder/NaiveExporter.h"
#include "tests/XMLBuilder/Support.h"

namespace Vantor::XMLBuilder {
namespace {

using MetaMetadata::arrayOf;
using MetaMetadata::batchOf;
using Types::Identifiers::kStrongReference;
using Types::Identifiers::kUInt32;
using Types::Identifiers::kUUID;
using Types::Identifiers::kWeakReference;

const std::vector<const char*> kReferences = {"Strong", "Other", "Weak", "Strongs", "Batch", "Weaks", "Unplaced"};
const std::vector<const char*> kSets = {"Preface", "A", "B", "C", "Shared", "Taken", "Borrowed", "Scheme", "Framework"};

/// Names that clash: one prefix for two namespaces, two prefixes for one, the prefix and the very name of the container
/// of floating sets.
SharedPtr<const MetaMetadata::Dictionary> entangledDictionary() {
  TestDictionary dictionary;
  dictionary.property("Strong", kStrongReference).property("Other", kStrongReference, {u"q", u"urn:p"});
  dictionary.property("Weak", kWeakReference, {u"types", u"urn:T"}).property("Strongs", arrayOf(kStrongReference));
  dictionary.property("Batch", batchOf(kStrongReference), {u"p", u"urn:other"});
  dictionary.property("Weaks", arrayOf(kWeakReference)).property("Unplaced", kStrongReference);
  dictionary.property("Number", kUInt32).property("Numbers", batchOf(kUInt32), {u"s377m", u"urn:zzz"});
  dictionary.property("Generation", kUUID, {u"rp210", u"urn:SMPTE:RP210", u"GenerationUID"});
  const std::vector<Listed> listed = {{"Generation", u"3"}, {"Number", u"20"}, {"Strong", u"5"},   {"Other", u"4"},
                                      {"Weak", u"12"},      {"Strongs", 0u},   {"Batch", u"1000"}, {"Weaks", 1u},
                                      {"Unplaced", u""},    {"Numbers", 1u}};
  for (const char* symbol : {"Preface", "A", "B"}) dictionary.set(symbol, listed);
  dictionary.set("C", listed, {u"q", u"urn:q"}).set("Shared", listed, {u"x", u"urn:p"});
  dictionary.set("Taken", listed, {u"groups", u"urn:SMPTE:Groups:MXF", u"FloatingDarkMetadata"});
  dictionary.set("Borrowed", listed, {u"groups", u"urn:A"});
  dictionary.descriptive("Scheme", listed).descriptive("Framework", listed);
  return dictionary.build();
}

/// Makes small partitions full of cycles, shared and doubled targets, and dark and unknown content.
class RandomPartition {
 public:
  RandomPartition(uint32 seed, const SharedPtr<const MetaMetadata::Dictionary>& dictionary)
      : random_(seed), partition_(dictionary), highest_(1 + below(20)) {
    for (uint32 tag = 0x8000; tag < 0x8004; tag += 2) partition_.addPrimerEntry(static_cast<uint16>(tag), kDarkSetKey);
    for (uint32 i = 0; i < highest_; ++i) addOne();
  }

  PartitionMetadata& operator*() const { return *partition_; }
  /// The Preface, most of the time, or any set.
  const MetadataSet* start() {
    const auto& prefaces = partition_->find(Structural::StructuralMetadataKeys::preface());
    if (!prefaces.empty() && below(4) != 0) return prefaces.front();
    const auto& sets = partition_->sets();
    return sets.empty() ? nullptr : sets[below(static_cast<uint32>(sets.size()))];
  }

 private:
  uint32 below(uint32 limit) { return static_cast<uint32>(random_() % limit); }
  bool oneIn(uint32 chances) { return below(chances) == 0; }
  /// One of a few numbers, so that two sets have some of them and no set others.
  uint32 anyNumber() { return below(highest_ + highest_ / 3 + 1); }
  const char* anyOf(const std::vector<const char*>& names) { return names[below(static_cast<uint32>(names.size()))]; }

  void addOne() {
    if (oneIn(12)) return partition_.addDarkSet(Bytes(below(3), 0xab), static_cast<uint8>(1 + below(9)));
    if (oneIn(8)) return static_cast<void>(partition_.addDarkGroup(anyNumber(), oneIn(2) ? 4 : 9));
    fill(partition_.add(oneIn(8) ? "Taken" : anyOf(kSets), anyNumber()));
  }

  void fill(TestSet set) {
    for (uint32 i = below(4); i > 0; --i) set.refer(anyOf(kReferences), anyNumber());
    if (oneIn(2)) set.value("Number", Types::UInt32(below(1000)));
    if (oneIn(4)) set.present("Number");
    if (oneIn(4)) set.value("Generation", uid(anyNumber()));
    for (uint32 i = below(3); i > 0 && oneIn(2); --i) set.item("Numbers", Types::UInt32(i));
    if (oneIn(5)) set.emptied(oneIn(2) ? "Numbers" : "Strongs");
    for (uint32 i = below(3); i > 0; --i) addInvalid(set);
  }

  void addInvalid(TestSet& set) {
    const Types::Unknown bytes(Bytes(below(3), 0x5f));
    switch (below(6)) {
      case 0:
        return static_cast<void>(set.unknown(static_cast<uint16>(below(4))));
      case 1:
        return static_cast<void>(set.unknown(static_cast<uint16>(0x8000 + below(4)), bytes));
      case 2:
        return setDecodedValue(set.misplaced("Number"), Types::UInt32(below(9)).clone());
      case 3:
        return dynamic_cast<CollectionElement&>(set.misplaced("Numbers")).append(Types::UInt32(below(9)).clone());
      case 4:
        return dynamic_cast<CollectionElement&>(set.misplaced("Strongs"))
            .append(Types::StrongReference(uid(anyNumber())).clone());
      default:
        return setDecodedValue(set.misplaced("Strong"), Types::StrongReference(uid(anyNumber())).clone());
    }
  }

  std::mt19937 random_;
  TestPartition partition_;
  uint32 highest_;
};

/// Whether any of the texts holds a part, which shows that the partitions are worth comparing.
class Seen {
 public:
  void note(const std::string& text) { texts_ += text; }
  void expect(const char* part) const { EXPECT_NE(texts_.find(xml(part)), std::string::npos) << part; }

 private:
  std::string texts_;
};

TEST(Comparison, RandomPartitionsAreExportedAsThePlainWayExportsThem) {
  const auto dictionary = entangledDictionary();
  Seen seen;
  for (uint32 seed = 0; seed < (isSanitized() ? 120 : 400); ++seed) {
    RandomPartition partition(seed, dictionary);
    const MetadataSet* start = partition.start();
    if (start == nullptr) continue;
    for (const auto& flags : kAllFlags) {
      const auto expected =
          NaiveExporter(*partition, flags.nestStrongReferences, flags.excludeNonStructural).write(*start);
      const std::string text = exported(*partition, start, flags);
      const std::string expectedText = textOf(*expected->getDocumentElement());
      if (seed < 100) seen.note(text);
      if (text == expectedText) continue;
      FAIL() << "seed " << seed << (flags.nestStrongReferences ? ", nested" : ", flat")
             << (flags.excludeNonStructural ? ", structural sets only" : "") << "\nexported:\n"
             << inLines(text) << "\nthe plain way:\n"
             << inLines(expectedText);
    }
  }
  for (const char* part :
       {"<MULTIPLE_METADATASETS_REF", "<s377m:Dangling_REF", "<groups:DarkMetadata", "groups:UniversalLabel=",
        "groups:StaticLocalTag=", "</groups:FloatingDarkMetadata><p:", "<groups:FloatingDarkMetadata rp210:InstanceUID",
        "<p:Strong/>", "<p:Strongs/>", "<s377m:Numbers xmlns:s377m=\"urn:zzz\"/>", "rp210:GenerationUID"}) {
    seen.expect(part);
  }
}

}  // namespace
}  // namespace Vantor::XMLBuilder
