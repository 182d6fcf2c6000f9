// SPDX-License-Identifier: Apache-2.0
#include "engine/mip_database.h"

#include <gtest/gtest.h>

namespace cfm_mgr::engine {
namespace {

constexpr Mac kAddress = {2, 0, 0, 0, 0, 1};

Mac NumberedMac(std::size_t number) {
  return {2,
          1,
          static_cast<std::uint8_t>(number >> 16U),
          static_cast<std::uint8_t>(number >> 8U),
          static_cast<std::uint8_t>(number),
          0};
}

TEST(MipDatabase, TellsWhereAnAddressWasSeenLast) {
  MipDatabase database;
  EXPECT_EQ(std::nullopt, database.Find(Time(0), 100, kAddress));
  database.Learn(Time(0), 100, kAddress, 3);
  database.Learn(Time(1), 100, kAddress, 4);
  EXPECT_EQ(4U, database.Find(Time(2), 100, kAddress));
  EXPECT_EQ(1U, database.size());
}

TEST(MipDatabase, KeepsVidsApart) {
  MipDatabase database;
  database.Learn(Time(0), 100, kAddress, 3);
  EXPECT_EQ(std::nullopt, database.Find(Time(0), 101, kAddress));
}

TEST(MipDatabase, ForgetsAfterADay) {
  MipDatabase database;
  database.Learn(Time(0), 100, kAddress, 3);
  EXPECT_EQ(3U, database.Find(MipDatabase::kLifetime, 100, kAddress));
  EXPECT_EQ(std::nullopt, database.Find(MipDatabase::kLifetime + Time(1), 100, kAddress));
}

TEST(MipDatabase, GivesUpTheOneNotSeenForLongestWhenItIsFull) {
  MipDatabase database;
  for (std::size_t i = 0; i < MipDatabase::kMaxEntries; ++i) {
    database.Learn(Time(i), 1, NumberedMac(i), 1);
  }
  const Time later(MipDatabase::kMaxEntries);
  database.Learn(later, 1, NumberedMac(0), 1);
  database.Learn(later, 2, kAddress, 1);
  EXPECT_EQ(MipDatabase::kMaxEntries, database.size());
  EXPECT_TRUE(database.Find(later, 1, NumberedMac(0)));
  EXPECT_FALSE(database.Find(later, 1, NumberedMac(1)));
  EXPECT_TRUE(database.Find(later, 2, kAddress));
}

}  // namespace
}  // namespace cfm_mgr::engine
