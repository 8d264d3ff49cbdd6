#include "Core/Platform/MemoryBudget.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Core/Platform/Containers.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Limits.h"

namespace Vantor::Platform {
namespace {

TEST(MemoryBudget, RefusesTheAllocationThatWouldPassIt) {
  const MemoryBudget budget(1000);
  Bytes some(400);
  EXPECT_THROW(Bytes(1000), MemoryLimitReached);
  EXPECT_NO_THROW(Bytes(400));
}

TEST(MemoryBudget, GetsBackWhatIsReleased) {
  const MemoryBudget budget(100000);
  for (int i = 0; i < 100; ++i) Bytes(90000);
  EXPECT_EQ(budget.used(), 0);
  Bytes kept(50000);
  EXPECT_GE(budget.used(), 50000);
  EXPECT_THROW(Bytes(90000), MemoryLimitReached);
}

TEST(MemoryBudget, CountsFromItsOwnStart) {
  Bytes before(1 << 20);
  const MemoryBudget budget(1000);
  EXPECT_NO_THROW(Bytes(500));
  Bytes().swap(before);
  EXPECT_LT(budget.used(), 0);
}

TEST(MemoryBudget, EndsWithItsScope) {
  { const MemoryBudget budget(10); }
  EXPECT_NO_THROW(Bytes(1000));
}

TEST(MemoryBudget, CannotWidenTheOneAroundIt) {
  const MemoryBudget outer(1000);
  {
    const MemoryBudget inner(1000000);
    try {
      Bytes(5000);
      FAIL();
    } catch (const MemoryLimitReached& reached) {
      EXPECT_EQ(reached.limit(), 1000u);
    }
  }
  {
    const MemoryBudget inner(100);
    EXPECT_THROW(Bytes(500), MemoryLimitReached);
  }
  EXPECT_NO_THROW(Bytes(500));
}

TEST(Limits, NameMemoryInTheRefusal) {
  Limits limits;
  limits.memory = 1000;
  try {
    withinMemory(limits, [] { return Bytes(2000).size(); });
    FAIL();
  } catch (const Exceptions::LimitExceeded& refusal) {
    EXPECT_EQ(refusal.message(), "takes more than 1000 bytes of memory (limit 'memory')");
    EXPECT_EQ(refusal.arguments(), (std::vector<std::string>{"", "1000", "memory"}));
  }
  EXPECT_EQ(withinMemory(limits, [] { return 7; }), 7);
}

TEST(Limits, HaveANameEach) {
  for (const auto& limit : kLimitNames) {
    EXPECT_EQ(nameOf(limit.member).name, limit.name);
    if (limit.refusal == nullptr) continue;
    try {
      refuseBeyond(limit.member, 12, "in front");
    } catch (const Exceptions::LimitExceeded& refusal) {
      EXPECT_EQ(refusal.message().find("in front: "), 0u);
      EXPECT_NE(refusal.message().find("12"), std::string::npos);
      EXPECT_NE(refusal.message().find("(limit '" + std::string(limit.name) + "')"), std::string::npos);
    }
  }
}

}  // namespace
}  // namespace Vantor::Platform
