#include <xercesc/dom/DOMException.hpp>

#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"
#include "XMLBuilder.h"
#include "tests/Sanitized.h"
#include "tests/XMLBuilder/Support.h"

VANTOR_AUTO_PTR_BEGIN

namespace Vantor::XMLBuilder {
namespace {

using MetaMetadata::arrayOf;
using Types::Identifiers::kStrongReference;

/// The Preface, uid(1), and as many further sets, each of which the one before refers to.
TestPartition chain(uint32 references) {
  TestDictionary dictionary;
  dictionary.property("Next", kStrongReference);
  TestPartition partition(dictionary.set("Preface", {"Next"}).set("Link", {"Next"}));
  for (uint32 number = 1; number <= references + 1; ++number) {
    const auto link = partition.add(number == 1 ? "Preface" : "Link", number);
    if (number <= references) TestSet(link).refer("Next", number + 1);
  }
  return partition;
}

std::size_t count(const std::string& text, const std::string& part) {
  std::size_t found = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++found;
  return found;
}

std::string messageOf(const TestPartition& partition, Flags flags) {
  try {
    exported(partition, flags);
  } catch (const Exceptions::NestingTooDeep& error) {
    return error.message();
  }
  return "nothing was thrown";
}

TEST(Nesting, AChainOf1000StrongReferencesIsWritten) {
  const auto partition = chain(1000);
  for (const auto& flags : kAllFlags) {
    EXPECT_EQ(count(exported(partition, flags), "<p:Link rp210:InstanceUID="), 1000u);
  }
}

TEST(Nesting, AChainOf1001StrongReferencesIsTooDeepAndTheMessageNamesTheSet) {
  const auto partition = chain(1001);
  const std::string deepest = Utils::wstringToString(uid(1002).toString(kDottedForm));
  for (const auto& flags : {kNested, kNestedStructural}) {
    EXPECT_EQ(messageOf(partition, flags), "references nest more than 1000 deep at set Link " + deepest);
  }
}

TEST(Nesting, AChainOf100000SetsIsTooDeepAndNothingMore) {
  EXPECT_THROW(exported(chain(100000), kNested), Exceptions::NestingTooDeep);
}

TEST(Nesting, AChainOfAnyLengthIsWrittenWhereNothingNests) {
  const uint32 kSets = isSanitized() ? 20000 : 100000;
  const std::string text = exported(chain(kSets), kFlat);
  EXPECT_EQ(count(text, "<p:Link rp210:InstanceUID="), kSets);
  EXPECT_LT(text.find(xml("<p:Link rp210:InstanceUID=\"{2}\"")),
            text.find(xml("<p:Link rp210:InstanceUID=\"{" + std::to_string(kSets + 1) + "}\"")));
}

TEST(Nesting, AFloatingChainIsTooDeepAsWellWhereItNests) {
  TestDictionary dictionary;
  dictionary.property("Next", kStrongReference);
  TestPartition partition(dictionary.set("Preface").set("Link", {"Next"}));
  partition.add("Preface", 1);
  for (uint32 number = 2; number <= 1102; ++number) partition.add("Link", number).refer("Next", number + 1);
  EXPECT_THROW(exported(partition, kNested), Exceptions::NestingTooDeep);
  EXPECT_EQ(count(exported(partition, kFlat), "<p:Link rp210:InstanceUID="), 1101u);
}

TEST(Nesting, ACircleIsNotDeep) {
  const auto partition = chain(500);
  TestSet(*partition->sets().back(), *partition->partitionDictionary().dictionary()).refer("Next", 1);
  for (const auto& flags : kAllFlags) {
    EXPECT_EQ(count(exported(partition, flags), "<p:Link rp210:InstanceUID="), 500u);
  }
}

TEST(Nesting, ASetWithManyTargetsIsNotDeep) {
  TestDictionary dictionary;
  dictionary.property("Targets", arrayOf(kStrongReference));
  TestPartition partition(dictionary.set("Preface", {"Targets"}).set("A"));
  auto preface = partition.add("Preface", 1);
  for (uint32 number = 2; number < 3002; ++number) {
    preface.refer("Targets", number);
    partition.add("A", number);
  }
  for (const auto& flags : kAllFlags) {
    EXPECT_EQ(count(exported(partition, flags), "<p:A rp210:InstanceUID="), 3000u);
  }
}

TEST(Failure, LeavesNothingLockedAndTheTextAsItIs) {
  const auto tooDeep = chain(1001);
  const auto fine = chain(1);
  wstring text = u"before";
  for (int round = 0; round < 3; ++round) {
    EXPECT_THROW(partition2XML(&*tooDeep, true, false), Exceptions::NestingTooDeep);
    EXPECT_THROW(partition2XML(&*tooDeep, tooDeep->sets().front(), true, true), Exceptions::NestingTooDeep);
    EXPECT_THROW(partition2XML(&*tooDeep, true, false, XMLUtils::EncodingType::kUTF8, text),
                 Exceptions::NestingTooDeep);
    EXPECT_EQ(text, wstring(u"before"));
    EXPECT_NE(partition2XML(&*fine, true, false).get(), nullptr);
  }
}

TEST(Failure, OfXercesHalfWayThroughReachesTheCallerAndTheNextCallWorks) {
  TestDictionary dictionary;
  dictionary.property("Bad", Types::Identifiers::kUInt8, {u"p", u"urn:p", u"not a name"});
  TestPartition partition(dictionary.set("Preface").set("A", {"Bad"}));
  const auto preface = partition.add("Preface", 1).unknown(0x0001, Types::Unknown(Bytes{1}));
  partition.addDarkSet({1, 2, 3});
  partition.add("A", 2);
  partition.add("A", 3).value("Bad", Types::UInt8(1));
  for (int round = 0; round < 2; ++round) {
    EXPECT_THROW(exported(partition), xercesc::DOMException);
    EXPECT_THROW(exported(partition, preface, kFlat), xercesc::DOMException);
    EXPECT_NE(exported(chain(1)), "");
  }
}

}  // namespace
}  // namespace Vantor::XMLBuilder

VANTOR_AUTO_PTR_END
