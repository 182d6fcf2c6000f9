/* SPDX-License-Identifier: Apache-2.0 */
// An engine with its surroundings, and what it promises to both.
#ifndef CFM_FUZZ_ENGINE_WORLD_H
#define CFM_FUZZ_ENGINE_WORLD_H

#include <cstdint>
#include <deque>
#include <map>
#include <set>
#include <utility>

#include "byte_reader.h"
#include "engine/engine.h"

namespace cfm_fuzz {

/// Two ports, whose links are one and the same, so that endpoints on both hear each other. Frames
/// wait on it until they are carried over.
class EngineWorld : private cfm_mgr::engine::Surroundings, private cfm_mgr::engine::Notifications {
 public:
  EngineWorld();

  /// Does what the input says next.
  void Step(ByteReader& input);

 private:
  using Time = cfm_mgr::engine::Time;
  using PortId = cfm_mgr::engine::PortId;
  using Side = cfm_mgr::engine::Side;
  using Frame = cfm_mgr::engine::Frame;
  using Mac = cfm_mgr::engine::Mac;
  using MepKey = cfm_mgr::MepKey;

  struct Sent {
    PortId port = 0;
    Frame frame;
  };

  void SetPort(ByteReader& input);
  void SetAssociation(const cfm_mgr::MaKey& key, const cfm_mgr::DomainSettings& domain,
                      const cfm_mgr::Association& association);
  void RemoveAssociation(const cfm_mgr::MaKey& key);
  void SetProbe(ByteReader& input);
  void RemoveProbe(std::uint32_t probe_id);
  void Receive(ByteReader& input, bool raw);
  void ReceiveAt(PortId port, Side from, const Frame& frame);
  void Carry(ByteReader& input);
  void CarryAll();
  void StartLoopback(ByteReader& input);
  void StartLinktrace(ByteReader& input);
  void StartDelay(ByteReader& input);
  void PassTime(ByteReader& input);
  void AdvanceTo(Time now);
  void LookAtState();

  void RequireConfigured(const MepKey& mep) const;

  // What the engine says and asks.
  void Transmit(PortId port, Side side, const Frame& frame) override;
  cfm_mgr::engine::EgressPorts FindEgress(PortId ingress, std::uint16_t vid,
                                          const Mac& destination) override;
  void OnLocalMepChanged(const MepKey& mep) override;
  void OnRemoteMepChanged(const MepKey& mep, std::uint32_t remote_mep_id) override;
  void OnFaultAlarm(const MepKey& mep, std::uint32_t defect_priority) override;
  void OnLoopbackReply(std::uint32_t request_id, const Mac& source,
                       std::uint32_t transaction_id) override;
  void OnLoopbackEnded(std::uint32_t request_id,
                       const cfm_mgr::engine::LoopbackResult& result) override;
  void OnLinktraceReply(const MepKey& mep, const cfm_mgr::engine::LinktraceReply& reply) override;
  void OnLinktraceEnded(const MepKey& mep, std::uint32_t transaction_id) override;
  void OnDelayReply(std::uint32_t request_id, const Mac& source) override;
  void OnDelayEnded(std::uint32_t request_id, const cfm_mgr::engine::DelayResult& result) override;
  void OnSessionEnded(const cfm_mgr::engine::SessionResult& result) override;

  Time now_{};
  std::uint32_t last_request_ = 0;
  std::set<PortId> ports_;
  std::map<cfm_mgr::MaKey, cfm_mgr::Association> associations_;
  /// As it was before the change that is being made.
  std::map<cfm_mgr::MaKey, cfm_mgr::Association> before_;
  std::set<std::pair<std::uint32_t, std::uint32_t>> sessions_;
  std::set<std::uint32_t> loopbacks_;
  std::set<std::uint32_t> delays_;
  std::set<std::pair<MepKey, std::uint32_t>> linktraces_;
  std::deque<Sent> on_the_wire_;
  std::uint8_t relay_knows_ = 0;  ///< How the relay answers.
  cfm_mgr::engine::Engine engine_;
};

}  // namespace cfm_fuzz

#endif
