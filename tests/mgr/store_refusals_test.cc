// SPDX-License-Identifier: Apache-2.0
#include "store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "messages.h"
#include "store_fixture.h"

namespace cfm_mgr_test {
namespace {

using testing::HasSubstr;

TEST_F(StoreTest, RefusesWhatNamesAnEntityThatIsNotThere) {
  EXPECT_EQ(ReasonAgainst(UpdateMd("x")), R"(no domain "x")");
  EXPECT_EQ(ReasonAgainst(DeleteMd("x")), R"(no domain "x")");
  EXPECT_EQ(ReasonAgainst(CreateMa("x", "A1")), R"(no domain "x")");
  EXPECT_EQ(ReasonAgainst(UpdateMa("D2", "A1")), R"(no association "A1" in domain "D2")");
  EXPECT_EQ(ReasonAgainst(DeleteMa("D1", "x")), R"(no association "x" in domain "D1")");
  EXPECT_EQ(ReasonAgainst(CreateMep("x", "A1", 1)), R"(no domain "x")");
  EXPECT_EQ(ReasonAgainst(CreateMep("D1", "x", 1)), R"(no association "x" in domain "D1")");
  EXPECT_EQ(ReasonAgainst(UpdateMep("D1", "A1", 3)),
            R"(no endpoint 3 in association "A1" of domain "D1")");
  EXPECT_EQ(ReasonAgainst(DeleteMep("D1", "A1", 3)),
            R"(no endpoint 3 in association "A1" of domain "D1")");
  EXPECT_EQ(ReasonAgainst(DeleteProbe(9)), "no probe 9");
  EXPECT_EQ(ReasonAgainst(CreateSession(9, 1)), "no probe 9");
  EXPECT_EQ(ReasonAgainst(DeleteSession(9, 1)), "no probe 9");
  EXPECT_EQ(ReasonAgainst(DeleteSession(1, 9)), "no session 9 of probe 1");
}

TEST_F(StoreTest, RefusesARequestWithoutANameOrAnIdentifier) {
  auto md = CreateMd("D3");
  md.clear_md_name();
  EXPECT_EQ(ReasonAgainst(md), "md_name is missing");
  EXPECT_EQ(store_.Apply(md).subject, "md ?");
  auto ma = DeleteMa("D1", "A1");
  ma.clear_ma_name();
  EXPECT_EQ(ReasonAgainst(ma), "ma_name is missing");
  auto mep = UpdateMep("D1", "A1", 1);
  mep.clear_mep_id();
  EXPECT_EQ(ReasonAgainst(mep), "mep_id is missing");
  auto probe = CreateProbe(1);
  probe.clear_probe_id();
  EXPECT_EQ(ReasonAgainst(probe), "probe_id is missing");
  probe = CreateProbe(1);
  probe.clear_ma_name();
  EXPECT_EQ(ReasonAgainst(probe), "ma_name is missing");
  auto session = DeleteSession(1, 1);
  session.clear_session_id();
  EXPECT_EQ(ReasonAgainst(session), "session_id is missing");
  EXPECT_EQ(ReasonAgainst(client_server::OpDeleteMaintenanceEndpoint()),
            "md_name is missing; ma_name is missing; mep_id is missing");
}

/** A value of one field of a request that must be refused, and the reason. */
template <class Message>
struct Bad {
  void (*spoil)(Message&);
  const char* reason;
};

TEST_F(StoreTest, RefusesDomainSettingsOutsideTheirRange) {
  using Message = client_server::OpCreateMaintenanceDomain;
  const Bad<Message> kBad[] = {
      {[](Message& m) { m.set_level(8); }, "level 8: expected 0 to 7"},
      {[](Message& m) { m.set_level(256); }, "level 256: expected 0 to 7"},
      {[](Message& m) { m.set_format(5); },
       "format 5: expected 1 (none), 2 (DNS-like), 3 (MAC and number), 4 (character string)"},
      {[](Message& m) { m.set_format(-1); }, "format -1: expected 1 (none)"},
      {[](Message& m) { m.set_sender_id(5); }, "sender id 5: expected 1 (none)"},
      {[](Message& m) { m.set_mhf_creation(4); }, "MHF creation 4: expected 1 (none)"},
      {[](Message& m) { m.clear_mhf_creation(); }, "MHF creation 0: expected 1 (none)"},
  };
  for (const auto& [spoil, reason] : kBad) {
    auto request = CreateMd("D1");
    spoil(request);
    EXPECT_THAT(ReasonAgainst(request), HasSubstr(reason));
  }
  auto update = UpdateMd("D1");
  update.set_sender_id(0);
  EXPECT_THAT(ReasonAgainst(update), HasSubstr("sender id 0: expected"));
}

TEST_F(StoreTest, RefusesAssociationSettingsOutsideTheirRange) {
  using Message = client_server::OpCreateMaintenanceAssociation;
  const Bad<Message> kBad[] = {
      {[](Message& m) { m.set_format(5); }, "format 5: expected 1 (primary VID)"},
      {[](Message& m) { m.add_vids(4095); }, "VIDs 4095: expected 1 to 4094"},
      {[](Message& m) { m.add_vids(0); }, "VIDs 0: expected 1 to 4094"},
      {[](Message& m) { m.set_ccm_interval(8); }, "CCM interval 8: expected 0 (invalid)"},
      {[](Message& m) { m.add_mep_ids(8192); }, "MEP ids 8192: expected 1 to 8191"},
      {[](Message& m) { m.add_mep_ids(0); }, "MEP ids 0: expected 1 to 8191"},
      {[](Message& m) { m.set_sender_id(6); }, "sender id 6: expected 1 (none)"},
      {[](Message& m) { m.set_mhf_creation(5); }, "MHF creation 5: expected 1 (none)"},
  };
  for (const auto& [spoil, reason] : kBad) {
    auto request = CreateMa("D1", "A1", {1, 2, 3});
    spoil(request);
    EXPECT_THAT(ReasonAgainst(request), HasSubstr(reason));
  }
  EXPECT_EQ(ReasonAgainst(UpdateMa("D1", "A1", {1, 70000})), "MEP ids 70000: expected 1 to 8191");
}

TEST_F(StoreTest, RefusesEndpointSettingsOutsideTheirRange) {
  using Message = client_server::OpCreateMaintenanceEndpoint;
  const Bad<Message> kBad[] = {
      {[](Message& m) { m.set_mep_id(0); }, "mep_id 0: expected 1 to 8191"},
      {[](Message& m) { m.set_mep_id(65537); }, "mep_id 65537: expected 1 to 8191"},
      {[](Message& m) { m.set_direction(0); }, "direction 0: expected 1 (down), 2 (up)"},
      {[](Message& m) { m.set_primary_vid(4095); }, "primary VID 4095: expected 0 to 4094"},
      {[](Message& m) { m.set_inner_vid(4095); }, "inner VID 4095: expected 0 to 4094"},
      {[](Message& m) { m.set_ccm_priority(8); }, "CCM priority 8: expected 0 to 7"},
      {[](Message& m) { m.set_lowest_prio_defect(7); }, "lowest alarm priority 7: expected"},
      {[](Message& m) { m.set_fng_alarm_time(249); }, "alarm time 249: expected 250 to 1000"},
      {[](Message& m) { m.set_fng_reset_time(1001); }, "reset time 1001: expected 250 to 1000"},
      {[](Message& m) { m.set_fault_action(3); },
       "fault action 3: expected 0 (none), 1 (block), 2 (shutdown)"},
  };
  for (const auto& [spoil, reason] : kBad) {
    auto request = CreateMep("D1", "A1", 1);
    spoil(request);
    EXPECT_THAT(ReasonAgainst(request), HasSubstr(reason));
  }
  auto update = UpdateMep("D1", "A1", 1);
  update.set_ccm_priority(9);
  update.set_primary_vid(5000);
  EXPECT_EQ(ReasonAgainst(update),
            "primary VID 5000: expected 0 to 4094; CCM priority 9: expected 0 to 7");
}

TEST_F(StoreTest, RefusesProbesAndSessionsOutsideTheirRange) {
  auto probe = CreateProbe(65536);
  EXPECT_EQ(ReasonAgainst(probe), "probe_id 65536: expected 0 to 65535");
  probe = CreateProbe(1);
  probe.set_lmep_id(0);
  probe.set_rmep_id(8192);
  probe.set_interval(65536);
  EXPECT_EQ(ReasonAgainst(probe),
            "local mep 0: expected 1 to 8191; remote mep 8192: expected 1 to 8191; "
            "interval 65536: expected 0 to 65535");
  EXPECT_EQ(ReasonAgainst(CreateSession(1, 65536)), "session_id 65536: expected 0 to 65535");
  auto session = CreateSession(1, 1);
  session.set_pcp(8);
  session.set_size(70000);
  EXPECT_EQ(ReasonAgainst(session), "size 70000: expected 0 to 65535; pcp 8: expected 0 to 7");
}

}  // namespace
}  // namespace cfm_mgr_test
