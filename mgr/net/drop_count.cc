// SPDX-License-Identifier: Apache-2.0
#include "net/drop_count.h"

#include <utility>

namespace cfm_mgr::net {

void AppendDrop(std::vector<DropCount>& counts, const std::string& interface, std::string reason,
                std::uint64_t frames) {
  if (frames != 0) counts.push_back({interface, std::move(reason), frames});
}

void AppendDrops(std::vector<DropCount>& counts, const std::string& interface,
                 const engine::DropCounters& counters) {
  for (std::size_t i = 0; i < counters.by_fault.size(); ++i) {
    const char* const fault = Describe(static_cast<pdu::Fault>(i));
    AppendDrop(counts, interface, std::string("malformed: ") + fault, counters.by_fault[i]);
  }
  AppendDrop(counts, interface, "unknown opcode", counters.unknown);
  AppendDrop(counts, interface, "of a lower level than an endpoint's", counters.low_level);
  AppendDrop(counts, interface, "to another address, or a reply to no test that is running",
             counters.unexpected);
  AppendDrop(counts, interface, "reply not sent: too many replies wait", counters.unanswered);
}

}  // namespace cfm_mgr::net
