#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "Core/DataIO/File.h"
#include "Core/DataIO/Memory.h"
#include "Core/KLV/BERLength.h"
#include "Core/KLV/Keys.h"
#include "Core/KLV/PrimerPack.h"
#include "Core/MXF/PartitionPack.h"
#include "Core/Platform/Containers.h"
#include "Core/Platform/Path.h"
#include "tests/Core/Platform/ThisSystem.h"

/// The parts of MXF files as bytes, sound or not, and files made of them.
namespace Vantor::MXF {

inline Bytes operator+(Bytes left, const Bytes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

inline Bytes zeros(std::size_t count) { return Bytes(count, 0); }

template <class T>
Bytes bigEndian(T number) {
  Bytes bytes(sizeof(T));
  DataIO::writeBigEndian<T>(bytes.data(), number);
  return bytes;
}

inline KLV::Key keyOf(const char* dotted) {
  return KLV::Key(wstring(dotted, dotted + std::char_traits<char>::length(dotted)), kDottedForm);
}

inline Bytes keyBytes(const KLV::Key& key) { return Bytes(key.rawBuffer(), key.rawBuffer() + KLV::Key::kSize); }

/// Key and length, whatever follows them.
inline Bytes klvHeader(const KLV::Key& key, uint64 length, uint8 berOctets = 4) {
  DataIO::Memory::MemoryDataSink sink;
  sink.write(key.rawBuffer(), KLV::Key::kSize);
  KLV::writeBERLength(sink, length, berOctets);
  return sink.take();
}

inline Bytes klv(const KLV::Key& key, const Bytes& value, uint8 berOctets = 4) {
  return klvHeader(key, value.size(), berOctets) + value;
}

inline Bytes fill(std::size_t size) { return klv(KLV::fillKey(), Bytes(size, 0xff)); }

inline Bytes partitionPackValue(const PartitionPack& pack) {
  Bytes value = bigEndian(pack.majorVersion) + bigEndian(pack.minorVersion) + bigEndian(pack.kagSize) +
                bigEndian(pack.thisPartition) + bigEndian(pack.previousPartition) + bigEndian(pack.footerPartition) +
                bigEndian(pack.headerByteCount) + bigEndian(pack.indexByteCount) + bigEndian(pack.indexSID) +
                bigEndian(pack.bodyOffset) + bigEndian(pack.bodySID) + keyBytes(pack.operationalPattern.key()) +
                bigEndian(static_cast<uint32>(pack.essenceContainers.size())) + bigEndian(uint32{16});
  for (const auto& label : pack.essenceContainers) value = value + keyBytes(label.key());
  return value;
}

inline Bytes partition(const PartitionPack& pack, uint8 berOctets = 4) {
  return klv(KLV::partitionPackKey(pack.kind, pack.status), partitionPackValue(pack), berOctets);
}

/// The size of a partition pack without essence containers, as `partition()` writes it.
constexpr uint64 kPackSize = 20 + 88;

inline Bytes primer(const Templates::vector<KLV::PrimerEntry>& entries = {}) {
  DataIO::Memory::MemoryDataSink sink;
  KLV::writePrimerPack(sink, entries);
  return klv(KLV::primerPackKey(), sink.take());
}

inline Bytes item(uint16 tag, const Bytes& value) {
  return bigEndian(tag) + bigEndian(static_cast<uint16>(value.size())) + value;
}

inline Bytes randomIndexPack(const std::vector<uint64>& offsets) {
  Bytes value;
  for (const uint64 offset : offsets) value = value + bigEndian(uint32{1}) + bigEndian(offset);
  const auto size = static_cast<uint32>(20 + value.size() + 4);
  return klv(KLV::randomIndexPackKey(), value + bigEndian(size));
}

inline const KLV::Key kPreface = keyOf("06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00");
inline const KLV::Key kIdentification = keyOf("06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.30.00");
/// A key that is not even one of SMPTE.
inline const KLV::Key kForeign = keyOf("80.53.08.00.36.21.08.04.B3.B3.98.A5.1C.90.11.D4");
inline const KLV::Key kPictureElement = keyOf("06.0E.2B.34.01.02.01.01.0D.01.03.01.15.01.05.00");

/// A set with nothing but an InstanceUID, of 16 times the octet: 40 bytes.
inline Bytes setWithUID(const KLV::Key& key, uint8 octet) { return klv(key, item(0x3c0a, Bytes(16, octet))); }

/// A file that is removed again.
class TemporaryFile {
 public:
  explicit TemporaryFile(const Bytes& bytes = {}) : path_(std::filesystem::temp_directory_path() / name()) {
    writeAt(0, bytes);
  }
  ~TemporaryFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const Path& path() const { return path_; }

  /// What is between the end of the file and the offset becomes a hole.
  void writeAt(uint64 offset, const Bytes& bytes) {
    std::fstream(path_, std::ios::binary | std::ios::app);
    std::fstream stream(path_, std::ios::binary | std::ios::in | std::ios::out);
    stream.seekp(static_cast<std::streamoff>(offset));
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  }
  void resize(uint64 size) { std::filesystem::resize_file(path_, size); }
  bool growTo(uint64 size) { return ThisSystem::growTo(path_, size); }

 private:
  static std::string name() {
    std::random_device random;
    return "vantor-mxf-" + std::to_string(random()) + "-" + std::to_string(random());
  }

  Path path_;
};

}  // namespace Vantor::MXF
