// SPDX-License-Identifier: Apache-2.0
// Random configurations, one after the other, with restarts of either side in between: after each
// step the model of the server holds what the application handed in last.
//
// CFM_MODEL_SEED repeats one run, CFM_MODEL_RUNS sets how many there are.
#include <cfm/identifiers.h>

#include <cstdlib>
#include <random>

#include "client_fixture.h"
#include "server_model.h"

namespace cfm_test {
namespace {

// Consistent configurations from small ranges, so that the same names and numbers come up often.
class Generator {
 public:
  explicit Generator(unsigned seed) : random_(seed) {}

  unsigned Below(unsigned limit) { return static_cast<unsigned>(random_()) % limit; }
  bool Flag() { return Below(2) == 1; }

  template <typename Number>
  Number Small(unsigned limit = 3) {
    return static_cast<Number>(Below(limit));
  }

  cfm::hierarchy Hierarchy() {
    cfm::hierarchy config;
    for (unsigned n = Below(4); n > 0; --n) {
      const std::string name = Name();
      config.mds[name] = Md(name);
    }
    return config;
  }

  cfm::probe Probes() {
    cfm::probe config;
    for (unsigned n = Below(4); n > 0; --n) {
      const auto id = Small<std::uint16_t>(4);
      cfm::probe_cfg& probe = config.probes[id];
      probe = {id,     Small<std::uint16_t>(), Name(),
               Name(), Small<std::uint16_t>(), Small<std::uint16_t>(),
               {}};
      for (unsigned k = Below(3); k > 0; --k) {
        probe.sessions[Small<std::uint16_t>()] = {Small<std::uint16_t>(), Small<std::uint16_t>(),
                                                  Small<std::uint16_t>(), Small<std::uint8_t>()};
      }
    }
    return config;
  }

 private:
  std::string Name() { return std::string(1, static_cast<char>('A' + Below(4))); }

  std::set<std::uint16_t> Ids() {
    std::set<std::uint16_t> ids;
    for (unsigned n = Below(3); n > 0; --n) {
      ids.insert(Small<std::uint16_t>(9));
    }
    return ids;
  }

  cfm::hierarchy_md Md(const std::string& md_name) {
    cfm::hierarchy_md md;
    md.cfg = {Small<cfm::MdNameFormat>(), Small<std::uint8_t>(2), Small<cfm::SenderIdTlvContent>(),
              Small<cfm::MhfCreationMode>()};
    for (unsigned n = Below(4); n > 0; --n) {
      const std::string name = Name();
      md.mas[name] = Ma(md_name, name);
    }
    return md;
  }

  cfm::hierarchy_ma Ma(const std::string& md_name, const std::string& ma_name) {
    cfm::hierarchy_ma ma;
    ma.md_name = md_name;
    ma.cfg.format = Small<cfm::MaNameFormat>();
    if (Flag()) {
      ma.cfg.vids = {Small<std::uint16_t>(2), 7};
    }
    ma.cfg.ccm_interval = Small<cfm::CcmInterval>();
    ma.cfg.mep_ids = Ids();
    ma.cfg.sender_id = Small<cfm::SenderIdTlvContent>();
    ma.cfg.mhf_creation = Small<cfm::MhfCreationMode>();
    ma.cfg.ais = {Flag(), Small<std::uint8_t>(), Small<std::uint32_t>(),
                  Ids(),  Small<std::uint8_t>(), Flag()};
    for (unsigned n = Below(4); n > 0; --n) {
      const auto id = Small<std::uint16_t>(5);
      ma.meps[id] = {md_name, ma_name, MepSettings(id)};
    }
    return ma;
  }

  cfm::st_maintenance_endpoint_cfg MepSettings(std::uint16_t id) {
    cfm::st_maintenance_endpoint_cfg cfg;
    cfg.mep_id = id;
    cfg.direction = Flag() ? cfm::MepDirection::Up : cfm::MepDirection::Down;
    cfg.port = 1 + Below(2);
    cfg.primary_vid = Small<std::uint16_t>(2);
    cfg.inner_vid = Small<std::uint16_t>(2);
    cfg.admin_state = Flag();
    cfg.ccm_enabled = Flag();
    cfg.ccm_priority = Small<std::uint8_t>();
    cfg.lowest_prio_defect = Small<cfm::Defects>();
    cfg.fng_alarm_time = Small<std::uint16_t>();
    cfg.fng_reset_time = Small<std::uint16_t>();
    cfg.fault_action = Small<cfm::FaultAction>();
    cfg.aux_flag = Flag();
    return cfg;
  }

