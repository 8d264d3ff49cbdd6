#include "XMLBuilder/NamespaceMap.h"

#include <gtest/gtest.h>

#include "Core/Platform/Strings.h"

namespace Vantor::XMLBuilder {
namespace {

/// The entries in their order, "prefix=URI" each.
std::vector<std::string> entriesOf(const NamespaceMap& map) {
  std::vector<std::string> entries;
  for (const auto& [uri, prefix] : map) {
    entries.push_back(Utils::wstringToString(prefix) + "=" + Utils::wstringToString(uri));
  }
  return entries;
}

using Entries = std::vector<std::string>;

TEST(NamespaceMap, StartsWithTheNamespaceOfTheRoot) {
  EXPECT_EQ(entriesOf(NamespaceMap()), (Entries{"s377m=urn:SMPTE:S377M"}));
}

TEST(NamespaceMap, KeepsTheFirstPrefixOfAURI) {
  NamespaceMap map;
  map.insert(u"urn:p", u"first");
  map.insert(u"urn:p", u"second");
  map.insert(u"urn:SMPTE:S377M", u"other");
  EXPECT_EQ(entriesOf(map), (Entries{"s377m=urn:SMPTE:S377M", "first=urn:p"}));
}

TEST(NamespaceMap, TakesOnePrefixForSeveralURIs) {
  NamespaceMap map;
  map.insert(u"urn:b", u"p");
  map.insert(u"urn:a", u"p");
  EXPECT_EQ(entriesOf(map), (Entries{"s377m=urn:SMPTE:S377M", "p=urn:a", "p=urn:b"}));
}

TEST(NamespaceMap, OrdersURIsByTheirCodeUnits) {
  NamespaceMap map;
  map.insert(u"\uFFFD", u"last");
  map.insert(u"\U0001F600", u"fourth");  // its first code unit is 0xD83D
  map.insert(u"a", u"third");
  map.insert(u"B", u"first");
  map.insert(u"", u"none");
  EXPECT_EQ(entriesOf(map), (Entries{"none=", "first=B", "third=a", "s377m=urn:SMPTE:S377M", "fourth=\xf0\x9f\x98\x80",
                                     "last=\xef\xbf\xbd"}));
}

TEST(NamespaceMap, EntersNothingWhereThePrefixIsTaken) {
  NamespaceMap map;
  map.insert(u"urn:x", u"types");
  map.insertIfUnbound(u"urn:SMPTE:Types:MXF", u"types");
  map.insertIfUnbound(u"urn:y", u"free");
  EXPECT_EQ(entriesOf(map), (Entries{"s377m=urn:SMPTE:S377M", "types=urn:x", "free=urn:y"}));
}

TEST(NamespaceMap, KeepsTheURIsPrefixWhereAnotherIsStillFree) {
  NamespaceMap map;
  map.insert(u"urn:SMPTE:Types:MXF", u"t");
  map.insertIfUnbound(u"urn:SMPTE:Types:MXF", u"types");
  EXPECT_EQ(map.uriOf(u"t"), u"urn:SMPTE:Types:MXF");
  EXPECT_EQ(map.uriOf(u"types"), u"");
}

TEST(NamespaceMap, FindsTheLowestURIOfAPrefix) {
  NamespaceMap map;
  map.insert(u"urn:b", u"p");
  map.insert(u"urn:a", u"p");
  map.insert(u"urn:c", u"p");
  EXPECT_EQ(map.uriOf(u"p"), u"urn:a");
}

TEST(NamespaceMap, GivesAnEmptyTextForAPrefixThatNothingHas) {
  NamespaceMap map;
  EXPECT_EQ(map.uriOf(u"p"), u"");
  EXPECT_EQ(map.uriOf(u"S377M"), u"");
  EXPECT_EQ(map.uriOf(u""), u"");
}

}  // namespace
}  // namespace Vantor::XMLBuilder
