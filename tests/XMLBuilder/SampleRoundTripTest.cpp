#include <gtest/gtest.h>

#include <set>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Platform/Strings.h"
#include "XMLBuilder.h"
#include "XMLUtils/DomToBuffer.h"
#include "tests/SampleFiles.h"
#include "tests/XMLBuilder/ImportSupport.h"

/// The header metadata of files, exported, imported and exported again: the second document is the first one but for
/// what an import is meant to change.
namespace Vantor::XML2Partition {
namespace {

using XMLBuilder::exported;
using XMLBuilder::Flags;
using XMLBuilder::inLines;
using XMLUtils::EncodingType;

constexpr EncodingType kEncodings[] = {EncodingType::kUTF8, EncodingType::kUTF8Indented, EncodingType::kUTF16,
                                       EncodingType::kUTF16Indented};

std::size_t countOf(const std::string& part, const std::string& text) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++count;
  return count;
}

/// A quarter of each of a document's fractions of seconds: they count units of 4 ms and are read as if these were
/// milliseconds.
std::string withQuarteredFractions(std::string text) {
  const std::string start = "<types:mSec4>";
  for (auto at = text.find(start); at != std::string::npos; at = text.find(start, at)) {
    at += start.size();
    const auto end = text.find('<', at);
    text.replace(at, end - at, std::to_string(std::stoul(text.substr(at, end - at)) / 4));
  }
  return text;
}

/// The one kind of property in the samples that refers to nothing but sets without a definition. Nested, it is empty,
/// because such sets stand at the document's end; read, it is a collection without members; and that is not written
/// where it is optional.
constexpr const char* kEmptied = "<rp210:SubDescriptors/>";

std::string withoutEmptiedReferences(std::string text) {
  for (auto at = text.find(kEmptied); at != std::string::npos; at = text.find(kEmptied, at)) {
    text.erase(at, std::string(kEmptied).size());
  }
  return text;
}

/// The document that an import of another one is exported as.
std::string afterImport(const std::string& text) { return withQuarteredFractions(withoutEmptiedReferences(text)); }

/// JPEG 2000 values are read from an element around them that is not written.
Failure expectedFailure(const std::string& text) {
  if (text.find("<s422mTypes:Ssizi>") == std::string::npos) return {"nothing", {}, {}, 0};
  return invalidFormat(
      "domComponentElement != 0: No 'J2KPictureComponent' element from 'PictureComponentSizing' in XML metadata", 255);
}

/// The InstanceUIDs of a document, of its sets and of what refers to them.
std::set<std::string> identifiersOf(const std::string& text) {
  std::set<std::string> found;
  for (const std::string start : {" rp210:InstanceUID=\"", " types:TargetInstance=\""}) {
    for (auto at = text.find(start); at != std::string::npos; at = text.find(start, at)) {
      at += start.size();
      found.insert(text.substr(at, text.find('"', at) - at));
    }
  }
  return found;
}

struct Sample {
  Path file;
  const char* mode;
  Flags flags;
};

void PrintTo(const Sample& sample, std::ostream* out) { *out << sample.file << " " << sample.mode; }

class SampleRoundTrip : public ::testing::TestWithParam<Sample> {
 protected:
  SampleRoundTrip()
      : original_(MXF::readHeaderMetadata(GetParam().file, builtInDictionary())),
        document_(exported(*original_, GetParam().flags)) {}

  const std::string& document() const { return document_; }

  std::string text(EncodingType encoding) const {
    wstring text;
    XMLBuilder::partition2XML(original_.get(), nests(), false, encoding, text);
    return Utils::wstringToString(text);
  }

  /// What `XMLUtils::domToBuffer` makes of the document, in the octets that its XML declaration names.
  std::string encoded(EncodingType encoding) const {
    const auto dom = XMLBuilder::partition2XML(original_.get(), nests(), false);
    wstring units;
    XMLUtils::domToBuffer(dom.get(), units, encoding);
    if (encoding == EncodingType::kUTF8 || encoding == EncodingType::kUTF8Indented) {
      return Utils::wstringToString(units);
    }
    return std::string(reinterpret_cast<const char*>(units.data()), units.size() * sizeof(char16_t));
  }

