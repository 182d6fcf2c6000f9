// SPDX-License-Identifier: Apache-2.0
#include "script.h"

#include <cfm/client.h>

#include "client_model.h"
#include "lean_host.h"

namespace cfm_test {
namespace {

// A client of the library, behind the operations that the model has.
class LibraryClient {
 public:
  void ServerFound(vorx_pid_t pid) { host_.ServerFound(pid); }
  void ServerLost() { host_.ServerLost(); }
  void CacheReply(const std::string& payload) { host_.CacheReply(payload); }
  void UpdateConfig(const cfm::hierarchy& config) { client_.UpdateConfig(config); }
  void UpdateConfigProbe(const cfm::probe& config) { client_.UpdateConfigProbe(config); }
  Trace Take() { return host_.Take(); }

 private:
  LeanHost host_;
  cfm::Client client_{host_.handle()};
};

template <typename Client>
struct Steps {
  void operator()(const ServerFound& step) { client.ServerFound(step.pid); }
  void operator()(const ServerLost& /*step*/) { client.ServerLost(); }
  void operator()(const CacheReply& step) { client.CacheReply(step.Payload()); }
  void operator()(const cfm::hierarchy& step) { client.UpdateConfig(step); }
  void operator()(const cfm::probe& step) { client.UpdateConfigProbe(step); }

  Client& client;
};

template <typename Client>
Traces Play(const Script& script, Client& client) {
  client.Take();
  Traces traces;
  for (const Step& step : script) {
    std::visit(Steps<Client>{client}, step);
    traces.push_back(client.Take());
  }
  return traces;
}

}  // namespace

std::string CacheReply::Payload() const {
  std::string payload = cache.SerializeAsString();
  payload.resize(payload.size() - std::min(cut, payload.size()));
  return payload;
}

Traces PlayToLibrary(const Script& script) {
  LibraryClient client;
  return Play(script, client);
}

Traces PlayToModel(const Script& script, RuleCounts& rules) {
  ClientModel model(rules);
  return Play(script, model);
}

}  // namespace cfm_test
