#include <gtest/gtest.h>

#include <thread>

#include "Core/Platform/Containers.h"
#include "Core/Platform/MemoryBudget.h"

namespace Vantor::Platform {
namespace {

TEST(MemoryBudget, IsOfItsThreadAlone) {
  const MemoryBudget budget(100);
  std::thread([] { EXPECT_NO_THROW(Bytes(100000)); }).join();
  EXPECT_THROW(Bytes(100000), MemoryLimitReached);
}

}  // namespace
}  // namespace Vantor::Platform
