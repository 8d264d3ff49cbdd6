#include "tests/XMLBuilder/OldStandard.h"

#include "XMLBuilder.h"
#include "tests/XMLBuilder/Support.h"

namespace Vantor::XMLBuilder {
namespace {

TEST(OldStandard, ACallerInCpp14OwnsItsDocument) {
  TestDictionary dictionary;
  TestPartition partition(dictionary.set("Preface"));
  const auto preface = partition.add("Preface", 1);
  partition.addDarkSet({1});
  EXPECT_EQ(OldStandard::countChildren(&*partition, &*preface), 2u);
  EXPECT_EQ(OldStandard::countChildren(&*partition, nullptr), 0u);
}

TEST(OldStandard, ACallerInCpp14GetsTheSameText) {
  TestDictionary dictionary;
  TestPartition partition(dictionary.set("Preface"));
  partition.add("Preface", 1);
  wstring text;
  partition2XML(&*partition, true, false, XMLUtils::EncodingType::kUTF16, text);
  EXPECT_EQ(OldStandard::textSize(&*partition), text.size());
}

}  // namespace
}  // namespace Vantor::XMLBuilder
