// SPDX-License-Identifier: Apache-2.0
#include "common/one_endpoint.h"

#include <sepan/host.h>

#include <stdexcept>

namespace examples {
namespace {

cfm::st_maintenance_endpoint_cfg EndpointOn(sepan_port_t port) {
  cfm::st_maintenance_endpoint_cfg mep;
  mep.mep_id = kHere;
  mep.direction = cfm::MepDirection::Down;
  mep.port = port;
  mep.admin_state = true;
  mep.ccm_enabled = true;
  mep.ccm_priority = 7;
  mep.lowest_prio_defect = cfm::Defects::MacRemoteErrorXcon;
  mep.fng_alarm_time = 250;
  mep.fng_reset_time = 1000;
  return mep;
}

}  // namespace

cfm::hierarchy OneEndpoint(const std::string& interface) {
  const sepan_port_t port = sepan_port_by_name(interface.c_str());
  if (port == 0) throw std::invalid_argument("'" + interface + "' cannot name an interface");

  cfm::hierarchy_ma ma;
  ma.md_name = kDomain;  // requests carry this name, not the key of the map
  ma.cfg.format = cfm::MaNameFormat::CharString;
  ma.cfg.vids = {100};
  ma.cfg.ccm_interval = cfm::CcmInterval::Interval1s;
  ma.cfg.mep_ids = {kHere, kThere};
  ma.cfg.sender_id = cfm::SenderIdTlvContent::Defer;
  ma.cfg.mhf_creation = cfm::MhfCreationMode::Defer;
  ma.meps[kHere] = {kDomain, kAssociation, EndpointOn(port)};

  cfm::hierarchy config;
  cfm::hierarchy_md& md = config.mds[kDomain];
  md.cfg = {cfm::MdNameFormat::CharString, 4, cfm::SenderIdTlvContent::None,
            cfm::MhfCreationMode::None};
  md.mas[kAssociation] = ma;
  return config;
}

}  // namespace examples
