#include "Report/ImportedNames.h"

#include <algorithm>

#include "Core/Platform/Path.h"
#include "Registers/FileDefinitions.h"
#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

namespace {

constexpr const char* kOwnNames =
    ": warning: the document is an export with --own-dictionary; what it names so is left out without that option";
constexpr const char* kOthersNames =
    ": warning: the document has names of a MetaDictionary that is not in it, which are left out; --dictionary reads "
    "them with what mxfxml dictionary --learn makes of the file";

/// Whether a document has names that an export with --own-dictionary gave it.
bool mentionsOwn(const Diagnostics& diagnostics) {
  return std::any_of(diagnostics.listed.begin(), diagnostics.listed.end(), [](const LosslessXML::Diagnostic& one) {
    const auto& all = one.arguments;
    return std::any_of(all.begin(), all.end(), [](const std::string& argument) {
      return argument == Registers::kOwnSets || argument == Registers::kOwnProperties;
    });
  });
}

}  // namespace

void warnOfOwnNames(const Path& document, const Diagnostics& diagnostics, const PartitionMetadata& metadata) {
  if (!mentionsOwn(diagnostics)) return;
  const auto& sets = metadata.sets();
  const bool isThere = std::any_of(sets.begin(), sets.end(), [](const MetadataSet* set) {
    return set->definition() != nullptr && set->name() == "MetaDictionary";
  });
  printMessage(Platform::pathToUTF8(document) + (isThere ? kOwnNames : kOthersNames));
}

}  // namespace Vantor::Tool
