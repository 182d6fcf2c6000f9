// SPDX-License-Identifier: Apache-2.0
// Replies to a linktrace: what a handler gets, and what the log does.
#include <cfm/identifiers.h>

#include "recording_handlers.h"
#include "sample_reports.h"

namespace cfm_test {
namespace {

// What an empty reply leaves in an entry, up to its parts.
constexpr char kZeros[] =
    "{destination_mac:00:00:00:00:00:00 source_mac:00:00:00:00:00:00 vlan:0 priority:0 "
    "internal_vlan:0 internal_priority:0 level:0 terminal_mep:false forwarded:false "
    "use_fdb_only:false transaction_id:0 ttl:0 relay_action:0 "
    "egress_id:{last_mac:00:00:00:00:00:00 last_id:0 next_mac:00:00:00:00:00:00 next_id:0} ";

constexpr char kLogged[] = "log 11 HandleMepLinktraceReplyRx:1199 \nLinktrace reply for MD ";

class LinktraceReplies : public ReportTest {
 protected:
  // The entry that a reply becomes, as both handlers see it.
  std::string Entry(const client_server::LinktraceReply& reply) {
    client_server::OpLinktraceReplyRx message;
    *message.mutable_reply() = reply;
    const auto record = Deliver(CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX, message);
    const std::string call = R"( OnMepLinktraceReplyRx "" "" 0 )";
    if (record.size() != 3 || record[1].rfind("status" + call, 0) != 0) {
      ADD_FAILURE() << testing::PrintToString(record);
      return "";
    }
    EXPECT_EQ(record[2], "linktrace" + record[1].substr(6));
    return record[1].substr(6 + call.size());
  }
};

TEST_F(LinktraceReplies, AreLoggedAndHandedToTheStatusAndThenToTheLinktraceHandler) {
  const std::string call =
      " OnMepLinktraceReplyRx \"D\" \"A\" 11 {destination_mac:0a:bc:00:ff:10:9e "
      "source_mac:02:00:00:00:00:01 vlan:100 priority:3 internal_vlan:200 internal_priority:4 "
      "level:6 terminal_mep:true forwarded:true use_fdb_only:true transaction_id:4000000000 "
      "ttl:62 relay_action:-2 egress_id:{last_mac:02:00:00:00:00:02 last_id:258 "
      "next_mac:02:00:00:00:00:03 next_id:65280} reply_ingress:{action:204 "
      "mac:02:e0:00:00:01:04 port_id_present:true port_id_subtype:104 port_id:\"" +
      Octets("p\x00\xff\x04") +
      "\"} reply_egress:{action:205 mac:02:e0:00:00:01:05 port_id_present:true "
      "port_id_subtype:105 port_id:\"" +
      Octets("p\x00\xff\x05") + "\"}}";
  EXPECT_THAT(
      Deliver(CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX, LinktraceReply()),
      ElementsAre(
          std::string(kLogged) +
              "D MA A LMEP 11: Transaction ID: 4000000000; Destination MAC: 0a:bc:00:ff:10:9e; "
              "Source MAC: 02:00:00:00:00:01; VLAN: 100; Priority: 3; Internal VLAN: 200; "
              "Internal Priority: 4; Level: 6; Flags: Terminal MEP: true, Forwarded: true, Use "
              "FDB only: true; TTL: 62; Relay action:-2; LTR Egress ID: Last: 02:00:00:00:00:02, "
              "Next: 02:00:00:00:00:03; Reply Ingress: Ingress action: 204, Ingress MAC: "
              "02:e0:00:00:01:04, Port ID: Subtype 104, Length 4; Reply Egress: Egress action: "
              "205, Egress MAC: 02:e0:00:00:01:05, Port ID: Subtype 105, Length 4; ",
          "status" + call, "linktrace" + call));
}

TEST_F(LinktraceReplies, ReachEitherHandlerAloneAndTheLogAlways) {
  const auto starts = [](const char* text) { return testing::StartsWith(text); };
  const auto deliver = [this] {
    return Deliver(CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX, LinktraceReply());
  };
  client->RegisterStatusHandler(nullptr);
  EXPECT_THAT(deliver(), ElementsAre(starts(kLogged), starts("linktrace On")));
  client->RegisterLinktraceHandler(nullptr);
  EXPECT_THAT(deliver(), ElementsAre(starts(kLogged)));
  client->RegisterStatusHandler(&handlers.status);
  EXPECT_THAT(deliver(), ElementsAre(starts(kLogged), starts("status On")));
}

TEST_F(LinktraceReplies, ReachBothHandlersWholeWhenDumpsAreNotLogged) {
  const auto logged = Deliver(CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX, LinktraceReply());
  ASSERT_THAT(logged, testing::SizeIs(3));
  host.dump_level_enabled = false;
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX, LinktraceReply()),
              ElementsAre(logged[1], logged[2]));
}

