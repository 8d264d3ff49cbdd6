#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "Core/DataIO/DataSource.h"
#include "Core/KLV/Value.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/KLVHeader.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Limits.h"

namespace Vantor::MXF {

/// Reads header metadata from front to back, and stops at damage. The source stands behind the key of the next KLV,
/// which decides what becomes of it.
class MetadataReader {
 public:
  MetadataReader(DataIO::DataSource& source, SharedPtr<const MetaMetadata::Dictionary> dictionary,
                 const Limits& limits);
  virtual ~MetadataReader() = default;
  MetadataReader(const MetadataReader&) = delete;
  MetadataReader& operator=(const MetadataReader&) = delete;

  /// @param partition  the source stands behind its pack.
  std::unique_ptr<PartitionMetadata> read(const PartitionInfo& partition);
  /// Where the metadata end.
  uint64 end() const { return offset_; }

 protected:
  /// The metadata begin with another key.
  virtual void goWithoutPrimer(const PartitionInfo& partition);
  virtual bool goesOn();
  virtual void readKLV();
  /// Called in a catch clause, for the KLV whose key was read last.
  virtual void goPast(const Exceptions::ParseError& error);

  /// Of the next KLV. At the end of the file zeros take the place of what is missing.
  void readKey();
  KLVHeader readHeader();

  DataIO::DataSource& source() { return source_; }
  const Limits& limits() const { return limits_; }
  const PartitionMetadata& metadata() const { return *metadata_; }
  const KLV::Key& key() const { return key_; }
  uint64 offset() const { return offset_; }
  /// Octets of the key that the file has.
  std::size_t keySize() const { return keySize_; }
  /// By the partition pack's count, as long as that is believed.
  const std::optional<uint64>& countedEnd() const { return end_; }
  /// Of the set with a key; empty when the dictionary has none.
  std::string symbolOf(const KLV::Key& key) const;

 private:
  void skipLeadingFill();
  void believeCount(uint64 headerByteCount);
  void skipFill(const KLVHeader& klv);
  void addValue(const KLVHeader& klv, const KLV::Value& value);
  void requireValue(const KLVHeader& klv) const;
  [[noreturn]] void refuse(uint64 Limits::*limit, const KLVHeader& klv) const;
  std::string nameOf(const KLV::Key& key) const;

  DataIO::DataSource& source_;
  const Limits& limits_;
  std::unique_ptr<PartitionMetadata> metadata_;
  KLV::Key key_;
  uint64 offset_ = 0;  // of the key
  uint64 sets_ = 0;
  uint64 properties_ = 0;
  std::size_t keySize_ = 0;
  std::optional<uint64> end_;
  bool atEnd_ = false;  // a KLV ended exactly there
};

}  // namespace Vantor::MXF
