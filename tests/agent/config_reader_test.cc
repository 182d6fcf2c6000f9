// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

#include "core/config.h"
#include "read_text.h"

namespace cfm_agent::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Key;

constexpr std::string_view kEverything = R"(
domains:
  - name: provider.example.net
    name-format: dns-like
    level: 5
    sender-id: chassis-manage
    mhf-creation: explicit
    associations:
      - name: "4711"
        name-format: uint16
        vids: [300, 100, 200]
        ccm-interval: 3.33ms
        mep-ids: [8191, 7, 1]
        sender-id: manage
        mhf-creation: default
        ais:
          enabled: true
          octet-a: 255
          word-b: 4294967295
          id-set: [9, 65535, 0]
          octet-c: 3
          flag-d: true
        endpoints:
          - mep-id: 7
            direction: up
            port: eth1
            primary-vid: 200
            inner-vid: 4094
            admin-state: true
            ccm-enabled: true
            ccm-priority: 3
            lowest-alarm-priority: error-xcon
            fng-alarm-time: 2.75s
            fng-reset-time: 3000ms
            fault-action: shutdown
            aux-flag: true
probes:
  - id: 65535
    interval: 30
    domain: provider.example.net
    association: "4711"
    mep-id: 7
    remote-mep-id: 8191
    sessions:
      - {id: 2, count: 10, interval: 20, size: 1500, pcp: 6}
      - {id: 1, count: 65535}
)";

Config ReadGood(std::string_view text, Ports& ports) {
  ReadResult result = ReadConfig(text, ports.Function());
  for (const Mistake& mistake : result.mistakes) {
    ADD_FAILURE() << Describe("f", mistake);
  }
  return result.config.value_or(Config{});
}

Config ReadGood(std::string_view text) {
  Ports ports;
  return ReadGood(text, ports);
}

TEST(ConfigReader, ReadsEveryFieldOfADomain) {
  const Config config = ReadGood(kEverything);
  ASSERT_THAT(config.hierarchy.mds, ElementsAre(Key("provider.example.net")));
  const auto& cfg = config.hierarchy.mds.begin()->second.cfg;
  EXPECT_EQ(cfg.format, cfm::MdNameFormat::DnsLike);
  EXPECT_EQ(cfg.level, 5);
  EXPECT_EQ(cfg.sender_id, cfm::SenderIdTlvContent::ChassisManage);
  EXPECT_EQ(cfg.mhf_creation, cfm::MhfCreationMode::Explicit);
}

TEST(ConfigReader, ReadsEveryFieldOfAnAssociation) {
  const Config config = ReadGood(kEverything);
  const auto& ma = config.hierarchy.mds.at("provider.example.net").mas.at("4711");
  EXPECT_EQ(ma.md_name, "provider.example.net");
  EXPECT_EQ(ma.cfg.format, cfm::MaNameFormat::Uint16);
  EXPECT_THAT(ma.cfg.vids, ElementsAre(300, 100, 200));
  EXPECT_EQ(ma.cfg.ccm_interval, cfm::CcmInterval::Interval300Hz);
  EXPECT_THAT(ma.cfg.mep_ids, ElementsAre(1, 7, 8191));
  EXPECT_EQ(ma.cfg.sender_id, cfm::SenderIdTlvContent::Manage);
  EXPECT_EQ(ma.cfg.mhf_creation, cfm::MhfCreationMode::Default);
  EXPECT_TRUE(ma.cfg.ais.enabled);
  EXPECT_EQ(ma.cfg.ais.octet_a, 255);
  EXPECT_EQ(ma.cfg.ais.word_b, 4294967295U);
  EXPECT_THAT(ma.cfg.ais.id_set, ElementsAre(0, 9, 65535));
  EXPECT_EQ(ma.cfg.ais.octet_c, 3);
  EXPECT_TRUE(ma.cfg.ais.flag_d);
}