TEST_F(LinktraceReplies, ThatAreEmptyStillHaveAnEgressIdentifier) {
  EXPECT_EQ(Entry({}), std::string(kZeros) + "reply_ingress:null reply_egress:null}");
  const std::string call = std::string(R"( OnMepLinktraceReplyRx "" "" 0 )") + kZeros +
                           "reply_ingress:null reply_egress:null}";
  EXPECT_THAT(DeliverBytes(CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX, ""),
              ElementsAre(std::string(kLogged) +
                              " MA  LMEP 0: Transaction ID: 0; Destination MAC: "
                              "00:00:00:00:00:00; Source MAC: 00:00:00:00:00:00; VLAN: 0; "
                              "Priority: 0; Level: 0; Flags: Terminal MEP: false, Forwarded: "
                              "false, Use FDB only: false; TTL: 0; Relay action:0; LTR Egress ID: "
                              "Last: 00:00:00:00:00:00, Next: 00:00:00:00:00:00; ",
                          "status" + call, "linktrace" + call));
}

TEST_F(LinktraceReplies, HaveAPortWheneverTheServerSentOneEvenEmpty) {
  const std::string port =
      "{action:0 mac:00:00:00:00:00:00 port_id_present:false port_id_subtype:0 port_id:\"\"}";
  client_server::LinktraceReply ingress;
  ingress.mutable_reply_ingress();
  EXPECT_EQ(Entry(ingress), kZeros + ("reply_ingress:" + port) + " reply_egress:null}");
  client_server::LinktraceReply egress;
  egress.mutable_reply_egress();
  EXPECT_EQ(Entry(egress), kZeros + ("reply_ingress:null reply_egress:" + port) + "}");
}

TEST_F(LinktraceReplies, KeepAPortIdentifierThatCountsAsNotPresent) {
  auto reply = LinktraceReply().reply();
  reply.mutable_reply_ingress()->mutable_port_id()->set_present(false);
  EXPECT_THAT(Entry(reply), testing::HasSubstr("port_id_present:false port_id_subtype:104 "
                                               "port_id:\"" +
                                               Octets("p\x00\xff\x04") + "\"} reply_egress"));
}

TEST_F(LinktraceReplies, TakeBothInternalFieldsOnlyWithAnInternalVlan) {
  auto reply = LinktraceReply().reply();
  reply.clear_internal_vlan();
  EXPECT_THAT(Entry(reply), testing::HasSubstr(" internal_vlan:0 internal_priority:0 "));
  reply.set_internal_vlan(0);
  EXPECT_THAT(Entry(reply), testing::HasSubstr(" internal_vlan:0 internal_priority:4 "));
  reply.set_internal_vlan(7);
  reply.clear_internal_priority();
  EXPECT_THAT(Entry(reply), testing::HasSubstr(" internal_vlan:7 internal_priority:0 "));
}

