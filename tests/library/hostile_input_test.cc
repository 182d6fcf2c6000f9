// SPDX-License-Identifier: Apache-2.0
// What comes from the server may be anything. The host hands over blocks of exactly the payload's
// size, so that the sanitizers notice a read past it.
#include <cfm/identifiers.h>

#include <random>

#include "recording_handlers.h"
#include "sample_reports.h"

namespace cfm_test {
namespace {

// A client of its own for each payload: a cache reply changes what it does afterwards.
std::vector<std::string> RecordOf(const std::function<void(RecordingHost&)>& deliver) {
  RecordingHost host;
  cfm::Client client(host.handle());
  Handlers handlers(host);
  handlers.Register(client);
  host.GetInStep();
  deliver(host);
  return host.Take();
}

std::vector<std::string> RecordOf(const Report& report, const std::string& payload) {
  return RecordOf([&](RecordingHost& host) { report.Deliver(host, payload); });
}

// Whole messages count as they are, all others as what was read of them; except that these end
// the process if they should be linktrace events.
void ExpectUsedAsFarAsRead(const Report& report, const std::string& payload) {
  SCOPED_TRACE(testing::PrintToString(payload));
  const Report::Reread reread = report.reread(payload);
  if (!reread.whole && IsLinktraceEvent(report)) {
    EXPECT_EXIT(RecordOf(report, payload), testing::ExitedWithCode(1),
                "^backtrace \\| fault 1 HandleMepLinktrace.* message\\] \\| end\n$");
    return;
  }
  const auto record = RecordOf(report, payload);
  EXPECT_EQ(record, RecordOf(report, reread.bytes));
  EXPECT_THAT(record, testing::Not(IsEmpty()));
}

class HostileInput : public testing::TestWithParam<Report> {
 protected:
  // Many processes end here; no thread is running that a fork would lose.
  HostileInput() { testing::FLAGS_gtest_death_test_style = "fast"; }
};

TEST_P(HostileInput, NullDataIsAnEmptyMessage) {
  const auto record = RecordOf([&](RecordingHost& host) { GetParam().DeliverNull(host); });
  EXPECT_THAT(record, testing::Not(IsEmpty()));
  EXPECT_EQ(record, RecordOf(GetParam(), ""));
}

TEST_P(HostileInput, NothingOfAReportStaysForTheNext) {
  const auto second = RecordOf([&](RecordingHost& host) {
    GetParam().Deliver(host, GetParam().bytes);
    host.Take();
    GetParam().Deliver(host, "");
  });
  EXPECT_EQ(second, RecordOf(GetParam(), ""));
}

TEST_P(HostileInput, TruncationsDoNoHarmWithoutHandlersEither) {
  const std::string& bytes = GetParam().bytes;
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    const Report::Reread reread = GetParam().reread(bytes.substr(0, length));
    if (!reread.whole && IsLinktraceEvent(GetParam())) {
      continue;  // fatal with or without handlers
    }
    const auto record = [&](const std::string& payload) {
      RecordingHost host;
      const cfm::Client client(host.handle());
      GetParam().Deliver(host, payload);
      return host.Take();
    };
    EXPECT_EQ(record(bytes.substr(0, length)), record(reread.bytes));
  }
}

TEST_P(HostileInput, EveryTruncationIsUsedAsFarAsItWasRead) {
  const std::string& bytes = GetParam().bytes;
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    ExpectUsedAsFarAsRead(GetParam(), bytes.substr(0, length));
  }
}

TEST_P(HostileInput, MalformedFieldsAreSurvived) {
  const std::string payloads[] = {
      Octets("\x00"),                      // a field of number 0
      Octets("\x0a"),                      // no length
      Octets("\x0a\xff\xff\xff\xff\x0f"),  // a length of 4 GiB
      Octets("\x0a\xff\xff\xff\xff\xff\xff\xff\xff\xff\x01"),
      Octets("\x0a\x7f"
             "few"),                                               // fewer octets than announced
      Octets("\x18\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\x01"),  // a number without an end
      Octets("\x0e"),                                              // wire types that do not exist
      Octets("\x0f"),
      Octets("\x0b"),  // a group that is not closed
      Octets("\x0c"),  // a group that was not opened
      Octets("\x7d"
             "four"),               // a field that nobody knows, whole
      std::string(100000, '\x7b'),  // groups in groups
      std::string(70000, 'x'),
  };
  for (const std::string& payload : payloads) {
    ExpectUsedAsFarAsRead(GetParam(), payload);
    ExpectUsedAsFarAsRead(GetParam(), GetParam().bytes + payload);
  }
}

TEST_P(HostileInput, WrongWireTypesLeaveFieldsUnset) {
  std::string payload;
  for (char number = 1; number < 16; ++number) {
    payload += static_cast<char>(number << 3 | 5) + std::string("four");
  }
  ExpectUsedAsFarAsRead(GetParam(), payload);
  EXPECT_EQ(RecordOf(GetParam(), payload), RecordOf(GetParam(), ""));
}

