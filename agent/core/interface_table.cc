// SPDX-License-Identifier: Apache-2.0
#include "core/interface_table.h"

namespace cfm_agent {
namespace {

std::set<sepan_port_t> PortsOf(const cfm::hierarchy& hierarchy) {
  std::set<sepan_port_t> ports;
  for (const auto& md : hierarchy.mds) {
    for (const auto& ma : md.second.mas) {
      for (const auto& mep : ma.second.meps) {
        ports.insert(mep.second.cfg.port);
      }
    }
  }
  return ports;
}

}  // namespace

std::set<sepan_port_t> InterfaceTable::Look(const cfm::hierarchy& hierarchy) {
  std::set<sepan_port_t> moved;
  std::map<sepan_port_t, std::uint32_t> indexes;
  for (const sepan_port_t port : PortsOf(hierarchy)) {
    std::uint32_t index = index_of_port_(port);
    const auto last = indexes_.find(port);
    if (last != indexes_.end()) {
      // An interface that has gone may come back as it was, and the server knows it by that index.
      if (index == 0) {
        index = last->second;
      } else if (index != last->second) {
        moved.insert(port);
      }
    }
    indexes.emplace(port, index);
  }
  indexes_ = std::move(indexes);
  return moved;
}

cfm::hierarchy Without(cfm::hierarchy hierarchy, const std::set<sepan_port_t>& ports) {
  for (auto& md : hierarchy.mds) {
    for (auto& ma : md.second.mas) {
      auto& meps = ma.second.meps;
      for (auto mep = meps.begin(); mep != meps.end();) {
        mep = ports.count(mep->second.cfg.port) == 0 ? std::next(mep) : meps.erase(mep);
      }
    }
  }
  return hierarchy;
}

}  // namespace cfm_agent
