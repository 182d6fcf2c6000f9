// SPDX-License-Identifier: Apache-2.0
#include "engine/responders.h"

#include <algorithm>

#include "engine/delay_initiator.h"
#include "pdu/ccm.h"
#include "pdu/loopback.h"

namespace cfm_mgr::engine {

/** The bridge as it is while one LTM is answered. */
class Responders::Bridge : public LinktraceBridge {
 public:
  Bridge(Time now, Responders& owner) : now_(now), owner_(owner) {}

  const PortInfo* FindPort(PortId port) const override { return owner_.meps_.FindPort(port); }

  EgressPoint PointAt(PortId port, std::uint16_t vid, std::uint8_t level) const override {
    EgressPoint point;
    const Mip* const mip = owner_.mips_.Find(port, vid);
    point.mip = mip != nullptr && mip->level == level;
    const MepStack* const stack = owner_.meps_.index().Find(port, {vid, 0});
    if (stack == nullptr) return point;
    const auto ends = [level](const LocalMep* mep) { return mep->settings().level == level; };
    const auto is_above = [level](const LocalMep* mep) { return mep->settings().level > level; };
    point.up_mep = std::any_of(stack->relay.begin(), stack->relay.end(), ends);
    point.guarded = std::any_of(stack->relay.begin(), stack->relay.end(), is_above) ||
                    std::any_of(stack->wire.begin(), stack->wire.end(), ends) ||
                    std::any_of(stack->wire.begin(), stack->wire.end(), is_above);
    return point;
  }

  std::optional<PortId> FindOwnPort(std::uint16_t vid, std::uint8_t level,
                                    const Mac& address) const override {
    for (const auto& [port, info] : owner_.meps_.ports()) {
      if (info.mac != address) continue;
      const EgressPoint point = PointAt(port, vid, level);
      if (point.mip || point.up_mep) return port;
    }
    return std::nullopt;
  }

  EgressPorts FindEgress(PortId ingress, std::uint16_t vid, const Mac& address) override {
    return owner_.context_.surroundings.FindEgress(ingress, vid, address);
  }

  std::optional<PortId> FindInMipDatabase(std::uint16_t vid, const Mac& address) const override {
    const std::optional<PortId> port = owner_.database_.Find(now_, vid, address);
    return port && FindPort(*port) != nullptr ? port : std::nullopt;
  }

 private:
  Time now_;
  Responders& owner_;
};

bool Responders::TakeLbm(Time now, const AnsweringMp& mp, const Frame& frame) {
  const bool to_group = mp.mep && frame.destination == CcmGroupAddress(mp.level);
  if (!to_group && frame.destination != mp.mac) return false;
  if (const auto lbm = pdu::DecodeLbm(frame.pdu); !lbm) {
    context_.drops.CountMalformed(lbm.fault());
    return true;
  }
  if (pdu::IsGroup(frame.source)) return true;
  Frame reply{frame.source, mp.mac, frame.tags, pdu::LbrTo(frame.pdu)};
  if (to_group) {
    queue_.Send(now, mp.port, mp.side, std::move(reply));
  } else {
    context_.surroundings.Transmit(mp.port, mp.side, reply);
  }
  return true;
}

bool Responders::TakeDmm(Time now, const AnsweringMp& mp, const Frame& frame) {
  if (frame.destination != mp.mac) return false;
  if (const auto dmm = pdu::DecodeDmm(frame.pdu); !dmm) {
    context_.drops.CountMalformed(dmm.fault());
    return true;
  }
  if (pdu::IsGroup(frame.source)) return true;
  const pdu::Timestamp arrival = ToTimestamp(ArrivalOf(now, frame));
  const pdu::Timestamp departure = ToTimestamp(context_.surroundings.TimeOfSending(now));
  context_.surroundings.Transmit(
      mp.port, mp.side,
      {frame.source, mp.mac, frame.tags, pdu::DmrTo(frame.pdu, arrival, departure)});
  return true;
}

bool Responders::TakeLtm(Time now, const AnsweringMp& mp, const Frame& frame) {
  if (frame.destination != LtmGroupAddress(mp.level) && frame.destination != mp.mac) return false;
  const pdu::Decoded<pdu::Ltm> ltm = pdu::DecodeLtm(frame.pdu);
  if (!ltm) {
    context_.drops.CountMalformed(ltm.fault());
    return true;
  }
  Bridge bridge(now, *this);
  const LtmArrival arrival{mp.port, mp.side, mp.mep, ServiceOf(frame).vid, mp.sender_id};
  const std::optional<LinktraceAnswer> answer = AnswerLtm(bridge, arrival, *ltm);
  if (!answer) return true;
  queue_.Send(now, mp.port, mp.side, {ltm->original, mp.mac, frame.tags, pdu::Encode(answer->ltr)});
  if (answer->forwarded) {
    const ForwardedLtm& forwarded = *answer->forwarded;
    context_.surroundings.Transmit(forwarded.port, Side::Wire,
                                   {LtmGroupAddress(mp.level), forwarded.source, frame.tags,
                                    pdu::ForwardLtm(frame.pdu, forwarded.ltm)});
  }
  return true;
}

void Responders::SeeCcm(Time now, PortId port, const Frame& frame) {
  if (pdu::IsGroup(frame.source) || !pdu::DecodeCcm(frame.pdu)) return;
  database_.Learn(now, ServiceOf(frame).vid, frame.source, port);
}

}  // namespace cfm_mgr::engine