TEST(ConfigReader, ReadsEveryFieldOfAnEndpoint) {
  Ports ports;
  const Config config = ReadGood(kEverything, ports);
  const auto& meps = config.hierarchy.mds.at("provider.example.net").mas.at("4711").meps;
  ASSERT_THAT(meps, ElementsAre(Key(7)));
  const cfm::hierarchy_mep& mep = meps.at(7);
  EXPECT_EQ(mep.md_name, "provider.example.net");
  EXPECT_EQ(mep.ma_name, "4711");
  EXPECT_EQ(mep.cfg.mep_id, 7);
  EXPECT_EQ(mep.cfg.direction, cfm::MepDirection::Up);
  EXPECT_EQ(mep.cfg.port, ports.Of("eth1"));
  EXPECT_EQ(mep.cfg.primary_vid, 200);
  EXPECT_EQ(mep.cfg.inner_vid, 4094);
  EXPECT_TRUE(mep.cfg.admin_state);
  EXPECT_TRUE(mep.cfg.ccm_enabled);
  EXPECT_EQ(mep.cfg.ccm_priority, 3);
  EXPECT_EQ(mep.cfg.lowest_prio_defect, cfm::Defects::ErrorXcon);
  EXPECT_EQ(mep.cfg.fng_alarm_time, 275);
  EXPECT_EQ(mep.cfg.fng_reset_time, 300);
  EXPECT_EQ(mep.cfg.fault_action, cfm::FaultAction::Shutdown);
  EXPECT_TRUE(mep.cfg.aux_flag);
}

TEST(ConfigReader, ReadsEveryFieldOfAProbe) {
  const Config config = ReadGood(kEverything);
  ASSERT_THAT(config.probes.probes, ElementsAre(Key(65535)));
  const cfm::probe_cfg& probe = config.probes.probes.at(65535);
  EXPECT_EQ(probe.id, 65535);
  EXPECT_EQ(probe.interval, 30);
  EXPECT_EQ(probe.md, "provider.example.net");
  EXPECT_EQ(probe.ma, "4711");
  EXPECT_EQ(probe.lmep, 7);
  EXPECT_EQ(probe.rmep, 8191);
  ASSERT_THAT(probe.sessions, ElementsAre(Key(1), Key(2)));
  EXPECT_EQ(probe.sessions.at(2), (cfm::session_cfg{10, 20, 1500, 6}));
}

TEST(ConfigReader, GivesASessionTheUsualPeriodAndFrameSize) {
  const Config config = ReadGood(kEverything);
  EXPECT_EQ(config.probes.probes.at(65535).sessions.at(1), (cfm::session_cfg{65535, 100, 64, 0}));
}

constexpr std::string_view kLeast = R"(
domains:
  - name: d
    level: 0
    associations:
      - name: a
        mep-ids: [1]
        endpoints:
          - {mep-id: 1, direction: down, port: eth0}
)";

TEST(ConfigReader, GivesADomainTheStandardsDefaults) {
  const auto cfg = ReadGood(kLeast).hierarchy.mds.at("d").cfg;
  EXPECT_EQ(cfg.format, cfm::MdNameFormat::CharString);
  EXPECT_EQ(cfg.level, 0);
  EXPECT_EQ(cfg.sender_id, cfm::SenderIdTlvContent::None);
  EXPECT_EQ(cfg.mhf_creation, cfm::MhfCreationMode::None);
}

TEST(ConfigReader, GivesAnAssociationTheStandardsDefaults) {
  const auto cfg = ReadGood(kLeast).hierarchy.mds.at("d").mas.at("a").cfg;
  EXPECT_EQ(cfg.format, cfm::MaNameFormat::CharString);
  EXPECT_THAT(cfg.vids, IsEmpty());
  EXPECT_EQ(cfg.ccm_interval, cfm::CcmInterval::Interval1s);
  EXPECT_EQ(cfg.sender_id, cfm::SenderIdTlvContent::Defer);
  EXPECT_EQ(cfg.mhf_creation, cfm::MhfCreationMode::Defer);
  EXPECT_FALSE(cfg.ais.enabled);
  EXPECT_FALSE(cfg.ais.flag_d);
}

