/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * The CFM configuration: maintenance domains (MD), their maintenance associations
 * (MA) and the maintenance endpoints (MEP) in those.
 *
 * All of these are plain values that own what they hold. The library checks no
 * range and no cross reference: it passes every number through to the server, which
 * judges it. Ranges and units below are those of IEEE 802.1ag and its MIB.
 *
 * The maps' order, byte-wise by name and numeric by identifier, is the order in which
 * entities of a kind are created, updated, deleted and printed; only endpoints that are
 * re-created come before those that are new.
 *
 * The application fills these records; the library keeps copies.
 */
#ifndef CFM_HIERARCHY_H
#define CFM_HIERARCHY_H

#include <cfm/export.h>
#include <sepan/sepan.h>

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace cfm {

/** How an MD's name is to be read (dot1agCfmMaintDomainNameType). */
enum class MdNameFormat : std::int32_t {
  None = 1,        ///< CCMs carry no domain name.
  DnsLike = 2,     ///< A name of the domain name system.
  MacAndUint = 3,  ///< A MAC address and a 16-bit number.
  CharString = 4,  ///< Text.
};

/** How an MA's short name is to be read (dot1agCfmMaintAssocNameType). */
enum class MaNameFormat : std::int32_t {
  PrimaryVid = 1,          ///< The primary VID.
  CharString = 2,          ///< Text.
  Uint16 = 3,              ///< A 16-bit number.
  Rfc2685VpnId = 4,        ///< A VPN identifier of RFC 2685.
  IccBased = 32,           ///< An ITU carrier code and a code of the carrier's own (Y.1731).
  IccAndCountryCode = 33,  ///< The same behind a country code (Y.1731).
};

/** What the Sender ID TLV of transmitted frames holds (dot1agCfmIdPermission). */
enum class SenderIdTlvContent : std::int32_t {
  None = 1,           ///< No Sender ID TLV is sent.
  Chassis = 2,        ///< The chassis identifier.
  Manage = 3,         ///< The management address.
  ChassisManage = 4,  ///< Both.
  /** As the enclosing MD has it; for an MA only. */
  Defer = 5,
};

/** Whether MIP half functions are created (dot1agCfmMhfCreation). */
enum class MhfCreationMode : std::int32_t {
  None = 1,      ///< None is created.
  Default = 2,   ///< On ports without a lower level, and above a MEP of the next lower one.
  Explicit = 3,  ///< Above a MEP of the next lower level only.
  /** As the enclosing MD has it; for an MA only. */
  Defer = 4,
};

/** Interval between CCMs, as it is coded on the wire too (dot1agCfmCcmInterval). */
enum class CcmInterval : std::int32_t {
  Invalid = 0,        ///< No interval; not to be configured.
  Interval300Hz = 1,  ///< 3.33 ms.
  Interval10ms = 2,   ///< 10 ms.
  Interval100ms = 3,  ///< 100 ms.
  Interval1s = 4,     ///< 1 s, the standard's default.
  Interval10s = 5,    ///< 10 s.
  Interval1min = 6,   ///< 1 min.
  Interval10min = 7,  ///< 10 min.
};

/** The way a MEP faces (dot1agCfmMpDirection). */
enum class MepDirection : std::int32_t {
  Down = 1,  ///< Towards the port's own LAN.
  Up = 2,    ///< Into the bridge.
};

/** The lowest-priority defect that may raise a fault alarm (dot1agCfmLowestAlarmPri). */
enum class Defects : std::uint8_t {
  All = 1,  ///< RDI, and what the next one has.
  /** MAC status, remote CCM, error CCM, cross-connect CCM: the standard's default. */
  MacRemoteErrorXcon = 2,
  RemoteErrorXcon = 3,  ///< Remote CCM, error CCM, cross-connect CCM.
  ErrorXcon = 4,        ///< Error CCM, cross-connect CCM.
  Xcon = 5,             ///< Cross-connect CCM.
  None = 6,             ///< No alarm at all.
};

/** What the server does to a MEP's port while the MEP reports a fault. */
enum class FaultAction : std::int32_t {
  None = 0,      ///< Nothing.
  Block = 1,     ///< It is blocked.
  Shutdown = 2,  ///< It is shut down.
};

/**
 * Alarm indication signal settings of an MA. The server gives these members their
 * meaning; the library carries them. While `enabled` is false only `enabled` and
 * `flag_d` are sent.
 */
struct st_ais_cfg {
  bool enabled = false;            ///< Whether AIS is on.
  std::uint8_t octet_a = 0;        ///< The server's meaning; sent while enabled.
  std::uint32_t word_b = 0;        ///< The server's meaning; sent while enabled.
  std::set<std::uint16_t> id_set;  ///< The server's meaning; sent while enabled, ascending.
  std::uint8_t octet_c = 0;        ///< The server's meaning; sent while enabled.
  /** Sent whether or not AIS is enabled. */
  bool flag_d = false;
};

/** Settings of a maintenance endpoint. */
struct st_maintenance_endpoint_cfg {
  /** MEP identifier (dot1agCfmMepIdentifier), 1 to 8191. Meant to equal the MEP's key; this one is
   * what is sent. */
  std::uint16_t mep_id = 0;
  /** A change re-creates the MEP. */
  MepDirection direction{};
  /** The port the MEP sits on, as sepan handles it. A change re-creates the MEP. */
  sepan_port_t port = 0;
  /** Primary VID, 1 to 4094; 0 takes the MA's. A change re-creates the MEP. */
  std::uint16_t primary_vid = 0;
  /** Inner VID of double-tagged frames, 0 for none. A change re-creates the MEP. */
  std::uint16_t inner_vid = 0;
  /** Whether the MEP is active (dot1agCfmMepActive). */
  bool admin_state = false;
  /** Whether the MEP sends CCMs (dot1agCfmMepCciEnabled). */
  bool ccm_enabled = false;
  /** Priority of sent CCMs and LTMs, 0 to 7. */
  std::uint8_t ccm_priority = 0;
  /** Lowest-priority defect that may raise an alarm (dot1agCfmMepLowPrDef). */
  Defects lowest_prio_defect{};
  /**
   * Time a defect must last to raise an alarm, in hundredths of a second, 250 to 1000
   * (dot1agCfmMepFngAlarmTime).
   */
  std::uint16_t fng_alarm_time = 0;
  /**
   * Time without a defect that clears an alarm, in hundredths of a second, 250 to 1000
   * (dot1agCfmMepFngResetTime).
   */
  std::uint16_t fng_reset_time = 0;
  /** What a fault does to the port. */
  FaultAction fault_action{};
  /** Carried to the server, which gives it its meaning. */
  bool aux_flag = false;
};

/** Settings of a maintenance association. */
struct CFM_API st_maintenance_association_cfg {
  /** @name Values
   * Zero, false and empty by default; copies own what they hold.
   * @{ */
  /** Settings of zeros without VIDs and MEPs. */
  st_maintenance_association_cfg() = default;
  /** A copy with lists of its own. */
  st_maintenance_association_cfg(const st_maintenance_association_cfg&) = default;
  /** Takes the other's lists over. */
  st_maintenance_association_cfg(st_maintenance_association_cfg&&) = default;
  /** Replaces all settings by copies. */
  st_maintenance_association_cfg& operator=(const st_maintenance_association_cfg&) = default;
  /** Replaces all settings, taking the other's lists over. */
  st_maintenance_association_cfg& operator=(st_maintenance_association_cfg&&) = default;
  /** Frees what the settings own. */
  ~st_maintenance_association_cfg();
  /** @} */

  /** Name format. Sent when the MA is created only: a change alone sends nothing. */
  MaNameFormat format{};
  /**
   * VIDs of the service that the MA guards, the primary VID first. Order and
   * duplicates are kept; a change of either re-creates the MA and its MEPs.
   */
  std::vector<std::uint16_t> vids;
  /** Interval between the CCMs of the MA's MEPs (dot1agCfmMaNetCcmInterval). */
  CcmInterval ccm_interval{};
  /** Identifiers of all MEPs of the MA, local and remote (dot1agCfmMaMepListTable). */
  std::set<std::uint16_t> mep_ids;
  /** Sender ID TLV of frames of the MA (dot1agCfmMaCompIdPermission). */
  SenderIdTlvContent sender_id{};
  /** MIP half functions of the MA (dot1agCfmMaCompMhfCreation). */
  MhfCreationMode mhf_creation{};
  /** Alarm indication signal settings of the MA. */
  st_ais_cfg ais;
};

/** Settings of a maintenance domain. */
struct st_maintenance_domain_cfg {
  /** Name format. Sent when the MD is created only: a change alone sends nothing. */
  MdNameFormat format{};
  /** MD level, 0 to 7. A change re-creates the MD and all it holds. */
  std::uint8_t level = 0;
  /** Sender ID TLV of frames of MAs that defer to the MD (dot1agCfmMdIdPermission). */
  SenderIdTlvContent sender_id{};
  /** MIP half functions of MAs that defer to the MD (dot1agCfmMdMhfCreation). */
  MhfCreationMode mhf_creation{};
};

/**
 * A maintenance endpoint. Requests for it carry the names held here, not the keys of
 * the maps it lies in, so whoever builds a hierarchy fills them.
 */
struct hierarchy_mep {
  std::string md_name;              ///< Name of the owning MD.
  std::string ma_name;              ///< Name of the owning MA.
  st_maintenance_endpoint_cfg cfg;  ///< The MEP's settings.
};

/** A maintenance association and its endpoints. */
struct hierarchy_ma {
  /** Name of the owning MD: requests for the MA carry this, not the MD's key. */
  std::string md_name;
  st_maintenance_association_cfg cfg;  ///< The MA's settings.
  /** The MA's local MEPs by MEP identifier. */
  std::map<std::uint16_t, hierarchy_mep> meps;
};

/** A maintenance domain and its associations. */
struct hierarchy_md {
  st_maintenance_domain_cfg cfg;  ///< The MD's settings.
  /** The MD's associations by name. A name may hold any bytes. */
  std::map<std::string, hierarchy_ma> mas;
};

/** The whole configuration. One without domains is valid: nothing is to exist. */
struct hierarchy {
  /** The maintenance domains by name. A name may hold any bytes. */
  std::map<std::string, hierarchy_md> mds;
};

}  // namespace cfm

#endif
