/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * The server's configuration: domains, associations, endpoints, probes and sessions.
 *
 * Numbers are kept as wide as they travel, so that the cache reply gives back what was sent.
 * Names are byte strings of any content.
 */
#ifndef CFM_MGR_MODEL_H
#define CFM_MGR_MODEL_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace cfm_mgr {

/** Alarm indication signal settings. All but the two flags are zero while AIS is off. */
struct Ais {
  bool enabled = false;
  std::uint32_t octet_a = 0;
  std::uint32_t word_b = 0;
  std::uint32_t octet_c = 0;
  std::vector<std::uint32_t> id_set;  ///< Ascending, without duplicates.
  bool flag_d = false;
};

struct Mep {
  std::int32_t direction = 0;
  std::uint32_t ifindex = 0;
  std::uint32_t primary_vid = 0;
  std::uint32_t inner_vid = 0;
  bool admin_state = false;
  bool ccm_enabled = false;
  std::uint32_t ccm_priority = 0;
  std::int32_t lowest_prio_defect = 0;
  std::uint32_t fng_alarm_time = 0;
  std::uint32_t fng_reset_time = 0;
  std::int32_t fault_action = 0;
  bool aux_flag = false;
};

struct AssociationSettings {
  std::int32_t format = 0;
  std::vector<std::uint32_t> vids;  ///< As the client gave them, duplicates kept.
  std::int32_t ccm_interval = 0;
  std::vector<std::uint32_t> mep_ids;  ///< Ascending, without duplicates.
  std::int32_t sender_id = 0;
  std::int32_t mhf_creation = 0;
  Ais ais;
};

struct Association {
  AssociationSettings settings;
  std::map<std::uint32_t, Mep> meps;
};

struct DomainSettings {
  std::int32_t format = 0;
  std::uint32_t level = 0;
  std::int32_t sender_id = 0;
  std::int32_t mhf_creation = 0;
};

struct Domain {
  DomainSettings settings;
  std::map<std::string, Association> associations;
};

struct Session {
  std::uint32_t interval = 0;
  std::uint32_t count = 0;
  std::uint32_t size = 0;
  std::uint32_t pcp = 0;
};

struct ProbeSettings {
  std::string md_name;
  std::string ma_name;
  std::uint32_t interval = 0;
  std::uint32_t lmep_id = 0;
  std::uint32_t rmep_id = 0;
};

struct Probe {
  ProbeSettings settings;
  std::map<std::uint32_t, Session> sessions;
};

struct Tree {
  std::map<std::string, Domain> domains;
  std::map<std::uint32_t, Probe> probes;
};

/** Names an association. */
struct MaKey {
  std::string md_name;
  std::string ma_name;
};

inline bool operator<(const MaKey& a, const MaKey& b) {
  return std::tie(a.md_name, a.ma_name) < std::tie(b.md_name, b.ma_name);
}

/** Names an endpoint. */
struct MepKey {
  MaKey ma;
  std::uint32_t mep_id = 0;
};

inline bool operator<(const MepKey& a, const MepKey& b) {
  return std::tie(a.ma, a.mep_id) < std::tie(b.ma, b.mep_id);
}

/** Calls visit(md_name, ma_name, association) for every association, in order of names. */
template <class Visit>
void ForEachAssociation(const Tree& tree, Visit&& visit) {
  for (const auto& [md_name, domain] : tree.domains) {
    for (const auto& [ma_name, association] : domain.associations) {
      visit(md_name, ma_name, association);
    }
  }
}

/** The association of this name, or null. */
const Association* FindAssociation(const Tree& tree, const MaKey& key);

/** The endpoint of this name, or null. */
const Mep* FindMep(const Tree& tree, const MepKey& key);

/**
 * The remote MEPs of a local MEP, ascending: the other identifiers of the association's MEP list,
 * but for local MEPs on the same interface, which never meet each other's frames.
 */
std::vector<std::uint32_t> RemotesOf(const Association& association, std::uint32_t mep_id);

/** How much a tree holds. */
struct TreeSize {
  std::size_t domains = 0;
  std::size_t associations = 0;
  std::size_t meps = 0;
  std::size_t probes = 0;
  std::size_t sessions = 0;
};

TreeSize SizeOf(const Tree& tree);

}  // namespace cfm_mgr

#endif
