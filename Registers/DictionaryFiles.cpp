#include "Registers/DictionaryFiles.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Raise.h"
#include "Registers/RegisterDefinitions.h"
#include "Registers/RegisterFile.h"
#include "XMLUtils/InputFile.h"

namespace Vantor::Registers {

namespace {

using Exceptions::raise;

/// The largest dictionary file; the registers of SMPTE take a few megabytes.
constexpr std::uintmax_t kLargestRegister = std::uintmax_t{64} << 20;

/// Refuses pipes and devices, which may have no end, and files of another kind.
void checkFile(const Path& path) {
  std::error_code error;
  const bool isThere = std::filesystem::exists(path, error);
  if (isThere && !std::filesystem::is_regular_file(path, error)) {
    raise<Exceptions::IOError>("cannot read '{}': it is no file", Platform::pathToUTF8(path));
  }
  if (isThere && std::filesystem::file_size(path, error) > kLargestRegister) {
    raise<Exceptions::InvalidFormat>(
        "{}: a register or dictionary file has 64 MiB at most; this is another file, or one to be split",
        Platform::pathToUTF8(path));
  }
}

/// The registers of a folder; Labels may be missing.
void readFolder(const Path& folder, Entries& into) {
  for (const char* name : kRegisterNames) {
    const Path file = folder / (std::string(name) + ".xml");
    if (std::string_view(name) != kRegisterNames.back() || std::filesystem::exists(file)) readRegister(file, into);
  }
}

/// Built-in labels are not part of `Definitions`, so that its own check does not see a second definition of one.
void checkLabel(const LabelDefinition& label, const Definitions& definitions) {
  const auto* known = builtInLabels().findLabel(label.key);
  if (known == nullptr) known = builtInLabels().findLabel(label.symbol);
  if (known == nullptr) return;
  raise<Exceptions::InvalidFormat>(
      "{}:{}: the label {} is built in, as '{}'; take the row away, or choose another key and symbol",
      definitions.sources()[label.origin.source], label.origin.line, known->symbol, known->name);
}

}  // namespace

void readDictionaryFiles(const std::vector<Path>& files, Definitions& into) {
  Entries entries;
  std::vector<Path> dictionaries;
  for (const auto& file : files) {
    std::error_code error;
    if (std::filesystem::is_directory(file, error)) {
      readFolder(file, entries);
      continue;
    }
    checkFile(file);
    if (XMLUtils::looksLikeXML(file)) {
      readRegister(file, entries);
    } else {
      dictionaries.push_back(file);
    }
  }
  const auto& read = entries.files;
  if (std::any_of(read.begin(), read.end() - 1, [](const std::string& file) { return !file.empty(); })) {
    addDefinitions(entries, into);
  }
  if (!read.back().empty()) addLabels(entries, into);
  const std::size_t labels = into.labels().size();
  for (const auto& dictionary : dictionaries) into.readFile(dictionary);
  for (std::size_t i = labels; i < into.labels().size(); ++i) checkLabel(into.labels()[i], into);
}

}  // namespace Vantor::Registers
