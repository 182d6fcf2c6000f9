// SPDX-License-Identifier: Apache-2.0
#include "server_skeleton/configuration.h"

#include <iterator>

namespace examples {
namespace {

const Outcome kRefused = {true, {}, {}};

template <class Map, class Condition>
void EraseIf(Map& map, Condition condition) {
  for (auto entry = map.begin(); entry != map.end();) {
    entry = condition(entry->second) ? map.erase(entry) : std::next(entry);
  }
}

}  // namespace

template <class Condition>
Outcome Configuration::RemoveMeps(Condition condition) {
  Outcome outcome;
  EraseIf(meps_, [&](const auto& mep) {
    if (!condition(mep)) return false;
    outcome.removed.push_back(mep);
    return true;
  });
  return outcome;
}

Outcome Configuration::Apply(const client_server::OpCreateMaintenanceDomain& request) {
  mds_[request.md_name()] = request;
  return {};
}

Outcome Configuration::Apply(const client_server::OpUpdateMaintenanceDomain& request) {
  const auto md = mds_.find(request.md_name());
  if (md == mds_.end()) return kRefused;
  md->second.set_sender_id(request.sender_id());
  md->second.set_mhf_creation(request.mhf_creation());
  return {};
}

Outcome Configuration::Apply(const client_server::OpDeleteMaintenanceDomain& request) {
  if (mds_.erase(request.md_name()) == 0) return kRefused;
  const auto beneath = [&](const auto& entity) { return entity.md_name() == request.md_name(); };
  EraseIf(mas_, beneath);
  return RemoveMeps(beneath);
}

Outcome Configuration::Apply(const client_server::OpCreateMaintenanceAssociation& request) {
  if (mds_.count(request.md_name()) == 0) return kRefused;
  mas_[{request.md_name(), request.ma_name()}] = request;
  return {};
}

Outcome Configuration::Apply(const client_server::OpUpdateMaintenanceAssociation& request) {
  const auto ma = mas_.find({request.md_name(), request.ma_name()});
  if (ma == mas_.end()) return kRefused;
  ma->second.set_ccm_interval(request.ccm_interval());
  ma->second.set_sender_id(request.sender_id());
  ma->second.set_mhf_creation(request.mhf_creation());
  *ma->second.mutable_mep_ids() = request.mep_ids();
  *ma->second.mutable_ais() = request.ais();
  return {};
}

Outcome Configuration::Apply(const client_server::OpDeleteMaintenanceAssociation& request) {
  if (mas_.erase({request.md_name(), request.ma_name()}) == 0) return kRefused;
  return RemoveMeps([&](const auto& mep) {
    return mep.md_name() == request.md_name() && mep.ma_name() == request.ma_name();
  });
}

Outcome Configuration::Apply(const client_server::OpCreateMaintenanceEndpoint& request) {
  if (mas_.count({request.md_name(), request.ma_name()}) == 0) return kRefused;
  meps_[{request.md_name(), request.ma_name(), request.mep_id()}] = request;
  return {false, {request}, {}};
}

Outcome Configuration::Apply(const client_server::OpUpdateMaintenanceEndpoint& request) {
  const auto mep = meps_.find({request.md_name(), request.ma_name(), request.mep_id()});
  if (mep == meps_.end()) return kRefused;
  mep->second.set_primary_vid(request.primary_vid());
  mep->second.set_inner_vid(request.inner_vid());
  mep->second.set_admin_state(request.admin_state());
  mep->second.set_ccm_enabled(request.ccm_enabled());
  mep->second.set_ccm_priority(request.ccm_priority());
  mep->second.set_lowest_prio_defect(request.lowest_prio_defect());
  mep->second.set_fng_alarm_time(request.fng_alarm_time());
  mep->second.set_fng_reset_time(request.fng_reset_time());
  mep->second.set_fault_action(request.fault_action());
  mep->second.set_aux_flag(request.aux_flag());
  return {};
}

Outcome Configuration::Apply(const client_server::OpDeleteMaintenanceEndpoint& request) {
  const auto mep = meps_.find({request.md_name(), request.ma_name(), request.mep_id()});
  if (mep == meps_.end()) return kRefused;
  Outcome outcome = {false, {}, {mep->second}};
  meps_.erase(mep);
  return outcome;
}

Outcome Configuration::Apply(const client_server::OpCreateDelayMeasurementProbe& request) {
  probes_[request.probe_id()] = request;
  return {};
}

Outcome Configuration::Apply(const client_server::OpDeleteDelayMeasurementProbe& request) {
  if (probes_.erase(request.probe_id()) == 0) return kRefused;
  EraseIf(sessions_, [&](const auto& session) { return session.probe_id() == request.probe_id(); });
  return {};
}

Outcome Configuration::Apply(const client_server::OpCreateDelayMeasurementSession& request) {
  if (probes_.count(request.probe_id()) == 0) return kRefused;
  sessions_[{request.probe_id(), request.session_id()}] = request;
  return {};
}

Outcome Configuration::Apply(const client_server::OpDeleteDelayMeasurementSession& request) {
  return sessions_.erase({request.probe_id(), request.session_id()}) == 0 ? kRefused : Outcome{};
}

client_server::OpCacheSync Configuration::Whole() const {
  client_server::OpCacheSync whole;
  for (const auto& entry : mds_) *whole.add_mds() = entry.second;
  for (const auto& entry : mas_) *whole.add_mas() = entry.second;
  for (const auto& entry : meps_) *whole.add_meps() = entry.second;
  for (const auto& entry : probes_) *whole.add_probes() = entry.second;
  for (const auto& entry : sessions_) *whole.add_sessions() = entry.second;
  return whole;
}

}  // namespace examples
