/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Whom a request names: the entity as text, and what is wrong with the names and identifiers.
 */
#ifndef CFM_MGR_NAMING_H
#define CFM_MGR_NAMING_H

#include <cstdint>
#include <string>

#include "fields.h"
#include "model.h"

namespace cfm_mgr {

/**
 * Lengths in octets. The MAID of a CCM holds 44 octets of names, or 45 octets of MA name when the
 * MD name format is "none".
 */
inline constexpr std::size_t kMaxMdName = 43;
inline constexpr std::size_t kMaxMaName = 45;
inline constexpr std::size_t kMaxBothNames = 44;

/** The reason against an MA's name in an MD, each of a name format, or nothing. */
std::string FaultOfMaid(const std::string& md_name, std::int32_t md_format,
                        const std::string& ma_name, std::int32_t ma_format);

/** The entity that a request names. */
struct Naming {
  std::string subject;  ///< `md "D1" ma "A1" mep 10`; `?` stands for what is missing.
  std::string faults;   ///< Empty when the names can be those of an entity.

  void AddName(const char* label, const char* field, bool present, const std::string& name,
               std::size_t min_size, std::size_t max_size);
  void AddId(const char* label, const char* field, bool present, std::uint32_t id,
             std::uint32_t min, std::uint32_t max);
};

/** An endpoint as the log calls it: `md "D1" ma "A1" mep 10`. */
std::string Subject(const MepKey& mep);

/** @name Whom a message names
 * For any message that has the fields.
 * @{ */
template <class Message>
Naming NameMd(const Message& message) {
  Naming naming;
  naming.AddName("md", "md_name", message.has_md_name(), message.md_name(), 0, kMaxMdName);
  return naming;
}

template <class Message>
Naming NameMa(const Message& message) {
  Naming naming = NameMd(message);
  naming.AddName("ma", "ma_name", message.has_ma_name(), message.ma_name(), 1, kMaxMaName);
  return naming;
}

template <class Message>
Naming NameMep(const Message& message) {
  Naming naming = NameMa(message);
  naming.AddId("mep", "mep_id", message.has_mep_id(), message.mep_id(), kMinMepId, kMaxMepId);
  return naming;
}

template <class Message>
Naming NameProbe(const Message& message) {
  Naming naming;
  naming.AddId("probe", "probe_id", message.has_probe_id(), message.probe_id(), 0, 0xffff);
  return naming;
}

template <class Message>
Naming NameSession(const Message& message) {
  Naming naming = NameProbe(message);
  naming.AddId("session", "session_id", message.has_session_id(), message.session_id(), 0, 0xffff);
  return naming;
}
/** @} */

}  // namespace cfm_mgr

#endif
