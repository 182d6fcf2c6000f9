// SPDX-License-Identifier: Apache-2.0
#include "store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "convert.h"
#include "messages.h"
#include "render.h"
#include "store_fixture.h"

namespace cfm_mgr_test {
namespace {

using cfm_mgr::SizeOf;
using cfm_mgr::Store;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(StoreTest, WhatItHoldsComesBackAsItWasSent) {
  auto domain = CreateMd("D0");
  auto association = CreateMa("D0", "A", {3, 4});
  association.add_vids(7);
  association.add_vids(7);
  SetAis(*association.mutable_ais());
  auto mep = CreateMep("D0", "A", 3);
  mep.set_ifindex(4294967295U);
  mep.set_aux_flag(true);
  Done(domain);
  Done(association);
  Done(mep);
  const auto cache = cfm_mgr::ToCacheSync(store_.tree());
  ASSERT_EQ(cache.mds_size(), 3);
  ASSERT_EQ(cache.mas_size(), 3);
  ASSERT_EQ(cache.meps_size(), 3);
  ASSERT_EQ(cache.probes_size(), 1);
  ASSERT_EQ(cache.sessions_size(), 2);
  EXPECT_EQ(cache.mds(0).SerializeAsString(), domain.SerializeAsString());
  EXPECT_EQ(cache.mas(0).SerializeAsString(), association.SerializeAsString());
  EXPECT_EQ(cache.meps(0).SerializeAsString(), mep.SerializeAsString());
  EXPECT_EQ(cache.mas(1).SerializeAsString(), CreateMa("D1", "A1", {1, 2, 3}).SerializeAsString())
      << "AIS that is off carries its two flags only";
  EXPECT_EQ(cache.probes(0).SerializeAsString(), CreateProbe(1).SerializeAsString());
  EXPECT_EQ(cache.sessions(1).SerializeAsString(), CreateSession(1, 2).SerializeAsString());
}

TEST_F(StoreTest, LoadsAWholeConfiguration) {
  Store other;
  EXPECT_THAT(other.Load(cfm_mgr::ToCacheSync(store_.tree())), IsEmpty());
  EXPECT_EQ(cfm_mgr::Render(other.tree()), Text());
}

TEST_F(StoreTest, LoadingKeepsWhatIsGoodAndNamesTheRest) {
  auto cache = cfm_mgr::ToCacheSync(store_.tree());
  cache.mutable_meps(0)->set_ccm_priority(8);
  *cache.add_sessions() = CreateSession(7, 1);
  Store other;
  EXPECT_THAT(other.Load(cache),
              ElementsAre(R"(md "D1" ma "A1" mep 1: CCM priority 8: expected 0 to 7)",
                          "probe 7 session 1: no probe 7"));
  EXPECT_EQ(SizeOf(other.tree()).meps, 1U);
  EXPECT_EQ(SizeOf(other.tree()).sessions, 2U);
}

}  // namespace
}  // namespace cfm_mgr_test
