#include <gtest/gtest.h>

#include "Core/Comparison/ValueText.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Metadata/PropertyLine.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Text/StringText.h"
#include "tests/SampleFiles.h"

/// What is printed of the values in files can be pasted back.
namespace Vantor::MXF {
namespace {

struct PrintedValue {
  MetadataSet* set;
  std::string property;
  bool isListed;  // by the set's definition
};

/// The properties of all sets, but for InstanceUIDs, which nobody sets.
std::vector<PrintedValue> printedValues(const PartitionMetadata& metadata) {
  std::vector<PrintedValue> values;
  for (MetadataSet* set : metadata.sets()) {
    if (set->definition() == nullptr) continue;
    for (const Element* element : std::as_const(*set).inDefinitionOrder()) {
      const auto* definition = set->definitionOf(*element);
      if (definition == nullptr || set->isInstanceUID(*element) || element->wireValue() == nullptr) continue;
      const bool isListed = set->definition()->findAttribute(definition->key()) != nullptr;
      values.push_back({set, definition->symbol(), isListed});
    }
  }
  return values;
}

const Element* elementOf(const PrintedValue& value) {
  for (const Element* element : std::as_const(*value.set).inDefinitionOrder()) {
    const auto* definition = value.set->definitionOf(*element);
    if (definition != nullptr && definition->symbol() == value.property) return element;
  }
  return nullptr;
}

Bytes octetsOf(const PrintedValue& value) {
  const auto* element = elementOf(value);
  const auto* there = element == nullptr ? nullptr : element->wireValue();
  if (there == nullptr) return {};
  return {there->rawBuffer(), there->rawBuffer() + there->encodedSize()};
}

/// Final NULs are not printed, nor the item size of a list without items, the order of octets of an indirect value, or
/// the form of a value in other octets than its type has.
bool isPrintedWhole(const PrintedValue& value) {
  const auto* element = std::as_const(*value.set).find(value.property);
  if (element == nullptr || element->wireValue() == nullptr || value.set->text(value.property) == u"[]") return false;
  const auto* there = element->wireValue();
  const auto octets = octetsOf(value);
  const bool hasFinalNUL = Types::isTextType(there->identifier()) && !octets.empty() && octets.back() == 0;
  return value.isListed && !hasFinalNUL && value.property != "IndirectValue";
}

class SampleValues : public testing::TestWithParam<Path> {
 protected:
  std::unique_ptr<PartitionMetadata> metadata_ = readHeaderMetadata(GetParam(), builtInDictionary());
};

TEST_P(SampleValues, ChangeNothingWhereTheyArePastedBack) {
  for (const auto& value : printedValues(*metadata_)) {
    const auto text = value.set->text(value.property);
    const auto line = valueText(*value.set, *elementOf(value));
    const auto where = value.set->fullName() + "." + value.property + "=" + line;
    const auto octets = octetsOf(value);
    EXPECT_FALSE(value.set->set(value.property, text)) << where;
    const bool isCut = line.find("... (") != std::string::npos;
    if (isCut) {
      EXPECT_THROW(value.set->set(value.property, Utils::stringToWstring(line)), Exceptions::InvalidFormat) << where;
    } else {
      EXPECT_FALSE(value.set->set(value.property, Utils::stringToWstring(line))) << where;
    }
    EXPECT_EQ(octetsOf(value), octets) << where;
  }
}

TEST_P(SampleValues, AreTheSameOctetsWhereTheyAreSetAnew) {
  std::size_t pasted = 0;
  for (const auto& value : printedValues(*metadata_)) {
    if (!isPrintedWhole(value)) continue;
    const auto text = value.set->text(value.property);
    const auto octets = octetsOf(value);
    EXPECT_TRUE(value.set->remove(value.property));
    EXPECT_FALSE(value.set->has(value.property));
    EXPECT_TRUE(value.set->set(value.property, text));
    EXPECT_EQ(octetsOf(value), octets) << value.set->fullName() << "." << value.property << "="
                                       << Utils::wstringToString(text);
    ++pasted;
  }
  EXPECT_GT(pasted, 20u);
}

TEST_P(SampleValues, AreTheSameOctetsWhereTheirLinesAreSetAnew) {
  std::size_t pasted = 0;
  for (const auto& value : printedValues(*metadata_)) {
    if (!isPrintedWhole(value)) continue;
    const auto line = *lineOf(*value.set, heldProperty(*value.set, value.property));
    const auto octets = octetsOf(value);
    EXPECT_EQ(line.find(u'\n'), wstring::npos);
    EXPECT_TRUE(value.set->remove(value.property));
    EXPECT_TRUE(value.set->set(value.property, line));
    EXPECT_EQ(octetsOf(value), octets) << value.set->fullName() << "." << value.property << "="
                                       << Utils::wstringToString(line);
    ++pasted;
  }
  EXPECT_GT(pasted, 20u);
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleValues, testing::ValuesIn(sampleFiles()),
                         [](const auto& info) { return testNameOf(info.param); });

}  // namespace
}  // namespace Vantor::MXF
