#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "tests/Core/MXF/MXFBytes.h"

/// Header metadata with an object directory as bytes, laid out independently of the library.
namespace Vantor::MXF {

inline const KLV::Key kDirectoryKey = keyOf("96.13.B3.8A.87.34.87.46.F1.02.96.F0.56.E0.4D.2A");
inline const KLV::Key kRootKey = kForeign;
inline const KLV::Key kMetaDictionaryKey = keyOf("06.0E.2B.34.02.53.01.01.0D.01.01.01.02.25.00.00");

/// A set, its identifier and the flags of its entry.
struct ListedSet {
  uint8 octet;  ///< 16 times: the InstanceUID; 0: it has none
  std::size_t more = 0;
  uint8 flags = 0;
  KLV::Key key = kIdentification;

  Bytes klvBytes() const {
    const Bytes rest = item(0x8001, Bytes(more, octet));
    return klv(key, octet == 0 ? rest : item(0x3c0a, Bytes(16, octet)) + rest);
  }
};

struct ListedLayout {
  std::vector<ListedSet> sets = {};  ///< behind the root
  std::size_t primerRows = 3;
  std::size_t fillSize = 50;         ///< in front of the root, key and length included; 0: none
  std::vector<ListedSet> last = {};  ///< behind the directory
  uint8 berOctets = 4;               ///< of the directory
  uint8 preface = 2;                 ///< the octet of the Preface in the root
};

constexpr uint8 kRootOctet = 0xee;

inline Bytes rootBytes(const ListedLayout& layout, uint64 directory) {
  return klv(kRootKey, item(0x3c0a, Bytes(16, kRootOctet)) + item(0x0003, zeros(16) + bigEndian(directory)) +
                           item(0x0004, bigEndian(uint32{8})) + item(0x0001, Bytes(16, 1)) +
                           item(0x0002, Bytes(16, layout.preface)));
}

inline Bytes entryBytes(uint8 octet, uint64 offset, uint8 flags) {
  return Bytes(16, octet) + bigEndian(offset) + Bytes(1, flags);
}

inline Bytes directoryBytes(const Bytes& entries, uint8 berOctets) {
  return klv(kDirectoryKey, bigEndian(uint64{entries.size() / 25}) + Bytes(1, 25) + entries, berOctets);
}

/// The metadata with all offsets for a place in a file.
inline Bytes listedMetadata(const ListedLayout& layout, uint64 offset) {
  Bytes bytes = primer(Templates::vector<KLV::PrimerEntry>(layout.primerRows));
  if (layout.fillSize != 0) bytes = bytes + klv(KLV::fillKey(), zeros(layout.fillSize - 20));
  const std::size_t rootAt = bytes.size();
  Bytes entries = entryBytes(kRootOctet, offset + rootAt, 0);
  bytes = bytes + rootBytes(layout, 0);
  const auto add = [&](const std::vector<ListedSet>& sets, std::size_t before) {
    for (const auto& set : sets) {
      if (set.octet != 0) entries = entries + entryBytes(set.octet, offset + before + bytes.size(), set.flags);
      bytes = bytes + set.klvBytes();
    }
  };
  add(layout.sets, 0);
  const std::size_t directoryAt = bytes.size();
  std::size_t count = 1;
  for (const auto* sets : {&layout.sets, &layout.last}) {
    for (const auto& set : *sets) count += set.octet != 0;
  }
  Bytes behind = std::move(bytes);
  bytes.clear();
  add(layout.last, directoryAt + directoryBytes(Bytes(25 * count), layout.berOctets).size());
  const Bytes root = rootBytes(layout, offset + directoryAt);
  std::copy(root.begin(), root.end(), behind.begin() + static_cast<std::ptrdiff_t>(rootAt));
  return behind + directoryBytes(entries, layout.berOctets) + bytes;
}

/// What a writer makes of edited metadata: other sets, the directory and the root as they were, no fill.
inline Bytes editedMetadata(const ListedLayout& old, uint64 offset, const ListedLayout& edited) {
  const Bytes before = listedMetadata(old, offset);
  const auto keyAt = [&](const KLV::Key& key) {
    const Bytes octets = keyBytes(key);
    return std::search(before.begin(), before.end(), octets.begin(), octets.end());
  };
  Bytes last;
  for (const auto& set : old.last) last = last + set.klvBytes();
  const Bytes directory(keyAt(kDirectoryKey), before.end() - static_cast<std::ptrdiff_t>(last.size()));
  Bytes bytes = primer(Templates::vector<KLV::PrimerEntry>(edited.primerRows)) +
                Bytes(keyAt(kRootKey), keyAt(kRootKey) + static_cast<std::ptrdiff_t>(rootBytes(old, 0).size()));
  for (const auto& set : edited.sets) bytes = bytes + set.klvBytes();
  bytes = bytes + directory;
  for (const auto& set : edited.last) bytes = bytes + set.klvBytes();
  return bytes;
}

}  // namespace Vantor::MXF
