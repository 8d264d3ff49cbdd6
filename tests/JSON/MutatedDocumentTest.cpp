#include <gtest/gtest.h>

#include <random>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Platform/Exceptions.h"
#include "tests/JSON/Support.h"

/// Damaged documents: each is refused with an exception of Core, or read as a partition whose own document is read as
/// the same octets.
namespace Vantor::JSON {
namespace {

class DamagedText {
 public:
  DamagedText(std::string text, uint32 seed) : text_(std::move(text)), random_(seed) {}

  std::string damaged() {
    std::string text = text_;
    for (auto count = below(2) + 1; count > 0; --count) damage(text);
    return text;
  }

 private:
  std::size_t below(std::size_t bound) { return random_() % bound; }

  void damage(std::string& text) {
    static constexpr std::string_view kDigits = "0123456789ABCDEF";
    static const std::string kWords[] = {
        "null", "{}", "[]",    "\"\"",           "-1",         "1e9",      "\\u0000",
        "\"",   ",",  ":",     "true",           "\"octets\"", "\"text\"", "18446744073709551616",
        "00",   "\n", "\"ü\"", "\"instanceUID\""};
    const auto at = below(text.size());
    const auto size = std::min(below(24), text.size() - at);
    switch (below(5)) {
      case 0:
        text.erase(at, size);
        break;
      case 1:
        text.insert(at, text.substr(below(text.size()), size));
        break;
      case 2:
        text.replace(at, size / 4, kWords[below(std::size(kWords))]);
        break;
      case 3:
        if (const auto digit = text.find_first_of("0123456789", at); digit != text.npos)
          text[digit] = kDigits[below(16)];
        break;
      default:
        text[at] = static_cast<char>(text[at] ^ (1 << below(7)));
    }
  }

  std::string text_;
  std::mt19937 random_;
};

/// @return null for a document that is refused.
std::unique_ptr<PartitionMetadata> tryImport(const std::string& text, const PartitionMetadata& like) {
  try {
    return imported(text, like);
  } catch (const Exceptions::BaseException&) {
    return nullptr;
  }
}

void expectStable(PartitionMetadata& metadata) {
  auto back = imported(exported(metadata), metadata);
  EXPECT_EQ(exported(*back).substr(200), exported(metadata).substr(200));
}

TEST(MutatedJSON, IsRefusedOrReadAsWhatItStandsFor) {
  constexpr int kDocuments = 120;
  int refused = 0, read = 0;
  for (const char* name : {"op1a.mxf", "bmx-op1a-adm.header.mxf"}) {
    const auto metadata = MXF::readHeaderMetadata(Path(VANTOR_TEST_DATA_DIR) / name, builtInDictionary());
    DamagedText text(exported(*metadata), 7);
    for (int i = 0; i < kDocuments; ++i) {
      const auto damaged = text.damaged();
      const auto found = tryImport(damaged, *metadata);
      ++(found == nullptr ? refused : read);
      if (found != nullptr) expectStable(*found);
      if (HasFailure()) FAIL() << damaged;
    }
  }
  EXPECT_GT(refused, kDocuments);
  EXPECT_GT(read, 20);
}

TEST(MutatedJSON, IsRefusedWhereverItEnds) {
  const auto metadata = MXF::readHeaderMetadata(Path(VANTOR_TEST_DATA_DIR) / "op1a.mxf", builtInDictionary());
  const auto text = exported(*metadata);
  constexpr std::size_t kStep = 97;
  for (std::size_t size = 0; size + 2 < text.size(); size += kStep) {
    EXPECT_EQ(tryImport(text.substr(0, size), *metadata), nullptr) << size;
  }
}

}  // namespace
}  // namespace Vantor::JSON
