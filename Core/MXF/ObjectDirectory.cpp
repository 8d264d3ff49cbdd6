#include "Core/MXF/ObjectDirectory.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <utility>

#include "Core/DataIO/Memory.h"
#include "Core/KLV/Keys.h"
#include "Core/KLV/LocalSet.h"
#include "Core/MXF/Fill.h"
#include "Core/MXF/KLVHeader.h"
#include "Core/Platform/Raise.h"

namespace Vantor::MXF {

namespace {

using DataIO::readBigEndian;
using DataIO::writeBigEndian;
using DataIO::Memory::MemoryDataSink;
using Exceptions::ParseError;
using Exceptions::raise;
using Identifier = KLV::Key;  // any 16 octets

constexpr uint16 kInstanceUIDTag = 0x3c0a;
constexpr uint16 kMetaDictionaryTag = 0x0001;
constexpr uint16 kPrefaceTag = 0x0002;
constexpr uint16 kDirectoryTag = 0x0003;
constexpr std::size_t kLinkInItem = 16;  // behind zeros
constexpr std::size_t kDirectoryItemSize = kLinkInItem + 8;

constexpr std::size_t kEntriesInDirectory = 9;
constexpr std::size_t kLinkInEntry = Identifier::kSize;
constexpr std::size_t kFlagsInEntry = kLinkInEntry + 8;
constexpr uint8 kDirectoryEntrySize = kFlagsInEntry + 1;

constexpr KLV::Key kMetaDictionary({0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01,  //
                                    0x0d, 0x01, 0x01, 0x01, 0x02, 0x25, 0x00, 0x00});
constexpr KLV::Key kPreface({0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01,  //
                             0x0d, 0x01, 0x01, 0x01, 0x01, 0x01, 0x2f, 0x00});

struct Entry {
  Identifier identifier;
  uint64 target;  ///< in the file
  uint8 flags;
};

/// One KLV of header metadata.
struct Part {
  KLVHeader klv;
  const uint8* octets;  ///< from the key on
  const uint8* value;
  uint64 end() const { return klv.valueOffset + klv.length.value; }
  std::size_t size() const { return static_cast<std::size_t>(end() - klv.offset); }
  std::size_t valueSize() const { return static_cast<std::size_t>(klv.length.value); }
};

/// The KLVs of header metadata, with the directory and its root.
struct Parts {
  std::vector<Part> all;  ///< in file order
  std::size_t root = 0;
  std::size_t directory = 0;
};

std::vector<Part> split(const Bytes& metadata, uint64 offset) {
  std::vector<Part> parts;
  DataIO::Memory::MemoryDataSource source(metadata.data(), metadata.size(), false, offset);
  while (source.remaining() != 0) {
    const KLVHeader klv = readKLVHeader(source);
    source.skip(klv.length.value);
    parts.push_back({klv, metadata.data() + (klv.offset - offset), metadata.data() + (klv.valueOffset - offset)});
  }
  return parts;
}

Parts partsOf(const Bytes& metadata, uint64 offset) {
  Parts parts;
  parts.all = split(metadata, offset);
  std::size_t directories = 0, roots = 0;
  for (std::size_t i = 0; i < parts.all.size(); ++i) {
    const KLV::Key& key = parts.all[i].klv.key;
    if (KLV::isObjectDirectory(key)) parts.directory = i, ++directories;
    if (KLV::isObjectDirectoryRoot(key)) parts.root = i, ++roots;
  }
  if (directories == 1 && roots == 1) return parts;
  raise<ParseError>(
      "at byte offset {}: expected header metadata with one object directory and one root, found {} and {}", offset,
      directories, roots);
}

/// The value of an item of the root; null when it has none of that size.
const uint8* findInRoot(const Part& root, uint16 tag, std::size_t size) {
  const auto coding = KLV::LocalSetCoding::kTwoByteLengths;
  for (const auto& item : KLV::readLocalSet(coding, root.value, root.valueSize(), root.klv.valueOffset)) {
    if (item.tag == tag && item.size == size) return item.value;
  }
  return nullptr;
}

const uint8* inRoot(const Part& root, uint16 tag, std::size_t size, const char* name) {
  if (const uint8* value = findInRoot(root, tag, size)) return value;
  raise<ParseError>("at byte offset {}: the root of the object directory has no {}", root.klv.offset, name);
}

const uint8* identifierInRoot(const Part& root) {
  return inRoot(root, kInstanceUIDTag, Identifier::kSize, "identifier of 16 bytes");
}

/// Where the root has the offset of the directory.
const uint8* linkInRoot(const Part& root) {
  return inRoot(root, kDirectoryTag, kDirectoryItemSize, "place of the directory in 24 bytes") + kLinkInItem;
}

/// None for a KLV that is no local set, by its key or by its value, or has no InstanceUID.
std::optional<Identifier> instanceUIDOf(const Part& part) {
  if (!KLV::isLocalSet(part.klv.key)) return std::nullopt;
  try {
    for (const auto& item : KLV::readLocalSet(KLV::localSetCoding(part.klv.key), part.value, part.valueSize())) {
      if (item.tag == kInstanceUIDTag && item.size == Identifier::kSize) return Identifier(item.value);
    }
  } catch (const ParseError&) {
    // A dark set may have any value.
  }
  return std::nullopt;
}

/// By what the directory names a KLV; none for one without entry.
std::optional<Identifier> identifierOf(const Part& part) {
  if (!KLV::isObjectDirectoryRoot(part.klv.key)) return instanceUIDOf(part);
  return Identifier(identifierInRoot(part));
}

std::vector<Entry> entriesOf(const Part& directory) {
  const std::size_t size = directory.valueSize();
  const uint64 count = size < kEntriesInDirectory ? 0 : readBigEndian<uint64>(directory.value);
  const std::size_t room = size < kEntriesInDirectory ? 0 : (size - kEntriesInDirectory) / kDirectoryEntrySize;
  if (size != kEntriesInDirectory + room * kDirectoryEntrySize || count != room ||
      directory.value[8] != kDirectoryEntrySize) {
    raise<ParseError>("at byte offset {}: expected an object directory with entries of {} bytes, found one of {} bytes",
                      directory.klv.offset, kDirectoryEntrySize, size);
  }
  std::vector<Entry> entries;
  for (const uint8* at = directory.value + kEntriesInDirectory; entries.size() < room; at += kDirectoryEntrySize) {
    entries.push_back({Identifier(at), readBigEndian<uint64>(at + kLinkInEntry), at[kFlagsInEntry]});
  }
  return entries;
}

void requireEntries(const Parts& parts) {
  std::unordered_map<uint64, Identifier> sets;
  for (const Part& part : parts.all) {
    if (const auto identifier = identifierOf(part)) sets.emplace(part.klv.offset, *identifier);
  }
  const Part& directory = parts.all[parts.directory];
  for (const Entry& entry : entriesOf(directory)) {
    const auto found = sets.find(entry.target);
    if (found != sets.end() && found->second == entry.identifier) continue;
    raise<ParseError>("at byte offset {}: the object directory has the set with identifier {} at {}, where it is not",
                      directory.klv.offset, entry.identifier.toString(), entry.target);
  }
}

bool isFillAt(const std::vector<Part>& parts, std::size_t number) { return KLV::isFill(parts[number].klv.key); }

DirectoryLayout layoutOf(const Parts& parts) {
  DirectoryLayout layout;
  const auto& all = parts.all;
  if (parts.root != 0 && isFillAt(all, parts.root - 1)) {
    layout.rootOffset = all[parts.root].klv.offset - all.front().klv.offset;
  }
  layout.isDirectoryLast = std::all_of(all.begin() + static_cast<std::ptrdiff_t>(parts.directory) + 1, all.end(),
                                       [](const Part& part) { return KLV::isFill(part.klv.key); });
  return layout;
}

/// The parts to write, in their order.
std::vector<const Part*> arranged(const Parts& parts, const DirectoryLayout& layout) {
  std::vector<const Part*> order;
  for (std::size_t i = 0; i < parts.all.size(); ++i) {
    if (i != parts.directory || !layout.isDirectoryLast) order.push_back(&parts.all[i]);
  }
  if (layout.isDirectoryLast) order.push_back(&parts.all[parts.directory]);
  return order;
}

/// Where the root goes when something else ends at a position.
uint64 rootOffset(uint64 position, const DirectoryLayout& layout) {
  uint64 offset = *layout.rootOffset;
  if (offset < position) offset += (position - offset + layout.grid - 1) / layout.grid * layout.grid;
  while (!canFill(offset - position)) offset += layout.grid;
  return offset;
}

/// Writes header metadata with room for the offsets, which are not known yet.
class ListWriter {
 public:
  ListWriter(const Parts& parts, const DirectoryLayout& layout) : parts_(parts), layout_(layout) {
    for (const Entry& entry : entriesOf(parts.all[parts.directory])) flags_.emplace(entry.identifier, entry.flags);
    for (const Part* part : arranged(parts, layout)) {
      order_.push_back({part, identifierOf(*part)});
      if (order_.back().second) ++count_;
    }
  }

