// SPDX-License-Identifier: Apache-2.0
#include "failure_configurations.h"

#include "client_fixture.h"
#include "server_model.h"

namespace cfm_test {
namespace {

std::string Long(const char* name) { return std::string(name) + " with a long enough name"; }

// An association of a domain, with settings of every kind.
cfm::hierarchy_ma& AddMa(cfm::hierarchy& config, const std::string& md, const std::string& ma,
                         const std::vector<std::uint16_t>& mep_ids,
                         const std::vector<std::uint16_t>& vids) {
  cfm::hierarchy_ma& added = config.mds[md].mas[ma];
  added = Ma(md, ma, mep_ids);
  added.cfg.vids = vids;
  added.cfg.mep_ids.insert(mep_ids.begin(), mep_ids.end());
  added.cfg.ais.enabled = true;
  added.cfg.ais.id_set = {3, 4};
  return added;
}

cfm::probe_cfg& AddProbe(cfm::probe& probes, std::uint16_t id,
                         const std::vector<std::uint16_t>& sessions) {
  cfm::probe_cfg& added = probes.probes[id];
  added.id = id;
  added.md = Long("domain");
  added.ma = Long("association");
  for (const std::uint16_t session : sessions) {
    added.sessions[session].count = session;
  }
  return added;
}

}  // namespace

cfm::hierarchy FirstConfiguration() {
  cfm::hierarchy config;
  AddMa(config, Long("deleted"), Long("a"), {1}, {});
  AddMa(config, Long("kept"), Long("deleted"), {1}, {});
  AddMa(config, Long("kept"), Long("kept"), {1, 2, 3}, {10, 20});
  AddMa(config, Long("kept"), Long("re-created"), {1}, {10});
  AddMa(config, Long("re-created"), Long("a"), {1}, {});
  return config;
}

cfm::hierarchy SecondConfiguration() {
  cfm::hierarchy config;
  AddMa(config, Long("kept"), Long("created"), {1}, {});
  auto& kept = AddMa(config, Long("kept"), Long("kept"), {2, 3, 4, 5}, {10, 20});
  kept.meps[3].cfg.port = 2;
  kept.meps[5].ma_name = Long("unknown");
  AddMa(config, Long("kept"), Long("re-created"), {1}, {11});
  AddMa(config, Long("re-created"), Long("a"), {1}, {});
  config.mds[Long("re-created")].cfg.level = 5;
  AddMa(config, Long("created"), Long("a"), {1}, {30});
  return config;
}

cfm::hierarchy OtherConfiguration() {
  cfm::hierarchy config;
  AddMa(config, Long("deleted"), Long("a"), {1, 7}, {});
  AddMa(config, Long("kept"), Long("kept"), {3, 4}, {10, 20});
  return config;
}

cfm::probe FirstProbes() {
  cfm::probe probes;
  AddProbe(probes, 1, {1});
  AddProbe(probes, 2, {1, 2});
  AddProbe(probes, 3, {1});
  return probes;
}

cfm::probe SecondProbes() {
  cfm::probe probes;
  AddProbe(probes, 2, {2, 3}).sessions[2].size = 9;
  AddProbe(probes, 3, {1}).rmep = 9;
  AddProbe(probes, 4, {1});
  return probes;
}

cfm::probe OtherProbes() {
  cfm::probe probes;
  AddProbe(probes, 1, {1, 2});
  AddProbe(probes, 4, {});
  return probes;
}

client_server::OpCacheSync CacheOf(const cfm::hierarchy& config, const cfm::probe& probes) {
  ServerModel server;
  RecordingHost host;
  host.on_send = [&](const std::string& signal, const std::string& payload) {
    server.Take(signal, payload);
  };
  cfm::Client client(host.handle());
  host.GetInStep();
  client.UpdateConfig(config);
  client.UpdateConfigProbe(probes);
  return server.Cache();
}

}  // namespace cfm_test
