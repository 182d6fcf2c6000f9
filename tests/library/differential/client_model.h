/* SPDX-License-Identifier: Apache-2.0 */
// What a client has to do, written step by step from the rules, with no regard to speed: working
// sets of copies, look-ups by key, requests made at the end.
#ifndef CFM_TESTS_LIBRARY_DIFFERENTIAL_CLIENT_MODEL_H
#define CFM_TESTS_LIBRARY_DIFFERENTIAL_CLIENT_MODEL_H

#include <cfm/hierarchy.h>
#include <cfm/probe.h>
#include <google/protobuf/message_lite.h>

#include <initializer_list>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "rules.h"
#include "trace.h"

namespace cfm_test {

class ClientModel {
 public:
  explicit ClientModel(RuleCounts& rules) : rules_(rules) {}

  void ServerFound(vorx_pid_t pid);
  void ServerLost();
  void UpdateConfig(const cfm::hierarchy& config);
  void UpdateConfigProbe(const cfm::probe& config);
  void CacheReply(const std::string& payload);

  Trace Take() { return std::exchange(trace_, {}); }

 private:
  struct WorkingSets {
    std::map<std::string, cfm::hierarchy_md> mds;
    std::map<std::pair<std::string, std::string>, cfm::hierarchy_ma> mas;
    std::vector<cfm::hierarchy_mep> meps;
  };

  struct Comparison {
    bool differs;
    Rule rule;
  };
  bool AnyDiffers(std::initializer_list<Comparison> comparisons);

  void Log(const std::string& text);
  void Send(const vorx_sig_descriptor* signal);
  void Send(const vorx_sig_descriptor* signal, const google::protobuf::MessageLite& message);
  void LogDeferred();

  void Apply();
  void PassOverApplied();
  void CompareMa(const std::string& md_name, const std::string& ma_name,
                 const cfm::hierarchy_ma& old_ma, const cfm::hierarchy_md& md, bool md_recreated);
  void CompareMep(std::uint16_t key, const cfm::hierarchy_mep& old_mep, const cfm::hierarchy_ma& ma,
                  bool ma_recreated);
  bool MepSettingsAgree(const cfm::st_maintenance_endpoint_cfg& old_cfg,
                        const cfm::st_maintenance_endpoint_cfg& cfg);
  void PassOverDesired();
  void LookUpMep(const std::string& md_name, std::uint16_t key, const cfm::hierarchy_mep& mep);
  void ApplyDelete();
  void ApplyCreate();
  void ApplyUpdate();

  void ApplyProbes();
  void CreateProbes();
  void CreateChanged(std::uint16_t key, const cfm::probe_cfg& probe, const cfm::probe_cfg& old);
  bool SessionChanged(const cfm::session_cfg& old, const cfm::session_cfg& session);
  void DeleteProbes();

  void DecideHierarchy(const std::map<std::string, cfm::hierarchy_md>& servers);
  void SendAppliedAgain();
  void DecideProbes(const std::map<std::uint16_t, cfm::probe_cfg>& servers);

  RuleCounts& rules_;
  Trace trace_;
  vorx_pid_t server_pid_ = 0;
  bool server_synced_ = false;
  cfm::hierarchy desired_;
  cfm::hierarchy applied_;
  cfm::probe desired_probes_;
  cfm::probe applied_probes_;
  WorkingSets to_delete_;
  WorkingSets to_create_;
  WorkingSets to_update_;
  std::set<std::pair<std::string, std::string>> added_mas_;  // for the counts only
};

}  // namespace cfm_test

#endif
