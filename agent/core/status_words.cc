// SPDX-License-Identifier: Apache-2.0
#include "core/status_words.h"

#include <array>
#include <utility>

namespace cfm_agent {
namespace {

template <typename Enum>
Word Named(std::string_view text, Enum value) {
  return {text, static_cast<std::int32_t>(value)};
}

}  // namespace

const WordList kRemoteMepStates = {"a remote MEP's state",
                                   {{"idle", 1}, {"start", 2}, {"failed", 3}, {"ok", 4}}};

const WordList kDefectPriorities = {"a highest defect priority",
                                    {{"none", 0},
                                     {"RDI", 1},
                                     {"MAC status", 2},
                                     {"missing CCMs", 3},
                                     {"erroneous CCMs", 4},
                                     {"cross-connected CCMs", 5}}};

const WordList kPortStatuses = {"a port status", {{"unknown", 0}, {"blocked", 1}, {"up", 2}}};

const WordList kInterfaceStatuses = {"an interface status",
                                     {{"unknown", 0},
                                      {"up", 1},
                                      {"down", 2},
                                      {"testing", 3},
                                      {"unknown", 4},
                                      {"dormant", 5},
                                      {"not present", 6},
                                      {"lower layer down", 7}}};

const WordList kRelayActions = {"a relay action", {{"hit", 1}, {"FDB", 2}, {"MPDB", 3}}};

const WordList kPortActions = {"a port action",
                               {{"none", 0}, {"OK", 1}, {"down", 2}, {"blocked", 3}, {"VID", 4}}};

const WordList kSessionEnds = {"an end of a session",
                               {{"complete", 0}, {"session changed", 1}, {"endpoint gone", 2}}};

const WordList kErrorCodes = {"an error code",
                              {{"no such local endpoint", 1},
                               {"no such remote endpoint", 2},
                               {"the server does not run this test", 3},
                               {"the address of the remote endpoint is unknown", 4},
                               {"the local endpoint cannot send", 5},
                               {"too many tests at a time", 6},
                               {"a parameter is out of its range", 7}}};

const WordList kServerStates = {
    "a server state",
    {Named("absent", ServerState::Absent), Named("found", ServerState::Found),
     Named("in step", ServerState::InStep)}};

const WordList kGaps = {
    "a gap",
    {Named("none", Gap::None), Named("server absent", Gap::ServerAbsent),
     Named("server not in step", Gap::ServerNotInStep),
     Named("removed by the server", Gap::Removed),
     Named("interface missing", Gap::InterfaceMissing), Named("never reported", Gap::NeverReported),
     Named("not in the MEP list", Gap::NotListed)}};

const WordList kTestKinds = {
    "a kind of test",
    {Named("linktrace", TestKind::Linktrace), Named("loopback", TestKind::Loopback),
     Named("delay measurement", TestKind::Delay), Named("statistics", TestKind::Statistics),
     Named("statistics", TestKind::Refresh)}};

const WordList kEndReasons = {
    "an end of a test",
    {Named("complete", EndReason::Complete), Named("refused", EndReason::Refused),
     Named("timed out", EndReason::TimedOut), Named("endpoint removed", EndReason::EndpointRemoved),
     Named("server lost", EndReason::ServerLost)}};

std::vector<std::string_view> DefectsOf(const cfm::local_mep_status& status) {
  const std::array<std::pair<bool, std::string_view>, 6> all = {
      {{status.defect_xcon_ccm, "cross-connected CCMs"},
       {status.defect_error_ccm, "erroneous CCMs"},
       {status.defect_remote_ccm, "missing CCMs"},
       {status.defect_mac_status, "MAC status"},
       {status.defect_rdi, "RDI"},
       {status.defect_ais, "AIS"}}};
  std::vector<std::string_view> defects;
  for (const auto& [present, name] : all) {
    if (present) {
      defects.push_back(name);
    }
  }
  return defects;
}

}  // namespace cfm_agent
