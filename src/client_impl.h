/* SPDX-License-Identifier: Apache-2.0 */
// What stands behind cfm::Client: the state, and the shell around core/ that sends requests, takes
// what the server sends, logs and calls handlers.
//
// The members are spread over one source file per subsystem:
//   client_impl.cc        lifecycle, presence, registration, the send path
//   configuration.cc      domains, associations and endpoints
//   probes.cc             delay-measurement probes
//   cache_sync.cc         getting in step with the server
//   status.cc, statistics.cc, linktrace.cc, loopback.cc, delay_measurement.cc
#ifndef CFM_SRC_CLIENT_IMPL_H
#define CFM_SRC_CLIENT_IMPL_H

#include <cfm/handlers.h>
#include <cfm/hierarchy.h>
#include <cfm/loopback.h>
#include <cfm/probe.h>
#include <vorx/vorx.h>
#include <zlog.h>

#include <array>
#include <cstdint>
#include <memory>
#include <set>
#include <string>

#include "core/hierarchy_plan.h"
#include "core/kept_hierarchy.h"
#include "log.h"

namespace google::protobuf {
class MessageLite;
}
namespace client_server {
class OpCacheSync;
}

namespace cfm {

class ClientImpl {
 public:
  explicit ClientImpl(vorx_t* handle);
  ClientImpl(const ClientImpl&) = delete;
  ClientImpl& operator=(const ClientImpl&) = delete;
  ~ClientImpl();

  void RegisterStatusHandler(ReceivedStatusHandlerIntf* handler);
  void RegisterStatisticsHandler(ReceivedStatisticsHandlerIntf* handler);
  void RegisterLinktraceHandler(ReceivedLinktraceHandlerIntf* handler);
  void RegisterLoopbackHandler(ReceivedLoopbackHandlerIntf* handler);
  void RegisterDelayMeasurementHandler(ReceivedDelayMeasurementHandlerIntf* handler);

  void UpdateConfig(const hierarchy& config);
  void UpdateConfigProbe(const probe& config);
  void RequestStatistics() const;
  void ClearStatistics(const char* md_name, const char* ma_name, std::uint16_t mep_id) const;
  void LinktraceTrigger(const linktrace_trigger& trigger);
  void LoopbackTrigger(const loopback_trigger& trigger) const;
  void DelayMeasurementTrigger(const delay_measurement_trigger& trigger) const;

 private:
  // Presence
  static void ServerFound(vorx_t*, const vorx_pid_t* pid, void* user);
  static void ServerLost(vorx_t*, void* user);

  // Signals
  static void ReqCacheReply(vorx_t*, void* user, const vorx_pid_t*, void* data, unsigned length);
  static void ReqStatsReply(vorx_t*, void* user, const vorx_pid_t*, void* data, unsigned length);
  static void HandleLinktraceTriggerError(vorx_t*, void* user, const vorx_pid_t*, void* data,
                                          unsigned length);
  static void HandleLoopbackTriggerError(vorx_t*, void* user, const vorx_pid_t*, void* data,
                                         unsigned length);
  static void HandleDelayMeasurementTriggerError(vorx_t*, void* user, const vorx_pid_t*, void* data,
                                                 unsigned length);

  // Events
  static void HandleStatusLocalMep(vorx_t*, void* user, void* data, unsigned length);
  static void HandleStatusRemoteMep(vorx_t*, void* user, void* data, unsigned length);
  static void HandleRemovedLocalMep(vorx_t*, void* user, void* data, unsigned length);
  static void HandleRemovedRemoteMep(vorx_t*, void* user, void* data, unsigned length);
  static void HandleMepLinktraceStarted(vorx_t*, void* user, void* data, unsigned length);
  static void HandleMepLinktraceEnded(vorx_t*, void* user, void* data, unsigned length);
  static void HandleMepLinktraceReplyRx(vorx_t*, void* user, void* data, unsigned length);
  static void HandleLoopbackStarted(vorx_t*, void* user, void* data, unsigned length);
  static void HandleLoopbackReplyRx(vorx_t*, void* user, void* data, unsigned length);
  static void HandleLoopbackEnded(vorx_t*, void* user, void* data, unsigned length);
  static void HandleDelayMeasurementStarted(vorx_t*, void* user, void* data, unsigned length);
  static void HandleDelayMeasurementReplyRx(vorx_t*, void* user, void* data, unsigned length);
  static void HandleDelayMeasurementEnded(vorx_t*, void* user, void* data, unsigned length);
  static void HandleDelayMeasurementSessionEnded(vorx_t*, void* user, void* data, unsigned length);

  void RegisterSignalHandlers();

