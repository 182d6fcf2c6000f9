// SPDX-License-Identifier: Apache-2.0
#include "messages.h"

namespace cfm_mgr_test {
namespace {

template <class Message>
Message ForMd(const std::string& md) {
  Message message;
  message.set_md_name(md);
  return message;
}

template <class Message>
Message ForMa(const std::string& md, const std::string& ma) {
  auto message = ForMd<Message>(md);
  message.set_ma_name(ma);
  return message;
}

template <class Message>
Message ForMep(const std::string& md, const std::string& ma, std::uint32_t mep_id) {
  auto message = ForMa<Message>(md, ma);
  message.set_mep_id(mep_id);
  return message;
}

template <class Message>
Message ForSession(std::uint32_t probe_id, std::uint32_t session_id) {
  Message message;
  message.set_probe_id(probe_id);
  message.set_session_id(session_id);
  return message;
}

template <class Message>
void SetMaSettings(Message& message, const std::vector<std::uint32_t>& mep_ids) {
  message.mutable_mep_ids()->Add(mep_ids.begin(), mep_ids.end());
  message.set_ccm_interval(4);
  message.set_sender_id(5);
  message.set_mhf_creation(4);
  message.mutable_ais()->set_enabled(false);
  message.mutable_ais()->set_flag_d(false);
}

template <class Message>
void SetMepSettings(Message& message) {
  message.set_primary_vid(100);
  message.set_inner_vid(0);
  message.set_ccm_priority(7);
  message.set_admin_state(true);
  message.set_ccm_enabled(true);
  message.set_aux_flag(false);
  message.set_lowest_prio_defect(2);
  message.set_fng_alarm_time(250);
  message.set_fng_reset_time(1000);
  message.set_fault_action(0);
}

}  // namespace

client_server::OpCreateMaintenanceDomain CreateMd(const std::string& md) {
  auto message = ForMd<client_server::OpCreateMaintenanceDomain>(md);
  message.set_format(4);
  message.set_level(3);
  message.set_sender_id(1);
  message.set_mhf_creation(1);
  return message;
}

client_server::OpUpdateMaintenanceDomain UpdateMd(const std::string& md) {
  auto message = ForMd<client_server::OpUpdateMaintenanceDomain>(md);
  message.set_sender_id(1);
  message.set_mhf_creation(1);
  return message;
}

client_server::OpDeleteMaintenanceDomain DeleteMd(const std::string& md) {
  return ForMd<client_server::OpDeleteMaintenanceDomain>(md);
}

client_server::OpCreateMaintenanceAssociation CreateMa(const std::string& md, const std::string& ma,
                                                       const std::vector<std::uint32_t>& mep_ids) {
  auto message = ForMa<client_server::OpCreateMaintenanceAssociation>(md, ma);
  message.set_format(2);
  message.add_vids(100);
  SetMaSettings(message, mep_ids);
  return message;
}

client_server::OpUpdateMaintenanceAssociation UpdateMa(const std::string& md, const std::string& ma,
                                                       const std::vector<std::uint32_t>& mep_ids) {
  auto message = ForMa<client_server::OpUpdateMaintenanceAssociation>(md, ma);
  SetMaSettings(message, mep_ids);
  return message;
}

client_server::OpDeleteMaintenanceAssociation DeleteMa(const std::string& md,
                                                       const std::string& ma) {
  return ForMa<client_server::OpDeleteMaintenanceAssociation>(md, ma);
}

client_server::OpCreateMaintenanceEndpoint CreateMep(const std::string& md, const std::string& ma,
                                                     std::uint32_t mep_id) {
  auto message = ForMep<client_server::OpCreateMaintenanceEndpoint>(md, ma, mep_id);
  message.set_direction(1);
  message.set_ifindex(7);
  SetMepSettings(message);
  return message;
}

client_server::OpUpdateMaintenanceEndpoint UpdateMep(const std::string& md, const std::string& ma,
                                                     std::uint32_t mep_id) {
  auto message = ForMep<client_server::OpUpdateMaintenanceEndpoint>(md, ma, mep_id);
  SetMepSettings(message);
  return message;
}

client_server::OpDeleteMaintenanceEndpoint DeleteMep(const std::string& md, const std::string& ma,
                                                     std::uint32_t mep_id) {
  return ForMep<client_server::OpDeleteMaintenanceEndpoint>(md, ma, mep_id);
}

client_server::OpCreateDelayMeasurementProbe CreateProbe(std::uint32_t probe_id) {
  auto message = ForMa<client_server::OpCreateDelayMeasurementProbe>("D1", "A1");
  message.set_probe_id(probe_id);
  message.set_interval(10);
  message.set_lmep_id(1);
  message.set_rmep_id(2);
  return message;
}

client_server::OpDeleteDelayMeasurementProbe DeleteProbe(std::uint32_t probe_id) {
  client_server::OpDeleteDelayMeasurementProbe message;
  message.set_probe_id(probe_id);
  return message;
}

client_server::OpCreateDelayMeasurementSession CreateSession(std::uint32_t probe_id,
                                                             std::uint32_t session_id) {
  auto message = ForSession<client_server::OpCreateDelayMeasurementSession>(probe_id, session_id);
  message.set_interval(100);
  message.set_count(50);
  message.set_size(64);
  message.set_pcp(5);
  return message;
}

client_server::OpDeleteDelayMeasurementSession DeleteSession(std::uint32_t probe_id,
                                                             std::uint32_t session_id) {
  return ForSession<client_server::OpDeleteDelayMeasurementSession>(probe_id, session_id);
}

void SetAis(client_server::Ais& ais) {
  ais.set_enabled(true);
  ais.set_octet_a(5);
  ais.set_word_b(70000);
  ais.set_octet_c(255);
  ais.add_id_set(7);
  ais.add_id_set(4000);
  ais.set_flag_d(true);
}

}  // namespace cfm_mgr_test
