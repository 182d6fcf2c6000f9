// SPDX-License-Identifier: Apache-2.0
// What can be wrong with a domain of a configuration file, to the letter.

#include <gmock/gmock.h>

#include "mistake_case.h"
#include "read_text.h"

namespace cfm_agent::testing {
namespace {

using ::testing::ElementsAre;

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

}  // namespace
}  // namespace cfm_agent::testing
