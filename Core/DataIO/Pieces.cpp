#include "Core/DataIO/Pieces.h"

namespace Vantor::DataIO {

Bytes readPiece(SeekableSource& source, uint64 offset, uint64 size) {
  source.seek(offset);
  source.require(size);
  Bytes bytes(static_cast<std::size_t>(std::min(size, kPieceSize)));
  source.read(bytes.data(), bytes.size());
  return bytes;
}

void copyBytes(SeekableSource& source, uint64 size, DataSink& sink) {
  source.require(size);
  forEachPiece(source, source.position(), size, [&](const Bytes& piece) { sink.write(piece.data(), piece.size()); });
}

bool haveSameBytes(SeekableSource& left, uint64 leftOffset, SeekableSource& right, uint64 rightOffset, uint64 size) {
  for (uint64 done = 0; done < size;) {
    const Bytes piece = readPiece(left, leftOffset + done, size - done);
    if (readPiece(right, rightOffset + done, piece.size()) != piece) return false;
    done += piece.size();
  }
  return true;
}

}  // namespace Vantor::DataIO
