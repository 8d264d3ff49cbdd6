#include <atomic>
#include <functional>
#include <set>
#include <thread>
#include <vector>

#include "Core/Platform/Exceptions.h"
#include "XMLBuilder.h"
#include "XMLUtils/UnicodeString.h"
#include "tests/XMLBuilder/ImportSupport.h"
#include "tests/XMLBuilder/Support.h"

VANTOR_AUTO_PTR_BEGIN

namespace Vantor::XMLBuilder {
namespace {

using Types::Identifiers::kStrongReference;

constexpr int kRounds = 20;

/// A partition with everything that goes through a writer of its own.
TestPartition partitionOf(uint32 sets) {
  TestDictionary dictionary;
  dictionary.property("Next", kStrongReference).property("Ratio", Types::Identifiers::kRational);
  dictionary.property("Weak", Types::Identifiers::kWeakReference);
  TestPartition partition(dictionary.set("Preface", {"Next", "Ratio", "Weak"}).set("Link", {"Next", "Ratio", "Weak"}));
  for (uint32 number = 1; number <= sets; ++number) {
    auto set = partition.add(number == 1 ? "Preface" : "Link", number);
    set.refer("Next", number + 1)
        .refer("Weak", number / 2)
        .value("Ratio", Types::Rational(1, static_cast<int32>(number)));
    set.unknown(static_cast<uint16>(number), Types::Unknown(Bytes(number, 0xab)));
  }
  partition.addDarkGroup(sets + 1);
  partition.addDarkSet(Bytes(100, 0x17));
  return partition;
}

/// Runs functions at the same time.
void runTogether(const std::vector<std::function<void()>>& functions) {
  std::atomic<std::size_t> waiting{functions.size()};
  std::vector<std::thread> threads;
  for (const auto& function : functions) {
    threads.emplace_back([&waiting, &function] {
      for (--waiting; waiting != 0;) std::this_thread::yield();
      function();
    });
  }
  for (auto& thread : threads) thread.join();
}

std::vector<std::string> exportedRepeatedly(const TestPartition& partition) {
  std::vector<std::string> texts;
  for (int round = 0; round < kRounds; ++round) texts.push_back(exported(partition, kAllFlags[round % 4]));
  return texts;
}

/// Partitions that a document was imported to, through each of the functions in turn.
std::vector<TestPartition> importedRepeatedly(const std::string& text,
                                              const SharedPtr<const MetaMetadata::Dictionary>& dictionary) {
  std::vector<TestPartition> partitions;
  for (int round = 0; round < kRounds; ++round) {
    partitions.emplace_back(dictionary);
    XML2Partition::importRaw(text, *partitions.back(), XML2Partition::kEntries[round % 3]);
  }
  return partitions;
}

/// Each holds what an import makes of the document when it is alone, under identifiers that no other one has.
void expectEach(const std::vector<TestPartition>& partitions, const std::string& text) {
  ASSERT_EQ(partitions.size(), static_cast<std::size_t>(kRounds));
  const TestPartition alone(partitions.front()->partitionDictionary().dictionary());
  XML2Partition::importRaw(text, *alone);
  std::set<wstring> identifiers = {alone->sets().front()->instanceUID()->toString()};
  for (const auto& partition : partitions) {
    EXPECT_TRUE(identifiers.insert(partition->sets().front()->instanceUID()->toString()).second);
    EXPECT_EQ(partition->entries().size(), alone->entries().size());
    EXPECT_XML(XML2Partition::renumbered(exported(partition)), XML2Partition::renumbered(exported(alone)));
  }
}

TEST(Threads, ExportTwoPartitionsAtOnceAsOneAfterTheOther) {
  const auto one = partitionOf(20);
  const auto other = partitionOf(30);
  std::vector<std::string> ofOne;
  std::vector<std::string> ofOther;
  runTogether({[&] { ofOne = exportedRepeatedly(one); }, [&] { ofOther = exportedRepeatedly(other); }});
  EXPECT_EQ(ofOne, exportedRepeatedly(one));
  EXPECT_EQ(ofOther, exportedRepeatedly(other));
}

TEST(Threads, ExportOnePartitionAtOnceAsOneAfterTheOther) {
  const auto partition = partitionOf(20);
  std::vector<std::vector<std::string>> texts(3);
  runTogether({[&] { texts[0] = exportedRepeatedly(partition); }, [&] { texts[1] = exportedRepeatedly(partition); },
               [&] { texts[2] = exportedRepeatedly(partition); }});
  const auto expected = exportedRepeatedly(partition);
  for (const auto& text : texts) EXPECT_EQ(text, expected);
}

TEST(Threads, GetDocumentsOfTheirOwn) {
  const auto partition = partitionOf(20);
  std::vector<std::string> texts(2);
  const auto write = [&partition](std::string& text) {
    for (int round = 0; round < kRounds; ++round) {
      const std::auto_ptr<xercesc::DOMNode> document = partition2XML(&*partition, true, false);
      text = textOf(*static_cast<xercesc::DOMDocument&>(*document).getDocumentElement());
    }
  };
  runTogether({[&] { write(texts[0]); }, [&] { write(texts[1]); }});
  EXPECT_EQ(texts[0], exported(partition));
  EXPECT_EQ(texts[1], exported(partition));
}

TEST(Threads, AreNotHeldUpByAnExportThatFails) {
  const auto tooDeep = partitionOf(1100);
  const auto fine = partitionOf(5);
  std::vector<std::string> texts;
  int thrown = 0;
  runTogether({[&] { texts = exportedRepeatedly(fine); },
               [&] {
                 for (int round = 0; round < 3; ++round) {
                   try {
                     exported(tooDeep);
                   } catch (const Exceptions::NestingTooDeep&) {
                     ++thrown;
                   }
                 }
               }});
  EXPECT_EQ(thrown, 3);
  EXPECT_EQ(texts, exportedRepeatedly(fine));
}

TEST(Threads, ImportToPartitionsOfOneDictionaryAtOnceAsOneAfterTheOther) {
  const auto original = partitionOf(20);
  const auto dictionary = original->partitionDictionary().dictionary();
  const std::string nested = exported(original, kNested);
  const std::string flat = exported(original, kFlat);
  std::vector<TestPartition> ofNested;
  std::vector<TestPartition> ofFlat;
  runTogether({[&] { ofNested = importedRepeatedly(nested, dictionary); },
               [&] { ofFlat = importedRepeatedly(flat, dictionary); }});
  expectEach(ofNested, nested);
  expectEach(ofFlat, flat);
}

TEST(Threads, ImportAndExportAtOnceWithOneDictionary) {
  const auto original = partitionOf(20);
  const auto dictionary = original->partitionDictionary().dictionary();
  const std::string text = exported(original);
  std::vector<TestPartition> partitions;
  std::vector<std::string> texts;
  runTogether(
      {[&] { partitions = importedRepeatedly(text, dictionary); }, [&] { texts = exportedRepeatedly(original); }});
  expectEach(partitions, text);
  EXPECT_EQ(texts, exportedRepeatedly(original));
}

TEST(Threads, AreNotDisturbedByAnImportThatFails) {
  const auto original = partitionOf(20);
  const auto dictionary = original->partitionDictionary().dictionary();
  const std::string text = exported(original);
  std::vector<TestPartition> partitions;
  int refused = 0;
  runTogether({[&] { partitions = importedRepeatedly(text, dictionary); },
               [&] {
                 for (int round = 0; round < kRounds; ++round) {
                   try {
                     importedRepeatedly(text.substr(0, text.size() - 1), dictionary);
                   } catch (const Exceptions::ParseError&) {
                     ++refused;
                   }
                 }
               }});
  EXPECT_EQ(refused, kRounds);
  expectEach(partitions, text);
}

TEST(Threads, ShareThePrefixAndTheNamespaceOfTheRoot) {
  std::vector<const XMLUtils::UnicodeString*> prefixes(2);
  std::vector<const XMLUtils::UnicodeString*> uris(2);
  const auto look = [&](std::size_t i) {
    prefixes[i] = &getPrefix();
    uris[i] = &getNamespaceURI();
    EXPECT_EQ(*prefixes[i], XMLUtils::UnicodeString("s377m"));
  };
  runTogether({[&] { look(0); }, [&] { look(1); }});
  EXPECT_EQ(prefixes[0], prefixes[1]);
  EXPECT_EQ(uris[0], uris[1]);
}

}  // namespace
}  // namespace Vantor::XMLBuilder

VANTOR_AUTO_PTR_END
