// SPDX-License-Identifier: Apache-2.0
// Domains, associations and endpoints: from a configuration to requests.
#include <cfm/identifiers.h>
#include <sepan/sepan.h>

#include <array>
#include <cstring>

#include "client_impl.h"
#include "core/hierarchy_dump.h"
#include "core/hierarchy_requests.h"
#include "log_points.h"

namespace cfm {
namespace {

std::string InterfaceName(sepan_port_t port) {
  std::array<char, 64> buffer{};
  sepan_to_intfname(port, buffer.data(), buffer.size());
  return {buffer.data(), strnlen(buffer.data(), buffer.size())};
}

}  // namespace

void ClientImpl::UpdateConfig(const hierarchy& config) {
  desired_hierarchy = std::make_shared<const core::KeptHierarchy>(config);
  if (!InStep()) {
    Log<log_point::kConfigDeferred>(log_category, server_pid, static_cast<int>(server_synced));
    return;
  }
  Apply();
}

// The text is released before anything else is built.
void ClientImpl::LogDesiredConfig() const {
  const auto desired = desired_hierarchy;
  const std::string dump = core::HierarchyDump(*desired, InterfaceName);
  Log<log_point::kApplyingConfig>(log_category);
  Log<log_point::kConfigDump>(log_category, dump.c_str());
}

void ClientImpl::Apply() {
  LogDesiredConfig();
  const auto applied = applied_hierarchy;
  const auto desired = desired_hierarchy;
  const core::HierarchyPlan plan = core::PlanHierarchy(*applied, *desired);
  ApplyDelete(plan.deletes.mds, plan.deletes.mas, plan.deletes.meps);
  ApplyCreate(plan.creates.mds, plan.creates.mas, plan.creates.meps);
  ApplyUpdate(plan.updates.mds, plan.updates.mas, plan.updates.meps);
  applied_hierarchy = desired;
}

// Bottom up, so that nothing loses its parent before it is deleted itself.
void ClientImpl::ApplyDelete(const core::MdList& mds, const core::MaList& mas,
                             const core::MepList& meps) const {
  for (const core::KeptMep* const mep : meps) {
    DeleteMep(*mep->md_name, *mep->ma_name, mep->cfg.mep_id);
  }
  for (const core::KeptMa* const ma : mas) {
    DeleteMa(ma->md_name, ma->name);
  }
  for (const core::KeptMd* const md : mds) {
    DeleteMd(md->name);
  }
}

// Top down, so that everything finds its parent.
void ClientImpl::ApplyCreate(const core::MdList& mds, const core::MaList& mas,
                             const core::MepList& meps) const {
  for (const core::KeptMd* const md : mds) {
    CreateMd(md->name, md->cfg);
  }
  for (const core::KeptMa* const ma : mas) {
    CreateMa(ma->md_name, ma->name, ma->cfg);
  }
  for (const core::KeptMep* const mep : meps) {
    CreateMep(*mep->md_name, *mep->ma_name, mep->cfg);
  }
}

void ClientImpl::ApplyUpdate(const core::MdList& mds, const core::MaList& mas,
                             const core::MepList& meps) const {
  for (const core::KeptMd* const md : mds) {
    UpdateMd(md->name, md->cfg.sender_id, md->cfg.mhf_creation);
  }
  for (const core::KeptMa* const ma : mas) {
    const st_maintenance_association_cfg& cfg = ma->cfg;
    UpdateMa(ma->md_name, ma->name, cfg.ccm_interval, cfg.sender_id, cfg.mhf_creation, cfg.mep_ids,
             cfg.ais);
  }
  for (const core::KeptMep* const mep : meps) {
    const st_maintenance_endpoint_cfg& cfg = mep->cfg;
    UpdateMep(*mep->md_name, *mep->ma_name, cfg.mep_id, cfg.primary_vid, cfg.inner_vid,
              cfg.admin_state, cfg.ccm_enabled, cfg.ccm_priority, cfg.lowest_prio_defect,
              cfg.fng_alarm_time, cfg.fng_reset_time, cfg.fault_action, cfg.aux_flag);
  }
}

void ClientImpl::CreateMd(const std::string& md_name, const st_maintenance_domain_cfg& cfg) const {
  Send(CFM_MGR_C2S_SIG_MD_CREATE, core::CreateMd(md_name, cfg));
}

void ClientImpl::UpdateMd(const std::string& md_name, SenderIdTlvContent sender_id,
                          MhfCreationMode mhf_creation) const {
  Send(CFM_MGR_C2S_SIG_MD_UPDATE, core::UpdateMd(md_name, sender_id, mhf_creation));
}

void ClientImpl::DeleteMd(const std::string& md_name) const {
  Send(CFM_MGR_C2S_SIG_MD_DELETE, core::DeleteMd(md_name));
}

void ClientImpl::CreateMa(const std::string& md_name, const std::string& ma_name,
                          const st_maintenance_association_cfg& cfg) const {
  Send(CFM_MGR_C2S_SIG_MA_CREATE, core::CreateMa(md_name, ma_name, cfg));
}

void ClientImpl::UpdateMa(const std::string& md_name, const std::string& ma_name,
                          CcmInterval ccm_interval, SenderIdTlvContent sender_id,
                          MhfCreationMode mhf_creation, const std::set<std::uint16_t>& mep_ids,
                          // The request has AIS settings of its own, as the interface has it.
                          // NOLINTNEXTLINE(performance-unnecessary-value-param)
                          st_ais_cfg ais) const {
  Send(CFM_MGR_C2S_SIG_MA_UPDATE,
       core::UpdateMa(md_name, ma_name, ccm_interval, sender_id, mhf_creation, mep_ids, ais));
}

void ClientImpl::DeleteMa(const std::string& md_name, const std::string& ma_name) const {
  Send(CFM_MGR_C2S_SIG_MA_DELETE, core::DeleteMa(md_name, ma_name));
}

void ClientImpl::CreateMep(const std::string& md_name, const std::string& ma_name,
                           const st_maintenance_endpoint_cfg& cfg) const {
  std::uint32_t ifindex = 0;
  sepan_to_ifindex(cfg.port, &ifindex);
  Send(CFM_MGR_C2S_SIG_MEP_CREATE, core::CreateMep(md_name, ma_name, cfg, ifindex));
}

void ClientImpl::UpdateMep(const std::string& md_name, const std::string& ma_name,
                           std::uint16_t mep_id, std::uint16_t primary_vid, std::uint16_t inner_vid,
                           bool admin_state, bool ccm_enabled, std::uint8_t ccm_priority,
                           Defects lowest_prio_defect, std::uint16_t fng_alarm_time,
                           std::uint16_t fng_reset_time, FaultAction fault_action,
                           bool aux_flag) const {
  Send(CFM_MGR_C2S_SIG_MEP_UPDATE,
       core::UpdateMep(md_name, ma_name, mep_id, primary_vid, inner_vid, admin_state, ccm_enabled,
                       ccm_priority, lowest_prio_defect, fng_alarm_time, fng_reset_time,
                       fault_action, aux_flag));
}

void ClientImpl::DeleteMep(const std::string& md_name, const std::string& ma_name,
                           std::uint16_t mep_id) const {
  Send(CFM_MGR_C2S_SIG_MEP_DELETE, core::DeleteMep(md_name, ma_name, mep_id));
}

}  // namespace cfm
