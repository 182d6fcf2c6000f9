/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_REMOTE_MEP_H
#define CFM_MGR_ENGINE_REMOTE_MEP_H

#include <cstdint>
#include <functional>
#include <vector>

#include "engine/notifications.h"
#include "engine/timer_queue.h"
#include "pdu/ccm.h"

namespace cfm_mgr::engine {

/** States of the remote MEP state machine, IEEE 802.1Q 20.20; the codes of the MIB. */
enum class RemoteState : std::uint8_t { Idle = 1, Start = 2, Failed = 3, Ok = 4 };

/** How many of a MEP's remote MEPs account for each defect. */
struct RemoteDefects {
  std::uint32_t rdi = 0;
  std::uint32_t lost = 0;
  std::uint32_t interface = 0;
  std::uint32_t port = 0;
};

/** What one MEP knows of another one of its association. */
class RemoteMep {
 public:
  /**
   * @param defects Where it is counted with the defects that it accounts for, always up to date.
   * @param on_lost Called when no CCM has come for 3.5 intervals, after the state has changed.
   */
  RemoteMep(TimerQueue& timers, RemoteDefects& defects, std::function<void(Time now)> on_lost);
  RemoteMep(const RemoteMep&) = delete;
  RemoteMep& operator=(const RemoteMep&) = delete;
  ~RemoteMep() { Count({}); }

  /** Begins to wait for CCMs of this interval; with 0 it waits for ever. */
  void Start(Time now, std::uint8_t interval);
  /** Forgets all. */
  void Stop(Time now);
  /** When the interval becomes another one, the wait for the next CCM begins anew. */
  void SetInterval(Time now, std::uint8_t interval);

  /** What a CCM made different. */
  struct Effect {
    bool status_changed = false;
    bool sequence_error = false;
  };
  /** Takes a CCM that is without fault. */
  Effect Receive(Time now, const pdu::Ccm& ccm, const Mac& source);

  RemoteState state() const { return static_cast<RemoteState>(status_.state); }
  const RemoteMepStatus& status() const { return status_; }
  /** Of the last CCM; 0 when there was none or it was not numbered. */
  std::uint32_t last_sequence() const { return last_sequence_; }

 private:
  /** Makes @p defects, of 0 and 1, be its part of the counters. */
  void Count(const RemoteDefects& defects);
  RemoteDefects FindDefects() const;
  void Enter(Time now, RemoteState state);
  void ForgetReport();
  void ArmTimer(Time now);
  void Expire(Time now);
  bool TakeSenderId(const pdu::Ccm& ccm);

  Timer timer_;
  RemoteDefects& defects_;
  RemoteDefects counted_;  ///< Its part of them.
  std::function<void(Time now)> on_lost_;
  Time lifetime_{};  ///< 0: for ever.
  RemoteMepStatus status_;
  std::uint32_t last_sequence_ = 0;
  std::vector<std::uint8_t> sender_id_;  ///< As it came.
};

}  // namespace cfm_mgr::engine

#endif
