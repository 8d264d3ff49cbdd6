#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

/// Runs a fuzzer without libFuzzer: over each file named on the command line, or lying in a directory named there, and
/// over copies of it that are cut short or have some bytes replaced, 200 of each file unless --copies=n comes before
/// the files. The damage is the same on every run.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Input = std::vector<std::uint8_t>;
namespace fs = std::filesystem;

constexpr int kUsualCopies = 200;
constexpr std::string_view kCopiesOption = "--copies=";
constexpr int kMostReplacedBytes = 8;

Input readFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// The fuzzer gets a heap block of exactly the input's size, so that a sanitizer sees a read behind its end.
void run(const Input& input) {
  const Input exact(input.begin(), input.end());
  LLVMFuzzerTestOneInput(exact.data(), exact.size());
}

std::size_t below(std::mt19937& random, std::size_t bound) { return random() % bound; }

Input damaged(Input input, std::mt19937& random) {
  for (auto left = below(random, kMostReplacedBytes) + 1; left > 0; --left) {
    input[below(random, input.size())] = static_cast<std::uint8_t>(random());
  }
  if (below(random, 4) == 0) input.resize(below(random, input.size()));
  return input;
}

void runWithDamage(const fs::path& path, int copies) {
  const Input input = readFile(path);
  run(input);
  if (input.empty()) return;
  std::mt19937 random(static_cast<std::mt19937::result_type>(input.size()));
  for (int copy = 0; copy < copies; ++copy) run(damaged(input, random));
}

std::vector<fs::path> filesAt(const fs::path& path) {
  if (!fs::is_directory(path)) return {path};
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(path)) files.push_back(entry.path());
  return files;
}

}  // namespace

int main(int argc, char** argv) {
  std::size_t count = 0;
  int copies = kUsualCopies;
  for (int i = 1; i < argc; ++i) {
    if (std::string_view(argv[i]).substr(0, kCopiesOption.size()) == kCopiesOption) {
      copies = std::stoi(argv[i] + kCopiesOption.size());
      continue;
    }
    for (const fs::path& file : filesAt(argv[i])) {
      std::printf("%s\n", file.string().c_str());
      std::fflush(stdout);
      runWithDamage(file, copies);
      ++count;
    }
  }
  // A misspelt directory must not pass as a corpus without findings.
  if (count == 0) std::fprintf(stderr, "no input files\n");
  return count == 0 ? 1 : 0;
}
