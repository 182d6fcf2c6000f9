/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Bridges with an engine each, joined by links, in virtual time.
 *
 * A bridge learns addresses: what the MPs of a port let pass to the relay goes to the port behind
 * which its destination was seen, or to all other ports. A link takes no time and loses nothing
 * unless its test says so.
 */
#ifndef CFM_TESTS_ENGINE_VIRTUAL_NETWORK_H
#define CFM_TESTS_ENGINE_VIRTUAL_NETWORK_H

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "engine/engine.h"
#include "recorded_tests.h"
#include "relay_table.h"

namespace cfm_mgr::engine {

class VirtualNetwork;

/** A frame that an engine sent. */
struct SentFrame {
  Time time{};
  PortId port = 0;
  Side side = Side::Wire;
  Frame frame;
};

struct RaisedAlarm {
  Time time{};
  MepKey mep;
  unsigned priority = 0;
};

/** One bridge. It keeps what its engine sent and notified. */
class Bridge : public Surroundings, public Notifications {
 public:
  Bridge(VirtualNetwork& network, std::uint64_t seed);

  /** Adds or changes a port. */
  void SetPort(PortId port, std::uint8_t interface_status = 1, std::uint8_t port_status = 2);
  Mac MacOf(PortId port) const;

  Engine& engine() { return engine_; }
  std::vector<SentFrame> sent;
  std::vector<RaisedAlarm> alarms;
  std::vector<MepKey> local_changes;
  std::vector<std::pair<MepKey, std::uint32_t>> remote_changes;
  RecordedTests tests;
  RelayTable relay;
  /** How long after its engine's time frames leave, as while an owner is behind. */
  Time behind{};

  /** A frame that comes in by a port. */
  Verdict Receive(PortId port, Side from, const Frame& frame);

  // As its engine calls it.
  void Transmit(PortId port, Side side, const Frame& frame) override;
  EgressPorts FindEgress(PortId ingress, std::uint16_t vid, const Mac& destination) override;
  Time TimeOfSending(Time now) override { return now + behind; }
  void OnLocalMepChanged(const MepKey& mep) override;
  void OnRemoteMepChanged(const MepKey& mep, std::uint32_t remote_mep_id) override;
  void OnFaultAlarm(const MepKey& mep, std::uint32_t defect_priority) override;
  void OnLoopbackReply(std::uint32_t request_id, const Mac& source,
                       std::uint32_t transaction_id) override;
  void OnLoopbackEnded(std::uint32_t request_id, const LoopbackResult& result) override;
  void OnLinktraceReply(const MepKey& mep, const LinktraceReply& reply) override;
  void OnLinktraceEnded(const MepKey& mep, std::uint32_t transaction_id) override;
  void OnDelayReply(std::uint32_t request_id, const Mac& source) override;
  void OnDelayEnded(std::uint32_t request_id, const DelayResult& result) override;
  void OnSessionEnded(const SessionResult& result) override;

 private:
  void Leave(PortId port, Side side, const Frame& frame);
  void Relay(PortId from, const Frame& frame);

  VirtualNetwork& network_;
  std::set<PortId> ports_;
  std::uint8_t number_;
  Engine engine_;
};

/** What a link does to a frame: how long it takes, or none when it is lost. */
using LinkRule = std::function<std::optional<Time>(const Frame& frame)>;

class VirtualNetwork {
 public:
  Bridge& AddBridge(std::uint64_t seed = 1);
  void Connect(Bridge& a, PortId port_a, Bridge& b, PortId port_b);
  /** Holds for both directions of all links, from now on. */
  void SetLinkRule(LinkRule rule) { rule_ = std::move(rule); }

  /** Lets time pass and all happen that is due, the end included. */
  void Run(Time duration);
  Time now() const { return now_; }
  std::size_t bridges() const { return bridges_.size(); }

  /** Runs @p event at this time, or as soon as time passes. */
  void Schedule(Time at, std::function<void()> event);
  /** Sends a frame out of a port. */
  void SendOverLink(Bridge& from, PortId port, const Frame& frame);

 private:
  struct End {
    Bridge* bridge;
    PortId port;
  };

  std::optional<Time> NextMoment() const;

  Time now_{};
  std::vector<std::unique_ptr<Bridge>> bridges_;
  std::map<std::pair<const Bridge*, PortId>, End> links_;
  LinkRule rule_ = [](const Frame&) { return Time{}; };
  std::multimap<Time, std::function<void()>> events_;
};

}  // namespace cfm_mgr::engine

#endif
