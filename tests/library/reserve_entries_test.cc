// SPDX-License-Identifier: Apache-2.0
#include "core/reserve_entries.h"

#include <gtest/gtest.h>

#include <string>

namespace cfm_test {
namespace {

client_server::OpCacheSync Cache(int entries_of_each) {
  client_server::OpCacheSync cache;
  for (int i = 0; i < entries_of_each; ++i) {
    cache.add_mds()->set_md_name("D");
    cache.add_mas()->add_vids(300);
    cache.add_meps();
    cache.add_probes();
    cache.add_sessions()->set_pcp(7);
  }
  return cache;
}

TEST(ReserveEntries, MakesRoomForEveryEntryOfACache) {
  client_server::OpCacheSync cache;
  cfm::core::ReserveEntries(cache, Cache(100).SerializeAsString());
  EXPECT_GE(cache.mds().Capacity(), 100);
  EXPECT_GE(cache.mas().Capacity(), 100);
  EXPECT_GE(cache.meps().Capacity(), 100);
  EXPECT_GE(cache.probes().Capacity(), 100);
  EXPECT_GE(cache.sessions().Capacity(), 100);
  EXPECT_EQ(cache.ByteSizeLong(), 0U);
}

TEST(ReserveEntries, MakesRoomForEveryEntryOfTheStatistics) {
  client_server::OpReplyAllStats sent;
  for (int i = 0; i < 100; ++i) {
    sent.add_local_mep_stats()->set_ccm_tx_total(18446744073709551615U);
    sent.add_remote_mep_stats();
  }
  client_server::OpReplyAllStats stats;
  cfm::core::ReserveEntries(stats, sent.SerializeAsString());
  EXPECT_GE(stats.local_mep_stats().Capacity(), 100);
  EXPECT_GE(stats.remote_mep_stats().Capacity(), 100);
}

TEST(ReserveEntries, LooksPastFieldsThatNobodyKnows) {
  const std::string unknown =
      "\x50\xff\x01\x59"
      "12345678"
      "\x5d"
      "1234"
      "\x62\x02"
      "xx";
  client_server::OpCacheSync cache;
  cfm::core::ReserveEntries(cache, unknown + Cache(100).SerializeAsString());
  EXPECT_GE(cache.sessions().Capacity(), 100);
}

TEST(ReserveEntries, CountsAnEntryThatIsCutOff) {
  std::string bytes;
  for (int i = 0; i < 99; ++i) {
    bytes += std::string("\x0a\x00", 2);
  }
  client_server::OpCacheSync cache;
  cfm::core::ReserveEntries(cache, bytes + "\x0a\x7f");
  EXPECT_GE(cache.mds().Capacity(), 100);
}

TEST(ReserveEntries, StopsAtWhatCannotBeRead) {
  for (const char* const start : {"\x0b", "\x0f", "\x52\xff\xff\xff\xff\x0f", "\x59", "\x5d"}) {
    client_server::OpCacheSync cache;
    cfm::core::ReserveEntries(cache, start);
    EXPECT_EQ(cache.mds().Capacity(), client_server::OpCacheSync().mds().Capacity());
  }
  client_server::OpCacheSync cache;
  cfm::core::ReserveEntries(cache, "");
  EXPECT_EQ(cache.ByteSizeLong(), 0U);
}

}  // namespace
}  // namespace cfm_test
