#include "XMLUtils/DictionaryFiles.h"

#include <array>
#include <system_error>
#include <utility>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/Dictionary/RegisterText.h"
#include "Core/Platform/Exceptions.h"
#include "XMLUtils/InputFile.h"
#include "XMLUtils/RegisterFile.h"

namespace Vantor::XMLUtils {

namespace {

constexpr const char* kSource = "XMLUtils/DictionaryFiles";

constexpr std::array<const char*, kRegisterKinds> kRegisterFiles = {"Groups.xml", "Elements.xml", "Types.xml",
                                                                    "Labels.xml"};

/// As much as a dictionary file may have; the registers of SMPTE take a few megabytes.
constexpr std::uintmax_t kLargestRegister = std::uintmax_t{64} << 20;

/// Refuses what would be waited for or read without end.
void checkFile(const Path& path) {
  std::error_code error;
  const bool isThere = std::filesystem::exists(path, error);
  if (isThere && !std::filesystem::is_regular_file(path, error)) {
    throw Exceptions::IOError("cannot read '" + path.u8string() + "': it is no file", kSource, __LINE__);
  }
  if (isThere && std::filesystem::file_size(path, error) > kLargestRegister) {
    throw Exceptions::InvalidFormat(path.u8string() + ": a register or dictionary file has 64 MiB at most; this is " +
                                        "another file, or one to be split",
                                    kSource, __LINE__);
  }
}

/// The registers of a folder; Labels may be missing.
void readFolder(const Path& folder, Registers& into) {
  for (const char* name : kRegisterFiles) {
    const Path file = folder / name;
    if (name != kRegisterFiles.back() || std::filesystem::exists(file)) readRegister(file, into);
  }
}

/// Puts a text that was made from registers over what is there.
void overlay(DictionaryText text, const Registers& registers, Definitions& into) {
  std::array<uint32, kRegisterKinds> sources{};
  for (std::size_t kind = 0; kind < kRegisterKinds; ++kind) sources[kind] = into.addSource(registers.files[kind]);
  for (auto& origin : text.origins) origin.source = sources.at(origin.source);
  into.readText(std::move(text.text), text.origins, Definitions::Overlay::kReplace);
}

/// The labels that are built in are no part of other definitions, and are defined once all the same.
void checkLabel(const LabelDefinition& label, const Definitions& definitions) {
  const auto* known = builtInLabels().findLabel(label.key);
  if (known == nullptr) known = builtInLabels().findLabel(label.symbol);
  if (known == nullptr) return;
  throw Exceptions::InvalidFormat(definitions.sources()[label.origin.source] + ":" + std::to_string(label.origin.line) +
                                      ": the label " + std::string(known->symbol) + " is built in, as '" +
                                      std::string(known->name) +
                                      "'; take the row away, or choose another key and symbol",
                                  kSource, __LINE__);
}

bool hasDefinitions(const Registers& registers) {
  return !registers.file(RegisterKind::kGroups).empty() || !registers.file(RegisterKind::kElements).empty() ||
         !registers.file(RegisterKind::kTypes).empty();
}

}  // namespace

void readDictionaryFiles(const std::vector<Path>& files, Definitions& into) {
  Registers registers;
  std::vector<Path> dictionaries;
  for (const auto& file : files) {
    std::error_code error;
    if (std::filesystem::is_directory(file, error)) {
      readFolder(file, registers);
      continue;
    }
    checkFile(file);
    if (looksLikeXML(file)) {
      readRegister(file, registers);
    } else {
      dictionaries.push_back(file);
    }
  }
  if (hasDefinitions(registers)) overlay(definitionsText(registers), registers, into);
  if (!registers.file(RegisterKind::kLabels).empty()) overlay(labelsText(registers), registers, into);
  const std::size_t labels = into.labels().size();
  for (const auto& dictionary : dictionaries) into.readFile(dictionary);
  for (std::size_t i = labels; i < into.labels().size(); ++i) checkLabel(into.labels()[i], into);
}

}  // namespace Vantor::XMLUtils
