/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * The CFM protocol of one bridge, IEEE 802.1Q clause 21 and ITU-T Y.1731, without any I/O.
 *
 * Frames and the time go in; frames and notifications come out. There is no socket, thread or clock
 * inside, and all that is random comes from the seed, so that a run can be repeated exactly and
 * hours of protocol time take milliseconds.
 *
 * An owner keeps the time: whatever it does, it passes the moment at which that happens, never an
 * earlier one than before, and calls Advance() when the moment that NextDeadline() names has come.
 */
#ifndef CFM_MGR_ENGINE_ENGINE_H
#define CFM_MGR_ENGINE_ENGINE_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "engine/drops.h"
#include "engine/notifications.h"
#include "engine/surroundings.h"
#include "model.h"
#include "trigger_error.h"

namespace cfm_mgr::engine {

/** A port as its surroundings report it. Status codes are those of the IEEE 802.1ag MIB. */
struct PortInfo {
  Mac mac{};
  std::uint8_t interface_status = 1;  ///< 1 up to 7 lower layer down.
  std::uint8_t port_status = 2;       ///< 1 blocked, 2 up.
  std::string name;                   ///< As linktrace replies give it (port ID subtype 5).
};

/** What became of a frame that met the MPs of a port. */
enum class Verdict {
  Pass,  ///< Not theirs: it goes on to the other side.
  Stop,  ///< Taken, answered, or dropped.
};

/** A test that has begun, or why it has not. */
struct StartedTest {
  std::optional<TriggerError> error;
  Mac target{};
  std::uint32_t transaction_id = 0;  ///< Of a linktrace.
};

struct LoopbackRequest {
  std::uint32_t request_id = 0;
  MepKey mep;
  std::uint32_t remote_mep_id = 0;
  std::uint32_t count = 0;      ///< LBMs to send, 1 to 1024; 0 is 1.
  std::uint32_t data_size = 0;  ///< Octets of the Data TLV, 0 to 1480.
};

struct LinktraceRequest {
  std::uint32_t request_id = 0;
  MepKey mep;
  std::uint32_t remote_mep_id = 0;
  std::uint32_t ttl = 0;     ///< 1 to 255; 0 is 64.
  bool use_fdb_only = true;  ///< Bridges answer from their filtering databases alone.
};

struct DelayRequest {
  std::uint32_t request_id = 0;
  MepKey mep;
  std::uint32_t remote_mep_id = 0;
  std::uint32_t count = 0;        ///< DMMs to send, 1 to 1024; 0 is 10.
  std::uint32_t interval_ms = 0;  ///< 10 to 60000; 0 is 100.
  std::uint32_t size = 0;  ///< Octets of the frame, tags and FCS left out, 64 to 1514; 0 is 64.
  std::uint8_t pcp = 0;
};

/** The protocol of one bridge. */
class Engine {
 public:
  /** What is passed lives at least as long as the engine. */
  Engine(Surroundings& surroundings, Notifications& notifications, std::uint64_t seed);
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;
  ~Engine();

  /** @name Configuration
   * @{ */
  /** Makes a port known, or what is known of it new. */
  void SetPort(Time now, PortId port, const PortInfo& info);
  void RemovePort(Time now, PortId port);

  /**
   * Makes an association and its endpoints be as given. An endpoint that stays as it was keeps its
   * state; one whose port, direction, level or VIDs changed begins anew.
   */
  void SetAssociation(Time now, const MaKey& key, const DomainSettings& domain,
                      const Association& association);
  void RemoveAssociation(Time now, const MaKey& key);

  /** Begins the sessions of a probe; one that stays as it was goes on. */
  void SetProbe(Time now, std::uint32_t probe_id, const Probe& probe);
  void RemoveProbe(Time now, std::uint32_t probe_id);
  /** @} */

  /** @name Running
   * @{ */
  Verdict Receive(Time now, PortId port, Side from, const Frame& frame);
  void Advance(Time now);
  /** When Advance() has something to do next; none while nothing is running. */
  std::optional<Time> NextDeadline() const;
  /** @} */

  /** @name Tests on demand
   * An error means that nothing was begun and nothing will be notified.
   * @{ */
  StartedTest StartLoopback(Time now, const LoopbackRequest& request);
  StartedTest StartLinktrace(Time now, const LinktraceRequest& request);
  StartedTest StartDelayMeasurement(Time now, const DelayRequest& request);
  /** @} */

  /** @name State
   * None for an endpoint that the engine does not have.
   * @{ */
  std::optional<LocalMepStatus> LocalStatus(const MepKey& mep) const;
  std::optional<RemoteMepStatus> RemoteStatus(const MepKey& mep, std::uint32_t remote) const;
  std::optional<LocalMepCounters> Counters(const MepKey& mep) const;
  /** Sequence number of the last CCM of a remote MEP. */
  std::optional<std::uint32_t> LastSequenceNumber(const MepKey& mep, std::uint32_t remote) const;
  void ClearCounters(const MepKey& mep);
  /** What was dropped at a port, since it was made known. */
  DropCounters DropsAt(PortId port) const;
  /** @} */

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace cfm_mgr::engine

#endif
