// SPDX-License-Identifier: Apache-2.0
#include "core/probe_cache.h"

#include "core/numbers.h"

namespace cfm::core {
namespace {

probe_cfg ProbeSettings(const client_server::OpCreateDelayMeasurementProbe& entry) {
  probe_cfg cfg;
  cfg.id = Low16(entry.probe_id());
  cfg.interval = Low16(entry.interval());
  cfg.md = entry.md_name();
  cfg.ma = entry.ma_name();
  cfg.lmep = Low16(entry.lmep_id());
  cfg.rmep = Low16(entry.rmep_id());
  return cfg;
}

session_cfg SessionSettings(const client_server::OpCreateDelayMeasurementSession& entry) {
  session_cfg cfg;
  cfg.count = Low16(entry.count());
  cfg.interval = Low16(entry.interval());
  cfg.size = Low16(entry.size());
  cfg.pcp = Low8(entry.pcp());
  return cfg;
}

}  // namespace

probe ProbesFromCache(const client_server::OpCacheSync& cache) {
  probe result;
  for (const auto& entry : cache.probes()) {
    result.probes[Low16(entry.probe_id())] = ProbeSettings(entry);
  }
  for (const auto& entry : cache.sessions()) {
    result.probes[Low16(entry.probe_id())].sessions[Low16(entry.session_id())] =
        SessionSettings(entry);
  }
  return result;
}

}  // namespace cfm::core
