#include "Core/MXF/HeaderMetadataWriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/DataIO/Memory.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/KLV/Keys.h"
#include "Core/Metadata/StructuralMetadataKeys.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"
#include "tests/Core/Metadata/TestPartition.h"

namespace Vantor::MXF {
namespace {

using DataIO::Memory::MemoryDataSink;

TEST(HeaderMetadataWriter, WritesNoFileWithoutAPreface) {
  PartitionMetadata metadata(builtInDictionary());
  MemoryDataSink sink;
  EXPECT_THROW(writeHeaderOnlyFile(metadata, SetOrder::kFile, sink), Exceptions::InvalidFormat);
  EXPECT_EQ(sink.serializedSize(), 0u);
}

TEST(HeaderMetadataWriter, CodesThePrimerPackAsItWasRead) {
  PartitionMetadata metadata(builtInDictionary());
  auto key = hex("060E2B34020501030D01020101050100");  // another version in octet 8
  metadata.partitionDictionary().setPrimerCoding(KLV::Key(key.data()), 3);
  MemoryDataSink sink;
  writeHeaderMetadata(metadata, SetOrder::kFile, sink);
  EXPECT_EQ(Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()),
            hex("060E2B34020501030D01020101050100 820008 0000000000000012"));
}

class SetThatTheDictionaryDoesNotKnow : public testing::TestWithParam<KLV::Key> {
 protected:
  /// Whether header metadata with it can be written. If not, nothing is written, and the message names the key.
  static bool canBeWritten(PartitionMetadata& metadata) {
    MemoryDataSink sink;
    try {
      writeHeaderMetadata(metadata, SetOrder::kFile, sink);
      return true;
    } catch (const Exceptions::InvalidFormat& error) {
      EXPECT_EQ(sink.serializedSize(), 0u);
      EXPECT_THAT(error.message(), testing::HasSubstr(Utils::wstringToString(GetParam().toString())));
      return false;
    }
  }
  static bool darkSetCanBeWritten() {
    PartitionMetadata metadata(builtInDictionary());
    metadata.addDarkMetadataSet(std::make_unique<DarkMetadataSet>(GetParam(), uint8{4}, KLV::Value(hex("0102"))));
    return canBeWritten(metadata);
  }
  static bool createdSetCanBeWritten() {
    PartitionMetadata metadata(builtInDictionary());
    metadata.createMetadataSet(GetParam());
    return canBeWritten(metadata);
  }
};

class KeyOfNoSet : public SetThatTheDictionaryDoesNotKnow {};
class KeyOfAnUnknownSet : public SetThatTheDictionaryDoesNotKnow {};

TEST_P(KeyOfNoSet, IsRefused) {
  EXPECT_FALSE(darkSetCanBeWritten());
  EXPECT_FALSE(createdSetCanBeWritten());
}

TEST_P(KeyOfAnUnknownSet, IsWritten) {
  EXPECT_TRUE(darkSetCanBeWritten());
  EXPECT_TRUE(createdSetCanBeWritten());
}

TEST(DarkSetWithTheKeyOfAKnownSet, IsWrittenIfItReadsAsOne) {
  const auto write = [](const Bytes& value) {
    PartitionMetadata metadata(builtInDictionary());
    metadata.addDarkMetadataSet(
        std::make_unique<DarkMetadataSet>(Structural::StructuralMetadataKeys::preface(), uint8{4}, KLV::Value(value)));
    MemoryDataSink sink;
    writeHeaderMetadata(metadata, SetOrder::kFile, sink);
    return sink.serializedSize();
  };
  EXPECT_GT(write(hex("7f01 0001 05")), 0u);
  EXPECT_GT(write(Bytes()), 0u);
  try {
    write(hex("ff"));
    FAIL() << "nothing was thrown";
  } catch (const Exceptions::InvalidFormat& error) {
    EXPECT_THAT(error.message(), testing::StartsWith("a dark set has the key of set Preface, but its value is none: "));
  }
}

KLV::Key key(const char* octets) { return KLV::Key(hex(octets).data()); }

INSTANTIATE_TEST_SUITE_P(
    Keys, KeyOfNoSet,
    testing::Values(KLV::fillKey(), KLV::primerPackKey(), KLV::randomIndexPackKey(),
                    KLV::partitionPackKey(KLV::PartitionKind::kBody, KLV::PartitionStatus::kOpenIncomplete),
                    KLV::partitionPackKey(KLV::PartitionKind::kFooter, KLV::PartitionStatus::kClosedComplete),
                    key("060e2b34 02530101 0d010201 01100100"), key("060e2b34 01020101 0d010301 15010500"),
                    key("060e2b34 01010101 0d010501 01000000"), KLV::Key()));

INSTANTIATE_TEST_SUITE_P(Keys, KeyOfAnUnknownSet,
                         testing::Values(key("060e2b34 02530101 0e7f7f7f 00000100"),
                                         key("060e2b34 02050101 0e7f7f7f 00000100"),
                                         key("00000000 00000000 00000000 00000001")));

}  // namespace
}  // namespace Vantor::MXF
