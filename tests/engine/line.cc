// SPDX-License-Identifier: Apache-2.0
#include "line.h"

namespace cfm_mgr::engine {
namespace {

constexpr std::int32_t kMhfDefault = 2;

}  // namespace

Line::Line(std::size_t bridges, Ends ends, std::uint64_t seed) : ends_(ends) {
  for (std::size_t i = 0; i < bridges; ++i) {
    Bridge& bridge = network.AddBridge(seed + i);
    bridge.SetPort(kLeft);
    bridge.SetPort(kRight);
    bridges_.push_back(&bridge);
    if (i > 0) network.Connect(*bridges_[i - 1], kRight, bridge, kLeft);
  }
  for (std::size_t i = 0; i < bridges; ++i) Configure(i, SampleDomain(), AssociationOf(i));
}

void Line::Configure(std::size_t index, const DomainSettings& domain,
                     const Association& association) {
  At(index).engine().SetAssociation(network.now(), SampleMa(), domain, association);
}

PortId Line::MepPort(bool first) const {
  const bool left = first == (ends_ == Ends::Up);
  return left ? kLeft : kRight;
}

Association Line::AssociationOf(std::size_t index) const {
  Association association = SampleAssociation();
  association.settings.mhf_creation = kMhfDefault;
  const bool first = index == 0;
  if (!first && index + 1 != bridges_.size()) return association;
  Mep mep = SampleMep();
  mep.direction = ends_ == Ends::Up ? kUp : kDown;
  mep.ifindex = MepPort(first);
  return WithMep(association, first ? 1 : 2, mep);
}

Mac Line::FirstMepMac() const { return bridges_.front()->MacOf(MepPort(true)); }
Mac Line::LastMepMac() const { return bridges_.back()->MacOf(MepPort(false)); }

LoopbackRequest Line::Loopback(std::uint32_t request_id, std::uint32_t count,
                               std::uint32_t data_size) const {
  return {request_id, SampleKey(1), 2, count, data_size};
}

LinktraceRequest Line::Linktrace(std::uint32_t ttl, bool use_fdb_only) const {
  return {1, SampleKey(1), 2, ttl, use_fdb_only};
}

DelayRequest Line::Delay(std::uint32_t request_id, std::uint32_t count,
                         std::uint32_t interval_ms) const {
  return {request_id, SampleKey(1), 2, count, interval_ms, 0, 5};
}

std::vector<SentFrame> SentBy(const Bridge& bridge, pdu::Opcode opcode) {
  std::vector<SentFrame> sent;
  for (const SentFrame& frame : bridge.sent) {
    if (frame.frame.pdu[1] == static_cast<std::uint8_t>(opcode)) sent.push_back(frame);
  }
  return sent;
}

}  // namespace cfm_mgr::engine
