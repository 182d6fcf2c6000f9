/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * What an engine tells its owner.
 */
#ifndef CFM_MGR_ENGINE_NOTIFICATIONS_H
#define CFM_MGR_ENGINE_NOTIFICATIONS_H

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "engine/frame.h"
#include "engine/time.h"
#include "model.h"

namespace cfm_mgr::engine {

/** Status of a local MEP. Codes are those of the IEEE 802.1ag MIB. */
struct LocalMepStatus {
  Mac mac{};
  std::uint32_t highest_defect_priority = 0;
  std::uint8_t interface_status = 0;
  std::uint32_t port_status = 0;
  bool blocked = false;    ///< The fault action blocks the port.
  bool shut_down = false;  ///< The fault action has shut the port down.
  bool rdi = false;        ///< CCMs sent carry RDI.
  bool defect_rdi = false;
  bool defect_mac_status = false;
  bool defect_remote_ccm = false;
  bool defect_error_ccm = false;
  bool defect_xcon_ccm = false;
  bool defect_ais = false;
};

inline bool operator==(const LocalMepStatus& a, const LocalMepStatus& b) {
  const auto fields = [](const LocalMepStatus& s) {
    return std::tie(s.mac, s.highest_defect_priority, s.interface_status, s.port_status, s.blocked,
                    s.shut_down, s.rdi, s.defect_rdi, s.defect_mac_status, s.defect_remote_ccm,
                    s.defect_error_ccm, s.defect_xcon_ccm, s.defect_ais);
  };
  return fields(a) == fields(b);
}

/** Status of a remote MEP as one local MEP sees it. */
struct RemoteMepStatus {
  Mac mac{};
  std::string sender_id;  ///< What the Sender ID TLV names, as text.
  std::uint32_t state = 0;
  std::uint32_t port_status = 0;
  std::uint8_t interface_status = 0;
  bool rdi = false;
  Time last_change{};  ///< When the state changed last.
};

struct LocalMepCounters {
  std::uint64_t ccm_sequence_errors = 0;
  std::uint32_t ccm_sequence_number = 0;  ///< Of the CCM sent last.
  std::uint64_t ccms_sent = 0;
};

/** The ingress or egress port of a linktrace reply. */
struct ReplyPort {
  std::uint8_t action = 0;
  Mac mac{};
  std::optional<std::uint8_t> port_id_subtype;  ///< None when there is no port identifier.
  std::vector<std::uint8_t> port_id;
};

/** A linktrace reply that came back. */
struct LinktraceReply {
  Mac destination{};
  Mac source{};
  std::uint16_t vid = 0;
  std::uint8_t pcp = 0;
  std::optional<std::uint16_t> inner_vid;
  std::uint8_t inner_pcp = 0;
  std::uint8_t level = 0;
  bool terminal_mep = false;
  bool forwarded = false;
  bool use_fdb_only = false;
  std::uint32_t transaction_id = 0;
  std::uint8_t ttl = 0;
  std::uint8_t relay_action = 0;
  std::array<std::uint8_t, 8> last_egress{};  ///< Two octets, then an address.
  std::array<std::uint8_t, 8> next_egress{};
  std::optional<ReplyPort> ingress;
  std::optional<ReplyPort> egress;
};

struct LoopbackResult {
  std::uint64_t expected = 0;
  std::uint64_t in_order = 0;
  std::uint64_t out_of_order = 0;
  std::uint64_t wrong_payload = 0;
};

/** Least, mean and greatest of some durations; zero when there were none. */
struct DelaySummary {
  Time min{};
  double mean = 0;  ///< In nanoseconds.
  Time max{};
};

struct DelayResult {
  std::uint64_t sent = 0;
  std::uint64_t received = 0;  ///< Replies that count: in time, and each once.
  std::uint64_t rejected = 0;  ///< Replies that came late or twice, or whose times make no sense.
  DelaySummary delay;          ///< Two-way delay.
  DelaySummary variation;      ///< Between replies that follow each other.
  double deviation = 0;        ///< Standard deviation of the delay, in nanoseconds.
};

/** How a probe's session ended. */
enum class SessionEnd : std::uint8_t {
  Complete = 0,    ///< All its frames were sent and waited for.
  Removed = 1,     ///< The session or its probe was deleted or changed.
  MepRemoved = 2,  ///< The local endpoint went away, or is not active any more.
};

struct SessionResult {
  std::uint32_t probe_id = 0;
  std::uint32_t session_id = 0;
  SessionEnd end = SessionEnd::Complete;
  std::uint32_t run = 0;  ///< Number of the measurement period, from 1.
  Time start{};
  Time finish{};
  DelayResult delay;
};

/** Called synchronously by the engine; must not call back into it. */
class Notifications {
 public:
  Notifications() = default;
  Notifications(const Notifications&) = delete;
  Notifications& operator=(const Notifications&) = delete;
  virtual ~Notifications() = default;

  /** Something in the status of a local MEP changed; ask the engine for it when it is needed. */
  virtual void OnLocalMepChanged(const MepKey& mep) = 0;
  virtual void OnRemoteMepChanged(const MepKey& mep, std::uint32_t remote_mep_id) = 0;
  /** The fault notification generator raised an alarm for this defect priority. */
  virtual void OnFaultAlarm(const MepKey& mep, std::uint32_t defect_priority) = 0;

  virtual void OnLoopbackReply(std::uint32_t request_id, const Mac& source,
                               std::uint32_t transaction_id) = 0;
  virtual void OnLoopbackEnded(std::uint32_t request_id, const LoopbackResult& result) = 0;
  virtual void OnLinktraceReply(const MepKey& mep, const LinktraceReply& reply) = 0;
  virtual void OnLinktraceEnded(const MepKey& mep, std::uint32_t transaction_id) = 0;
  virtual void OnDelayReply(std::uint32_t request_id, const Mac& source) = 0;
  virtual void OnDelayEnded(std::uint32_t request_id, const DelayResult& result) = 0;
  virtual void OnSessionEnded(const SessionResult& result) = 0;
};

}  // namespace cfm_mgr::engine

#endif
