#include <gmock/gmock.h>

#include "Edit.h"

/// Edits of sets that no dictionary names, whose elements say how many octets their length fields have.
namespace Vantor::Tool {
namespace {

constexpr const char* kSample = "bmx-op1a-adm.header.mxf";  // ten dark groups with 4 octets each
const std::string kCount = "groups:BEROctetCount=\"4\"";
const std::string kContainer = "<groups:FloatingDarkMetadata>";
const std::string kKeyText = "06.0E.2B.34.02.05.01.01.0E.7F.7F.7F.00.00.02.00";
const std::string kKey("\x06\x0E\x2B\x34\x02\x05\x01\x01\x0E\x7F\x7F\x7F\x00\x00\x02\x00", 16);
/// The last item and octet of the first of the groups.
const std::string kGroup("\xFF\xF5\x00\x04\x61\x78\x6D\x6C", 8);

std::string darkSet(const std::string& attributes, const std::string& octets) {
  return "<groups:DarkMetadata groups:Key=\"" + kKeyText + "\"" + attributes + ">" + octets + "</groups:DarkMetadata>";
}
std::string octets(char count) { return std::string(" groups:BEROctetCount=\"") + count + "\""; }

/// A length of less than 256 in some octets.
std::string length(std::size_t octets, char value) {
  if (octets == 1) return {value};
  return static_cast<char>(0x80 + octets - 1) + std::string(octets - 2, '\0') + value;
}
std::string klv(std::size_t octets, const std::string& value) {
  return kKey + length(octets, static_cast<char>(value.size())) + value;
}

std::size_t occurrences(const std::string& what, const std::string& text) {
  std::size_t count = 0;
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++count;
  return count;
}

class EditedDarkSets : public testing::Test {
 protected:
  EditedDarkSets() : edit_(makeFile(), {}) {}

  std::string makeFile() {
    writeFile(folder_.path("whole.mxf"), wholeFile(kSample));
    return folder_.path("whole.mxf");
  }
  /// Makes some dark sets those of the original, too.
  void begin(const std::string& darkSets) const {
    edit_.replace(kContainer, kContainer + darkSets);
    ASSERT_EQ(edit_.inPlace().exitCode, 0);
    edit_.exportAgain({});
  }
  void expect(const std::string& summary, const std::string& remarks = "") const {
    const Result result = edit_.intoCopy();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, summary + "\n");
    EXPECT_EQ(edit_.remarks(result), remarks);
  }
  std::string copy() const { return readFile(edit_.copy()); }

