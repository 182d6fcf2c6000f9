// SPDX-License-Identifier: Apache-2.0
// What can be wrong with an endpoint of a configuration file, to the letter.

#include <gmock/gmock.h>

#include "mistake_case.h"
#include "read_text.h"

namespace cfm_agent::testing {
namespace {

using ::testing::ElementsAre;

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

}  // namespace
}  // namespace cfm_agent::testing