  std::string stored(EncodingType encoding) const {
    const auto dom = XMLBuilder::partition2XML(original_.get(), nests(), false);
    std::string bytes;
    XMLUtils::domToBytes(dom.get(), bytes, encoding);
    return bytes;
  }

  /// Imports the document in some form and looks at what came of it.
  void expectItselfFrom(const std::string& form, Entry entry) const {
    PartitionMetadata readBack(original_->partitionDictionary().dictionary());
    const auto failure = failureOf([&] { importRaw(form, readBack, entry); });
    ASSERT_EQ(failure, expectedFailure(document_));
    if (failure.kind != "nothing") return;
    const std::string again = exported(readBack, GetParam().flags);
    EXPECT_EQ(inLines(renumbered(again)), inLines(renumbered(afterImport(document_))));
    for (const auto& identifier : identifiersOf(again)) {
      EXPECT_EQ(identifiersOf(document_).count(identifier), 0u) << identifier;
    }
  }

 private:
  bool nests() const { return GetParam().flags.nestStrongReferences; }

  std::unique_ptr<PartitionMetadata> original_;
  std::string document_;
};

TEST_P(SampleRoundTrip, OfTheTextEndsWithTheDocument) {
  for (const auto encoding : kEncodings) {
    SCOPED_TRACE(static_cast<int>(encoding));
    expectItselfFrom(text(encoding), Entry::kString);
  }
}

TEST_P(SampleRoundTrip, OfTheDomEndsWithTheDocument) {
  for (const auto encoding : kEncodings) {
    SCOPED_TRACE(static_cast<int>(encoding));
    expectItselfFrom(encoded(encoding), Entry::kBuffer);
  }
}

TEST_P(SampleRoundTrip, OfAFileEndsWithTheDocument) {
  for (const auto encoding : kEncodings) {
    SCOPED_TRACE(static_cast<int>(encoding));
    expectItselfFrom(stored(encoding), Entry::kFile);
  }
}

TEST_P(SampleRoundTrip, IsOneOfADocumentWithIdentifiersAndTimes) {
  EXPECT_GT(identifiersOf(document()).size(), 5u);
  EXPECT_GT(countOf("<types:mSec4>", document()), 0u);
  const bool nestsDarkReferences = GetParam().flags.nestStrongReferences && hasDarkTargets(GetParam().file);
  EXPECT_EQ(countOf(kEmptied, document()), nestsDarkReferences ? 3u : 0u);
}

std::vector<Sample> samples() {
  std::vector<Sample> all;
  for (const auto& file : sampleFiles()) {
    all.push_back({file, "nested", XMLBuilder::kNested});
    all.push_back({file, "flat", XMLBuilder::kFlat});
  }
  return all;
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleRoundTrip, ::testing::ValuesIn(samples()),
                         [](const auto& info) { return testNameOf(info.param.file) + "_" + info.param.mode; });

/// How many of the documents of tests/data an import refuses, or changes in one of the ways above.
TEST(SampleRoundTrips, MeetEverythingThatTheyAllowFor) {
  std::size_t refused = 0;
  std::size_t changedFractions = 0;
  for (const auto& file : mxfFilesIn(VANTOR_TEST_DATA_DIR)) {
    const auto document = exported(*MXF::readHeaderMetadata(file, builtInDictionary()));
    if (expectedFailure(document).kind != "nothing") ++refused;
    if (withQuarteredFractions(document) != document) ++changedFractions;
  }
  EXPECT_EQ(refused, 1u);
  EXPECT_GT(changedFractions, 5u);
}

}  // namespace
}  // namespace Vantor::XML2Partition