  std::mt19937 random_;
};

template <typename Enum>
std::int32_t N(Enum value) {
  return static_cast<std::int32_t>(value);
}

void ExpectMd(const client_server::OpCreateMaintenanceDomain& held, const cfm::hierarchy_md& md) {
  EXPECT_EQ(held.level(), md.cfg.level);
  EXPECT_EQ(held.sender_id(), N(md.cfg.sender_id));
  EXPECT_EQ(held.mhf_creation(), N(md.cfg.mhf_creation));
}

template <typename Wire, typename Values>
void ExpectList(const Wire& held, const Values& values) {
  EXPECT_THAT(std::vector<std::uint32_t>(held.begin(), held.end()),
              testing::ElementsAreArray(values.begin(), values.end()));
}

void ExpectMa(const client_server::OpCreateMaintenanceAssociation& held,
              const cfm::hierarchy_ma& ma) {
  ExpectList(held.vids(), ma.cfg.vids);
  ExpectList(held.mep_ids(), ma.cfg.mep_ids);
  EXPECT_EQ(held.ccm_interval(), N(ma.cfg.ccm_interval));
  EXPECT_EQ(held.sender_id(), N(ma.cfg.sender_id));
  EXPECT_EQ(held.mhf_creation(), N(ma.cfg.mhf_creation));
  const cfm::st_ais_cfg& ais = ma.cfg.ais;
  EXPECT_EQ(held.ais().enabled(), ais.enabled);
  EXPECT_EQ(held.ais().flag_d(), ais.flag_d);
  if (ais.enabled) {
    EXPECT_EQ(held.ais().octet_a(), ais.octet_a);
    EXPECT_EQ(held.ais().word_b(), ais.word_b);
    EXPECT_EQ(held.ais().octet_c(), ais.octet_c);
    ExpectList(held.ais().id_set(), ais.id_set);
  } else {
    EXPECT_FALSE(held.ais().has_octet_a() || held.ais().has_word_b() || held.ais().has_octet_c());
    EXPECT_EQ(held.ais().id_set_size(), 0);
  }
}

void ExpectMep(const client_server::OpCreateMaintenanceEndpoint& held,
               const cfm::st_maintenance_endpoint_cfg& cfg) {
  EXPECT_EQ(held.direction(), N(cfg.direction));
  EXPECT_EQ(held.ifindex(), cfg.port + 1000);
  EXPECT_EQ(held.primary_vid(), cfg.primary_vid);
  EXPECT_EQ(held.inner_vid(), cfg.inner_vid);
  EXPECT_EQ(held.admin_state(), cfg.admin_state);
  EXPECT_EQ(held.ccm_enabled(), cfg.ccm_enabled);
  EXPECT_EQ(held.ccm_priority(), cfg.ccm_priority);
  EXPECT_EQ(held.lowest_prio_defect(), N(cfg.lowest_prio_defect));
  EXPECT_EQ(held.fng_alarm_time(), cfg.fng_alarm_time);
  EXPECT_EQ(held.fng_reset_time(), cfg.fng_reset_time);
  EXPECT_EQ(held.fault_action(), N(cfg.fault_action));
  EXPECT_EQ(held.aux_flag(), cfg.aux_flag);
}

// A format counts when an entity is created, and is never sent again while it survives.
template <typename Key, typename Held>
std::int32_t ExpectedFormat(const std::map<Key, Held>& before, const std::set<Key>& created,
                            const Key& key, std::int32_t desired) {
  const auto survivor = before.find(key);
  return created.count(key) != 0 || survivor == before.end() ? desired : survivor->second.format();
}

class Model {
 public:
  explicit Model(unsigned seed) : random_(seed) {
    host_.on_send = [this](const std::string& signal, const std::string& payload) {
      server_.Take(signal, payload);
      NoteCreation(signal, payload);
    };
    StartClient();
  }

  void Run() {
    constexpr int steps = 10;
    Resynchronise();
    for (int step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
      SCOPED_TRACE("step " + std::to_string(step));
      Step();
    }
  }

 private:
  void NoteCreation(const std::string& signal, const std::string& payload) {
    if (signal == "MD_CREATE") {
      client_server::OpCreateMaintenanceDomain message;
      message.ParseFromString(payload);
      created_mds_.insert(message.md_name());
    } else if (signal == "MA_CREATE") {
      client_server::OpCreateMaintenanceAssociation message;
      message.ParseFromString(payload);
      created_mas_.insert({message.md_name(), message.ma_name()});
    }
  }

  void StartClient() {
    client_.emplace(host_.handle());
    client_->UpdateConfig(config_);
    client_->UpdateConfigProbe(probes_);
  }

  void Resynchronise() {
    host_.ServerFound();
    host_.Signal(CFM_MGR_S2C_SIG_CACHE_REPLY, server_.Cache().SerializeAsString());
  }

  // A server that lost everything first gets what the client last applied, with its formats.
  void RestartServer() {
    formats_known_ = false;
    host_.ServerLost();
    const auto complaints = server_.complaints;
    server_ = {};
    server_.complaints = complaints;
  }

