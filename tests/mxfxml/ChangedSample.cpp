#include "ChangedSample.h"

#include <stdexcept>

#include "Program.h"

namespace Vantor::Tool {

ChangedSample::ChangedSample(const std::string& name, const std::string& from, const std::string& to) {
  std::string bytes = readFile(sample(name));
  const auto at = bytes.rfind(from);
  if (at == std::string::npos || from.size() != to.size()) throw std::runtime_error("cannot change " + name);
  writeFile(path(), bytes.replace(at, to.size(), to));
}

}  // namespace Vantor::Tool
