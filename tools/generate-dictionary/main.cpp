// Makes the built-in data from the XML registers of SMPTE, or checks that it is what they make.

#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "Core/DataIO/File.h"
#include "Core/Platform/Path.h"
#include "Definitions/DefinitionsText.h"
#include "Registers/Descriptions.h"
#include "Registers/RegisterDefinitions.h"
#include "Registers/RegisterFile.h"
#include "Registers/TypesTable.h"

namespace Vantor {

namespace {

constexpr const char* kUsage =
    "usage: generate-dictionary [--check] REGISTERS FOLDER\n"
    "Writes SmpteRegisters.dictionary, SmpteLabels.dictionary, SmpteTypes.table and SmpteDescriptions.table into "
    "FOLDER,\n"
    "made from Groups.xml, Elements.xml, Types.xml and Labels.xml of the folder REGISTERS. With --check nothing is\n"
    "written: the exit status is 0 when the files there are what the registers make, 1 when they are not, and 77 "
    "where\n"
    "there are no registers.\n";
constexpr int kWrongUsage = 2;
constexpr int kNotThere = 77;

/// Names of data files with their texts.
using DataFiles = std::vector<std::pair<const char*, std::string>>;

DataFiles make(const Path& folder) {
  Registers::Entries entries;
  for (const char* name : Registers::kRegisterNames) {
    Registers::readRegister(folder / (std::string(name) + ".xml"), entries);
  }
  Definitions definitions, labels;
  Registers::addDefinitions(entries, definitions);
  Registers::addLabels(entries, labels);
  return {{"SmpteRegisters.dictionary",
           textOf(definitions,
                  "Made from the SMPTE metadata registers Groups (ST 395), Elements (ST 335) and Types (ST 2003).")},
          {"SmpteLabels.dictionary", textOf(labels, "Made from the SMPTE metadata register Labels (ST 400).")},
          {"SmpteTypes.table", Registers::tableOfTypes(entries)},
          {"SmpteDescriptions.table", Registers::tableOfDescriptions(entries)}};
}

bool isStored(const Path& path, const std::string& text) {
  std::ifstream file(path, std::ios::binary);
  const std::string stored{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (stored == text) return true;
  std::fprintf(stderr, "%s is not what the registers make; run scripts/generate-dictionary\n",
               Platform::pathToUTF8(path).c_str());
  return false;
}

void store(const Path& path, const std::string& text) {
  DataIO::File::AtomicFile file(path);
  file.write(reinterpret_cast<const uint8*>(text.data()), text.size());
  file.commit();
}

int run(std::vector<std::string> arguments) {
  const bool isCheck = !arguments.empty() && arguments.front() == "--check";
  if (isCheck) arguments.erase(arguments.begin());
  if (arguments.size() != 2) {
    std::fputs(kUsage, stderr);
    return kWrongUsage;
  }
  const Path registers = Platform::pathFromUTF8(arguments[0]);
  if (isCheck && !std::filesystem::exists(registers)) return kNotThere;
  bool isSame = true;
  for (const auto& [name, text] : make(registers)) {
    const Path path = Platform::pathFromUTF8(arguments[1]) / name;
    if (isCheck) {
      isSame = isStored(path, text) && isSame;
    } else {
      store(path, text);
    }
  }
  return isSame ? 0 : 1;
}

}  // namespace

}  // namespace Vantor

int main(int argc, char** argv) try {
  return Vantor::run(std::vector<std::string>(argv + 1, argv + argc));
} catch (const std::exception& error) {
  std::fprintf(stderr, "generate-dictionary: %s\n", error.what());
  return 1;
}
