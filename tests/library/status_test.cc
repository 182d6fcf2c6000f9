// SPDX-License-Identifier: Apache-2.0
// Status and removal of endpoints.
#include <cfm/identifiers.h>

#include "recording_handlers.h"
#include "sample_reports.h"

namespace cfm_test {
namespace {

class Status : public ReportTest {};

constexpr char kLocalZero[] =
    "log 11 HandleStatusLocalMep:1050 \nLOCAL MEP status:\n"
    "   MD  MA  LMEP 0\n"
    "   MAC 00:00:00:00:00:00\n"
    "   Local RDI 0 Local PortState 0 Local IntfStatus 0\n"
    "   Local BlockState 0 Local ShutdownState 0\n"
    "   Highest defect prio present: 0\n"
    "   Defects:\n"
    "     MAC status:       0\n"
    "     Missing CCMs:     0\n"
    "     CCM with errors:  0\n"
    "     Cross-connection: 0\n"
    "     RDI:              0\n"
    "     AIS:              0\n";

constexpr char kLocalCallZero[] =
    "status OnStatusLocalMep \"\" \"\" 0 {mac:00:00:00:00:00:00 rdi:false intf_status:0 "
    "port_state:0 block_state:0 shutdown_state:0 highest_defect_priority:0 defect_rdi:false "
    "defect_mac_status:false defect_remote_ccm:false defect_error_ccm:false "
    "defect_xcon_ccm:false defect_ais:false}";

constexpr char kRemoteZero[] =
    "log 11 HandleStatusRemoteMep:1086 \nRemote MEP status:\n"
    "   MD  MA  LMEP 0 RMEP 0\n"
    "   MAC 00:00:00:00:00:00\n"
    "   FSM state 0\n"
    "   RDI 0 PortState 0\n"
    "   IntfStatus 0 Sender ID  Last Change Uptime: 0\n";

constexpr char kRemoteCallZero[] =
    "status OnStatusRemoteMep \"\" \"\" 0 0 {fsm_state:0 last_change_uptime:0 "
    "mac:00:00:00:00:00:00 rdi:false port_state:0 intf_status:0 sender_id:\"\"}";

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t found = text.find(from);
  EXPECT_NE(found, std::string::npos) << from;
  return text.replace(found, from.size(), to);
}

TEST_F(Status, OfALocalEndpointIsLoggedAndThenHandedOn) {
  EXPECT_THAT(
      Deliver(CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP, LocalStatus()),
      ElementsAre(
          "log 11 HandleStatusLocalMep:1050 \nLOCAL MEP status:\n"
          "   MD D MA A LMEP 11\n"
          "   MAC 0A:BC:00:FF:10:9E\n"
          "   Local RDI 1 Local PortState 7 Local IntfStatus 6\n"
          "   Local BlockState 8 Local ShutdownState 9\n"
          "   Highest defect prio present: 5\n"
          "   Defects:\n"
          "     MAC status:       1\n"
          "     Missing CCMs:     1\n"
          "     CCM with errors:  1\n"
          "     Cross-connection: 1\n"
          "     RDI:              1\n"
          "     AIS:              1\n",
          "status OnStatusLocalMep \"D\" \"A\" 11 {mac:0a:bc:00:ff:10:9e rdi:true intf_status:6 "
          "port_state:7 block_state:8 shutdown_state:9 highest_defect_priority:5 "
          "defect_rdi:true defect_mac_status:true defect_remote_ccm:true "
          "defect_error_ccm:true defect_xcon_ccm:true defect_ais:true}"));
}

TEST_F(Status, OfARemoteEndpointIsLoggedAndThenHandedOn) {
  EXPECT_THAT(
      Deliver(CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP, RemoteStatus()),
      ElementsAre("log 11 HandleStatusRemoteMep:1086 \nRemote MEP status:\n"
                  "   MD D MA A LMEP 11 RMEP 12\n"
                  "   MAC 0A:BC:00:FF:10:9E\n"
                  "   FSM state 4\n"
                  "   RDI 1 PortState 2\n"
                  "   IntfStatus 1 Sender ID bridge 9 Last Change Uptime: 18446744073709551615\n",
                  "status OnStatusRemoteMep \"D\" \"A\" 11 12 {fsm_state:4 "
                  "last_change_uptime:18446744073709551615 mac:0a:bc:00:ff:10:9e rdi:true "
                  "port_state:2 intf_status:1 sender_id:\"bridge 9\"}"));
}

TEST_F(Status, ARemovedLocalEndpointIsLoggedAndThenHandedOn) {
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP, RemovedLocal()),
              ElementsAre("log 11 HandleRemovedLocalMep:1104 \n"
                          "Local MEP removed: MD D MA A LMEP 11\n",
                          "status OnRemovedLocalMep \"D\" \"A\" 11"));
}

