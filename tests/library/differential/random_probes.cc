// SPDX-License-Identifier: Apache-2.0
#include "random_probes.h"

namespace cfm_test {

cfm::probe RandomProbes::Any() {
  cfm::probe config;
  for (std::size_t count = records_.FewOrNone(); count > 0; --count) {
    const std::uint16_t id = records_.Number();
    config.probes[id] = Probe(id);
  }
  return config;
}

cfm::probe_cfg RandomProbes::Probe(std::uint16_t id) {
  cfm::probe_cfg probe;
  records_.Fill(probe);
  probe.id = records_.disturbed && records_.random.OneIn(4) ? probe.id : id;
  for (std::size_t count = records_.FewOrNone(); count > 0; --count) {
    records_.Fill(probe.sessions[records_.Number()]);
  }
  return probe;
}

cfm::probe RandomProbes::After(const cfm::probe& config) {
  switch (records_.random.Below(16)) {
    case 0:
      return config;
    case 1:
      return {};
    case 2:
      return Any();
    default:
      break;
  }
  cfm::probe changed = config;
  for (std::size_t count = 1 + records_.random.Below(4); count > 0; --count) {
    Change(changed);
  }
  return changed;
}

void RandomProbes::Change(cfm::probe& config) {
  const std::uint16_t other = records_.Number();
  if (config.probes.empty() || records_.random.OneIn(8)) {
    config.probes[other] = Probe(other);
    return;
  }
  const auto entry = records_.Entry(config.probes);
  cfm::probe_cfg& probe = entry->second;
  switch (records_.random.Below(8)) {
    case 0:
      config.probes.erase(entry);
      return;
    case 1:
      config.probes[other] = cfm::probe_cfg(probe);  // with the identifier that it had
      return;
    case 2:
      records_.Fill(probe.sessions[other]);
      return;
    case 3:
      records_.EraseOne(probe.sessions);
      return;
    case 4:
    case 5:
      if (!probe.sessions.empty()) {
        records_.ChangeOneField(records_.Entry(probe.sessions)->second);
      }
      return;
    default:
      records_.ChangeOneField(probe);
  }
}

}  // namespace cfm_test
