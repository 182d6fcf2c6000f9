// SPDX-License-Identifier: Apache-2.0
// Statistics: request, reply and clear.
#include <cfm/identifiers.h>

#include "recording_handlers.h"
#include "sample_reports.h"

namespace cfm_test {
namespace {

class StatisticsRequest : public ClientTest {
 protected:
  std::vector<std::string> Request() {
    host.Take();
    client->RequestStatistics();
    return host.Take();
  }
};

constexpr char kRequested[] =
    "log 10 RequestStatistics:124 Statistics for local and remote MEPs were requested to server";

TEST_F(StatisticsRequest, DoesNothingWhileTheServerIsAbsent) {
  EXPECT_THAT(Request(), IsEmpty());
  host.GetInStep();
  host.ServerLost();
  EXPECT_THAT(Request(), IsEmpty());
}

TEST_F(StatisticsRequest, IsSentAndThenLogged) {
  host.GetInStep();
  EXPECT_THAT(Request(), ElementsAre("send 77 STATS_GET no payload", kRequested));
}

TEST_F(StatisticsRequest, DoesNotWaitUntilTheServerIsInStep) {
  host.ServerFound(9);
  EXPECT_THAT(Request(), ElementsAre("send 9 STATS_GET no payload", kRequested));
}

class StatisticsClear : public ClientTest {
 protected:
  std::vector<std::string> Clear(const char* md_name, const char* ma_name, std::uint16_t mep_id) {
    host.Take();
    client->ClearStatistics(md_name, ma_name, mep_id);
    return host.Take();
  }
};

TEST_F(StatisticsClear, CarriesOnlyWhatRestrictsIt) {
  host.GetInStep();
  EXPECT_THAT(Clear(nullptr, nullptr, 0), ElementsAre("send 77 STATS_CLEAR"));
  EXPECT_THAT(Clear("D", nullptr, 0), ElementsAre("send 77 STATS_CLEAR md_name:\"D\""));
  EXPECT_THAT(Clear(nullptr, "A", 0), ElementsAre("send 77 STATS_CLEAR ma_name:\"A\""));
  EXPECT_THAT(Clear(nullptr, nullptr, 1), ElementsAre("send 77 STATS_CLEAR mep_id:1"));
  EXPECT_THAT(Clear("D", "A", 65535),
              ElementsAre("send 77 STATS_CLEAR md_name:\"D\" ma_name:\"A\" mep_id:65535"));
}

TEST_F(StatisticsClear, TakesAnEmptyNameForAName) {
  EXPECT_THAT(Clear("", "", 0), ElementsAre("send 0 STATS_CLEAR md_name:\"\" ma_name:\"\""));
}

TEST_F(StatisticsClear, IsSentToNobodyWhileTheServerIsAbsent) {
  EXPECT_THAT(Clear("D", "A", 1),
              ElementsAre("send 0 STATS_CLEAR md_name:\"D\" ma_name:\"A\" mep_id:1"));
}

TEST_F(StatisticsClear, DoesNotWaitUntilTheServerIsInStep) {
  host.ServerFound(9);
  EXPECT_THAT(Clear(nullptr, nullptr, 0), ElementsAre("send 9 STATS_CLEAR"));
}

class StatisticsReply : public ReportTest {};

TEST_F(StatisticsReply, IsHandedOnEntryByEntryEachLoggedAfterItsCall) {
  EXPECT_THAT(
      Deliver(CFM_MGR_S2C_SIG_STATS_REPLY, Statistics()),
      ElementsAre(
          "statistics OnStatsReplyLocalMep \"D\" \"A\" 1 {ccm_rx_seq_errors:18446744073709551601 "
          "ccm_tx_total:10 ccm_tx_seq_number:100}",
          "log 11 ReqStatsReply:930 \nLocal MEP statistics: MD D MA A LMEP 1\n"
          "   CCM RX sequence number errors: 18446744073709551601\n"
          "   CCM TX total count: 10\n"
          "   CCM TX current sequence number: 100\n",
          "statistics OnStatsReplyLocalMep \"D\" \"A\" 2 {ccm_rx_seq_errors:18446744073709551602 "
          "ccm_tx_total:20 ccm_tx_seq_number:200}",
          "log 11 ReqStatsReply:930 \nLocal MEP statistics: MD D MA A LMEP 2\n"
          "   CCM RX sequence number errors: 18446744073709551602\n"
          "   CCM TX total count: 20\n"
          "   CCM TX current sequence number: 200\n",
          "statistics OnStatsReplyRemoteMep \"D\" \"A\" 1 3 {last_ccm_seq_number:300}",
          "log 11 ReqStatsReply:947 \nRemote MEP statistics: MD D MA A LMEP 1 RMEP 3\n"
          "   Last CCM sequence number: 300\n",
          "statistics OnStatsReplyRemoteMep \"D\" \"A\" 1 4 {last_ccm_seq_number:400}",
          "log 11 ReqStatsReply:947 \nRemote MEP statistics: MD D MA A LMEP 1 RMEP 4\n"
          "   Last CCM sequence number: 400\n",
          "statistics OnStatsReplyRemoteMep \"D\" \"A\" 1 5 {last_ccm_seq_number:500}",
          "log 11 ReqStatsReply:947 \nRemote MEP statistics: MD D MA A LMEP 1 RMEP 5\n"
          "   Last CCM sequence number: 500\n",
          "statistics OnStatsReply"));
}

TEST_F(StatisticsReply, KeepsTheOrderOfTheMessage) {
  client_server::OpReplyAllStats message;
  for (const unsigned id : {9U, 2U, 5U, 2U}) {
    message.add_local_mep_stats()->set_mep_id(id);
    message.add_remote_mep_stats()->set_remote_mep_id(id);
  }
  host.dump_level_enabled = false;
  const std::string local = R"(statistics OnStatsReplyLocalMep "" "" )";
  const std::string none = " {ccm_rx_seq_errors:0 ccm_tx_total:0 ccm_tx_seq_number:0}";
  const std::string remote = R"(statistics OnStatsReplyRemoteMep "" "" 0 )";
  const std::string no_number = " {last_ccm_seq_number:0}";
  EXPECT_THAT(
      Deliver(CFM_MGR_S2C_SIG_STATS_REPLY, message),
      ElementsAre(local + "9" + none, local + "2" + none, local + "5" + none, local + "2" + none,
                  remote + "9" + no_number, remote + "2" + no_number, remote + "5" + no_number,
                  remote + "2" + no_number, "statistics OnStatsReply"));
}

TEST_F(StatisticsReply, ThatIsEmptyIsOnlyEnded) {
  EXPECT_THAT(DeliverBytes(CFM_MGR_S2C_SIG_STATS_REPLY, ""),
              ElementsAre("statistics OnStatsReply"));
}

TEST_F(StatisticsReply, OfEachOfTwoRequestsHasItsOwnEnd) {
  host.Take();
  host.Signal(CFM_MGR_S2C_SIG_STATS_REPLY, "");
  host.Signal(CFM_MGR_S2C_SIG_STATS_REPLY, "");
  EXPECT_THAT(host.Take(), ElementsAre("statistics OnStatsReply", "statistics OnStatsReply"));
}

TEST_F(StatisticsReply, KeepsTheLowBitsOfIdentifiersForTheHandlerOnly) {
  client_server::OpReplyAllStats message;
  auto& local = *message.add_local_mep_stats();
  local.set_mep_id(65536 + 7);
  local.set_ccm_rx_seq_errors(1);
  local.set_ccm_tx_total(18446744073709551615U);
  local.set_ccm_tx_seq_number(4294967295);
  auto& remote = *message.add_remote_mep_stats();
  remote.set_mep_id(65536 + 8);
  remote.set_remote_mep_id(65536 + 9);
  remote.set_last_ccm_seq_number(4294967294);
  EXPECT_THAT(
      Deliver(CFM_MGR_S2C_SIG_STATS_REPLY, message),
      ElementsAre("statistics OnStatsReplyLocalMep \"\" \"\" 7 {ccm_rx_seq_errors:1 "
                  "ccm_tx_total:18446744073709551615 ccm_tx_seq_number:4294967295}",
                  "log 11 ReqStatsReply:930 \nLocal MEP statistics: MD  MA  LMEP 65543\n"
                  "   CCM RX sequence number errors: 1\n"
                  "   CCM TX total count: 18446744073709551615\n"
                  "   CCM TX current sequence number: -1\n",
                  "statistics OnStatsReplyRemoteMep \"\" \"\" 8 9 {last_ccm_seq_number:4294967294}",
                  "log 11 ReqStatsReply:947 \n"
                  "Remote MEP statistics: MD  MA  LMEP 65544 RMEP 65545\n"
                  "   Last CCM sequence number: -2\n",
                  "statistics OnStatsReply"));
}

TEST_F(StatisticsReply, IsDroppedWithoutALogWhenThereIsNoStatisticsHandler) {
  client->RegisterStatisticsHandler(nullptr);
  EXPECT_THAT(Deliver(CFM_MGR_S2C_SIG_STATS_REPLY, Statistics()), IsEmpty());
}

// The host delivers in the name of a process that is not the server.
TEST_F(StatisticsReply, IsTakenFromAnySender) {
  host.ServerFound(77);
  EXPECT_THAT(DeliverBytes(CFM_MGR_S2C_SIG_STATS_REPLY, ""),
              ElementsAre("statistics OnStatsReply"));
}

TEST_F(StatisticsReply, ReachesTheHandlerAlsoWhenDumpsAreNotLogged) {
  host.dump_level_enabled = false;
  const auto record = Deliver(CFM_MGR_S2C_SIG_STATS_REPLY, Statistics());
  EXPECT_THAT(record, testing::SizeIs(6));
  EXPECT_THAT(record, testing::Each(testing::StartsWith("statistics OnStatsReply")));
}

// Without its last field, an entry is shorter than it says.
TEST_F(StatisticsReply, ThatDoesNotParseIsHandedOnAsFarAsItWasRead) {
  std::string bytes = Statistics().SerializeAsString();
  bytes.resize(bytes.size() - 3);
  host.dump_level_enabled = false;
  const auto record = DeliverBytes(CFM_MGR_S2C_SIG_STATS_REPLY, bytes);
  ASSERT_THAT(record, testing::SizeIs(6));
  EXPECT_EQ(record[3],
            "statistics OnStatsReplyRemoteMep \"D\" \"A\" 1 4 "
            "{last_ccm_seq_number:400}");
  EXPECT_EQ(record[4],
            "statistics OnStatsReplyRemoteMep \"D\" \"A\" 1 5 "
            "{last_ccm_seq_number:0}");
  EXPECT_EQ(record[5], "statistics OnStatsReply");
}

}  // namespace
}  // namespace cfm_test
