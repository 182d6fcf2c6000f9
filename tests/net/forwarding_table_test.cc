// SPDX-License-Identifier: Apache-2.0
#include "net/simulated/forwarding_table.h"

#include <gtest/gtest.h>

namespace cfm_mgr::net {
namespace {

using std::chrono::nanoseconds;
using std::chrono::seconds;

constexpr engine::Mac kMac = {0x02, 0, 0, 0, 0, 1};
constexpr engine::Mac kOtherMac = {0x02, 0, 0, 0, 0, 2};

TEST(ForwardingTable, KnowsAnAddressOnlyInTheVlanWhereItWasSeen) {
  ForwardingTable table;
  table.Learn(seconds(0), 100, kMac, 7);
  EXPECT_EQ(table.Find(seconds(0), 100, kMac), 7U);
  EXPECT_EQ(table.Find(seconds(0), 101, kMac), std::nullopt);
  EXPECT_EQ(table.Find(seconds(0), 100, kOtherMac), std::nullopt);
}

TEST(ForwardingTable, FollowsAnAddressThatMoves) {
  ForwardingTable table;
  table.Learn(seconds(0), 100, kMac, 7);
  table.Learn(seconds(1), 100, kMac, 8);
  EXPECT_EQ(table.Find(seconds(1), 100, kMac), 8U);
}

TEST(ForwardingTable, ForgetsWhatItHasNotSeenForTheAgeingTime) {
  ForwardingTable table;
  table.Learn(seconds(0), 100, kMac, 7);
  EXPECT_EQ(table.Find(kAgeingTime, 100, kMac), 7U);
  EXPECT_EQ(table.Find(kAgeingTime + nanoseconds(1), 100, kMac), std::nullopt);
  table.Learn(kAgeingTime, 100, kMac, 7);
  EXPECT_EQ(table.Find(kAgeingTime + nanoseconds(1), 100, kMac), 7U);
}

TEST(ForwardingTable, ForgetsThePortThatIsFlushedAndNoOther) {
  ForwardingTable table;
  table.Learn(seconds(0), 100, kMac, 7);
  table.Learn(seconds(0), 100, kOtherMac, 8);
  table.Flush(7);
  EXPECT_EQ(table.Find(seconds(0), 100, kMac), std::nullopt);
  EXPECT_EQ(table.Find(seconds(0), 100, kOtherMac), 8U);
}

TEST(ForwardingTable, DoesNotLearnGroupAddresses) {
  ForwardingTable table;
  table.Learn(seconds(0), 100, {0x01, 0x80, 0xc2, 0, 0, 0x30}, 7);
  EXPECT_EQ(table.size(), 0U);
}

TEST(ForwardingTable, StaysWithinItsCapacityAndTakesNewAddressesWhenOldOnesAge) {
  ForwardingTable table(1);
  table.Learn(seconds(0), 100, kMac, 7);
  table.Learn(seconds(1), 100, kOtherMac, 8);
  EXPECT_EQ(table.Find(seconds(1), 100, kOtherMac), std::nullopt);
  EXPECT_EQ(table.Find(seconds(1), 100, kMac), 7U);
  table.Learn(seconds(301), 100, kOtherMac, 8);
  EXPECT_EQ(table.Find(seconds(301), 100, kOtherMac), 8U);
  EXPECT_EQ(table.size(), 1U);
}

}  // namespace
}  // namespace cfm_mgr::net
