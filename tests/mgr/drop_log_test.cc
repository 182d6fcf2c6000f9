// SPDX-License-Identifier: Apache-2.0
#include "drop_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cfm_mgr_test {
namespace {

using cfm_mgr::DescribeDrops;
using cfm_mgr::DropLog;
using cfm_mgr::net::DropCount;
using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

class DropLogTest : public testing::Test {
 protected:
  /** What the log says when so many frames were dropped at eth1. */
  std::vector<std::string> News(std::uint64_t frames) {
    return log_.TakeNews(now_, {{"eth1", "unknown opcode", frames}});
  }

  DropLog log_;
  DropLog::Clock::time_point now_{hours(5)};
};

TEST_F(DropLogTest, SaysEachInterfaceAndReasonAtOnce) {
  EXPECT_THAT(log_.TakeNews(now_, {}), IsEmpty());
  EXPECT_THAT(log_.TakeNews(now_, {{"eth1", "unknown opcode", 1}}),
              ElementsAre("interface eth1: 1 frame dropped: unknown opcode"));
  EXPECT_THAT(log_.TakeNews(now_, {{"eth1", "unknown opcode", 1},
                                   {"eth1", "malformed: truncated", 2},
                                   {"eth2", "unknown opcode", 3}}),
              ElementsAre("interface eth1: 2 frames dropped: malformed: truncated",
                          "interface eth2: 3 frames dropped: unknown opcode"));
}

TEST_F(DropLogTest, RepeatsItselfOnceInAnHourAndOnlyWhenThereIsMore) {
  News(3);
  now_ += minutes(59);
  EXPECT_THAT(News(10), IsEmpty());
  now_ += minutes(1);
  EXPECT_THAT(News(12), ElementsAre("interface eth1: 12 frames dropped, 9 of them since the last "
                                    "record: unknown opcode"));
  now_ += hours(2);
  EXPECT_THAT(News(12), IsEmpty());
  EXPECT_THAT(News(13), ElementsAre("interface eth1: 13 frames dropped, 1 of them since the last "
                                    "record: unknown opcode"));
}

TEST_F(DropLogTest, TakesAnInterfaceThatCameBackForANewOne) {
  News(12);
  EXPECT_THAT(News(2), ElementsAre("interface eth1: 2 frames dropped: unknown opcode"));
}

TEST_F(DropLogTest, LooksOnceASecondAndNotWhileNothingHappens) {
  EXPECT_TRUE(log_.ShouldLook(now_));
  EXPECT_EQ(log_.due(), std::nullopt);
  now_ += milliseconds(300);
  EXPECT_FALSE(log_.ShouldLook(now_));
  EXPECT_EQ(log_.due(), now_ + milliseconds(700)) << "what happened just now is not forgotten";
  now_ += milliseconds(700);
  EXPECT_TRUE(log_.ShouldLook(now_));
  EXPECT_EQ(log_.due(), std::nullopt);
  now_ += seconds(100);
  EXPECT_TRUE(log_.ShouldLook(now_));
}

TEST(DescribeDrops, TellsAllCounters) {
  EXPECT_THAT(DescribeDrops({}), ElementsAre("no frames dropped"));
  EXPECT_THAT(DescribeDrops({{"a", "unknown opcode", 1}, {"b", "malformed: no End TLV", 20}}),
              ElementsAre("interface a: 1 frame dropped: unknown opcode",
                          "interface b: 20 frames dropped: malformed: no End TLV"));
}

}  // namespace
}  // namespace cfm_mgr_test
