/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_CCM_SENDER_H
#define CFM_MGR_ENGINE_CCM_SENDER_H

#include <cstdint>

#include "engine/ccm_interval.h"
#include "engine/context.h"

namespace cfm_mgr::engine {

/**
 * Sends the CCMs of one MEP, IEEE 802.1Q 20.11.
 *
 * The frame is kept; only what changes from CCM to CCM is written anew. The first CCM goes out when
 * sending starts and the second one after a random part of the interval, all others an interval
 * later each: MEPs that start together do not send together for ever.
 */
class CcmSender {
 public:
  explicit CcmSender(Context& context);

  /** What is sent from now on; the sequence number in it does not count. */
  void SetFrame(PortId port, Side side, Frame frame);
  /** Changes the RDI flag of what is sent. */
  void SetRdi(bool rdi);

  /** Goes on as before when it is sending at this interval already. */
  void Start(Time now, std::uint8_t interval);
  void Stop();

  std::uint32_t last_sequence() const { return sequence_; }
  std::uint64_t sent() const { return sent_; }
  void ClearSent() { sent_ = 0; }

 private:
  void Send(Time now);
  void Schedule(Time now);

  Context& context_;
  Timer timer_;
  PortId port_ = 0;
  Side side_ = Side::Wire;
  Frame frame_;
  std::uint8_t interval_ = 0;  ///< 0: not sending.
  bool paced_ = false;         ///< Whether pace_ holds yet.
  CcmPace pace_;
  std::uint32_t sequence_ = 0;
  std::uint64_t sent_ = 0;
};

}  // namespace cfm_mgr::engine

#endif
