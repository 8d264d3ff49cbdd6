#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>

#include "Core/Platform/Path.h"
#include "tests/Core/Dictionary/DictionaryTexts.h"
#include "tests/Core/Platform/ThisSystem.h"

/// Files that are no text, and texts of extreme size: they take seconds at most, and no more stack than others.
namespace Vantor {
namespace {

std::string refusalOfText(const std::string& text) {
  Definitions definitions;
  return refusalOf([&] {
    definitions.readText(text, "bad.dictionary");
    definitions.makeDictionary();
  });
}

TEST(UnusualDictionary, AreToldByTheirBeginningWhereAWordHasNoEnd) {
  const std::string xs(99, 'x');
  const std::string words =
      "begins no row; a row that is not indented begins with a set's key, or with extend, enum, "
      "label, names or namespace";
  EXPECT_EQ(refusalOfText(dictionaryText(xs + "\xc3\xa9" + std::string(1000000, 'y'))),
            "bad.dictionary:2: '" + xs + "...' " + words);
  EXPECT_EQ(refusalOfText(dictionaryText(xs + "y")), "bad.dictionary:2: '" + xs + "y' " + words);
}

constexpr const char* kNoText = ": this is no text in UTF-8; save the file in that encoding";

TEST(UnusualDictionary, OfOtherEncodingsAreNoText) {
  const std::string utf16(
      "\xff\xfe"
      "d\0i\0c\0t\0",
      10);
  EXPECT_EQ(refusalOfText(utf16), std::string("bad.dictionary:1") + kNoText);
  const std::string withoutMark("d\0i\0c\0t\0i\0", 10);
  EXPECT_EQ(refusalOfText(withoutMark), std::string("bad.dictionary:1") + kNoText);
  EXPECT_EQ(refusalOfText(dictionaryText("# caf\xc3\xa9\n# caf\xe9\n")), std::string("bad.dictionary:3") + kNoText);
}

TEST(UnusualDictionary, OfBytesAreNoText) {
  std::string bytes = dictionaryText("\n");
  for (int octet = 0; octet < 256; ++octet) bytes += static_cast<char>(octet);
  EXPECT_EQ(refusalOfText(bytes), std::string("bad.dictionary:3") + kNoText);
}

/// A name in the folder for temporary files; what is there goes with the object.
class Scratch {
 public:
  Scratch()
      : path_(std::filesystem::temp_directory_path() /
              ("vantor-" + std::to_string(std::random_device()()) + ".dictionary")) {}
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  const Path& path() const { return path_; }

