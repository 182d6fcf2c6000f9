// SPDX-License-Identifier: Apache-2.0
#include "rules.h"

namespace cfm_test {
namespace {

constexpr std::array<std::string_view, kRuleCount> kNames = {
    "an MD is gone",
    "an MD stays",
    "an MD's level changed",
    "an MA is gone",
    "an MA stays",
    "an MA of a re-created MD",
    "an MA's VIDs changed",
    "a MEP is gone",
    "a MEP stays",
    "a MEP of a re-created MA",
    "a MEP's port changed",
    "a MEP's direction changed",
    "a MEP's primary VID changed",
    "a MEP's inner VID changed",
    "an MD is new",
    "an MA of a new MD",
    "an MA is new in an old MD",
    "an MA that was added for a MEP before it was come to",
    "a MEP of a new MA",
    "a MEP found in the MA that it names",
    "a MEP missing in the MA that it names",
    "an MA added for a MEP that names it",
    "a probe is new",
    "a probe stays",
    "a probe's own identifier changed",
    "a probe's interval changed",
    "a probe's MA changed",
    "a probe's MD changed",
    "a probe's local MEP changed",
    "a probe's remote MEP changed",
    "a probe is gone",
    "a session is new",
    "a session stays",
    "a session's count changed",
    "a session's interval changed",
    "a session's size changed",
    "a session's priority changed",
    "a session is gone",
    "a hierarchy waits for the server",
    "probes wait for the server",
    "a reply to a client in step",
    "a reply while the server is absent",
    "a reply that does not parse",
    "both hierarchies are empty",
    "the server's hierarchy adopted",
    "the client's hierarchy sent again",
    "the server's hierarchy preferred",
    "no probes on either side",
    "the server's probes adopted",
    "the server's probes preferred",
    "a reply lists an MD twice",
    "a reply lists an MA twice",
    "a reply lists an MA without its MD",
    "a reply lists an MA without AIS settings",
    "a reply lists a MEP twice",
    "a reply lists a MEP without its MA",
    "a reply lists a probe twice",
    "a reply lists a session twice",
    "a reply lists a session without its probe",
    "a reply's number is wider than the configuration's",
};
static_assert(!kNames.back().empty(), "a rule has no name");

}  // namespace

std::string_view NameOf(Rule rule) { return kNames.at(static_cast<std::size_t>(rule)); }

}  // namespace cfm_test