TEST(ConfigReader, GivesAnEndpointTheStandardsDefaults) {
  const auto cfg = ReadGood(kLeast).hierarchy.mds.at("d").mas.at("a").meps.at(1).cfg;
  EXPECT_EQ(cfg.direction, cfm::MepDirection::Down);
  EXPECT_EQ(cfg.primary_vid, 0);
  EXPECT_EQ(cfg.inner_vid, 0);
  EXPECT_FALSE(cfg.admin_state);
  EXPECT_FALSE(cfg.ccm_enabled);
  EXPECT_EQ(cfg.ccm_priority, 7);
  EXPECT_EQ(cfg.lowest_prio_defect, cfm::Defects::MacRemoteErrorXcon);
  EXPECT_EQ(cfg.fng_alarm_time, 250);
  EXPECT_EQ(cfg.fng_reset_time, 1000);
  EXPECT_EQ(cfg.fault_action, cfm::FaultAction::None);
  EXPECT_FALSE(cfg.aux_flag);
}

TEST(ConfigReader, TakesAnEmptyListOfDomainsForADeliberatelyEmptyConfiguration) {
  const Config config = ReadGood("domains: []\n");
  EXPECT_THAT(config.hierarchy.mds, IsEmpty());
  EXPECT_THAT(config.probes.probes, IsEmpty());
}

TEST(ConfigReader, ReadsProbesWhereverTheyStand) {
  const Config config = ReadGood(R"(
probes:
  - {id: 1, interval: 1, domain: d, association: a, mep-id: 1, remote-mep-id: 2}
domains:
  - {name: d, level: 1, associations: [{name: a, mep-ids: [1, 2],
     endpoints: [{mep-id: 1, direction: up, port: lo}]}]}
)");
  EXPECT_THAT(config.probes.probes, ElementsAre(Key(1)));
}

TEST(ConfigReader, FollowsAliases) {
  const Config config = ReadGood(R"(
domains:
  - name: d
    level: 1
    associations:
      - {name: a, mep-ids: &ids [1, 2, 3]}
      - {name: b, mep-ids: *ids}
)");
  EXPECT_THAT(config.hierarchy.mds.at("d").mas.at("b").cfg.mep_ids, ElementsAre(1, 2, 3));
}

TEST(ConfigReader, KeepsOctetsOfNamesAsTheyAre) {
  const Config config = ReadGood("domains:\n  - {name: \"M\xC3\xBCnchen \\x80 \\\\\", level: 1}\n");
  EXPECT_THAT(config.hierarchy.mds, ElementsAre(Key("M\xC3\xBCnchen \xC2\x80 \\")));
}

struct WordCase {
  const char* word;
  int number;
};

std::ostream& operator<<(std::ostream& out, const WordCase& test) { return out << test.word; }

class CcmIntervals : public ::testing::TestWithParam<WordCase> {};