  const ScratchFolder folder_;
  const Edit edit_;
};

const std::string kOneChanged = "1 set changed (1 property); written to 1 partition";
const std::string kOneAdded = "1 set added; written to 1 partition";

TEST_F(EditedDarkSets, GetTheLengthFieldThatTheDocumentGivesANewOne) {
  for (const char count : {'1', '3', '9'}) {
    edit_.exportAgain({});
    edit_.replace(kContainer, kContainer + darkSet(octets(count), "010203"));
    expect(kOneAdded);
    EXPECT_EQ(occurrences(klv(static_cast<std::size_t>(count - '0'), "\x01\x02\x03"), copy()), 1u) << count;
  }
}

TEST_F(EditedDarkSets, GetAShortLengthFieldWhereTheDocumentGivesANewOneNone) {
  edit_.replace(kContainer, kContainer + darkSet("", "010203"));
  expect(kOneAdded);
  EXPECT_EQ(occurrences(klv(1, "\x01\x02\x03"), copy()), 1u);
}

TEST_F(EditedDarkSets, GetTheLengthFieldOfTheDocumentWithANewValueOrWithoutOne) {
  begin(darkSet(octets('4'), "010203"));
  edit_.replace(octets('4') + " groups:Key=\"" + kKeyText + "\">010203<",
                octets('9') + " groups:Key=\"" + kKeyText + "\">0405<");
  expect(kOneChanged);
  EXPECT_EQ(occurrences(klv(9, "\x04\x05"), copy()), 1u);
  EXPECT_EQ(occurrences(kKey, copy()), 1u);
  edit_.exportAgain({});
  edit_.replace(octets('4') + " groups:Key=\"" + kKeyText + "\"", octets('9') + " groups:Key=\"" + kKeyText + "\"");
  expect(kOneChanged);
  EXPECT_EQ(occurrences(klv(9, "\x01\x02\x03"), copy()), 1u);
  EXPECT_EQ(occurrences(kKey, copy()), 1u);
}

TEST_F(EditedDarkSets, KeepTheirLengthFieldsWhereTheDocumentSaysNothingOfThem) {
  begin(darkSet(octets('9'), "010203"));
  edit_.replace(octets('9'), "");
  expect("nothing is edited");
  EXPECT_TRUE(copy() == readFile(edit_.original()));
  edit_.replace(">010203<", ">0405<");
  expect(kOneChanged);
  EXPECT_EQ(occurrences(klv(9, "\x04\x05"), copy()), 1u);
}

TEST_F(EditedDarkSets, ChangeTheOneOfTwoWithTheSameValueWhoseLengthFieldWasEdited) {
  begin(darkSet(octets('3'), "0102") + darkSet(octets('5'), "0102"));
  edit_.replace(octets('5'), octets('7'));
  expect(kOneChanged);
  EXPECT_EQ(occurrences(klv(3, "\x01\x02") + klv(7, "\x01\x02"), copy()), 1u);
  edit_.exportAgain({});
  edit_.cut("<groups:DarkMetadata" + octets('3'), "</groups:DarkMetadata>");
  expect("1 set removed; written to 1 partition");
  EXPECT_EQ(occurrences(klv(5, "\x01\x02"), copy()), 1u);
  EXPECT_EQ(occurrences(kKey, copy()), 1u);
}

TEST_F(EditedDarkSets, WithAnInstanceUIDGetTheLengthFieldOfTheDocumentToo) {
  const std::string original = readFile(edit_.original());
  edit_.replace(kCount, "groups:BEROctetCount=\"9\"");
  expect(kOneChanged);
  const auto value = original.find(kGroup) + kGroup.size() - 36;
  const std::string octets = original.substr(value, 36), head = original.substr(value - 20, 16);
  EXPECT_EQ(occurrences(head + length(9, '\x24') + octets, copy()), 1u);
  EXPECT_TRUE(edit_.exported(edit_.copy()) == edit_.content());
  edit_.replace("FFF5000461786D6C<", "FFF5000461786D6D<");
  expect(kOneChanged);
  EXPECT_TRUE(edit_.exported(edit_.copy()) == edit_.content());
}

TEST_F(EditedDarkSets, WithAnInstanceUIDGetTheKeyOfTheDocument) {
  edit_.replace("01.01.01.01.01.F1.0D\">", "01.01.01.01.01.F1.0C\">");
  expect(kOneChanged);
  EXPECT_TRUE(edit_.exported(edit_.copy()) == edit_.content());
}

TEST_F(EditedDarkSets, WithAnInstanceUIDKeepTheirLengthFieldsWhereTheDocumentSaysNothingOfThem) {
  edit_.replace(kCount, "");
  expect("nothing is edited");
  EXPECT_TRUE(copy() == readFile(edit_.original()));
  edit_.replace("FFF5000461786D6C<", "FFF5000461786D6D<");
  expect(kOneChanged);
  EXPECT_EQ(occurrences(kCount, run({"export", edit_.copy()}).out), 10u);
}

/// The document has the octets of sets that the dictionary knows.
TEST_F(EditedDarkSets, ThatADictionaryNamesGetTheLengthFieldOfTheDocumentToo) {
  edit_.replace(kCount, "groups:BEROctetCount=\"9\"");
  const Result result = edit_.intoCopy({"--dictionary", sample("adm.dictionary")});
  EXPECT_EQ(result.out, kOneChanged + "\n") << result.err;
  EXPECT_TRUE(edit_.exported(edit_.copy()) == edit_.content());
}

TEST_F(EditedDarkSets, AreRefusedWhereADictionaryDoesNotTakeWhatTheDocumentHas) {
  edit_.replace("0AFFF5000461786D6C<", "0BFFF500056178006D6C<");  // five octets of a property that has four
  const Result result = edit_.intoCopy({"--dictionary", sample("adm.dictionary")});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(edit_.remarks(result),
            "cannot be put into ORIGINAL: RIFFChunkSubDescriptor 8A.E2.A7.0F.15.96.4C.03.88.09.45.B2.A7.A3.1C.8E: "
            "RIFFChunkCode cannot have a value of 5 octets\n");
}

TEST_F(EditedDarkSets, AreUneditedWhereTheLengthFieldWouldHaveToBeLonger) {
  begin(darkSet(octets('3'), std::string(600, '0')));
  edit_.replace(octets('3'), octets('1'));
  expect("nothing is edited");
  EXPECT_TRUE(copy() == readFile(edit_.original()));
}

}  // namespace
}  // namespace Vantor::Tool
