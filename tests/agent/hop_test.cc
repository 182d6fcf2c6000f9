// SPDX-License-Identifier: Apache-2.0
#include "core/hop.h"

#include <gtest/gtest.h>

namespace cfm_agent {
namespace {

std::vector<Hop> HopsWithTtls(const std::vector<std::uint8_t>& ttls) {
  std::vector<Hop> hops;
  for (const std::uint8_t ttl : ttls) {
    Hop hop;
    hop.ttl = ttl;
    hop.vlan = static_cast<std::uint16_t>(hops.size());  // tells them apart
    hops.push_back(hop);
  }
  return hops;
}

// The numbers of the steps; those without a reply in brackets.
std::string StepsOf(const std::vector<std::uint8_t>& ttls, std::uint8_t ttl) {
  std::string text;
  for (const PathStep& step : PathOf(HopsWithTtls(ttls), ttl)) {
    const std::string numbers = std::to_string(step.first) + '-' + std::to_string(step.last);
    text += (text.empty() ? "" : " ") + (step.hop ? numbers : '[' + numbers + ']');
  }
  return text;
}

TEST(Path, IsInOrderWhateverTheOrderOfTheReplies) {
  EXPECT_EQ(StepsOf({61, 63, 62}, 64), "1-1 2-2 3-3");
}

TEST(Path, TellsOfHopsWithoutReplies) {
  EXPECT_EQ(StepsOf({62, 58}, 64), "[1-1] 2-2 [3-5] 6-6");
  EXPECT_EQ(StepsOf({0}, 255), "[1-254] 255-255");
}

TEST(Path, KeepsRepliesOfTheSameHopAsTheyCame) {
  const auto path = PathOf(HopsWithTtls({62, 63, 62}), 64);
  ASSERT_EQ(path.size(), 3U);
  EXPECT_EQ(path[1].hop->vlan, 0U);
  EXPECT_EQ(path[2].hop->vlan, 2U);
}

TEST(Path, BeginsWithTheFirstReplyWhenTheTtlIsNotKnown) {
  EXPECT_EQ(StepsOf({63, 62}, 0), "1-1 2-2");
  EXPECT_EQ(StepsOf({63, 62}, 7), "1-1 2-2");
  EXPECT_EQ(StepsOf({255}, 255), "1-1");
}

TEST(Path, IsEmptyWithoutReplies) { EXPECT_EQ(StepsOf({}, 64), ""); }

TEST(HopOf, TakesOverAllThatAReplyTells) {
  cfm::LinktraceReplyEntry reply;
  reply.source_mac = {{{1, 2, 3, 4, 5, 6}}};
  reply.ttl = 9;
  reply.relay_action = 3;
  reply.terminal_mep = reply.forwarded = reply.use_fdb_only = true;
  reply.vlan = 100;
  reply.priority = 7;
  reply.egress_id->last_mac = {{{1, 1, 1, 1, 1, 1}}};
  reply.egress_id->next_mac = {{{2, 2, 2, 2, 2, 2}}};
  reply.reply_egress = std::make_unique<cfm::LtrReplyPort>();
  reply.reply_egress->port_id = "east";
  const Hop hop = HopOf(reply);
  EXPECT_EQ(hop.from.to_string(), "01:02:03:04:05:06");
  EXPECT_EQ(hop.ttl, 9U);
  EXPECT_EQ(hop.relay_action, 3);
  EXPECT_TRUE(hop.terminal_mep && hop.forwarded && hop.use_fdb_only);
  EXPECT_EQ(hop.vlan, 100U);
  EXPECT_EQ(hop.priority, 7U);
  EXPECT_EQ(hop.last_mac.to_string(), "01:01:01:01:01:01");
  EXPECT_EQ(hop.next_mac.to_string(), "02:02:02:02:02:02");
  EXPECT_FALSE(hop.ingress);
  ASSERT_TRUE(hop.egress);
  EXPECT_EQ(hop.egress->port_id, "east");
}

}  // namespace
}  // namespace cfm_agent
