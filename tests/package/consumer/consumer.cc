// SPDX-License-Identifier: Apache-2.0
// Links the installed library with a host of its own and provisions one endpoint.
#include <cfm/client.h>
#include <cfm/client_server.pb.h>
#include <cfm/identifiers.h>

#include <cstdio>

#include "host.h"

int main() {
  vorx_t handle{};
  cfm::Client client(&handle);
  cfm::hierarchy config;
  cfm::hierarchy_ma& ma = config.mds["domain"].mas["association"];
  ma.md_name = "domain";
  cfm::hierarchy_mep& mep = ma.meps[1];
  mep.md_name = "domain";
  mep.ma_name = "association";
  mep.cfg.mep_id = 1;
  client.UpdateConfig(config);
  host_find_server(&handle);

  client_server::OpDeleteMaintenanceDomain message;
  message.set_md_name("domain");
  const bool complete = host_sent(CFM_MGR_C2S_SIG_MD_CREATE->number) == 1 &&
                        host_sent(CFM_MGR_C2S_SIG_MA_CREATE->number) == 1 &&
                        host_sent(CFM_MGR_C2S_SIG_MEP_CREATE->number) == 1 &&
                        message.SerializeAsString().size() == 8;
  std::puts(complete ? "provisioned" : "not provisioned");
  return complete ? 0 : 1;
}
