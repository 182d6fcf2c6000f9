// SPDX-License-Identifier: Apache-2.0
// Every mistake that a configuration file can have, to the letter.

#include <gmock/gmock.h>

#include "read_text.h"

namespace cfm_agent::testing {
namespace {

using ::testing::ElementsAre;

// One line of a file and what is wrong with it. The line stands for % in a file that is right but
// for that line, and whose line numbers the message counts.
struct Case {
  const char* name;
  const char* line;
  const char* mistake;
};

std::ostream& operator<<(std::ostream& out, const Case& test) { return out << test.name; }

std::string NameOf(const ::testing::TestParamInfo<Case>& info) { return info.param.name; }

std::string With(std::string text, const char* line) {
  return text.replace(text.find('%'), 1, line);
}

class Domains : public ::testing::TestWithParam<Case> {};

TEST_P(Domains, AreChecked) {
  EXPECT_THAT(MistakesIn(With("domains:\n- %\n", GetParam().line)),
              ElementsAre(GetParam().mistake));
}

INSTANTIATE_TEST_SUITE_P(
    Mistakes, Domains,
    ::testing::Values(
        Case{"NotAMap", "5", "f:2:3: domains[0]: 5 is not a domain; use a map with the key name"},
        Case{"NothingAtAll", "",
             "f:3:1: domains[0]: nothing is not a domain; use a map with the key name"},
        Case{"NameMissing", "level: 1", "f:2:3: domains[0].name: is missing; a domain needs it"},
        Case{"LevelMissing", "name: d", "f:2:3: domains[0].level: is missing; a domain needs it"},
        Case{"NameEmpty", "{level: 1, name: ''}",
             "f:2:20: domains[0].name: empty text is not a domain's name; use text"},
        Case{"NameNull", "{level: 1, name: ~}",
             "f:2:20: domains[0].name: nothing is not a domain's name; use text"},
        Case{"NameLeftOut", "name:\n  # none\n  level: 1",
             "f:2:3: domains[0].name: nothing is not a domain's name; use text"},
        Case{"NameAList", "{level: 1, name: [d]}",
             "f:2:20: domains[0].name: a list is not a domain's name; use text"},
        Case{"NameTooLong", "{level: 1, name: 12345678901234567890123456789012345678901234}",
             "f:2:20: domains[0].name: \"1234567890123456789012345678901234567890...\" has 44 "
             "octets; use 1 to 43 octets without control characters"},
        Case{"NameWithControlCharacter", "{level: 1, name: \"a\\tb\"}",
             "f:2:20: domains[0].name: \"a\\x09b\" does not fit its name format; use 1 to 43 "
             "octets without control characters"},
        Case{"NameNotDnsLike", "{level: 1, name-format: dns-like, name: a..b}",
             "f:2:43: domains[0].name: \"a..b\" does not fit its name format; use a domain name of "
             "1 to 43 octets such as access.example.net"},
        Case{"NameNotAMac", "{level: 1, name-format: mac-and-uint, name: '02:00:5e:00:00:01'}",
             "f:2:47: domains[0].name: \"02:00:5e:00:00:01\" does not fit its name format; use a "
             "MAC address and a number up to 65535, such as 02:00:5e:00:00:01/7"},
        Case{"FormatUnknown", "{level: 1, name: d, name-format: string}",
             "f:2:36: domains[0].name-format: \"string\" is not a domain name format; use none, "
             "dns-like, mac-and-uint or char-string"},
        Case{"LevelTooHigh", "{name: d, level: 8}",
             "f:2:20: domains[0].level: 8 is out of range; use a whole number from 0 to 7"},
        Case{"LevelNegative", "{name: d, level: -1}",
             "f:2:20: domains[0].level: -1 is out of range; use a whole number from 0 to 7"},
        Case{"LevelHuge", "{name: d, level: 18446744073709551617}",
             "f:2:20: domains[0].level: 18446744073709551617 is out of range; use a whole number "
             "from 0 to 7"},
        Case{"LevelNotWhole", "{name: d, level: 1.5}",
             "f:2:20: domains[0].level: \"1.5\" is not a whole number; use a whole number from 0 "
             "to 7"},
        Case{"LevelQuoted", "{name: d, level: '1'}",
             "f:2:20: domains[0].level: \"1\" is text; write the number without quotes"},
        Case{"LevelAMap", "{name: d, level: {a: b}}",
             "f:2:20: domains[0].level: a map is not a whole number; use a whole number from 0 to "
             "7"},
        Case{"SenderIdDeferred", "{name: d, level: 1, sender-id: defer}",
             "f:2:34: domains[0].sender-id: \"defer\" is not a sender id; use none, chassis, "
             "manage or chassis-manage"},
        Case{"MhfCreationDeferred", "{name: d, level: 1, mhf-creation: defer}",
             "f:2:37: domains[0].mhf-creation: \"defer\" is not an MHF creation mode; use none, "
             "default or explicit"},
        Case{"AssociationsNotAList", "{name: d, level: 1, associations: {}}",
             "f:2:37: domains[0].associations: a map is not a list; use a list of associations, [] "
             "for none"},
        Case{"KeyMisspelt", "{name: d, level: 1, mhf_creation: none}",
             "f:2:23: domains[0]: \"mhf_creation\" is not a key of a domain; did you mean "
             "mhf-creation?"},
        Case{"KeyUnknown", "{name: d, level: 1, colour: red}",
             "f:2:23: domains[0]: \"colour\" is not a key of a domain; use name, name-format, "
             "level, sender-id, mhf-creation or associations"},
        Case{"KeyTwice", "{name: d, level: 1, level: 2}",
             "f:2:23: domains[0].level: is given twice, first on line 2; give it once"},
        Case{"KeyNotText", "{name: d, level: 1, [a]: 2}",
             "f:2:23: domains[0]: a key is not plain text; a domain has name, name-format, level, "
             "sender-id, mhf-creation or associations"}),
    NameOf);

class Associations : public ::testing::TestWithParam<Case> {};

TEST_P(Associations, AreChecked) {
  EXPECT_THAT(MistakesIn(With("domains:\n"
                              "- name: d\n"
                              "  level: 1\n"
                              "  associations:\n"
                              "  - %\n",
                              GetParam().line)),
              ElementsAre(GetParam().mistake));
}

INSTANTIATE_TEST_SUITE_P(
    Mistakes, Associations,
    ::testing::Values(
        Case{"NotAMap", "[a]",
             "f:5:5: domains[0].associations[0]: a list is not an association; use a map with the "
             "key name"},
        Case{"NameMissing", "{}",
             "f:5:5: domains[0].associations[0].name: is missing; an association needs it"},
        Case{"NameNotAVid", "{name-format: primary-vid, name: 4095}",
             "f:5:38: domains[0].associations[0].name: \"4095\" does not fit its name format; use "
             "a VID from 1 to 4094"},
        Case{"NameNotCanonical", "{name-format: uint16, name: 007}",
             "f:5:33: domains[0].associations[0].name: \"007\" does not fit its name format; use a "
             "whole number from 0 to 65535"},
        Case{"NameNotAVpnId", "{name-format: rfc2685-vpn-id, name: '00005e:1'}",
             "f:5:41: domains[0].associations[0].name: \"00005e:1\" does not fit its name format; "
             "use an OUI and a VPN index in hexadecimal, such as 00005e:00000001"},
        Case{"NameNotIcc", "{name-format: icc-based, name: lower}",
             "f:5:36: domains[0].associations[0].name: \"lower\" does not fit its name format; use "
             "1 to 13 capital letters and digits"},
        Case{"NameTooLongForIcc", "{name-format: icc-based, name: ABCDEFGHIJKLMN}",
             "f:5:36: domains[0].associations[0].name: \"ABCDEFGHIJKLMN\" has 14 octets; use 1 to "
             "13 capital letters and digits"},
        Case{"NameWithoutCountry", "{name-format: icc-and-country-code, name: 1EABC}",
             "f:5:47: domains[0].associations[0].name: \"1EABC\" does not fit its name format; use "
             "a country code of two capital letters and up to 13 capital letters and digits"},
        Case{"NameTooLongForTheMaid", "{name: 12345678901234567890123456789012345678901234}",
             "f:5:12: domains[0].associations[0].name: "
             "\"1234567890123456789012345678901234567890...\" takes 44 octets and the domain's "
             "name 1; use names of at most 44 octets together"},
        Case{"NameTooLongByItself", "{name: 1234567890123456789012345678901234567890123456}",
             "f:5:12: domains[0].associations[0].name: "
             "\"1234567890123456789012345678901234567890...\" has 46 octets; use 1 to 45 octets "
             "without control characters"},
        Case{"FormatUnknown", "{name: a, name-format: icc}",
             "f:5:28: domains[0].associations[0].name-format: \"icc\" is not an association name "
             "format; use primary-vid, char-string, uint16, rfc2685-vpn-id, icc-based or "
             "icc-and-country-code"},
        Case{"CcmIntervalUnknown", "{name: a, ccm-interval: 5s}",
             "f:5:29: domains[0].associations[0].ccm-interval: \"5s\" is not a CCM interval; use "
             "3.33ms, 10ms, 100ms, 1s, 10s, 1min or 10min"},
        Case{"VidsNotAList", "{name: a, vids: 100}",
             "f:5:21: domains[0].associations[0].vids: 100 is not a list; use a list of VIDs, [] "
             "for none"},
        Case{"VidOutOfRange", "{name: a, vids: [1, 4095]}",
             "f:5:25: domains[0].associations[0].vids[1]: 4095 is out of range; use a whole number "
             "from 1 to 4094"},
        Case{"VidTwice", "{name: a, vids: [7, 8, 7]}",
             "f:5:28: domains[0].associations[0].vids[2]: 7 is used twice, first on line 5; use "
             "each one once"},
        Case{"MepIdOutOfRange", "{name: a, mep-ids: [0]}",
             "f:5:25: domains[0].associations[0].mep-ids[0]: 0 is out of range; use a whole number "
             "from 1 to 8191"},
        Case{"MepIdTwice", "{name: a, mep-ids: [5, 5]}",
             "f:5:28: domains[0].associations[0].mep-ids[1]: 5 is used twice, first on line 5; use "
             "each one once"},
        Case{"SenderIdUnknown", "{name: a, sender-id: no}",
             "f:5:26: domains[0].associations[0].sender-id: \"no\" is not a sender id; use none, "
             "chassis, manage, chassis-manage or defer"},
        Case{"MhfCreationUnknown", "{name: a, mhf-creation: []}",
             "f:5:29: domains[0].associations[0].mhf-creation: a list is not an MHF creation mode; "
             "use none, default, explicit or defer"},
        Case{"AisNotAMap", "{name: a, ais: true}",
             "f:5:20: domains[0].associations[0].ais: \"true\" is not an AIS configuration; use a "
             "map with the key enabled"},
        Case{"AisWithoutEnabled", "{name: a, ais: {flag-d: true}}",
             "f:5:20: domains[0].associations[0].ais.enabled: is missing; an AIS configuration "
             "needs it"},
        Case{"AisOctetTooBig", "{name: a, ais: {enabled: true, octet-a: 256}}",
             "f:5:45: domains[0].associations[0].ais.octet-a: 256 is out of range; use a whole "
             "number from 0 to 255"},
        Case{"AisIdTwice", "{name: a, ais: {enabled: true, id-set: [1, 1]}}",
             "f:5:48: domains[0].associations[0].ais.id-set[1]: 1 is used twice, first on line 5; "
             "use each one once"},
        Case{"EndpointsNotAList", "{name: a, endpoints: 1}",
             "f:5:26: domains[0].associations[0].endpoints: 1 is not a list; use a list of "
             "endpoints, [] for none"},
        Case{"KeyUnknown", "{name: a, interval: 1s}",
             "f:5:15: domains[0].associations[0]: \"interval\" is not a key of an association; use "
             "name, name-format, vids, ccm-interval, mep-ids, sender-id, mhf-creation, ais or "
             "endpoints"}),
    NameOf);

class Endpoints : public ::testing::TestWithParam<Case> {};

TEST_P(Endpoints, AreChecked) {
  EXPECT_THAT(MistakesIn(With("domains:\n"
                              "- name: d\n"
                              "  level: 1\n"
                              "  associations:\n"
                              "  - name: a\n"
                              "    vids: [10, 20]\n"
                              "    mep-ids: [1, 2]\n"
                              "    endpoints:\n"
                              "    - {mep-id: 1, direction: up, port: lo}\n"
                              "    - {%}\n",
                              GetParam().line)),
              ElementsAre(GetParam().mistake));
}

#define ENDPOINT "domains[0].associations[0].endpoints[1]"

INSTANTIATE_TEST_SUITE_P(
    Mistakes, Endpoints,
    ::testing::Values(
        Case{"MepIdMissing", "direction: up, port: lo",
             "f:10:7: " ENDPOINT ".mep-id: is missing; an endpoint needs it"},
        Case{"DirectionMissing", "mep-id: 2, port: lo",
             "f:10:7: " ENDPOINT ".direction: is missing; an endpoint needs it"},
        Case{"PortMissing", "mep-id: 2, direction: up",
             "f:10:7: " ENDPOINT ".port: is missing; an endpoint needs it"},
        Case{"MepIdOutOfRange", "direction: up, port: lo, mep-id: 8192",
             "f:10:41: " ENDPOINT
             ".mep-id: 8192 is out of range; use a whole number from 1 to 8191"},
        Case{"MepIdTwice", "direction: up, port: lo, mep-id: 1",
             "f:10:41: " ENDPOINT ".mep-id: 1 is used twice, first on line 9; use each one once"},
        Case{"MepIdNotInTheList", "direction: up, port: lo, mep-id: 3",
             "f:10:41: " ENDPOINT ".mep-id: 3 is not in the association's mep-ids; add it there"},
        Case{"DirectionUnknown", "mep-id: 2, port: lo, direction: sideways",
             "f:10:40: " ENDPOINT ".direction: \"sideways\" is not a direction; use down or up"},
        Case{"PortEmpty", "mep-id: 2, direction: up, port: ''",
             "f:10:40: " ENDPOINT ".port: empty text is not a network interface; use text"},
        Case{"PortNoInterface", "mep-id: 2, direction: up, port: eth/0",
             "f:10:40: " ENDPOINT
             ".port: \"eth/0\" cannot be a network interface; use a name such as eth0, of at most "
             "15 octets without blanks, / and :"},
        Case{"PortTooLong", "mep-id: 2, direction: up, port: abcdefghijklmnop",
             "f:10:40: " ENDPOINT
             ".port: \"abcdefghijklmnop\" cannot be a network interface; use a name such as eth0, "
             "of at most 15 octets without blanks, / and :"},
        Case{"PrimaryVidOutOfRange", "mep-id: 2, direction: up, port: lo, primary-vid: 4095",
             "f:10:57: " ENDPOINT
             ".primary-vid: 4095 is out of range; use a whole number from 0 to 4094"},
        Case{"PrimaryVidOfNobody", "mep-id: 2, direction: up, port: lo, primary-vid: 30",
             "f:10:57: " ENDPOINT
             ".primary-vid: 30 is not in the association's vids; use one of them, or 0 for the "
             "first"},
        Case{"InnerVidOutOfRange", "mep-id: 2, direction: up, port: lo, inner-vid: 4095",
             "f:10:55: " ENDPOINT
             ".inner-vid: 4095 is out of range; use a whole number from 0 to 4094"},
        Case{"AdminStateNotABool", "mep-id: 2, direction: up, port: lo, admin-state: up",
             "f:10:57: " ENDPOINT
             ".admin-state: \"up\" is neither true nor false; use true or false, without quotes"},
        Case{"CcmEnabledQuoted", "mep-id: 2, direction: up, port: lo, ccm-enabled: 'true'",
             "f:10:57: " ENDPOINT
             ".ccm-enabled: \"true\" is neither true nor false; use true or false, without quotes"},
        Case{"CcmPriorityOutOfRange", "mep-id: 2, direction: up, port: lo, ccm-priority: 8",
             "f:10:58: " ENDPOINT
             ".ccm-priority: 8 is out of range; use a whole number from 0 to 7"},
        Case{"LowestAlarmPriorityUnknown",
             "mep-id: 2, direction: up, port: lo, lowest-alarm-priority: 2",
             "f:10:67: " ENDPOINT
             ".lowest-alarm-priority: 2 is not a lowest alarm priority; use all, "
             "mac-remote-error-xcon, remote-error-xcon, error-xcon, xcon or none"},
        Case{"AlarmTimeTooShort", "mep-id: 2, direction: up, port: lo, fng-alarm-time: 2.49s",
             "f:10:60: " ENDPOINT
             ".fng-alarm-time: \"2.49s\" is out of range; use a time from 2.5s to 10s"},
        Case{"AlarmTimeHuge", "mep-id: 2, direction: up, port: lo, fng-alarm-time: 99999999999999s",
             "f:10:60: " ENDPOINT
             ".fng-alarm-time: \"99999999999999s\" is out of range; use a time from 2.5s to 10s"},
        Case{"AlarmTimeTooFine", "mep-id: 2, direction: up, port: lo, fng-alarm-time: 2.501s",
             "f:10:60: " ENDPOINT
             ".fng-alarm-time: \"2.501s\" is not a time in hundredths of a second or coarser; use "
             "a time from 2.5s to 10s, such as 2.5s"},
        Case{"AlarmTimeWithoutUnit", "mep-id: 2, direction: up, port: lo, fng-alarm-time: 250",
             "f:10:60: " ENDPOINT
             ".fng-alarm-time: 250 is not a time in hundredths of a second or coarser; use a time "
             "from 2.5s to 10s, such as 2.5s"},
        Case{"ResetTimeTooLong", "mep-id: 2, direction: up, port: lo, fng-reset-time: 10010ms",
             "f:10:60: " ENDPOINT
             ".fng-reset-time: \"10010ms\" is out of range; use a time from 2.5s to 10s"},
        Case{"FaultActionUnknown", "mep-id: 2, direction: up, port: lo, fault-action: off",
             "f:10:58: " ENDPOINT
             ".fault-action: \"off\" is not a fault action; use none, block or shutdown"},
        Case{"AuxFlagNotABool", "mep-id: 2, direction: up, port: lo, aux-flag: 1",
             "f:10:54: " ENDPOINT
             ".aux-flag: 1 is neither true nor false; use true or false, without quotes"},
        Case{"KeyMisspelt", "mep-id: 2, direction: up, port: lo, admin-stat: true",
             "f:10:44: " ENDPOINT
             ": \"admin-stat\" is not a key of an endpoint; did you mean admin-state?"}),
    NameOf);

class Probes : public ::testing::TestWithParam<Case> {};

TEST_P(Probes, AreChecked) {
  EXPECT_THAT(MistakesIn(With("domains:\n"
                              "- name: metro\n"
                              "  level: 1\n"
                              "  associations:\n"
                              "  - name: line\n"
                              "    mep-ids: [1, 2, 3]\n"
                              "    endpoints: [{mep-id: 1, direction: up, port: lo}]\n"
                              "probes:\n"
                              "- {id: 1, interval: 1, domain: metro, association: line, mep-id: 1, "
                              "remote-mep-id: 2}\n"
                              "- {%}\n",
                              GetParam().line)),
              ElementsAre(GetParam().mistake));
}

INSTANTIATE_TEST_SUITE_P(
    Mistakes, Probes,
    ::testing::Values(
        Case{"IdMissing",
             "interval: 1, domain: metro, association: line, mep-id: 1, remote-mep-id: 2",
             "f:10:3: probes[1].id: is missing; a probe needs it"},
        Case{"IntervalMissing",
             "id: 2, domain: metro, association: line, mep-id: 1, remote-mep-id: 2",
             "f:10:3: probes[1].interval: is missing; a probe needs it"},
        Case{"DomainMissing", "id: 2, interval: 1, association: line, mep-id: 1, remote-mep-id: 2",
             "f:10:3: probes[1].domain: is missing; a probe needs it"},
        Case{"AssociationMissing", "id: 2, interval: 1, domain: metro, mep-id: 1, remote-mep-id: 2",
             "f:10:3: probes[1].association: is missing; a probe needs it"},
        Case{"MepIdMissing",
             "id: 2, interval: 1, domain: metro, association: line, remote-mep-id: 2",
             "f:10:3: probes[1].mep-id: is missing; a probe needs it"},
        Case{"RemoteMepIdMissing",
             "id: 2, interval: 1, domain: metro, association: line, mep-id: 1",
             "f:10:3: probes[1].remote-mep-id: is missing; a probe needs it"},
        Case{"IdTwice",
             "interval: 1, domain: metro, association: line, mep-id: 1, remote-mep-id: 2, id: 1",
             "f:10:84: probes[1].id: 1 is used twice, first on line 9; use each one once"},
        Case{"IdOutOfRange",
             "interval: 1, domain: metro, association: line, mep-id: 1, remote-mep-id: 2, id: 0",
             "f:10:84: probes[1].id: 0 is out of range; use a whole number from 1 to 65535"},
        Case{"DomainMisspelt",
             "id: 2, interval: 1, association: line, mep-id: 1, remote-mep-id: 2, domain: metru",
             "f:10:80: probes[1].domain: \"metru\" is not the name of a domain in this file; did "
             "you mean \"metro\"?"},
        Case{"DomainUnknown",
             "id: 2, interval: 1, association: line, mep-id: 1, remote-mep-id: 2, domain: other",
             "f:10:80: probes[1].domain: \"other\" is not the name of a domain in this file; use "
             "\"metro\""},
        Case{"AssociationUnknown",
             "id: 2, interval: 1, domain: metro, mep-id: 1, remote-mep-id: 2, association: abcd",
             "f:10:81: probes[1].association: \"abcd\" is not the name of an association of that "
             "domain; use \"line\""},
        Case{"MepIdOfNobody",
             "id: 2, interval: 1, domain: metro, association: line, remote-mep-id: 2, mep-id: 3",
             "f:10:84: probes[1].mep-id: 3 is not an endpoint of the association; use the mep-id "
             "of one"},
        Case{"RemoteMepIdNotInTheList",
             "id: 2, interval: 1, domain: metro, association: line, mep-id: 1, remote-mep-id: 4",
             "f:10:84: probes[1].remote-mep-id: 4 is not in the association's mep-ids; use one of "
             "those"},
        Case{"RemoteMepIdItsOwn",
             "id: 2, interval: 1, domain: metro, association: line, mep-id: 1, remote-mep-id: 1",
             "f:10:84: probes[1].remote-mep-id: 1 is the local endpoint itself; use another of the "
             "association's mep-ids"},
        Case{"SessionTwice",
             "id: 2, interval: 1, domain: metro, association: line, mep-id: 1, remote-mep-id: 2, "
             "sessions: [{id: 1, count: 1}, {id: 1, count: 2}]",
             "f:10:122: probes[1].sessions[1].id: 1 is used twice, first on line 10; use each one "
             "once"},
        Case{"SessionWithoutCount",
             "id: 2, interval: 1, domain: metro, association: line, mep-id: 1, remote-mep-id: 2, "
             "sessions: [{id: 1}]",
             "f:10:98: probes[1].sessions[0].count: is missing; a session needs it"},
        Case{"SessionPriorityOutOfRange",
             "id: 2, interval: 1, domain: metro, association: line, mep-id: 1, remote-mep-id: 2, "
             "sessions: [{id: 1, count: 1, pcp: 8}]",
             "f:10:121: probes[1].sessions[0].pcp: 8 is out of range; use a whole number from 0 to "
             "7"},
        Case{"SessionSizeOutOfRange",
             "id: 2, interval: 1, domain: metro, association: line, mep-id: 1, remote-mep-id: 2, "
             "sessions: [{id: 1, count: 1, size: 65536}]",
             "f:10:122: probes[1].sessions[0].size: 65536 is out of range; use a whole number from "
             "0 to 65535"}),
    NameOf);

TEST(FileMistakes, AnEmptyFileIsNotADeliberatelyEmptyConfiguration) {
  constexpr auto kNoDomains =
      "f:1:1: no domains; write domains: and a list, or domains: [] for a configuration without "
      "any";
  EXPECT_THAT(MistakesIn(""), ElementsAre(kNoDomains));
  EXPECT_THAT(MistakesIn("# nothing but a comment\n\n"), ElementsAre(kNoDomains));
  EXPECT_THAT(MistakesIn("---\n"), ElementsAre(kNoDomains));
  EXPECT_THAT(MistakesIn("domains:\n"),
              ElementsAre("f:1:1: domains: nothing is not a list; use a list of domains, [] for "
                          "none"));
  EXPECT_THAT(MistakesIn("probes: []\n"),
              ElementsAre("f:1:1: domains: is missing; a configuration needs it"));
}

TEST(FileMistakes, AFileThatIsNoMap) {
  EXPECT_THAT(MistakesIn("- a\n"),
              ElementsAre("f:1:1: a list is not a configuration; use a map with the key domains"));
}

TEST(FileMistakes, TwoDocuments) {
  EXPECT_THAT(MistakesIn("domains: []\n---\ndomains: []\n"),
              ElementsAre("f:2:1: a second document begins here; write one document"));
}

TEST(FileMistakes, DomainsOfOneName) {
  EXPECT_THAT(MistakesIn("domains:\n- {name: d, level: 1}\n- {name: d, level: 2}\n"),
              ElementsAre("f:3:10: domains[1].name: \"d\" is used twice, first on line 2; use each "
                          "one once"));
}

TEST(FileMistakes, AssociationsOfOneNameInADomain) {
  EXPECT_THAT(MistakesIn("domains:\n"
                         "- {name: d, level: 1, associations: [{name: a}]}\n"
                         "- name: e\n"
                         "  level: 1\n"
                         "  associations:\n"
                         "  - {name: a}\n"
                         "  - {name: a}\n"),
              ElementsAre("f:7:12: domains[1].associations[1].name: \"a\" is used twice, first on "
                          "line 6; use each one once"));
}

TEST(FileMistakes, AHostWithoutPorts) {
  const auto result = ReadConfig(
      "domains: [{name: d, level: 1, associations: [{name: a, mep-ids: [1], endpoints: [{mep-id: 1,"
      "\n direction: up, port: lo}]}]}]",
      [](const std::string&) { return sepan_port_t{0}; });
  ASSERT_EQ(result.mistakes.size(), 1U);
  EXPECT_EQ(Describe("f", result.mistakes[0]),
            "f:2:23: domains[0].associations[0].endpoints[0].port: \"lo\" gets no port from the "
            "host; use fewer interfaces");
}

TEST(FileMistakes, AreAllNotedInTheOrderOfTheFile) {
  EXPECT_THAT(
      MistakesIn("probes:\n"
                 "- {id: 1, interval: x, domain: d, association: b, mep-id: 1, remote-mep-id: 2}\n"
                 "extra: 1\n"
                 "domains:\n"
                 "- level: 9\n"
                 "  name: d\n"
                 "  associations:\n"
                 "  - name: a\n"
                 "    ccm-interval: 5s\n"
                 "    endpoints:\n"
                 "    - {mep-id: 1, direction: left, port: lo}\n"),
      ElementsAre("f:2:21: probes[0].interval: \"x\" is not a whole number; use a whole number "
                  "from 0 to 65535",
                  "f:2:48: probes[0].association: \"b\" is not the name of an association of that "
                  "domain; use \"a\"",
                  "f:3:1: \"extra\" is not a key of a configuration; use domains or probes",
                  "f:5:10: domains[0].level: 9 is out of range; use a whole number from 0 to 7",
                  "f:9:19: domains[0].associations[0].ccm-interval: \"5s\" is not a CCM interval; "
                  "use 3.33ms, 10ms, 100ms, 1s, 10s, 1min or 10min",
                  "f:11:16: domains[0].associations[0].endpoints[0].mep-id: 1 is not in the "
                  "association's mep-ids; add it there",
                  "f:11:30: domains[0].associations[0].endpoints[0].direction: \"left\" is not a "
                  "direction; use down or up"));
}

TEST(FileMistakes, OneInADomainIsNotNotedAgainInItsProbes) {
  constexpr auto kProbe =
      "probes: [{id: 1, interval: 1, domain: d, association: a, mep-id: 1, remote-mep-id: 2}]\n";
  const auto mistakes_beside_probe = [&](std::string_view domains) {
    return MistakesIn(std::string(domains) + kProbe).size();
  };
  EXPECT_EQ(mistakes_beside_probe("domain: [{name: d, level: 1}]\n"), 2U);  // unknown, missing
  EXPECT_EQ(mistakes_beside_probe("domains: 5\n"), 1U);
  EXPECT_EQ(mistakes_beside_probe("domains: [{level: 1}]\n"), 1U);
  EXPECT_EQ(mistakes_beside_probe("domains: [{name: d, level: 1, associations: 5}]\n"), 1U);
  EXPECT_EQ(mistakes_beside_probe("domains: [{name: d, level: 1, associations: [{}]}]\n"), 1U);
  EXPECT_EQ(mistakes_beside_probe(
                "domains: [{name: d, level: 1, associations: [{name: a, mep-ids: [0]}]}]\n"),
            1U);
}

TEST(FileMistakes, ShowOddOctetsInHexadecimal) {
  EXPECT_THAT(MistakesIn("domains: [{name: d, level: \"\\x1b[2J\"}]"),
              ElementsAre("f:1:28: domains[0].level: \"\\x1b[2J\" is not a whole number; use a "
                          "whole number from 0 to 7"));
}

TEST(FileMistakes, WithoutAPlaceNameTheFileOnly) {
  EXPECT_EQ(Describe("f", {{}, "", "cannot be opened"}), "f: cannot be opened");
}

}  // namespace
}  // namespace cfm_agent::testing
