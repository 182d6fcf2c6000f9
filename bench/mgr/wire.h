/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * A veth pair and endpoints on it, for benchmarks with real frames.
 */
#ifndef CFM_BENCH_MGR_WIRE_H
#define CFM_BENCH_MGR_WIRE_H

#include <cstdint>
#include <string>
#include <vector>

#include "engine/engine.h"
#include "net/packet/packet_network.h"

namespace cfm_bench {

inline constexpr const char* kNear = "v0";
inline constexpr const char* kFar = "v1";

/** Enters a network namespace with a veth pair that is up. Ends the program when it may not. */
void MakeWire();

/** Ends the program with a message on standard error. */
[[noreturn]] void Fail(const std::string& message);

cfm_mgr::engine::PortId IndexOf(const char* interface);

/** Endpoints of one kind: one association each, all on one interface, in VLANs from 1 on. */
struct EndpointGroup {
  std::uint32_t count = 0;
  std::int32_t ccm_interval = 0;  ///< As the MIB numbers it.
  std::uint32_t level = 0;
  std::uint32_t mep_id = 1;  ///< 1 or 2; the other one is the remote endpoint.
  bool sends = true;
};

/** Configures a group on an interface, spread evenly over the present and @p spread after it. */
void Configure(cfm_mgr::net::PacketNetwork& network, const EndpointGroup& group,
               const char* interface, cfm_mgr::engine::Time spread);

/** Takes what an engine tells, to nobody's use. */
class NoNotifications : public cfm_mgr::engine::Notifications {
 public:
  void OnLocalMepChanged(const cfm_mgr::MepKey& /*mep*/) override {}
  void OnRemoteMepChanged(const cfm_mgr::MepKey& /*mep*/, std::uint32_t /*remote*/) override {}
  void OnFaultAlarm(const cfm_mgr::MepKey& /*mep*/, std::uint32_t /*priority*/) override {}
  void OnLoopbackReply(std::uint32_t /*request_id*/, const cfm_mgr::engine::Mac& /*source*/,
                       std::uint32_t /*transaction_id*/) override {}
  void OnLoopbackEnded(std::uint32_t /*request_id*/,
                       const cfm_mgr::engine::LoopbackResult& /*result*/) override {}
  void OnLinktraceReply(const cfm_mgr::MepKey& /*mep*/,
                        const cfm_mgr::engine::LinktraceReply& /*reply*/) override {}
  void OnLinktraceEnded(const cfm_mgr::MepKey& /*mep*/, std::uint32_t /*transaction*/) override {}
  void OnDelayReply(std::uint32_t /*request_id*/, const cfm_mgr::engine::Mac& /*source*/) override {
  }
  void OnDelayEnded(std::uint32_t /*request_id*/,
                    const cfm_mgr::engine::DelayResult& /*result*/) override {}
  void OnSessionEnded(const cfm_mgr::engine::SessionResult& /*result*/) override {}
};

/** The value below which a share of the values lies. Sorts them. */
double Percentile(std::vector<double>& values, double share);

}  // namespace cfm_bench

#endif