  // The send path. Results are not looked at: requests are sent and forgotten.
  void Send(const vorx_sig_descriptor* signal) const;
  void Send(const vorx_sig_descriptor* signal, const google::protobuf::MessageLite& message) const;
  template <const LogPoint& Serializing, const LogPoint& Sending, const LogPoint& Sent>
  void SendTrigger(const vorx_sig_descriptor* signal,
                   const google::protobuf::MessageLite& message) const;
  void SendBytes(const vorx_sig_descriptor* signal, const std::string& bytes) const;

  // Whether configuration may be sent, or has to wait for the next cache reply.
  bool InStep() const { return server_pid != 0 && server_synced; }

  // Configuration
  void Apply();
  void LogDesiredConfig() const;
  void ApplyDelete(const core::MdList& mds, const core::MaList& mas,
                   const core::MepList& meps) const;
  void ApplyCreate(const core::MdList& mds, const core::MaList& mas,
                   const core::MepList& meps) const;
  void ApplyUpdate(const core::MdList& mds, const core::MaList& mas,
                   const core::MepList& meps) const;
  void CreateMd(const std::string& md_name, const st_maintenance_domain_cfg& cfg) const;
  void UpdateMd(const std::string& md_name, SenderIdTlvContent sender_id,
                MhfCreationMode mhf_creation) const;
  void DeleteMd(const std::string& md_name) const;
  void CreateMa(const std::string& md_name, const std::string& ma_name,
                const st_maintenance_association_cfg& cfg) const;
  void UpdateMa(const std::string& md_name, const std::string& ma_name, CcmInterval ccm_interval,
                SenderIdTlvContent sender_id, MhfCreationMode mhf_creation,
                const std::set<std::uint16_t>& mep_ids, st_ais_cfg ais) const;
  void DeleteMa(const std::string& md_name, const std::string& ma_name) const;
  void CreateMep(const std::string& md_name, const std::string& ma_name,
                 const st_maintenance_endpoint_cfg& cfg) const;
  void UpdateMep(const std::string& md_name, const std::string& ma_name, std::uint16_t mep_id,
                 std::uint16_t primary_vid, std::uint16_t inner_vid, bool admin_state,
                 bool ccm_enabled, std::uint8_t ccm_priority, Defects lowest_prio_defect,
                 std::uint16_t fng_alarm_time, std::uint16_t fng_reset_time,
                 FaultAction fault_action, bool aux_flag) const;
  void DeleteMep(const std::string& md_name, const std::string& ma_name,
                 std::uint16_t mep_id) const;

  // Probes
  void ApplyDelayMeasurementProbe();
  void LogDesiredProbes() const;
  void CreateDelayMeasurementProbe(std::uint16_t probe_id, const probe_cfg& cfg) const;
  void DeleteDelayMeasurementProbe(std::uint16_t probe_id) const;
  void CreateDelayMeasurementSession(std::uint16_t probe_id, std::uint16_t session_id,
                                     const session_cfg& cfg) const;
  void DeleteDelayMeasurementSession(std::uint16_t probe_id, std::uint16_t session_id) const;

  // Cache synchronisation
  void ReqCacheReplyHierarchy(const client_server::OpCacheSync& cache);
  void ReqCacheReplyProbe(const client_server::OpCacheSync& cache);
  void RecreateHierarchy() const;

  vorx_t* const token;
  ReceivedStatusHandlerIntf* status_handler = nullptr;
  ReceivedStatisticsHandlerIntf* statistics_handler = nullptr;
  ReceivedLinktraceHandlerIntf* linktrace_handler = nullptr;
  ReceivedLoopbackHandlerIntf* loopback_handler = nullptr;
  ReceivedDelayMeasurementHandlerIntf* delay_measurement_handler = nullptr;
  zlog_category_t* log_category = nullptr;
  vorx_subscription_t* subscription = nullptr;
  vorx_pid_t server_pid = 0;  // 0 while the server is absent
  // Configurations never change, so that taking one over copies nothing and cannot fail halfway.
  std::shared_ptr<const core::KeptHierarchy>
      desired_hierarchy;  // as the application handed it in last
  std::shared_ptr<const core::KeptHierarchy>
      applied_hierarchy;  // as the server is believed to hold it
  // In the order of registration; null where it did not succeed. Part of the client, so that no
  // memory is needed any more once the host knows it.
  std::array<vorx_registration_t*, 5> signal_registrations{};
  std::array<vorx_eventreg_t*, 14> event_registrations{};
  bool server_synced = false;  // a cache reply of the present server was applied
  std::shared_ptr<const probe> desired_probes;
  std::shared_ptr<const probe> applied_probes;
};

}  // namespace cfm

#endif