  Bytes write() {
    for (const auto& [part, identifier] : order_) {
      if (KLV::isFill(part->klv.key)) {
        fill_.push_back(part);
        continue;
      }
      part == &parts_.all[parts_.root] ? goToRoot() : writeFillParts();
      if (identifier) targets_.push_back(sink_.position());
      part == &parts_.all[parts_.directory] ? writeDirectory(*part) : sink_.write(part->octets, part->size());
    }
    writeFillParts();
    Bytes bytes = sink_.take();
    linkEntries();
    completeRoot(bytes);
    return bytes;
  }

  /// Field and target of each offset.
  std::vector<std::pair<uint64, uint64>> takeLinks() { return std::move(links_); }

 private:
  void writeFillParts() {
    for (const Part* part : fill_) sink_.write(part->octets, part->size());
    fill_.clear();
  }

  /// Fill in front of the root that has the right size stays as it is.
  void goToRoot() {
    uint64 position = sink_.position();
    for (const Part* part : fill_) position += part->size();
    if (layout_.rootOffset && position != rootOffset(sink_.position(), layout_)) {
      fill_.clear();
      writeFill(sink_, rootOffset(sink_.position(), layout_) - sink_.position());
    }
    writeFillParts();
    rootPosition_ = sink_.position();
  }

