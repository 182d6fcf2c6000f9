// SPDX-License-Identifier: Apache-2.0
// What can be wrong with a probe of a configuration file, to the letter.

#include <gmock/gmock.h>

#include "mistake_case.h"
#include "read_text.h"

namespace cfm_agent::testing {
namespace {

using ::testing::ElementsAre;

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

}  // namespace
}  // namespace cfm_agent::testing
