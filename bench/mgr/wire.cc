// SPDX-License-Identifier: Apache-2.0
#include "wire.h"

#include <net/if.h>
#include <sched.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <thread>

namespace cfm_bench {

namespace engine = cfm_mgr::engine;

void Fail(const std::string& message) {
  std::cerr << message << "\n";
  std::exit(1);  // NOLINT(concurrency-mt-unsafe): no benchmark calls it beside another thread
}

void MakeWire() {
  if (unshare(CLONE_NEWNET) != 0) Fail("cannot create a network namespace; run this as root");
  const std::string commands =
      "ip link add v0 type veth peer name v1 && ip link set v0 up && ip link set v1 up && "
      "for i in $(seq 100); do ip link show v0 | grep -q 'state UP' && exit 0; sleep 0.1; done; "
      "exit 1";
  if (std::system(commands.c_str()) != 0) Fail("cannot create a veth pair");  // NOLINT
}

engine::PortId IndexOf(const char* interface) { return if_nametoindex(interface); }

void Configure(cfm_mgr::net::PacketNetwork& network, const EndpointGroup& group,
               const char* interface, engine::Time spread) {
  cfm_mgr::DomainSettings domain;
  domain.format = 4;
  domain.level = group.level;
  domain.sender_id = 1;
  domain.mhf_creation = 1;
  const std::string md_name = "level-" + std::to_string(group.level);
  const engine::Time start = cfm_mgr::net::MonotonicNow();
  for (std::uint32_t i = 0; i < group.count; ++i) {
    cfm_mgr::Association association;
    association.settings = {2, {i + 1}, group.ccm_interval, {1, 2}, 5, 4, {}};
    cfm_mgr::Mep& mep = association.meps[group.mep_id];
    mep.direction = 1;
    mep.ifindex = IndexOf(interface);
    mep.admin_state = true;
    mep.ccm_enabled = group.sends;
    mep.ccm_priority = 7;
    mep.lowest_prio_defect = 2;
    mep.fng_alarm_time = 250;
    mep.fng_reset_time = 1000;
    std::this_thread::sleep_until(
        std::chrono::steady_clock::time_point(start + spread * i / group.count));
    const engine::Time now = cfm_mgr::net::MonotonicNow();
    network.Advance(now);
    network.engine().SetAssociation(now, {md_name, "ma-" + std::to_string(i)}, domain, association);
  }
}

double Percentile(std::vector<double>& values, double share) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  const double place = std::ceil(share * static_cast<double>(values.size())) - 1;
  return values[static_cast<std::size_t>(std::max(0.0, place))];
}

}  // namespace cfm_bench
