#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Core/DataIO/SeekableSource.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/IndexTable.h"
#include "Core/MXF/MetadataDamage.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Limits.h"

/// Rules about what header metadata and partition packs have to state, and what a file has that breaks them.
namespace Vantor::Edit {

enum class Severity {
  kNote,     ///< unusual
  kWarning,  ///< violates a standard; players cope with it
  kError     ///< players or validators refuse the file
};

/// A rule. There is one object of each, which lives until the process ends.
struct Rule {
  const char* code;  ///< for people to type: lower case, words joined by hyphens
  Severity severity;
  const char* sentence;  ///< what is wrong; each "{name}" stands for an argument of the finding, in order
  const char* source;    ///< the standard that asks for it, and the place in it where that is known
};

/// What breaks a rule.
struct Finding {
  const Rule* rule = nullptr;
  /// The partitions whose pack or metadata break it, ascending; 0 is the header partition. Repetitions of header
  /// metadata share a finding. Empty when it concerns the file as a whole.
  std::vector<std::size_t> partitions;
  std::string set;       ///< `MetadataSet::fullName`; empty when no set is concerned
  std::string property;  ///< its symbol; empty when the set as a whole is concerned, or none
  std::vector<std::string> arguments;
  std::string otherName = {};    ///< the common name of the property, or of the whole set; empty for none
  std::string symbol = {};       ///< of the set (`MetadataSet::name`), its key where it has none; empty without a set
  std::string instanceUID = {};  ///< of the set, in dotted pairs; empty for none
};

/// The sentence of the rule with the arguments, in English.
std::string describe(const Finding& finding);

/// Every rule, by code.
std::vector<const Rule*> rules();
/// Null when there is none of that code.
const Rule* findRule(std::string_view code);

/// What rules look at: partitions with their metadata, as they are in a file or will be after an edit.
struct FileState {
  struct Partition {
    MXF::PartitionInfo info;
    /// Its header metadata, with all rows of the primer pack as they were read; null when it has none, or none that can
    /// be read. Repetitions share one object, and rules look at it once.
    SharedPtr<const PartitionMetadata> metadata;
    std::optional<MXF::IndexTableSegment> index;  ///< its index table; none when it has none that can be read
    std::string problem;  ///< why its metadata cannot be read; empty when they can, or when it has none
    std::vector<MXF::MetadataDamage> missing;  ///< what its metadata lack that were read as far as they are whole
    std::string countProblem;      ///< why its pack's count of metadata bytes is wrong; empty when it is right
    std::string directoryProblem;  ///< what is wrong with its object directory; empty when it has a sound one, or none
  };
  /// An entry of the random index pack.
  struct IndexEntry {
    uint32 bodySID = 0;
    uint64 offset = 0;  ///< of a partition pack, from the header partition pack
  };
  uint64 fileSize = 0;                                      ///< in bytes
  uint64 runIn = 0;                                         ///< bytes before the header partition pack
  std::vector<Partition> partitions = {};                   ///< in file order, the header partition first
  std::optional<std::vector<IndexEntry>> randomIndex = {};  ///< none when there is no random index pack
  std::string randomIndexProblem = {};                      ///< why it cannot be read, or found; else empty
};

/// What becomes of damaged header metadata.
enum class OnDamage {
  kStop,    ///< those of the header partition are refused, and others left out
  kSalvage  ///< they are read as far as they are whole, and have a problem; refused where nothing is whole
};

/// Reads what rules look at; no essence, whatever the file's size.
/// @param dictionary  names sets and properties; the result keeps a reference to it.
/// @param limits      of the metadata of each partition, and the memory of all that is returned.
/// @throws Exceptions::ParseError with the offset when there is no header partition, or its metadata cannot be read.
/// Those of other partitions may be damaged: see `FileState::Partition::problem`. Exceptions::IOError when the file
/// cannot be read.
FileState readState(DataIO::SeekableSource& source, const SharedPtr<const MetaMetadata::Dictionary>& dictionary,
                    const Limits& limits = {}, OnDamage onDamage = OnDamage::kStop);

/// Reads the metadata of a partition from bytes that are to be written.
/// @param bytes  a primer pack, then sets, as `MXF::writeHeaderMetadata` writes them.
/// @throws Exceptions::ParseError with the offset when they are no such thing.
SharedPtr<const PartitionMetadata> readMetadata(const Bytes& bytes,
                                                const SharedPtr<const MetaMetadata::Dictionary>& dictionary,
                                                const Limits& limits = {});

/// Everything that breaks a rule: by partition, then in file order of the sets. Takes time in proportion to the sets
/// and properties. Any number of threads may check the same state.
std::vector<Finding> check(const FileState& state);

/// Whether an edit has changed a property. @param set  `MetadataSet::fullName`. @param property  its symbol; empty for
/// the set as a whole.
using IsChanged = std::function<bool(const std::string& set, const std::string& property)>;

/// The findings of `after` that `before` does not have. Each finding of `before` accounts for one in each of its
/// partitions: the one with the same arguments, else one with others in the same place, which is what an edit elsewhere
/// may make of it.
/// @param isChanged  for these properties other arguments are a new finding; by default for none.
/// @return in the order of `after`.
std::vector<Finding> newFindings(const std::vector<Finding>& before, std::vector<Finding> after,
                                 const IsChanged& isChanged = {});

}  // namespace Vantor::Edit
