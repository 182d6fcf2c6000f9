// SPDX-License-Identifier: Apache-2.0
#include "engine/impl.h"

#include <algorithm>

namespace cfm_mgr::engine {
namespace {

constexpr std::size_t kMaxTags = 2;

Side Opposite(Side side) { return side == Side::Wire ? Side::Relay : Side::Wire; }

}  // namespace

Engine::Impl::Impl(Surroundings& surroundings, Notifications& notifications, std::uint64_t seed)
    : context_{surroundings, notifications, std::mt19937_64(seed), {}, {}, {}, {}},
      table_(context_),
      tests_(context_, table_) {
  context_.send_behind = [this](Time now, const LocalMep& mep, const Frame& frame) {
    SendBehind(now, mep, frame);
  };
  context_.on_mep_stopped = [this](Time now, const LocalMep& mep) {
    tests_.OnMepStopped(now, mep);
  };
}

Verdict Engine::Impl::Receive(Time now, PortId port, Side from, const Frame& frame) {
  if (table_.FindPort(port) == nullptr || frame.tags.size() > kMaxTags) return Verdict::Pass;
  context_.drops.SetPort(port);
  const pdu::Decoded<pdu::Header> header = pdu::DecodeHeader(frame.pdu);
  if (!header) {
    context_.drops.CountMalformed(header.fault());
    return Verdict::Stop;
  }
  const MepStack* const stack = table_.index().Find(port, ServiceOf(frame));
  return Pass(now, {port, from, *header, frame, stack});
}

Verdict Engine::Impl::Pass(Time now, const Passage& passage) {
  if (MeetFacing(now, passage) == Verdict::Stop) return Verdict::Stop;
  const Verdict at_mip =
      tests_.TakeAtMip(now, passage.port, passage.from, passage.header, passage.frame);
  if (at_mip == Verdict::Stop) return Verdict::Stop;
  return MeetBacks(passage);
}

Verdict Engine::Impl::MeetFacing(Time now, const Passage& passage) {
  if (passage.stack == nullptr) return Verdict::Pass;
  const std::uint8_t level = passage.header.level;
  const std::vector<LocalMep*>& meps = passage.stack->Facing(passage.from);
  const auto found = std::find_if(meps.begin(), meps.end(), [level](const LocalMep* mep) {
    return mep->settings().level >= level;
  });
  if (found == meps.end()) return Verdict::Pass;
  LocalMep& mep = **found;
  if (mep.settings().level == level) {
    Deliver(now, mep, passage);
  } else {
    ++context_.drops.here().low_level;
    const bool is_ccm = passage.header.opcode == static_cast<std::uint8_t>(pdu::Opcode::Ccm);
    if (is_ccm) mep.ReceiveLowerCcm(now, passage.frame);
  }
  return Verdict::Stop;
}

Verdict Engine::Impl::MeetBacks(const Passage& passage) {
  if (passage.stack == nullptr) return Verdict::Pass;
  const std::vector<LocalMep*>& meps = passage.stack->Facing(Opposite(passage.from));
  if (meps.empty() || meps.back()->settings().level < passage.header.level) return Verdict::Pass;
  ++context_.drops.here().low_level;
  return Verdict::Stop;
}

void Engine::Impl::Deliver(Time now, LocalMep& mep, const Passage& passage) {
  switch (static_cast<pdu::Opcode>(passage.header.opcode)) {
    case pdu::Opcode::Ccm:
      return mep.ReceiveCcm(now, passage.frame);
    case pdu::Opcode::Ais:
      return mep.ReceiveAis(now, passage.frame);
    case pdu::Opcode::Lbr:
    case pdu::Opcode::Lbm:
    case pdu::Opcode::Ltr:
    case pdu::Opcode::Ltm:
    case pdu::Opcode::Dmr:
    case pdu::Opcode::Dmm:
      return tests_.TakeAtMep(now, mep, passage.header, passage.frame);
    case pdu::Opcode::Lck:
    case pdu::Opcode::OneWayDm:
      break;
  }
  ++context_.drops.here().unknown;
}

void Engine::Impl::SendBehind(Time now, const LocalMep& mep, const Frame& frame) {
  const pdu::Decoded<pdu::Header> header = pdu::DecodeHeader(frame.pdu);
  const PortId port = mep.settings().port;
  const Side from = mep.settings().side;
  const MepStack* const stack = table_.index().Find(port, ServiceOf(frame));
  context_.drops.SetPort(port);
  // It is of a higher level than the MEP that sends it, which therefore lets it pass.
  if (Pass(now, {port, from, *header, frame, stack}) == Verdict::Pass) {
    context_.surroundings.Transmit(port, Opposite(from), frame);
  }
}

}  // namespace cfm_mgr::engine
