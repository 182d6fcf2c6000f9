/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_LOOPBACK_INITIATOR_H
#define CFM_MGR_ENGINE_LOOPBACK_INITIATOR_H

#include <cstdint>
#include <optional>
#include <vector>

#include "engine/notifications.h"
#include "engine/pacer.h"
#include "pdu/loopback.h"

namespace cfm_mgr::engine {

struct LoopbackSettings {
  std::uint8_t level = 0;
  Mac target{};
  std::uint32_t first_transaction_id = 0;
  std::uint32_t count = 0;
  std::uint32_t data_size = 0;  ///< Octets of the Data TLV; 0: no Data TLV.
};

/**
 * One loopback test, IEEE 802.1Q 20.2.
 *
 * LBMs go out at a fixed pace whatever comes back, so that several are under way when the network
 * is slow and replies can overtake each other. The test ends kReplyWait after the last one.
 */
class LoopbackInitiator {
 public:
  static constexpr Time kPace = std::chrono::milliseconds(100);

  LoopbackInitiator(Time start, const LoopbackSettings& settings)
      : settings_(settings),
        pacer_(start, settings.count, kPace, kReplyWait),
        expected_id_(settings.first_transaction_id) {}

  const Mac& target() const { return settings_.target; }
  Time NextDeadline() const { return pacer_.NextDeadline(); }
  bool Ended(Time now) const { return pacer_.Ended(now); }

  /** The LBM that is to be sent now, if one is. */
  std::optional<std::vector<std::uint8_t>> TakeDue(Time now);

  /**
   * Counts a reply. It is in order when its transaction identifier follows that of the reply before
   * it, so that a gap counts once and what is late or there twice counts each time.
   * @return Whether it answers an LBM of this test.
   */
  bool OnReply(const Mac& source, const pdu::Loopback& lbr, pdu::OctetView octets);

  LoopbackResult Result() const;

 private:
  std::vector<std::uint8_t> BuildLbm(std::uint32_t transaction_id) const;

  LoopbackSettings settings_;
  Pacer pacer_;
  std::uint32_t expected_id_;
  LoopbackResult result_;
};

}  // namespace cfm_mgr::engine

#endif