std::string RandomOctets(std::mt19937& random, std::size_t length) {
  std::string bytes(length, '\0');
  for (char& octet : bytes) {
    octet = static_cast<char>(random());
  }
  return bytes;
}

// Many payloads; of those that end the process a few, as they take their time.
template <typename MakePayload>
void ExpectAllUsedAsFarAsRead(const Report& report, unsigned seed, MakePayload make_payload) {
  std::mt19937 random(seed);
  int fatal = 0;
  for (int round = 0; round < 300; ++round) {
    const std::string payload = make_payload(random);
    if (!IsLinktraceEvent(report) || report.reread(payload).whole || ++fatal <= 5) {
      ExpectUsedAsFarAsRead(report, payload);
    }
  }
}

TEST_P(HostileInput, RandomOctetsAreSurvived) {
  ExpectAllUsedAsFarAsRead(GetParam(), 20240229, [](std::mt19937& random) {
    return RandomOctets(random, random() % 80);
  });
}

TEST_P(HostileInput, MessagesWithChangedOctetsAreSurvived) {
  ExpectAllUsedAsFarAsRead(GetParam(), 4242, [](std::mt19937& random) {
    std::string payload = GetParam().bytes;
    for (std::size_t changes = 1 + random() % 3; changes > 0; --changes) {
      payload[random() % payload.size()] = static_cast<char>(random());
    }
    return payload;
  });
}

INSTANTIATE_TEST_SUITE_P(Reports, HostileInput, testing::ValuesIn(AllReports()),
                         [](const auto& report) { return report.param.name; });

TEST(HostileInput, TheTableHoldsEveryCallbackOnce) {
  std::vector<std::string> known;
  for (const auto* signal : ServerSignals()) {
    known.push_back(NameOf(signal));
  }
  for (const auto* event : ServerEvents()) {
    known.push_back(NameOf(event));
  }
  std::vector<std::string> tested;
  for (const Report& report : AllReports()) {
    tested.push_back(report.name);
  }
  EXPECT_EQ(tested.size(), 19U);
  EXPECT_THAT(tested, testing::UnorderedElementsAreArray(known));
}

class HostileFields : public ReportTest {};

// The first six octets; what is missing is zero.
TEST_F(HostileFields, AddressesOfAnyLengthAreRead) {
  const std::pair<std::string, std::string> addresses[] = {
      {"", "00:00:00:00:00:00"},
      {Octets("\x0a"), "0a:00:00:00:00:00"},
      {Octets("\x0a\x0b\x0c\x0d\x0e"), "0a:0b:0c:0d:0e:00"},
      {Octets("\x0a\x0b\x0c\x0d\x0e\x0f"), "0a:0b:0c:0d:0e:0f"},
      {Octets("\x0a\x0b\x0c\x0d\x0e\x0f\x10"), "0a:0b:0c:0d:0e:0f"},
      {std::string(100000, '\xff'), "ff:ff:ff:ff:ff:ff"},
  };
  // The one call that an event brings about, with this address wherever it has one.
  const auto call = [this](const auto* event, auto message, const std::string& bytes) {
    message.set_mac_address(bytes);
    return Deliver(event, message).at(1);
  };
  for (const auto& [bytes, text] : addresses) {
    const auto shows = testing::HasSubstr(text);
    EXPECT_THAT(call(CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP, LocalStatus(), bytes), shows);
    EXPECT_THAT(call(CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP, RemoteStatus(), bytes), shows);
    EXPECT_THAT(call(CFM_MGR_SRV_EVENT_LINKTRACE_STARTED, LinktraceStarted(), bytes), shows);
    EXPECT_THAT(call(CFM_MGR_SRV_EVENT_LOOPBACK_STARTED, LoopbackStarted(), bytes), shows);
    EXPECT_THAT(call(CFM_MGR_SRV_EVENT_LOOPBACK_REPLY_RX, LoopbackReply(), bytes), shows);
    EXPECT_THAT(call(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_STARTED, DelayStarted(), bytes), shows);
    EXPECT_THAT(call(CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_REPLY_RX, DelayReply(), bytes), shows);
    auto message = LinktraceReply();
    auto& reply = *message.mutable_reply();
    reply.set_destination_mac(bytes);
    reply.set_source_mac(bytes);
    reply.mutable_egress_id()->mutable_last()->set_mac(bytes);
    reply.mutable_egress_id()->mutable_next()->set_mac(bytes);
    reply.mutable_reply_ingress()->set_mac(bytes);
    reply.mutable_reply_egress()->set_mac(bytes);
    const std::string entry = Deliver(CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX, message).at(1);
    for (const char* const member :
         {"destination_mac:", "source_mac:", "last_mac:", "next_mac:",
          "reply_ingress:{action:204 mac:", "reply_egress:{action:205 mac:"}) {
      EXPECT_THAT(entry, testing::HasSubstr(member + text));
    }
  }
}

