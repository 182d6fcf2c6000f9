// SPDX-License-Identifier: Apache-2.0
#include "server_model.h"

namespace cfm_test {
namespace {

template <typename Message>
Message Parse(const std::string& payload) {
  Message message;
  message.ParseFromString(payload);
  return message;
}

template <typename Map, typename Predicate>
void EraseIf(Map& map, Predicate predicate) {
  for (auto entry = map.begin(); entry != map.end();) {
    entry = predicate(entry->first) ? map.erase(entry) : std::next(entry);
  }
}

// An update says what it carries and leaves the rest; lists are replaced.
void Update(client_server::OpCreateMaintenanceAssociation& ma,
            const client_server::OpUpdateMaintenanceAssociation& update) {
  ma.set_ccm_interval(update.ccm_interval());
  ma.set_sender_id(update.sender_id());
  ma.set_mhf_creation(update.mhf_creation());
  *ma.mutable_mep_ids() = update.mep_ids();
  *ma.mutable_ais() = update.ais();
}

void Update(client_server::OpCreateMaintenanceEndpoint& mep,
            const client_server::OpUpdateMaintenanceEndpoint& update) {
  mep.set_primary_vid(update.primary_vid());
  mep.set_inner_vid(update.inner_vid());
  mep.set_admin_state(update.admin_state());
  mep.set_ccm_enabled(update.ccm_enabled());
  mep.set_ccm_priority(update.ccm_priority());
  mep.set_lowest_prio_defect(update.lowest_prio_defect());
  mep.set_fng_alarm_time(update.fng_alarm_time());
  mep.set_fng_reset_time(update.fng_reset_time());
  mep.set_fault_action(update.fault_action());
  mep.set_aux_flag(update.aux_flag());
}

}  // namespace

void ServerModel::Complain(const std::string& signal, const std::string& what) {
  complaints.push_back(signal + ": " + what);
}

void ServerModel::Take(const std::string& signal, const std::string& payload) {
  if (signal == "CACHE_GET" || signal == "STATUS_GET_ALL") {
    return;
  }
  if (!TakeMd(signal, payload) && !TakeMa(signal, payload) && !TakeMep(signal, payload) &&
      !TakeProbe(signal, payload)) {
    Complain(signal, "not a configuration request");
  }
}

bool ServerModel::TakeMd(const std::string& signal, const std::string& payload) {
  if (signal == "MD_CREATE") {
    const auto message = Parse<client_server::OpCreateMaintenanceDomain>(payload);
    if (!mds.emplace(message.md_name(), message).second) {
      Complain(signal, "exists");
    }
  } else if (signal == "MD_UPDATE") {
    const auto message = Parse<client_server::OpUpdateMaintenanceDomain>(payload);
    const auto md = mds.find(message.md_name());
    if (md == mds.end()) {
      Complain(signal, "does not exist");
      return true;
    }
    md->second.set_sender_id(message.sender_id());
    md->second.set_mhf_creation(message.mhf_creation());
  } else if (signal == "MD_DELETE") {
    const auto name = Parse<client_server::OpDeleteMaintenanceDomain>(payload).md_name();
    if (mds.erase(name) == 0) {
      Complain(signal, "does not exist");
    }
    EraseIf(mas, [&](const MaKey& key) { return key.first == name; });
    EraseIf(meps, [&](const MepKey& key) { return std::get<0>(key) == name; });
  } else {
    return false;
  }
  return true;
}

bool ServerModel::TakeMa(const std::string& signal, const std::string& payload) {
  if (signal == "MA_CREATE") {
    const auto message = Parse<client_server::OpCreateMaintenanceAssociation>(payload);
    if (mds.count(message.md_name()) == 0) {
      Complain(signal, "has no domain");
    }
    if (!mas.emplace(MaKey(message.md_name(), message.ma_name()), message).second) {
      Complain(signal, "exists");
    }
  } else if (signal == "MA_UPDATE") {
    const auto message = Parse<client_server::OpUpdateMaintenanceAssociation>(payload);
    const auto ma = mas.find({message.md_name(), message.ma_name()});
    if (ma == mas.end()) {
      Complain(signal, "does not exist");
      return true;
    }
    Update(ma->second, message);
  } else if (signal == "MA_DELETE") {
    const auto message = Parse<client_server::OpDeleteMaintenanceAssociation>(payload);
    const MaKey ma(message.md_name(), message.ma_name());
    if (mas.erase(ma) == 0) {
      Complain(signal, "does not exist");
    }
    EraseIf(meps,
            [&](const MepKey& key) { return MaKey(std::get<0>(key), std::get<1>(key)) == ma; });
  } else {
    return false;
  }
  return true;
}

bool ServerModel::TakeMep(const std::string& signal, const std::string& payload) {
  if (signal == "MEP_CREATE") {
    const auto message = Parse<client_server::OpCreateMaintenanceEndpoint>(payload);
    if (mas.count({message.md_name(), message.ma_name()}) == 0) {
      Complain(signal, "has no association");
    }
    const MepKey key(message.md_name(), message.ma_name(), message.mep_id());
    if (!meps.emplace(key, message).second) {
      Complain(signal, "exists");
    }
  } else if (signal == "MEP_UPDATE") {
    const auto message = Parse<client_server::OpUpdateMaintenanceEndpoint>(payload);
    const auto mep = meps.find({message.md_name(), message.ma_name(), message.mep_id()});
    if (mep == meps.end()) {
      Complain(signal, "does not exist");
      return true;
    }
    Update(mep->second, message);
  } else if (signal == "MEP_DELETE") {
    const auto message = Parse<client_server::OpDeleteMaintenanceEndpoint>(payload);
    if (meps.erase({message.md_name(), message.ma_name(), message.mep_id()}) == 0) {
      Complain(signal, "does not exist");
    }
  } else {
    return false;
  }
  return true;
}

bool ServerModel::TakeProbe(const std::string& signal, const std::string& payload) {
  if (signal == "DM_PROBE_CREATE") {
    const auto message = Parse<client_server::OpCreateDelayMeasurementProbe>(payload);
    probes[message.probe_id()] = message;
  } else if (signal == "DM_PROBE_DELETE") {
    const auto id = Parse<client_server::OpDeleteDelayMeasurementProbe>(payload).probe_id();
    if (probes.erase(id) == 0) {
      Complain(signal, "does not exist");
    }
    EraseIf(sessions, [&](const SessionKey& key) { return key.first == id; });
  } else if (signal == "DM_SESSION_CREATE") {
    const auto message = Parse<client_server::OpCreateDelayMeasurementSession>(payload);
    if (probes.count(message.probe_id()) == 0) {
      Complain(signal, "has no probe");
    }
    sessions[{message.probe_id(), message.session_id()}] = message;
  } else if (signal == "DM_SESSION_DELETE") {
    const auto message = Parse<client_server::OpDeleteDelayMeasurementSession>(payload);
    if (sessions.erase({message.probe_id(), message.session_id()}) == 0) {
      Complain(signal, "does not exist");
    }
  } else {
    return false;
  }
  return true;
}

client_server::OpCacheSync ServerModel::Cache() const {
  client_server::OpCacheSync cache;
  for (const auto& [key, md] : mds) {
    *cache.add_mds() = md;
  }
  for (const auto& [key, ma] : mas) {
    *cache.add_mas() = ma;
  }
  for (const auto& [key, mep] : meps) {
    *cache.add_meps() = mep;
  }
  for (const auto& [key, probe] : probes) {
    *cache.add_probes() = probe;
  }
  for (const auto& [key, session] : sessions) {
    *cache.add_sessions() = session;
  }
  return cache;
}

}  // namespace cfm_test