TEST_F(LinktraceReplies, PutEachFlagInItsOwnPlace) {
  const struct {
    void (client_server::LtrFlags::*set)(bool);
    const char* members;
  } flags[] = {
      {&client_server::LtrFlags::set_terminal_mep,
       "terminal_mep:true forwarded:false use_fdb_only:false"},
      {&client_server::LtrFlags::set_forwarded,
       "terminal_mep:false forwarded:true use_fdb_only:false"},
      {&client_server::LtrFlags::set_use_fdb_only,
       "terminal_mep:false forwarded:false use_fdb_only:true"},
  };
  for (const auto& flag : flags) {
    client_server::LinktraceReply reply;
    (reply.mutable_flags()->*flag.set)(true);
    EXPECT_THAT(Entry(reply), testing::HasSubstr(flag.members));
  }
}

TEST_F(LinktraceReplies, KeepTheLowBitsOfWhatIsNarrower) {
  client_server::LinktraceReply reply;
  reply.set_vlan(65536 + 1);
  reply.set_priority(256 + 2);
  reply.set_internal_vlan(65536 + 3);
  reply.set_internal_priority(256 + 4);
  reply.set_level(256 + 5);
  reply.set_ttl(256 + 6);
  reply.mutable_reply_ingress()->set_action(256 + 7);
  reply.mutable_reply_ingress()->mutable_port_id()->set_subtype(256 + 8);
  const std::string entry = Entry(reply);
  EXPECT_THAT(entry, testing::HasSubstr(" vlan:1 priority:2 internal_vlan:3 internal_priority:4 "
                                        "level:5 "));
  EXPECT_THAT(entry, testing::HasSubstr(" ttl:6 "));
  EXPECT_THAT(entry, testing::HasSubstr("{action:7 "));
  EXPECT_THAT(entry, testing::HasSubstr(" port_id_subtype:8 "));
}

TEST_F(LinktraceReplies, KeepWideNumbersWhole) {
  client_server::LinktraceReply reply;
  reply.set_transaction_id(4294967295);
  reply.set_relay_action(-2147483647 - 1);
  EXPECT_THAT(Entry(reply), testing::HasSubstr(" transaction_id:4294967295 ttl:0 "
                                               "relay_action:-2147483648 "));
}

TEST_F(LinktraceReplies, KeepTheLowBitsOfTheEndpointForTheHandlersOnly) {
  client_server::OpLinktraceReplyRx message;
  message.set_mep_id(65536 + 7);
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX, message),
              ElementsAre(testing::StartsWith(std::string(kLogged) + " MA  LMEP 65543: "),
                          testing::StartsWith("status OnMepLinktraceReplyRx \"\" \"\" 7 "),
                          testing::StartsWith("linktrace OnMepLinktraceReplyRx \"\" \"\" 7 ")));
}

// Big-endian, of the first two octets; what is missing is zero.
TEST_F(LinktraceReplies, ReadEgressNumbersFromFieldsOfAnyLength) {
  const std::pair<std::string, std::string> numbers[] = {
      {"", "0"},
      {Octets("\x01"), "256"},
      {Octets("\x00\x01"), "1"},
      {Octets("\xff\xfe"), "65534"},
      {Octets("\x01\x02\x03"), "258"},
  };
  for (const auto& [bytes, number] : numbers) {
    client_server::LinktraceReply reply;
    reply.mutable_egress_id()->mutable_last()->set_id(bytes);
    EXPECT_THAT(Entry(reply), testing::HasSubstr(" last_id:" + number + " "));
    EXPECT_THAT(Entry(reply), testing::HasSubstr(" next_id:0}"));
    reply.Clear();
    reply.mutable_egress_id()->mutable_next()->set_id(bytes);
    EXPECT_THAT(Entry(reply), testing::HasSubstr(" last_id:0 "));
    EXPECT_THAT(Entry(reply), testing::HasSubstr(" next_id:" + number + "}"));
  }
}

}  // namespace
}  // namespace cfm_test
