// SPDX-License-Identifier: Apache-2.0
#include <cfm/client.h>
#include <sepan/host.h>
#include <vorx/host.h>

#include <iostream>
#include <memory>

int main(int argc, char** argv) {
  vorx_options_t options{};
  options.name = "provision";
  vorx_t* opened = nullptr;
  if (vorx_open(&options, &opened) < 0) {
    std::cerr << "provision: " << vorx_last_error(nullptr) << '\n';
    return 1;
  }
  const std::unique_ptr<vorx_t, decltype(&vorx_close)> handle(opened, vorx_close);

  cfm::hierarchy config;
  cfm::hierarchy_md& md = config.mds["operator"];
  md.cfg = {cfm::MdNameFormat::CharString, 4, cfm::SenderIdTlvContent::None,
            cfm::MhfCreationMode::None};
  cfm::hierarchy_ma& ma = md.mas["line-1"];
  ma.md_name = "operator";
  ma.cfg.format = cfm::MaNameFormat::CharString;
  ma.cfg.vids = {100};
  ma.cfg.ccm_interval = cfm::CcmInterval::Interval1s;
  ma.cfg.mep_ids = {1, 2};  // this end and the other
  ma.cfg.sender_id = cfm::SenderIdTlvContent::Defer;
  ma.cfg.mhf_creation = cfm::MhfCreationMode::Defer;
  cfm::st_maintenance_endpoint_cfg mep;
  mep.mep_id = 1;
  mep.direction = cfm::MepDirection::Down;
  mep.port = sepan_port_by_name(argc > 1 ? argv[1] : "eth0");
  mep.admin_state = true;
  mep.ccm_enabled = true;
  mep.ccm_priority = 7;
  mep.lowest_prio_defect = cfm::Defects::MacRemoteErrorXcon;
  mep.fng_alarm_time = 250;  // hundredths of a second
  mep.fng_reset_time = 1000;
  ma.meps[1] = {"operator", "line-1", mep};

  cfm::Client client(handle.get());  // goes before the handle does
  client.UpdateConfig(config);       // before the handle is serviced
  return vorx_run(handle.get()) < 0 ? 1 : 0;
}
