// SPDX-License-Identifier: Apache-2.0
// What can be wrong with an association of a configuration file, to the letter.

#include <gmock/gmock.h>

#include "mistake_case.h"
#include "read_text.h"

namespace cfm_agent::testing {
namespace {

using ::testing::ElementsAre;

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

}  // namespace
}  // namespace cfm_agent::testing
