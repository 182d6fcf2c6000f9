/* SPDX-License-Identifier: Apache-2.0 */
// The members of the configuration's records by name, what lies under keys left out: for filling,
// changing, emptying and printing them one by one.
#ifndef CFM_TESTS_LIBRARY_DIFFERENTIAL_RECORD_FIELDS_H
#define CFM_TESTS_LIBRARY_DIFFERENTIAL_RECORD_FIELDS_H

#include <cfm/hierarchy.h>
#include <cfm/probe.h>

#include <cstddef>

namespace cfm_test {

template <typename Visit>
void ForEachField(cfm::hierarchy_md& md, Visit visit) {
  visit("format", md.cfg.format);
  visit("level", md.cfg.level);
  visit("sender_id", md.cfg.sender_id);
  visit("mhf_creation", md.cfg.mhf_creation);
}

template <typename Visit>
void ForEachField(cfm::hierarchy_ma& ma, Visit visit) {
  visit("md_name", ma.md_name);
  visit("format", ma.cfg.format);
  visit("vids", ma.cfg.vids);
  visit("ccm_interval", ma.cfg.ccm_interval);
  visit("mep_ids", ma.cfg.mep_ids);
  visit("sender_id", ma.cfg.sender_id);
  visit("mhf_creation", ma.cfg.mhf_creation);
  visit("ais.enabled", ma.cfg.ais.enabled);
  visit("ais.octet_a", ma.cfg.ais.octet_a);
  visit("ais.word_b", ma.cfg.ais.word_b);
  visit("ais.id_set", ma.cfg.ais.id_set);
  visit("ais.octet_c", ma.cfg.ais.octet_c);
  visit("ais.flag_d", ma.cfg.ais.flag_d);
}

template <typename Visit>
void ForEachField(cfm::hierarchy_mep& mep, Visit visit) {
  visit("md_name", mep.md_name);
  visit("ma_name", mep.ma_name);
  visit("mep_id", mep.cfg.mep_id);
  visit("direction", mep.cfg.direction);
  visit("port", mep.cfg.port);
  visit("primary_vid", mep.cfg.primary_vid);
  visit("inner_vid", mep.cfg.inner_vid);
  visit("admin_state", mep.cfg.admin_state);
  visit("ccm_enabled", mep.cfg.ccm_enabled);
  visit("ccm_priority", mep.cfg.ccm_priority);
  visit("lowest_prio_defect", mep.cfg.lowest_prio_defect);
  visit("fng_alarm_time", mep.cfg.fng_alarm_time);
  visit("fng_reset_time", mep.cfg.fng_reset_time);
  visit("fault_action", mep.cfg.fault_action);
  visit("aux_flag", mep.cfg.aux_flag);
}

template <typename Visit>
void ForEachField(cfm::probe_cfg& probe, Visit visit) {
  visit("id", probe.id);
  visit("interval", probe.interval);
  visit("md", probe.md);
  visit("ma", probe.ma);
  visit("lmep", probe.lmep);
  visit("rmep", probe.rmep);
}

template <typename Visit>
void ForEachField(cfm::session_cfg& session, Visit visit) {
  visit("count", session.count);
  visit("interval", session.interval);
  visit("size", session.size);
  visit("pcp", session.pcp);
}

template <typename Record>
std::size_t FieldCount(Record& record) {
  std::size_t count = 0;
  ForEachField(record, [&](const char*, const auto&) { ++count; });
  return count;
}

}  // namespace cfm_test

#endif
