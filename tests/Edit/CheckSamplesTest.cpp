#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "tests/Edit/CheckSupport.h"
#include "tests/SampleFiles.h"

namespace Vantor::Edit {
namespace {

/// One line for each finding: folder and name of the file, rule, partitions, set, property and sentence. With the
/// environment variable VANTOR_REWRITE_GOLDEN=1 the file becomes what the rules find now; the difference is to be
/// reviewed before it is committed.
const Path kGolden = Path(VANTOR_TEST_DATA_DIR) / "findings.txt";

std::string sampleName(const Path& sample) {
  return sample.parent_path().filename().string() + "/" + sample.filename().string();
}

std::string linesOf(const Path& sample) {
  std::string lines;
  for (const auto& finding : check(stateOf(sample))) {
    lines += sampleName(sample) + ": " + finding.rule->code + ":";
    for (const auto partition : finding.partitions) lines += " " + std::to_string(partition);
    for (const auto& part : {finding.set, finding.property, describe(finding)}) lines += ": " + part;
    lines += "\n";
  }
  return lines.empty() ? sampleName(sample) + ": nothing\n" : lines;
}

/// The lines of the golden file by sample.
std::map<std::string, std::string> reviewed() {
  std::map<std::string, std::string> lines;
  std::ifstream file(kGolden);
  for (std::string line; std::getline(file, line);) lines[line.substr(0, line.find(": "))] += line + "\n";
  return lines;
}

bool isRewritingFindings() {
  const char* flag = std::getenv("VANTOR_REWRITE_GOLDEN");
  return flag != nullptr && std::string(flag) == "1";
}

TEST(CheckSamples, HaveTheFindingsThatWereReviewed) {
  std::string found;
  const auto expected = reviewed();
  for (const auto& sample : sampleFiles()) {
    const auto lines = linesOf(sample);
    found += lines;
    if (isRewritingFindings()) continue;
    const auto at = expected.find(sampleName(sample));
    ASSERT_NE(at, expected.end()) << sample << " is not reviewed";
    EXPECT_EQ(lines, at->second);
  }
  if (!isRewritingFindings()) return;
  std::ofstream(kGolden) << found;
  GTEST_SKIP() << "rewrote " << kGolden;
}

}  // namespace
}  // namespace Vantor::Edit