 private:
  Path path_;
};

std::string unreadable(const Path& path) {
  Definitions definitions;
  try {
    definitions.readFile(path);
  } catch (const Exceptions::IOError& error) {
    return error.what();
  }
  return "nothing";
}

TEST(UnusualDictionary, ThatAreMissingOrFoldersCannotBeRead) {
  const Scratch missing;
  EXPECT_EQ(unreadable(missing.path()),
            "cannot open '" + Platform::pathToUTF8(missing.path()) + "': No such file or directory");
  const Scratch folder;
  std::filesystem::create_directory(folder.path());
  EXPECT_EQ(unreadable(folder.path()), "cannot read '" + Platform::pathToUTF8(folder.path()) + "': Is a directory");
}

TEST(UnusualDictionary, OfMoreOctetsThanAnyDictionaryAreNotReadIntoMemory) {
  const Scratch large;
  std::ofstream(large.path(), std::ios::binary) << dictionaryText("");
  ASSERT_TRUE(ThisSystem::growTo(large.path(), uint64{1} << 40));
  Definitions definitions;
  EXPECT_EQ(refusalOf([&] { definitions.readFile(large.path()); }),
            Platform::pathToUTF8(large.path()) +
                ": a dictionary file has 67108864 octets at most; this is another file, or one to be split");
}

constexpr uint32 kMany = 100000;

/// Calls `row` with 1, 2 and so on.
template <class Row>
std::string manyRows(uint32 count, Row&& row) {
  std::string rows;
  for (uint32 number = 1; number <= count; ++number) rows += row(number);
  return dictionaryText(rows);
}

std::string nameOf(const char* start, uint32 number) { return start + std::to_string(number); }

/// The message about a text, within a limit of time.
std::string refusedSoon(const std::string& text) {
  const auto start = std::chrono::steady_clock::now();
  const std::string refusal = refusalOfText(text);
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  EXPECT_LT(took.count(), 30) << "which is for the slowest of builds";
  ::testing::Test::RecordProperty("seconds", std::to_string(took.count()));
  return refusal;
}

TEST(UnusualDictionary, OfManySetsIsMade) {
  EXPECT_EQ(refusedSoon(manyRows(kMany,
                                 [](uint32 number) {
                                   return setKey(number) + " " + nameOf("S", number) + " " +
                                          (number == 1 ? "-" : "S1") + "\n  - " + propertyKey(number) + " " +
                                          nameOf("P", number) + " UInt8 optional\n";
                                 })),
            "nothing");
}

TEST(UnusualDictionary, OfOneSetWithManyPropertiesIsMade) {
  EXPECT_EQ(refusedSoon(manyRows(kMany,
                                 [](uint32 number) {
                                   return (number == 1 ? setKey(1) + " Shot -\n" : "") + "  - " + propertyKey(number) +
                                          " " + nameOf("P", number) + " ArrayOf(StrongReference(Shot)) optional\n";
                                 })),
            "nothing");
}

TEST(UnusualDictionary, OfSetsThatMultiplyTheirPropertiesIsRefused) {
  const std::string properties = manyRows(1000, [](uint32 number) {
    return (number == 1 ? setKey(1) + " S1 -\n" : "") + "  - " + propertyKey(number) + " " + nameOf("P", number) +
           " UInt8 optional\n";
  });
  std::string rows = properties;
  for (uint32 number = 2; number <= kMany; ++number) rows += setKey(number) + nameOf(" S", number) + " S1\n";
  EXPECT_EQ(refusedSoon(rows),
            "bad.dictionary:2002: up to here the sets have more than 1000000 properties, inherited ones counted in "
            "each set; define fewer");
}

TEST(UnusualDictionary, OfALongLineOfAncestorsIsRefusedFromEitherEnd) {
  const auto downwards = [](uint32 number) {
    return setKey(number) + nameOf(" S", number) + (number == 1 ? " -\n" : nameOf(" S", number - 1) + "\n");
  };
  EXPECT_EQ(refusedSoon(manyRows(kMany, downwards)),
            "bad.dictionary:103: S102 has more than 100 ancestors; let it inherit from a set that has fewer");
  EXPECT_EQ(refusedSoon(manyRows(101, downwards)), "nothing");
  const auto upwards = [](uint32 number) {
    return setKey(number) + nameOf(" S", number) + (number == kMany ? " -\n" : nameOf(" S", number + 1) + "\n");
  };
  EXPECT_EQ(refusedSoon(manyRows(kMany, upwards)),
            "bad.dictionary:2: S1 has more than 100 ancestors; let it inherit from a set that has fewer");
}

TEST(UnusualDictionary, OfALongCircleOfAncestorsIsRefused) {
  EXPECT_EQ(refusedSoon(manyRows(kMany,
                                 [](uint32 number) {
                                   return setKey(number) + nameOf(" S", number) + nameOf(" S", number % kMany + 1) +
                                          "\n";
                                 })),
            "bad.dictionary:100001: S100000 inherits from itself, by way of S1; let one of them inherit from another "
            "set");
}

TEST(UnusualDictionary, OfManyNamespacesIsRefused) {
  const auto own = [](uint32 number) {
    return "namespace sets " + nameOf("n", number) + nameOf(" urn:", number) + "\n";
  };
  EXPECT_EQ(refusedSoon(manyRows(kMany, own)),
            "bad.dictionary:1002: there are 1000 namespaces already; take one of them");
  EXPECT_EQ(refusedSoon(manyRows(1000, own)), "nothing");
  const auto taken = [&](uint32 number) { return own(number % 1000); };
  EXPECT_EQ(refusedSoon(manyRows(kMany, taken)), "nothing");
}

TEST(UnusualDictionary, OfManyValuesAndLabelsIsMade) {
  const auto value = [](uint32 number) {
    return (number == 1 ? "enum Grade UInt32\n  " : "  ") + std::to_string(number) + nameOf(" V", number) + "\n";
  };
  EXPECT_EQ(refusedSoon(manyRows(kMany, value)), "nothing");
  const auto label = [](uint32 number) {
    return "label " + numberedKey("060e2b34.04010101.0f0e0d0c.", number) + nameOf(" L", number) + " name\n";
  };
  EXPECT_EQ(refusedSoon(manyRows(kMany, label)), "nothing");
}

TEST(UnusualDictionary, OfOneEndlessRowIsRefused) {
  std::string words;
  for (uint32 i = 0; i < 1000000; ++i) words += "- ";
  EXPECT_EQ(refusedSoon(dictionaryText("enum " + words)),
            "bad.dictionary:2: there are too many words; an enumeration is: enum, name, integer type");
  EXPECT_EQ(refusedSoon(dictionaryText(setKey(1) + " S -\n - " + propertyKey(1) + " P " + std::string(1000000, '(') +
                                       " optional\n")),
            "bad.dictionary:3: '" + std::string(100, '(') +
                "...' is no type; write a type's name, StrongReference(Set), WeakReference(Set), ArrayOf(...) or "
                "BatchOf(...)");
}

}  // namespace
}  // namespace Vantor
