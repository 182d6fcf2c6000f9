// SPDX-License-Identifier: Apache-2.0
#include "client_model.h"

#include <cfm/client_server.pb.h>
#include <cfm/identifiers.h>

#include "cache_model.h"
#include "dump_model.h"
#include "request_messages.h"

namespace cfm_test {

// Counts a rule where nothing else differs: only then does the one comparison decide.
bool ClientModel::AnyDiffers(std::initializer_list<Comparison> comparisons) {
  std::vector<Rule> different;
  for (const Comparison& comparison : comparisons) {
    if (comparison.differs) {
      different.push_back(comparison.rule);
    }
  }
  if (different.size() == 1) {
    rules_.Add(different.front());
  }
  return !different.empty();
}

// A line is logged through a format of C, for which a text ends at its first zero byte.
void ClientModel::Log(const std::string& text) {
  trace_.push_back({nullptr, 0, false, text.substr(0, text.find('\0'))});
}

void ClientModel::Send(const vorx_sig_descriptor* signal) {
  trace_.push_back({signal, server_pid_, false, ""});
}

void ClientModel::Send(const vorx_sig_descriptor* signal,
                       const google::protobuf::MessageLite& message) {
  trace_.push_back({signal, server_pid_, true, message.SerializeAsString()});
}

void ClientModel::ServerFound(vorx_pid_t pid) {
  Log("CFM manager server found");
  server_pid_ = pid;
  Send(CFM_MGR_C2S_SIG_CACHE_GET);
}

void ClientModel::ServerLost() {
  Log("CFM manager server lost");
  server_pid_ = 0;
  server_synced_ = false;
}

void ClientModel::LogDeferred() {
  Log("Server unavailable, request will be handled later: pid " + std::to_string(server_pid_) +
      " sync " + std::to_string(static_cast<int>(server_synced_)));
}

void ClientModel::UpdateConfig(const cfm::hierarchy& config) {
  desired_ = config;
  if (server_pid_ != 0 && server_synced_) {
    Apply();
    return;
  }
  rules_.Add(Rule::ConfigurationDeferred);
  LogDeferred();
}

void ClientModel::UpdateConfigProbe(const cfm::probe& config) {
  desired_probes_.probes = config.probes;
  if (server_pid_ != 0 && server_synced_) {
    ApplyProbes();
    return;
  }
  rules_.Add(Rule::ProbesDeferred);
  LogDeferred();
}

void ClientModel::CacheReply(const std::string& payload) {
  if (server_synced_) {
    rules_.Add(Rule::ReplyWhileInStep);
  }
  if (server_pid_ == 0) {
    rules_.Add(Rule::ReplyWhileAbsent);
  }
  Log("Cache reply received");
  client_server::OpCacheSync cache;
  if (!cache.ParseFromString(payload)) {
    rules_.Add(Rule::ReplyDoesNotParse);
  }
  DecideHierarchy(HierarchyIn(cache, rules_));
  DecideProbes(ProbesIn(cache, rules_));
  Log("Cache sync apply: pending requests will be processed, if any");
  server_synced_ = true;
  Apply();
  ApplyProbes();
  Send(CFM_MGR_C2S_SIG_STATUS_GET_ALL);
}

void ClientModel::DecideHierarchy(const std::map<std::string, cfm::hierarchy_md>& servers) {
  if (applied_.mds.empty() && servers.empty()) {
    rules_.Add(Rule::HierarchiesEmpty);
    Log("Client and server caches are empty, nothing to do");
  } else if (applied_.mds.empty()) {
    rules_.Add(Rule::HierarchyOfServerAdopted);
    Log("App died, will use last cached status from server");
    applied_.mds = servers;
  } else if (servers.empty()) {
    rules_.Add(Rule::HierarchySentAgain);
    Log("Server died, will re-apply using last cached status of client");
    SendAppliedAgain();
  } else {
    rules_.Add(Rule::HierarchyOfServerPreferred);
    Log("App and server have an existing configuration, assume that from the server");
    applied_.mds = servers;
  }
}

void ClientModel::SendAppliedAgain() {
  for (const auto& [md_name, md] : applied_.mds) {
    Send(CFM_MGR_C2S_SIG_MD_CREATE, CreateMdMessage(md_name, md.cfg));
    for (const auto& [ma_name, ma] : md.mas) {
      Send(CFM_MGR_C2S_SIG_MA_CREATE, CreateMaMessage(ma.md_name, ma_name, ma.cfg));
      for (const auto& [key, mep] : ma.meps) {
        Send(CFM_MGR_C2S_SIG_MEP_CREATE, CreateMepMessage(mep));
      }
    }
  }
}

void ClientModel::DecideProbes(const std::map<std::uint16_t, cfm::probe_cfg>& servers) {
  if (!applied_probes_.probes.empty()) {
    rules_.Add(Rule::ProbesOfServerPreferred);
    Log("App and server have an existing configuration, assume that from the server");
    applied_probes_.probes = servers;
  } else if (servers.empty()) {
    rules_.Add(Rule::ProbesEmpty);
    Log("Client and server caches are empty, nothing to do");
  } else {
    rules_.Add(Rule::ProbesOfServerAdopted);
    Log("App died, will use last cached status from server");
    applied_probes_.probes = servers;
  }
}

}  // namespace cfm_test
