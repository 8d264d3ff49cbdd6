#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Platform/Exceptions.h"
#include "tests/Core/MXF/MXFBytes.h"
#include "tests/Sanitized.h"

namespace Vantor::MXF {
namespace {

const int kReads = isSanitized() ? 40 : 300;

/// Many sets whose InstanceUIDs have one octet.
Bytes metadataOf(uint8 octet) {
  Bytes metadata = primer();
  for (int i = 0; i < 300; ++i) metadata = metadata + setWithUID(kIdentification, octet);
  return metadata;
}

Bytes fileOf(uint8 octet) {
  PartitionPack pack;
  pack.headerByteCount = metadataOf(octet).size();
  return partition(pack) + metadataOf(octet);
}

/// Works in a thread of its own as long as it lives.
class Writer {
 public:
  template <class Write>
  explicit Writer(Write write)
      : thread_([this, write] {
          while (!isOver_) write();
        }) {}
  ~Writer() {
    isOver_ = true;
    thread_.join();
  }

 private:
  std::atomic<bool> isOver_{false};
  std::thread thread_;
};

/// The octet of all sets; 0 where they differ.
uint8 octetIn(const PartitionMetadata& metadata) {
  const uint8 first = metadata.sets().front()->instanceUID()->rawBuffer()[0];
  for (const auto* set : metadata.sets()) {
    if (set->instanceUID()->rawBuffer()[0] != first) return 0;
  }
  return first;
}

TEST(GrowingFile, IsReadWhileItsWriterAppends) {
  const TemporaryFile file(fileOf(7));
  const Bytes essence = klv(kPictureElement, Bytes(1000, 0x55));
  const Writer writer([&] {
    auto* stream = std::fopen(file.path().string().c_str(), "ab");
    std::fwrite(essence.data(), 1, essence.size(), stream);
    std::fclose(stream);
  });
  for (int i = 0; i < kReads; ++i) EXPECT_EQ(octetIn(*readHeaderMetadata(file.path(), builtInDictionary())), 7);
}

TEST(GrowingFile, IsReadInOneStateOrNotWhileItsWriterRewritesIt) {
  const TemporaryFile file(fileOf(7));
  std::vector<Bytes> states;  // so many that none comes back while the file is read
  for (uint8 octet = 8; octet < 48; ++octet) states.push_back(fileOf(octet));
  // The writer hands over each state at once: one that pauses half-way is not noticed.
  auto* stream = std::fopen(file.path().string().c_str(), "r+b");
  ASSERT_NE(stream, nullptr);
  std::setvbuf(stream, nullptr, _IONBF, 0);
  std::atomic<std::size_t> turn{0};
  int read = 0, refused = 0;
  {
    const Writer writer([&] {
      const Bytes& state = states[turn++ % states.size()];
      std::fseek(stream, 0, SEEK_SET);
      std::fwrite(state.data(), 1, state.size(), stream);
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    });
    for (int i = 0; i < kReads; ++i) {
      try {
        const auto metadata = readHeaderMetadata(file.path(), builtInDictionary());
        EXPECT_NE(octetIn(*metadata), 0);
        ++read;
      } catch (const Exceptions::IOError&) {
        ++refused;
      }
    }
  }
  std::fclose(stream);
  EXPECT_EQ(read + refused, kReads);
  EXPECT_NE(octetIn(*readHeaderMetadata(file.path(), builtInDictionary())), 0);
}

}  // namespace
}  // namespace Vantor::MXF