TEST_F(Status, ARemovedRemoteEndpointIsLoggedAndThenHandedOn) {
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_REMOVED_REMOTE_MEP, RemovedRemote()),
              ElementsAre("log 11 HandleRemovedRemoteMep:1122 \n"
                          "Remote MEP removed: MD D MA A LMEP 11 RMEP 12\n",
                          "status OnRemovedRemoteMep \"D\" \"A\" 11 12"));
}

TEST_F(Status, EachFlagOfALocalEndpointGoesToItsOwnPlace) {
  using Message = client_server::StatusLocalMaintenanceEndpoint;
  const struct {
    void (Message::*set)(bool);
    std::string logged;
    std::string member;
  } flags[] = {
      {&Message::set_rdi, "Local RDI ", " rdi:"},
      {&Message::set_defect_mac_status, "MAC status:       ", "defect_mac_status:"},
      {&Message::set_defect_remote_ccm, "Missing CCMs:     ", "defect_remote_ccm:"},
      {&Message::set_defect_error_ccm, "CCM with errors:  ", "defect_error_ccm:"},
      {&Message::set_defect_xcon_ccm, "Cross-connection: ", "defect_xcon_ccm:"},
      {&Message::set_defect_rdi, "     RDI:              ", "defect_rdi:"},
      {&Message::set_defect_ais, "AIS:              ", "defect_ais:"},
  };
  for (const auto& flag : flags) {
    Message message;
    (message.*flag.set)(true);
    EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP, message),
                ElementsAre(Replaced(kLocalZero, flag.logged + '0', flag.logged + '1'),
                            Replaced(kLocalCallZero, flag.member + "false", flag.member + "true")));
  }
}

TEST_F(Status, AnEmptyMessageIsLoggedAndHandedOnAsZeros) {
  EXPECT_THAT(DeliverBytes(CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP, ""),
              ElementsAre(kLocalZero, kLocalCallZero));
  EXPECT_THAT(DeliverBytes(CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP, ""),
              ElementsAre(kRemoteZero, kRemoteCallZero));
  EXPECT_THAT(DeliverBytes(CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP, ""),
              ElementsAre("log 11 HandleRemovedLocalMep:1104 \n"
                          "Local MEP removed: MD  MA  LMEP 0\n",
                          "status OnRemovedLocalMep \"\" \"\" 0"));
  EXPECT_THAT(DeliverBytes(CFM_MGR_SRV_EVENT_REMOVED_REMOTE_MEP, ""),
              ElementsAre("log 11 HandleRemovedRemoteMep:1122 \n"
                          "Remote MEP removed: MD  MA  LMEP 0 RMEP 0\n",
                          "status OnRemovedRemoteMep \"\" \"\" 0 0"));
}

// The handler gets what fits its types; the log gets the numbers as they came.
TEST_F(Status, NumbersKeepTheirLowBitsForTheHandlerOnly) {
  client_server::StatusLocalMaintenanceEndpoint local;
  local.set_mep_id(65536 + 7);
  local.set_intf_status(256 + 3);
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP, local),
              ElementsAre(Replaced(Replaced(kLocalZero, "LMEP 0", "LMEP 65543"), "IntfStatus 0",
                                   "IntfStatus 259"),
                          Replaced(Replaced(kLocalCallZero, "\"\" 0", "\"\" 7"), "intf_status:0",
                                   "intf_status:3")));
  client_server::StatusRemoteMaintenanceEndpoint remote;
  remote.set_mep_id(65536 + 7);
  remote.set_remote_mep_id(65536 + 8);
  remote.set_intf_status(256 + 3);
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP, remote),
              ElementsAre(Replaced(Replaced(kRemoteZero, "LMEP 0 RMEP 0", "LMEP 65543 RMEP 65544"),
                                   "IntfStatus 0", "IntfStatus 259"),
                          Replaced(Replaced(kRemoteCallZero, "\"\" 0 0", "\"\" 7 8"),
                                   "intf_status:0", "intf_status:3")));
  auto removed = RemovedRemote();
  removed.set_mep_id(65536 + 7);
  removed.set_remote_mep_id(65536 + 8);
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_REMOVED_REMOTE_MEP, removed),
              ElementsAre("log 11 HandleRemovedRemoteMep:1122 \n"
                          "Remote MEP removed: MD D MA A LMEP 65543 RMEP 65544\n",
                          "status OnRemovedRemoteMep \"D\" \"A\" 7 8"));
  auto removed_local = RemovedLocal();
  removed_local.set_mep_id(65536);
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP, removed_local),
              ElementsAre("log 11 HandleRemovedLocalMep:1104 \n"
                          "Local MEP removed: MD D MA A LMEP 65536\n",
                          "status OnRemovedLocalMep \"D\" \"A\" 0"));
}

