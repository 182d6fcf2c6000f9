// SPDX-License-Identifier: Apache-2.0
#include "core/probe_requests.h"

namespace cfm::core {

client_server::OpCreateDelayMeasurementProbe CreateProbe(std::uint16_t probe_id,
                                                         const probe_cfg& cfg) {
  client_server::OpCreateDelayMeasurementProbe message;
  message.set_ma_name(cfg.ma);
  message.set_md_name(cfg.md);
  message.set_probe_id(probe_id);
  message.set_interval(cfg.interval);
  message.set_lmep_id(cfg.lmep);
  message.set_rmep_id(cfg.rmep);
  return message;
}

client_server::OpDeleteDelayMeasurementProbe DeleteProbe(std::uint16_t probe_id) {
  client_server::OpDeleteDelayMeasurementProbe message;
  message.set_probe_id(probe_id);
  return message;
}

client_server::OpCreateDelayMeasurementSession CreateSession(std::uint16_t probe_id,
                                                             std::uint16_t session_id,
                                                             const session_cfg& cfg) {
  client_server::OpCreateDelayMeasurementSession message;
  message.set_probe_id(probe_id);
  message.set_session_id(session_id);
  message.set_interval(cfg.interval);
  message.set_count(cfg.count);
  message.set_size(cfg.size);
  message.set_pcp(cfg.pcp);
  return message;
}

client_server::OpDeleteDelayMeasurementSession DeleteSession(std::uint16_t probe_id,
                                                             std::uint16_t session_id) {
  client_server::OpDeleteDelayMeasurementSession message;
  message.set_probe_id(probe_id);
  message.set_session_id(session_id);
  return message;
}

}  // namespace cfm::core
