// SPDX-License-Identifier: Apache-2.0
// Getting in step with the server: whose configuration counts after either side restarted.
#include <cfm/client_server.pb.h>
#include <cfm/identifiers.h>
#include <sepan/sepan.h>

#include <utility>

#include "client_impl.h"
#include "core/hierarchy_cache.h"
#include "core/probe_cache.h"
#include "log_points.h"
#include "receive.h"

namespace cfm {
namespace {

sepan_port_t PortOfIfindex(std::uint32_t ifindex) { return sepan_from_ifindex(ifindex).port; }

}  // namespace

// A reply that does not parse counts as far as it was read, an unreadable one as an empty cache.
void ClientImpl::ReqCacheReply(vorx_t* /*handle*/, void* user, const vorx_pid_t* /*sender*/,
                               void* data, unsigned length) {
  auto& self = *static_cast<ClientImpl*>(user);
  Log<log_point::kCacheReply>(self.log_category);
  const auto cache = Receive<client_server::OpCacheSync>(data, length);
  self.ReqCacheReplyHierarchy(cache);
  self.ReqCacheReplyProbe(cache);
  Log<log_point::kCacheApply>(self.log_category);
  self.server_synced = true;
  self.Apply();
  self.ApplyDelayMeasurementProbe();
  self.Send(CFM_MGR_C2S_SIG_STATUS_GET_ALL);
}

void ClientImpl::ReqCacheReplyHierarchy(const client_server::OpCacheSync& cache) {
  auto server =
      std::make_shared<const core::KeptHierarchy>(core::HierarchyFromCache(cache, PortOfIfindex));
  if (server->IsEmpty()) {
    if (applied_hierarchy->IsEmpty()) {
      Log<log_point::kConfigBothEmpty>(log_category);
    } else {
      Log<log_point::kConfigServerDied>(log_category);
      RecreateHierarchy();
    }
    return;
  }
  if (applied_hierarchy->IsEmpty()) {
    Log<log_point::kConfigAppDied>(log_category);
  } else {
    Log<log_point::kConfigBothExist>(log_category);
  }
  applied_hierarchy = std::move(server);
}

// Depth first: each entity right before what it holds.
void ClientImpl::RecreateHierarchy() const {
  const auto applied = applied_hierarchy;
  for (const core::KeptMd& md : applied->Mds()) {
    CreateMd(md.name, md.cfg);
    for (const core::KeptMa& ma : md.mas) {
      CreateMa(ma.md_name, ma.name, ma.cfg);
      for (const core::KeptMep& mep : ma.meps) {
        CreateMep(*mep.md_name, *mep.ma_name, mep.cfg);
      }
    }
  }
}

// Unlike the hierarchy, the probes that the client held always give way to the server's, also to
// none: the reconciliation that follows creates what is missing.
void ClientImpl::ReqCacheReplyProbe(const client_server::OpCacheSync& cache) {
  auto server = std::make_shared<const probe>(core::ProbesFromCache(cache));
  if (!applied_probes->probes.empty()) {
    Log<log_point::kProbesBothExist>(log_category);
  } else if (!server->probes.empty()) {
    Log<log_point::kProbesAppDied>(log_category);
  } else {
    Log<log_point::kProbesBothEmpty>(log_category);
    return;
  }
  applied_probes = std::move(server);
}

}  // namespace cfm