  void RestartClient() {
    client_.reset();
    StartClient();
  }

  // One thing that happens to the system, after which both sides are in step again.
  void Step() {
    const ServerModel before = server_;
    created_mds_.clear();
    created_mas_.clear();
    formats_known_ = true;
    const unsigned what = random_.Below(8);
    if (what == 0) {
      RestartServer();
    } else if (what == 1) {
      host_.ServerLost();
    }
    config_ = random_.Hierarchy();
    probes_ = random_.Probes();
    client_->UpdateConfig(config_);
    client_->UpdateConfigProbe(probes_);
    if (what == 2) {
      RestartClient();
    } else if (what == 3) {
      RestartServer();
      RestartClient();
    }
    if (what <= 3) {
      Resynchronise();
    }
    ExpectConverged(before);
    host_.Take();
  }

  void ExpectConverged(const ServerModel& before) {
    EXPECT_THAT(server_.complaints, IsEmpty());
    std::size_t mas = 0;
    std::size_t meps = 0;
    ASSERT_EQ(server_.mds.size(), config_.mds.size());
    for (const auto& [md_name, md] : config_.mds) {
      ASSERT_EQ(server_.mds.count(md_name), 1U);
      ExpectMd(server_.mds[md_name], md);
      if (formats_known_) {
        EXPECT_EQ(server_.mds[md_name].format(),
                  ExpectedFormat(before.mds, created_mds_, md_name, N(md.cfg.format)));
      }
      for (const auto& [ma_name, ma] : md.mas) {
        ++mas;
        const ServerModel::MaKey key(md_name, ma_name);
        ASSERT_EQ(server_.mas.count(key), 1U);
        ExpectMa(server_.mas[key], ma);
        if (formats_known_) {
          EXPECT_EQ(server_.mas[key].format(),
                    ExpectedFormat(before.mas, created_mas_, key, N(ma.cfg.format)));
        }
        for (const auto& [mep_id, mep] : ma.meps) {
          ++meps;
          ASSERT_EQ(server_.meps.count({md_name, ma_name, mep_id}), 1U);
          ExpectMep(server_.meps[{md_name, ma_name, mep_id}], mep.cfg);
        }
      }
    }
    EXPECT_EQ(server_.mas.size(), mas);
    EXPECT_EQ(server_.meps.size(), meps);
    ExpectProbesConverged();
  }

  void ExpectProbesConverged() {
    std::size_t sessions = 0;
    ASSERT_EQ(server_.probes.size(), probes_.probes.size());
    for (const auto& [id, probe] : probes_.probes) {
      ASSERT_EQ(server_.probes.count(id), 1U);
      const auto& held = server_.probes[id];
      EXPECT_EQ(std::tie(held.md_name(), held.ma_name()), std::tie(probe.md, probe.ma));
      EXPECT_EQ(held.interval(), probe.interval);
      EXPECT_EQ(held.lmep_id(), probe.lmep);
      EXPECT_EQ(held.rmep_id(), probe.rmep);
      for (const auto& [session_id, session] : probe.sessions) {
        ++sessions;
        ASSERT_EQ(server_.sessions.count({id, session_id}), 1U);
        const auto& held_session = server_.sessions[{id, session_id}];
        EXPECT_EQ(held_session.count(), session.count);
        EXPECT_EQ(held_session.interval(), session.interval);
        EXPECT_EQ(held_session.size(), session.size);
        EXPECT_EQ(held_session.pcp(), session.pcp);
      }
    }
    EXPECT_EQ(server_.sessions.size(), sessions);
  }

  Generator random_;
  RecordingHost host_;
  ServerModel server_;
  std::optional<cfm::Client> client_;
  cfm::hierarchy config_;
  cfm::probe probes_;
  std::set<std::string> created_mds_;
  std::set<ServerModel::MaKey> created_mas_;
  bool formats_known_ = true;
};

unsigned FromEnvironment(const char* name, unsigned otherwise) {
  const char* const value = std::getenv(name);
  return value == nullptr ? otherwise : static_cast<unsigned>(std::strtoul(value, nullptr, 10));
}

TEST(ModelBased, TheServerEndsUpWithWhatWasHandedIn) {
  const unsigned first = FromEnvironment("CFM_MODEL_SEED", 1);
  const bool repeat = std::getenv("CFM_MODEL_SEED") != nullptr;
  const unsigned runs = repeat ? 1 : FromEnvironment("CFM_MODEL_RUNS", 1000);
  for (unsigned seed = first; seed < first + runs && !testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE("repeat with CFM_MODEL_SEED=" + std::to_string(seed));
    Model(seed).Run();
  }
}

}  // namespace
}  // namespace cfm_test
