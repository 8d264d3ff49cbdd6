#pragma once

#include <array>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace Vantor {

/// A row of the table of names that people use: a set and a property, their symbols, which are empty for sets that the
/// registers lack, and their keys in 32 digits.
struct CommonNameRow {
  std::string set, property, setSymbol, propertySymbol, setKey, propertyKey;
};

/// The rows of the table `common_names.tsv` in the folder of registers beside the repository; none without it.
inline std::vector<CommonNameRow> commonNameRows() {
  std::vector<CommonNameRow> rows;
  std::ifstream table(VANTOR_SHARED_REGISTERS_DIR "/common_names.tsv");
  std::string line;
  for (std::getline(table, line); std::getline(table, line);) {
    std::array<std::string, 7> cells;
    std::istringstream words(line);
    for (auto& cell : cells) std::getline(words, cell, '\t');
    rows.push_back({cells[0], cells[2], cells[3], cells[4], cells[5], cells[6]});
  }
  return rows;
}

}  // namespace Vantor
