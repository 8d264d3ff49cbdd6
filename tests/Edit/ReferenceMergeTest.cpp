#include "Edit/ReferenceMerge.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/Core/Metadata/TestPartition.h"

namespace Vantor::Edit {
namespace {

/// Each letter is a target.
ReferenceTargets targets(const std::string& letters) {
  ReferenceTargets result;
  for (const char letter : letters) result.push_back(uid(static_cast<uint32>(letter)));
  return result;
}

std::string merged(const std::string& original, const std::string& shown, const std::string& edited) {
  const auto result = mergeReferences(targets(original), targets(shown), targets(edited));
  std::string letters;
  for (const auto& target : result) letters += static_cast<char>(target.rawBuffer()[15]);
  return letters;
}

TEST(ReferenceMerge, IsTheEditedRowWhereEverythingIsShown) {
  EXPECT_EQ(merged("abc", "abc", "cxa"), "cxa");
  EXPECT_EQ(merged("", "", "x"), "x");
}

TEST(ReferenceMerge, IsTheOriginalWhereNothingIsEdited) {
  for (const char* shown : {"", "a", "b", "c", "ab", "ac", "bc", "abc"}) EXPECT_EQ(merged("abc", shown, shown), "abc");
}

TEST(ReferenceMerge, PutsWhatIsNotShownBehindWhatItFollows) {
  EXPECT_EQ(merged("aHb", "ab", "axb"), "aHxb");
  EXPECT_EQ(merged("aHb", "ab", "ba"), "baH");
  EXPECT_EQ(merged("HaIJb", "ab", "bxa"), "HbxaIJ");
}

TEST(ReferenceMerge, KeepsWhatIsNotShownWhereItsNeighboursWereTakenOut) {
  EXPECT_EQ(merged("aHb", "ab", "b"), "Hb");
  EXPECT_EQ(merged("abH", "ab", "a"), "aH");
  EXPECT_EQ(merged("aH", "a", ""), "H");
}

TEST(ReferenceMerge, IdentifiesTargetsThatOccurTwiceByTheirNumber) {
  EXPECT_EQ(merged("aHa", "aa", "aa"), "aHa");
  EXPECT_EQ(merged("aa", "a", "a"), "aa");
}

}  // namespace
}  // namespace Vantor::Edit
