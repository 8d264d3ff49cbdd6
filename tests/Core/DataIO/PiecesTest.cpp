#include "Core/DataIO/Pieces.h"

#include <gmock/gmock.h>

#include "Core/DataIO/Memory.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor::DataIO {
namespace {

using Memory::MemoryDataSink;
using Memory::MemoryFile;

constexpr std::size_t kSize = 2 * kPieceSize + 7;

/// No two pieces are the same.
Bytes counting(std::size_t size) {
  Bytes bytes(size);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<uint8>(i % 251);
  return bytes;
}

TEST(Pieces, AreAllOfARunInOrder) {
  const Bytes bytes = counting(kSize);
  MemoryFile file(bytes.data(), bytes.size());
  Bytes seen;
  std::vector<std::size_t> sizes;
  forEachPiece(file, 3, kSize - 3, [&](const Bytes& piece) {
    seen.insert(seen.end(), piece.begin(), piece.end());
    sizes.push_back(piece.size());
    file.seek(0);  // which is allowed
  });
  EXPECT_EQ(seen, Bytes(bytes.begin() + 3, bytes.end()));
  EXPECT_THAT(sizes, testing::ElementsAre(kPieceSize, kPieceSize, 4));
  forEachPiece(file, 3, 0, [](const Bytes&) { FAIL(); });
}

TEST(Pieces, AreCopiedFromThePositionOn) {
  const Bytes bytes = counting(kSize);
  MemoryFile file(bytes.data(), bytes.size());
  file.seek(5);
  MemoryDataSink sink;
  copyBytes(file, kSize - 6, sink);
  EXPECT_EQ(sink.take(), Bytes(bytes.begin() + 5, bytes.end() - 1));
  EXPECT_EQ(file.position(), kSize - 1);
  EXPECT_THROW(copyBytes(file, 2, sink), Exceptions::ParseError);
}

TEST(Pieces, AreComparedToTheLastByte) {
  const Bytes bytes = counting(kSize);
  Bytes other = counting(kSize + 9);
  other.erase(other.begin(), other.begin() + 9);
  MemoryFile left(bytes), right(other);
  EXPECT_TRUE(haveSameBytes(left, 9, right, 0, kSize - 9));
  other[kSize - 10] ^= 1;
  MemoryFile changed(other);
  EXPECT_FALSE(haveSameBytes(left, 9, changed, 0, kSize - 9));
  EXPECT_TRUE(haveSameBytes(left, 9, changed, 0, kSize - 10));
  EXPECT_TRUE(haveSameBytes(left, 0, left, 251, 100)) << "within one source";
  EXPECT_THROW(haveSameBytes(left, 0, left, 251, kSize), Exceptions::ParseError);
}

}  // namespace
}  // namespace Vantor::DataIO
