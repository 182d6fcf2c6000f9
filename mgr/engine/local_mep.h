/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_LOCAL_MEP_H
#define CFM_MGR_ENGINE_LOCAL_MEP_H

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "engine/ais_sender.h"
#include "engine/ccm_sender.h"
#include "engine/context.h"
#include "engine/defects.h"
#include "engine/fault_notifier.h"
#include "engine/mep_settings.h"
#include "engine/remote_mep.h"
#include "pdu/ccm.h"

namespace cfm_mgr::engine {

/**
 * A MEP of this bridge: continuity check, defects, fault notification, AIS.
 *
 * It runs while it is active, its port is there and its names make a MAID; only then does it get
 * frames and send them.
 */
class LocalMep {
 public:
  LocalMep(Context& context, MepSettings settings);
  LocalMep(const LocalMep&) = delete;
  LocalMep& operator=(const LocalMep&) = delete;
  ~LocalMep() = default;

  /** @name Configuration
   * @{ */
  /** Takes settings of the same place. */
  void Configure(Time now, MepSettings settings);
  /** What is known of its port now; null when the port is not there. */
  void SetPort(Time now, const PortInfo* port);
  /** Stops for good. */
  void Shut(Time now);
  /** @} */

  const MepSettings& settings() const { return settings_; }
  bool running() const { return running_; }
  /** Its own address; zero while its port is not there. */
  Mac mac() const { return port_ ? port_->mac : Mac{}; }

  /** @name Frames that are for it
   * Of its service and from the side that it faces, while it runs.
   * @{ */
  void ReceiveCcm(Time now, const Frame& frame);
  /** A CCM of a lower level. */
  void ReceiveLowerCcm(Time now, const Frame& frame);
  void ReceiveAis(Time now, const Frame& frame);
  /** @} */

  /** @name Frames that it sends
   * @{ */
  /** A frame with its address as source and its tags. */
  Frame MakeFrame(const Mac& destination, std::vector<std::uint8_t> pdu, std::uint8_t pcp) const;
  /** Sends to the side that it faces. */
  void Transmit(const Frame& frame) const;
  /** The Sender ID TLV of its PDUs, if its association allows one. Points into the MEP. */
  std::optional<pdu::SenderId> sender_id() const;
  /** @} */

  /** @name State
   * @{ */
  const LocalMepStatus& status() const { return status_; }
  LocalMepCounters counters() const;
  void ClearCounters();
  /** Null when its association's MEP list has no such other MEP. */
  const RemoteMep* FindRemote(std::uint32_t mep_id) const;
  FaultState fault_state() const { return fault_notifier_.state(); }
  /** @} */

 private:
  void Refresh(Time now);
  void StartRunning(Time now);
  void StopRunning(Time now);
  void ConfigureCcms(Time now);
  void ConfigureRemotes(Time now);
  RemoteMep& AddRemote(std::uint16_t mep_id);

  bool IsAddressed(const Frame& frame);
  Defects FindDefects() const;
  bool IsPortPassing() const;
  void HoldDefect(Time now, HeldDefect& defect, Time duration);
  void Reevaluate(Time now);
  LocalMepStatus MakeStatus(const Defects& defects) const;
  void SendAis(Time now);

  Context& context_;
  MepSettings settings_;
  std::optional<PortInfo> port_;
  bool running_ = false;

  CcmSender ccm_sender_;
  RemoteDefects remote_defects_;  ///< Counts the remotes, which know it.
  std::map<std::uint16_t, RemoteMep> remotes_;
  HeldDefect error_ccm_;
  HeldDefect xcon_ccm_;
  HeldDefect ais_;
  FaultNotifier fault_notifier_;
  AisSender ais_sender_;
  std::uint64_t sequence_errors_ = 0;
  LocalMepStatus status_;
};

}  // namespace cfm_mgr::engine

#endif