  void writeDirectory(const Part& directory) {
    directoryPosition_ = sink_.position();
    writeKLVHeader(sink_, directory.klv.key, kEntriesInDirectory + uint64{count_} * kDirectoryEntrySize,
                   directory.klv.length.octets);
    writeBigEndian<uint64>(sink_, count_);
    writeBigEndian<uint8>(sink_, kDirectoryEntrySize);
    entriesPosition_ = sink_.position();
    for (const auto& [part, identifier] : order_) {
      if (identifier) writeEntry(*identifier);
    }
  }

  void writeEntry(const Identifier& identifier) {
    sink_.write(identifier.rawBuffer(), Identifier::kSize);
    writeBigEndian<uint64>(sink_, 0);
    writeBigEndian<uint8>(sink_, takeFlags(identifier));
  }

  /// Entries of one identifier keep their order.
  uint8 takeFlags(const Identifier& identifier) {
    const auto found = flags_.lower_bound(identifier);
    if (found == flags_.end() || found->first != identifier) return 0;
    const uint8 flags = found->second;
    flags_.erase(found);
    return flags;
  }

  void linkEntries() {
    for (std::size_t i = 0; i < targets_.size(); ++i) {
      links_.emplace_back(entriesPosition_ + i * kDirectoryEntrySize + kLinkInEntry, targets_[i]);
    }
  }

  void completeRoot(Bytes& bytes) {
    const Part& root = parts_.all[parts_.root];
    links_.emplace_back(rootPosition_ + static_cast<uint64>(linkInRoot(root) - root.octets), directoryPosition_);
    nameSet(kMetaDictionaryTag, kMetaDictionary, bytes);
    nameSet(kPrefaceTag, kPreface, bytes);
  }

  void nameSet(uint16 tag, const KLV::Key& key, Bytes& bytes) const {
    const Part& root = parts_.all[parts_.root];
    const uint8* const value = findInRoot(root, tag, Identifier::kSize);
    if (value == nullptr) return;
    const Identifier identifier = namedSet(Identifier(value), key);
    std::copy_n(identifier.rawBuffer(), Identifier::kSize, bytes.data() + rootPosition_ + (value - root.octets));
  }

  /// The old identifier, or that of the only set with a key where no set has the old one.
  Identifier namedSet(const Identifier& old, const KLV::Key& key) const {
    std::vector<Identifier> candidates;
    for (const auto& [part, identifier] : order_) {
      if (identifier == old) return old;
      if (identifier && part->klv.key.matches(key)) candidates.push_back(*identifier);
    }
    return candidates.size() == 1 ? candidates.front() : old;
  }

  const Parts& parts_;
  const DirectoryLayout& layout_;
  std::multimap<Identifier, uint8> flags_;
  std::vector<std::pair<const Part*, std::optional<Identifier>>> order_;
  std::size_t count_ = 0;  // of entries
  MemoryDataSink sink_;
  std::vector<const Part*> fill_;  // that may give way to other fill
  std::vector<uint64> targets_;
  std::vector<std::pair<uint64, uint64>> links_;
  uint64 rootPosition_ = 0;
  uint64 directoryPosition_ = 0;
  uint64 entriesPosition_ = 0;
};

}  // namespace

DirectoryLayout requireSoundDirectory(const Bytes& metadata, uint64 offset) {
  const Parts parts = partsOf(metadata, offset);
  const Part &root = parts.all[parts.root], &directory = parts.all[parts.directory];
  const auto named = readBigEndian<uint64>(linkInRoot(root));
  if (named != directory.klv.offset) {
    raise<ParseError>("at byte offset {}: the root has the object directory at {}, but that is at {}", root.klv.offset,
                      named, directory.klv.offset);
  }
  requireEntries(parts);
  return layoutOf(parts);
}

ListedMetadata::ListedMetadata(const Bytes& metadata, const DirectoryLayout& layout) {
  const Parts parts = partsOf(metadata, 0);
  ListWriter writer(parts, layout);
  bytes_ = writer.write();
  links_ = writer.takeLinks();
}

Bytes ListedMetadata::at(uint64 offset) const {
  Bytes bytes = bytes_;
  for (const auto& [field, target] : links_) writeBigEndian<uint64>(bytes.data() + field, offset + target);
  return bytes;
}

}  // namespace Vantor::MXF