TEST_P(CcmIntervals, HaveTheNumberTheyHaveOnTheWire) {
  const Config config =
      ReadGood(std::string("domains: [{name: d, level: 1, associations: [{name: a,"
                           "ccm-interval: ") +
               GetParam().word + "}]}]");
  EXPECT_EQ(static_cast<int>(config.hierarchy.mds.at("d").mas.at("a").cfg.ccm_interval),
            GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(All, CcmIntervals,
                         ::testing::Values(WordCase{"3.33ms", 1}, WordCase{"10ms", 2},
                                           WordCase{"100ms", 3}, WordCase{"1s", 4},
                                           WordCase{"10s", 5}, WordCase{"1min", 6},
                                           WordCase{"10min", 7}));

class AlarmPriorities : public ::testing::TestWithParam<WordCase> {};

TEST_P(AlarmPriorities, HaveTheNumberOfTheStandard) {
  const Config config = ReadGood(
      std::string("domains: [{name: d, level: 1, associations: [{name: a, mep-ids: [1], endpoints: "
                  "[{mep-id: 1, direction: up, port: lo, lowest-alarm-priority: ") +
      GetParam().word + "}]}]}]");
  const auto& mep = config.hierarchy.mds.at("d").mas.at("a").meps.at(1);
  EXPECT_EQ(static_cast<int>(mep.cfg.lowest_prio_defect), GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(All, AlarmPriorities,
                         ::testing::Values(WordCase{"all", 1}, WordCase{"mac-remote-error-xcon", 2},
                                           WordCase{"remote-error-xcon", 3},
                                           WordCase{"error-xcon", 4}, WordCase{"xcon", 5},
                                           WordCase{"none", 6}));

struct NameCase {
  const char* format;
  const char* name;
};

std::ostream& operator<<(std::ostream& out, const NameCase& test) {
  return out << test.format << ' ' << test.name;
}

class MaNames : public ::testing::TestWithParam<NameCase> {};

TEST_P(MaNames, AreTakenAsTheyAreWritten) {
  const Config config =
      ReadGood(std::string("domains: [{name: d, level: 1, associations: [{name-format: ") +
               GetParam().format + ", name: '" + GetParam().name + "'}]}]");
  EXPECT_THAT(config.hierarchy.mds.at("d").mas, ElementsAre(Key(GetParam().name)));
}

INSTANTIATE_TEST_SUITE_P(
    Right, MaNames,
    ::testing::Values(NameCase{"primary-vid", "1"}, NameCase{"primary-vid", "4094"},
                      NameCase{"char-string", "anything at all: yes"}, NameCase{"uint16", "0"},
                      NameCase{"uint16", "65535"}, NameCase{"rfc2685-vpn-id", "00005e:0000ABcd"},
                      NameCase{"icc-based", "A"}, NameCase{"icc-based", "ABCDEF1234567"},
                      NameCase{"icc-and-country-code", "DEABCDEF1234567"}));

class MdNames : public ::testing::TestWithParam<NameCase> {};

TEST_P(MdNames, AreTakenAsTheyAreWritten) {
  const Config config = ReadGood(std::string("domains: [{level: 1, name-format: ") +
                                 GetParam().format + ", name: '" + GetParam().name + "'}]");
  EXPECT_THAT(config.hierarchy.mds, ElementsAre(Key(GetParam().name)));
}

INSTANTIATE_TEST_SUITE_P(
    Right, MdNames,
    ::testing::Values(NameCase{"none", "a label only"}, NameCase{"dns-like", "a"},
                      NameCase{"dns-like", "access-1.example.net"},
                      NameCase{"mac-and-uint", "02:00:5e:00:00:01/65535"},
                      NameCase{"char-string", "1234567890123456789012345678901234567890123"}));

TEST(ConfigReader, LetsAnAssociationUseTheRoomThatANamelessDomainLeaves) {
  const std::string name(45, 'a');
  const Config config = ReadGood(
      "domains: [{name: d, name-format: none, level: 1, associations: "
      "[{name: " +
      name + "}]}]");
  EXPECT_THAT(config.hierarchy.mds.at("d").mas, ElementsAre(Key(name)));
}

TEST(ConfigReader, LetsBothNamesTogetherFillTheMaid) {
  const std::string name(34, 'a');
  const Config config =
      ReadGood("domains: [{name: ten-octets, level: 1, associations: [{name: " + name + "}]}]");
  EXPECT_THAT(config.hierarchy.mds.at("ten-octets").mas, ElementsAre(Key(name)));
}

std::string FileText(const std::string& name) {
  std::ifstream file(std::string(AGENT_EXAMPLES) + '/' + name);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

TEST(Examples, HoldWhatTheyPromise) {
  EXPECT_EQ(Summary(CountsOf(ReadGood(FileText("minimal.yaml")))),
            "1 domain, 1 association, 1 endpoint, 0 probes with 0 sessions");
  EXPECT_EQ(Summary(CountsOf(ReadGood(FileText("demo.yaml")))),
            "3 domains, 12 associations, 40 endpoints, 6 probes with 9 sessions");
}

TEST(Examples, GiveNoWarnings) {
  EXPECT_THAT(WarningsIn(FileText("minimal.yaml")), IsEmpty());
  EXPECT_THAT(WarningsIn(FileText("demo.yaml")), IsEmpty());
}

}  // namespace
}  // namespace cfm_agent::testing
