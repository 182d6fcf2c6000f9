// SPDX-License-Identifier: Apache-2.0
#include "convert.h"

#include <algorithm>

namespace cfm_mgr {
namespace {

using Numbers = google::protobuf::RepeatedField<std::uint32_t>;

std::vector<std::uint32_t> List(const Numbers& numbers) { return {numbers.begin(), numbers.end()}; }

std::vector<std::uint32_t> Set(const Numbers& numbers) {
  std::vector<std::uint32_t> set = List(numbers);
  std::sort(set.begin(), set.end());
  set.erase(std::unique(set.begin(), set.end()), set.end());
  return set;
}

void Fill(const std::vector<std::uint32_t>& values, Numbers& numbers) {
  numbers.Add(values.begin(), values.end());
}

Ais FromMessage(const client_server::Ais& message) {
  Ais ais;
  ais.enabled = message.enabled();
  ais.flag_d = message.flag_d();
  if (!ais.enabled) return ais;
  ais.octet_a = message.octet_a();
  ais.word_b = message.word_b();
  ais.octet_c = message.octet_c();
  ais.id_set = Set(message.id_set());
  return ais;
}

void Write(const Ais& ais, client_server::Ais& message) {
  message.set_enabled(ais.enabled);
  message.set_flag_d(ais.flag_d);
  if (!ais.enabled) return;
  message.set_octet_a(ais.octet_a);
  message.set_word_b(ais.word_b);
  message.set_octet_c(ais.octet_c);
  Fill(ais.id_set, *message.mutable_id_set());
}

// The settings that the create and the update request of an entity have in common.

template <class Message>
void ReadCommon(DomainSettings& domain, const Message& message) {
  domain.sender_id = message.sender_id();
  domain.mhf_creation = message.mhf_creation();
}

template <class Message>
void ReadCommon(AssociationSettings& association, const Message& message) {
  association.ccm_interval = message.ccm_interval();
  association.sender_id = message.sender_id();
  association.mhf_creation = message.mhf_creation();
  association.mep_ids = Set(message.mep_ids());
  association.ais = FromMessage(message.ais());
}

template <class Message>
void ReadCommon(Mep& mep, const Message& message) {
  mep.primary_vid = message.primary_vid();
  mep.inner_vid = message.inner_vid();
  mep.admin_state = message.admin_state();
  mep.ccm_enabled = message.ccm_enabled();
  mep.ccm_priority = message.ccm_priority();
  mep.lowest_prio_defect = message.lowest_prio_defect();
  mep.fng_alarm_time = message.fng_alarm_time();
  mep.fng_reset_time = message.fng_reset_time();
  mep.fault_action = message.fault_action();
  mep.aux_flag = message.aux_flag();
}

void Write(const DomainSettings& domain, client_server::OpCreateMaintenanceDomain& message) {
  message.set_format(domain.format);
  message.set_level(domain.level);
  message.set_sender_id(domain.sender_id);
  message.set_mhf_creation(domain.mhf_creation);
}

void Write(const AssociationSettings& association,
           client_server::OpCreateMaintenanceAssociation& message) {
  Fill(association.vids, *message.mutable_vids());
  Fill(association.mep_ids, *message.mutable_mep_ids());
  Write(association.ais, *message.mutable_ais());
  message.set_format(association.format);
  message.set_ccm_interval(association.ccm_interval);
  message.set_sender_id(association.sender_id);
  message.set_mhf_creation(association.mhf_creation);
}

void Write(const Mep& mep, client_server::OpCreateMaintenanceEndpoint& message) {
  message.set_direction(mep.direction);
  message.set_ifindex(mep.ifindex);
  message.set_primary_vid(mep.primary_vid);
  message.set_inner_vid(mep.inner_vid);
  message.set_ccm_priority(mep.ccm_priority);
  message.set_admin_state(mep.admin_state);
  message.set_ccm_enabled(mep.ccm_enabled);
  message.set_aux_flag(mep.aux_flag);
  message.set_lowest_prio_defect(mep.lowest_prio_defect);
  message.set_fng_alarm_time(mep.fng_alarm_time);
  message.set_fng_reset_time(mep.fng_reset_time);
  message.set_fault_action(mep.fault_action);
}

void Write(const ProbeSettings& probe, client_server::OpCreateDelayMeasurementProbe& message) {
  message.set_md_name(probe.md_name);
  message.set_ma_name(probe.ma_name);
  message.set_interval(probe.interval);
  message.set_lmep_id(probe.lmep_id);
  message.set_rmep_id(probe.rmep_id);
}

void Write(const Session& session, client_server::OpCreateDelayMeasurementSession& message) {
  message.set_interval(session.interval);
  message.set_count(session.count);
  message.set_size(session.size);
  message.set_pcp(session.pcp);
}

void AddAssociation(const std::string& md_name, const std::string& ma_name,
                    const Association& association, client_server::OpCacheSync& cache) {
  auto& ma = *cache.add_mas();
  ma.set_md_name(md_name);
  ma.set_ma_name(ma_name);
  Write(association.settings, ma);
  for (const auto& [mep_id, mep] : association.meps) {
    auto& entry = *cache.add_meps();
    entry.set_md_name(md_name);
    entry.set_ma_name(ma_name);
    entry.set_mep_id(mep_id);
    Write(mep, entry);
  }
}

void AddProbe(std::uint32_t probe_id, const Probe& probe, client_server::OpCacheSync& cache) {
  auto& entry = *cache.add_probes();
  entry.set_probe_id(probe_id);
  Write(probe.settings, entry);
  for (const auto& [session_id, session] : probe.sessions) {
    auto& session_entry = *cache.add_sessions();
    session_entry.set_probe_id(probe_id);
    session_entry.set_session_id(session_id);
    Write(session, session_entry);
  }
}

}  // namespace

DomainSettings FromMessage(const client_server::OpCreateMaintenanceDomain& message) {
  DomainSettings domain;
  domain.format = message.format();
  domain.level = message.level();
  ReadCommon(domain, message);
  return domain;
}

AssociationSettings FromMessage(const client_server::OpCreateMaintenanceAssociation& message) {
  AssociationSettings association;
  association.format = message.format();
  association.vids = List(message.vids());
  ReadCommon(association, message);
  return association;
}

Mep FromMessage(const client_server::OpCreateMaintenanceEndpoint& message) {
  Mep mep;
  mep.direction = message.direction();
  mep.ifindex = message.ifindex();
  ReadCommon(mep, message);
  return mep;
}

ProbeSettings FromMessage(const client_server::OpCreateDelayMeasurementProbe& message) {
  ProbeSettings probe;
  probe.md_name = message.md_name();
  probe.ma_name = message.ma_name();
  probe.interval = message.interval();
  probe.lmep_id = message.lmep_id();
  probe.rmep_id = message.rmep_id();
  return probe;
}

Session FromMessage(const client_server::OpCreateDelayMeasurementSession& message) {
  return {message.interval(), message.count(), message.size(), message.pcp()};
}

void Update(DomainSettings& domain, const client_server::OpUpdateMaintenanceDomain& message) {
  ReadCommon(domain, message);
}

void Update(AssociationSettings& association,
            const client_server::OpUpdateMaintenanceAssociation& message) {
  ReadCommon(association, message);
}

void Update(Mep& mep, const client_server::OpUpdateMaintenanceEndpoint& message) {
  ReadCommon(mep, message);
}

client_server::OpCacheSync ToCacheSync(const Tree& tree) {
  client_server::OpCacheSync cache;
  for (const auto& [md_name, domain] : tree.domains) {
    auto& entry = *cache.add_mds();
    entry.set_md_name(md_name);
    Write(domain.settings, entry);
  }
  ForEachAssociation(tree, [&cache](const std::string& md_name, const std::string& ma_name,
                                    const Association& association) {
    AddAssociation(md_name, ma_name, association, cache);
  });
  for (const auto& [probe_id, probe] : tree.probes) AddProbe(probe_id, probe, cache);
  return cache;
}

}  // namespace cfm_mgr
