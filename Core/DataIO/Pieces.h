#pragma once

#include <algorithm>
#include <cstddef>

#include "Core/DataIO/DataSink.h"
#include "Core/DataIO/SeekableSource.h"
#include "Core/Platform/Containers.h"

/// Long runs of bytes, of which only a piece is in memory at a time. These functions move the source.
namespace Vantor::DataIO {

constexpr uint64 kPieceSize = uint64{1} << 20;

/// The bytes from an offset on: `size` of them, or as many as a piece has.
/// @throws Exceptions::ParseError when the source has fewer than `size`.
Bytes readPiece(SeekableSource& source, uint64 offset, uint64 size);

/// Hands `size` bytes from an offset on to `use(const Bytes&)`, piece by piece. `use` may move the source.
template <class Use>
void forEachPiece(SeekableSource& source, uint64 offset, uint64 size, Use&& use) {
  Bytes piece(static_cast<std::size_t>(std::min(size, kPieceSize)));
  for (uint64 left = size; left != 0; left -= piece.size()) {
    piece.resize(static_cast<std::size_t>(std::min(left, kPieceSize)));
    source.seek(offset + (size - left));
    source.read(piece.data(), piece.size());
    use(static_cast<const Bytes&>(piece));
  }
}

/// Writes the next `size` bytes of a source and moves past them.
void copyBytes(SeekableSource& source, uint64 size, DataSink& sink);

/// Whether two sources, or two places of one, have the same `size` bytes.
bool haveSameBytes(SeekableSource& left, uint64 leftOffset, SeekableSource& right, uint64 rightOffset, uint64 size);

}  // namespace Vantor::DataIO
