#include "XMLUtils/DictionaryFiles.h"

namespace Vantor::XMLUtils {

void readDictionaryFiles(const std::vector<Path>& files, Definitions& into) {
  for (const auto& file : files) into.readFile(file);
}

}  // namespace Vantor::XMLUtils
