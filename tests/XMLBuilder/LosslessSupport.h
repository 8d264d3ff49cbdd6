#pragma once

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/Platform/Strings.h"
#include "LosslessXML.h"
#include "tests/XMLBuilder/ImportSupport.h"

/// Shared by the tests of the lossless import: small documents, and what an import makes of them.
namespace Vantor::XML2Partition {

inline constexpr const char* kPrefaceUID = "01.01.01.01.01.01.01.01.01.01.01.01.01.01.01.01";
inline constexpr const char* kStorageUID = "02.02.02.02.02.02.02.02.02.02.02.02.02.02.02.02";

/// A document in the legacy vocabulary, one element to a line; the content starts at line 2.
inline std::string documentOf(const std::string& content) {
  return "<s377m:MetadataSets xmlns:s377m='urn:SMPTE:S377M' xmlns:rp210='urn:SMPTE:RP210' "
         "xmlns:types='urn:SMPTE:Types:MXF' xmlns:groups='urn:SMPTE:Groups:MXF' "
         "xmlns:s422mTypes='urn:SMPTE:S422MTypes:MXF'>\n" +
         content + "\n</s377m:MetadataSets>";
}
inline std::string prefaceWith(const std::string& content) {
  return documentOf("<s377m:Preface rp210:InstanceUID='" + std::string(kPrefaceUID) + "'>\n" + content +
                    "\n</s377m:Preface>");
}
inline std::string identificationWith(const std::string& content) {
  return documentOf("<s377m:Identification>\n" + content + "\n</s377m:Identification>");
}

/// A diagnostic without its place.
inline std::string messageOf(const LosslessXML::Diagnostic& diagnostic) {
  return LosslessXML::describe({diagnostic.kind, {}, diagnostic.arguments});
}

/// The two ways to load a document.
enum class LosslessEntry { kBytes, kFile };
inline constexpr LosslessEntry kLosslessEntries[] = {LosslessEntry::kBytes, LosslessEntry::kFile};

inline LosslessXML::Document loaded(const std::string& text, LosslessEntry entry = LosslessEntry::kBytes) {
  if (entry == LosslessEntry::kBytes) return LosslessXML::Document::fromBytes(text.data(), text.size());
  const TemporaryFile file(text);
  return LosslessXML::Document::fromFile(file.path());
}

inline LosslessXML::Import importLosslessly(const std::string& text, PartitionMetadata& partition,
                                            LosslessEntry entry = LosslessEntry::kBytes,
                                            const PartitionMetadata* base = nullptr,
                                            LosslessXML::Extent extent = LosslessXML::Extent::kDescribed) {
  return loaded(text, entry).import(partition, base, extent);
}

/// A partition with the built-in dictionary, filled from a document.
class Imported {
 public:
  explicit Imported(const std::string& text, MetaMetadata::Vocabulary vocabulary = MetaMetadata::Vocabulary::kLegacy,
                    LosslessEntry entry = LosslessEntry::kBytes)
      : partition_(builtInDictionary(vocabulary)), result_(importLosslessly(text, partition_, entry)) {}
  Imported(const std::string& text, LosslessEntry entry) : Imported(text, MetaMetadata::Vocabulary::kLegacy, entry) {}
  /// With a partition that the document was exported from, whose primer this one gets.
  Imported(const std::string& text, const PartitionMetadata& base,
           LosslessXML::Extent extent = LosslessXML::Extent::kDescribed)
      : partition_(builtInDictionary()) {
    for (const auto& entry : base.partitionDictionary().primerEntries()) {
      partition_.partitionDictionary().addPrimerEntry(entry);
    }
    result_ = importLosslessly(text, partition_, LosslessEntry::kBytes, &base, extent);
  }

  PartitionMetadata& partition() { return partition_; }
  MetadataSet& first() { return *partition_.sets().front(); }
  const LosslessXML::Import& result() const { return result_; }
  std::vector<std::string> messages() const {
    std::vector<std::string> texts;
    for (const auto& one : result_.diagnostics) {
      texts.push_back(std::to_string(one.place.line) + "|" + one.place.set + "|" + one.place.property + "|" +
                      messageOf(one));
    }
    return texts;
  }
  std::vector<LosslessXML::Diagnostic::Kind> kinds() const {
    std::vector<LosslessXML::Diagnostic::Kind> found;
    for (const auto& one : result_.diagnostics) found.push_back(one.kind);
    return found;
  }

 private:
  PartitionMetadata partition_;
  LosslessXML::Import result_;
};

template <class T>
const T& valueAs(MetadataSet& set, const std::string& symbol) {
  const auto* value = valueOf(set, symbol);
  if (value == nullptr) throw std::logic_error("no value: " + symbol);
  return dynamic_cast<const T&>(*value);
}

}  // namespace Vantor::XML2Partition