TEST_F(Status, WideNumbersOfALocalEndpointReachTheHandlerWhole) {
  client_server::StatusLocalMaintenanceEndpoint message;
  message.set_port_state(4000000001);
  message.set_block_state(4000000002);
  message.set_shutdown_state(4000000003);
  message.set_highest_defect_priority(4000000004);
  EXPECT_THAT(
      Deliver(CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP, message),
      ElementsAre(testing::HasSubstr("Local PortState -294967295 Local IntfStatus 0\n"
                                     "   Local BlockState -294967294 Local ShutdownState "
                                     "-294967293\n   Highest defect prio present: -294967292\n"),
                  testing::HasSubstr("port_state:4000000001 block_state:4000000002 "
                                     "shutdown_state:4000000003 "
                                     "highest_defect_priority:4000000004")));
}

TEST_F(Status, WideNumbersOfARemoteEndpointReachTheHandlerWhole) {
  client_server::StatusRemoteMaintenanceEndpoint message;
  message.set_fsm_state(4000000001);
  message.set_port_state(4000000002);
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP, message),
              ElementsAre(testing::HasSubstr("FSM state -294967295\n   RDI 0 PortState "
                                             "-294967294\n"),
                          testing::AllOf(testing::HasSubstr("fsm_state:4000000001"),
                                         testing::HasSubstr("port_state:4000000002"))));
}

TEST_F(Status, TheRemoteFlagGoesToItsOwnPlace) {
  client_server::StatusRemoteMaintenanceEndpoint message;
  message.set_rdi(true);
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP, message),
              ElementsAre(Replaced(kRemoteZero, "RDI 0", "RDI 1"),
                          Replaced(kRemoteCallZero, "rdi:false", "rdi:true")));
}

TEST_F(Status, IsDroppedWithoutALogWhenThereIsNoStatusHandler) {
  client->RegisterStatusHandler(nullptr);
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP, LocalStatus()), IsEmpty());
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP, RemoteStatus()), IsEmpty());
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP, RemovedLocal()), IsEmpty());
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_REMOVED_REMOTE_MEP, RemovedRemote()), IsEmpty());
}

TEST_F(Status, NeedsNoOtherHandlerAndNoServer) {
  Handlers::Clear(*client);
  client->RegisterStatusHandler(&handlers.status);
  for (const auto* event :
       {CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP, CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP,
        CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP, CFM_MGR_SRV_EVENT_REMOVED_REMOTE_MEP}) {
    EXPECT_THAT(DeliverBytes(event, ""),
                ElementsAre(testing::StartsWith("log 11 "), testing::StartsWith("status On")));
  }
}

TEST_F(Status, ReachesTheHandlerAlsoWhenDumpsAreNotLogged) {
  host.dump_level_enabled = false;
  EXPECT_THAT(DeliverBytes(CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP, ""), ElementsAre(kLocalCallZero));
  EXPECT_THAT(DeliverBytes(CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP, ""), ElementsAre(kRemoteCallZero));
  EXPECT_THAT(DeliverBytes(CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP, ""),
              ElementsAre("status OnRemovedLocalMep \"\" \"\" 0"));
  EXPECT_THAT(DeliverBytes(CFM_MGR_SRV_EVENT_REMOVED_REMOTE_MEP, ""),
              ElementsAre("status OnRemovedRemoteMep \"\" \"\" 0 0"));
}

}  // namespace
}  // namespace cfm_test