// A log record ends at the first zero, a handler gets the whole name.
TEST_F(HostileFields, NamesMayHoldAnyOctets) {
  const std::string md_name = Octets("D%s%n\x00\xff\xfe\n");
  const std::string ma_name = Octets(
      "\xc3\x28\x00"
      "A");
  const std::string names = " \"" + md_name + "\" \"" + ma_name + "\" ";
  const auto record = [&](const auto* from, auto message) {
    message.set_md_name(md_name);
    message.set_ma_name(ma_name);
    return Deliver(from, message);
  };
  const auto logs = testing::HasSubstr("MD D%s%n MA \xc3\x28 LMEP 11");
  const auto calls = testing::HasSubstr(names);
  EXPECT_THAT(record(CFM_MGR_SRV_EVENT_STATUS_LOCAL_MEP, LocalStatus()), ElementsAre(logs, calls));
  EXPECT_THAT(record(CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP, RemoteStatus()),
              ElementsAre(logs, calls));
  EXPECT_THAT(record(CFM_MGR_SRV_EVENT_REMOVED_LOCAL_MEP, RemovedLocal()),
              ElementsAre(logs, calls));
  EXPECT_THAT(record(CFM_MGR_SRV_EVENT_REMOVED_REMOTE_MEP, RemovedRemote()),
              ElementsAre(logs, calls));
  EXPECT_THAT(record(CFM_MGR_SRV_EVENT_LINKTRACE_STARTED, LinktraceStarted()),
              ElementsAre(logs, calls, calls));
  EXPECT_THAT(record(CFM_MGR_SRV_EVENT_LINKTRACE_ENDED, LinktraceEnded()),
              ElementsAre(logs, calls, calls));
  EXPECT_THAT(record(CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX, LinktraceReply()),
              ElementsAre(logs, calls, calls));
  EXPECT_THAT(record(CFM_MGR_S2C_SIG_LB_TRIGGER_ERROR, LoopbackRefusal()).at(1), calls);
  EXPECT_THAT(record(CFM_MGR_S2C_SIG_DM_TRIGGER_ERROR, DelayRefusal()).at(1), calls);
  auto refusal = LinktraceRefusal();
  refusal.mutable_key()->set_md_name(md_name);
  refusal.mutable_key()->set_ma_name(ma_name);
  EXPECT_THAT(Deliver(CFM_MGR_S2C_SIG_LT_TRIGGER_ERROR, refusal).at(1),
              testing::HasSubstr(" md_name:\"" + md_name + "\" ma_name:\"" + ma_name + "\" "));
  client_server::OpReplyAllStats statistics;
  statistics.add_local_mep_stats()->set_md_name(md_name);
  statistics.mutable_local_mep_stats(0)->set_ma_name(ma_name);
  statistics.add_remote_mep_stats()->set_md_name(md_name);
  statistics.mutable_remote_mep_stats(0)->set_ma_name(ma_name);
  const auto stats_log = testing::HasSubstr("MD D%s%n MA \xc3\x28 LMEP 0");
  EXPECT_THAT(Deliver(CFM_MGR_S2C_SIG_STATS_REPLY, statistics),
              ElementsAre(calls, stats_log, calls, stats_log, "statistics OnStatsReply"));
  auto status = RemoteStatus();
  status.set_sender_id(Octets("%d\x00\xff"));
  EXPECT_THAT(Deliver(CFM_MGR_SRV_EVENT_STATUS_REMOTE_MEP, status),
              ElementsAre(testing::HasSubstr("Sender ID %d Last Change Uptime"),
                          testing::HasSubstr(Octets("sender_id:\"%d\x00\xff\""))));
}

// Without a terminating zero, without a limit of length.
TEST_F(HostileFields, TriggersCarryNamesOfAnyOctetsAndLength) {
  const std::string md_name = Octets("D\x00\xff");
  const std::string ma_name(70000, 'x');
  const auto names = testing::Contains(
      testing::HasSubstr(R"(md_name:"D\x00\xff" ma_name:")" + ma_name + "\" request_id:1 "));
  host.Take();
  client->LinktraceTrigger({1, md_name, ma_name, 2, 3, 4});
  EXPECT_THAT(host.Take("send 0 LT_TRIGGER "), names);
  client->LoopbackTrigger({1, md_name, ma_name, 2, 3, 4, 5});
  EXPECT_THAT(host.Take("send 0 LB_TRIGGER "), names);
  client->DelayMeasurementTrigger({1, md_name, ma_name, 2, 3, 4, 5, 6, 7});
  EXPECT_THAT(host.Take("send 0 DM_TRIGGER "), names);
}

}  // namespace
}  // namespace cfm_test
