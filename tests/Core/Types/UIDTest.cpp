#include <gtest/gtest.h>

#include <set>
#include <thread>
#include <vector>

#include "Core/Types/Factories.h"

namespace Vantor::Types {
namespace {

constexpr int kMany = 10000;

TEST(GenerateUUID, SetsVersionAndVariant) {
  for (int i = 0; i < kMany; ++i) {
    const UUID identifier = Factories::UID::generateUUID();
    ASSERT_EQ(identifier.octet(7) >> 4, 4);
    ASSERT_EQ(identifier.octet(9) >> 6, 2);
  }
}

TEST(GenerateUUID, GivesADifferentOneEachTime) {
  std::set<UUID> identifiers;
  for (int i = 0; i < kMany; ++i) identifiers.insert(Factories::UID::generateUUID());
  EXPECT_EQ(identifiers.size(), static_cast<std::size_t>(kMany));
}

TEST(GenerateUUID, VariesEveryOtherBit) {
  std::vector<uint8> seenSet(UUID::kSize);
  std::vector<uint8> seenClear(UUID::kSize);
  for (int i = 0; i < kMany; ++i) {
    const UUID identifier = Factories::UID::generateUUID();
    for (std::size_t octet = 0; octet < UUID::kSize; ++octet) {
      seenSet[octet] = static_cast<uint8>(seenSet[octet] | identifier.octet(octet + 1));
      seenClear[octet] = static_cast<uint8>(seenClear[octet] | ~identifier.octet(octet + 1));
    }
  }
  for (std::size_t octet = 0; octet < UUID::kSize; ++octet) {
    const uint8 fixedSet = octet == 6 ? 0x40 : octet == 8 ? 0x80 : 0x00;
    const uint8 fixedClear = octet == 6 ? 0xb0 : octet == 8 ? 0x40 : 0x00;
    EXPECT_EQ(seenSet[octet], 0xff ^ fixedClear) << octet;
    EXPECT_EQ(seenClear[octet], 0xff ^ fixedSet) << octet;
  }
}

TEST(GenerateUUID, GivesSeveralThreadsDifferentOnes) {
  constexpr int kThreads = 4;
  std::vector<std::vector<UUID>> generated(kThreads);
  std::vector<std::thread> threads;
  for (auto& identifiers : generated) {
    threads.emplace_back([&identifiers] {
      for (int i = 0; i < kMany / kThreads; ++i) identifiers.push_back(Factories::UID::generateUUID());
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::set<UUID> all;
  for (const auto& identifiers : generated) all.insert(identifiers.begin(), identifiers.end());
  EXPECT_EQ(all.size(), static_cast<std::size_t>(kMany));
}

}  // namespace
}  // namespace Vantor::Types
