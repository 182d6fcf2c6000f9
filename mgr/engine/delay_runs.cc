// SPDX-License-Identifier: Apache-2.0
#include "engine/delay_runs.h"

#include <utility>

namespace cfm_mgr::engine {
namespace {

/** Octets of a frame in front of its PDU: two addresses and the EtherType. */
constexpr std::uint32_t kFrameHeaderSize = 14;

}  // namespace

DelayRuns::DelayRuns(Context& context)
    : context_(context),
      runs_(context.timers, [this](Time now, Run& run) { return Step(now, run); }) {}

std::uint64_t DelayRuns::Begin(Time now, const LocalMep& mep, const Mac& target,
                               const DelayParameters& parameters, Observer observer) {
  DelaySettings settings;
  settings.level = mep.settings().level;
  settings.target = target;
  settings.count = parameters.count;
  settings.interval = std::chrono::milliseconds(parameters.interval_ms);
  settings.pdu_size = parameters.size - kFrameHeaderSize;
  return runs_.Add(now, {&mep, parameters.pcp, DelayInitiator(now, settings), std::move(observer)});
}

std::optional<DelayResult> DelayRuns::Cancel(std::uint64_t run) {
  const std::optional<Run> cancelled = runs_.Remove(run);
  if (!cancelled) return std::nullopt;
  return cancelled->initiator.Result();
}

bool DelayRuns::Step(Time now, Run& run) {
  while (auto dmm = run.initiator.TakeDue(context_.surroundings.TimeOfSending(now), clock_)) {
    run.mep->Transmit(run.mep->MakeFrame(run.initiator.target(), std::move(*dmm), run.pcp));
  }
  if (!run.initiator.Ended(now)) return true;
  run.observer.on_end(now, RunEnd::Complete, run.initiator.Result());
  return false;
}

void DelayRuns::TakeDmr(Time now, const LocalMep& mep, const Frame& frame) {
  const pdu::Decoded<pdu::DelayMeasurement> dmr = pdu::DecodeDmr(frame.pdu);
  if (!dmr) {
    context_.drops.CountMalformed(dmr.fault());
    return;
  }
  const Time received = frame.received.value_or(now);
  const bool taken = runs_.Offer(mep, [&](Run& run) {
    const DelayInitiator::Reply reply = run.initiator.OnReply(received, frame.source, *dmr);
    if (reply == DelayInitiator::Reply::Counted) run.observer.on_reply(frame.source);
    return reply != DelayInitiator::Reply::NotOurs;
  });
  if (!taken) ++context_.drops.here().unexpected;
}

void DelayRuns::OnMepStopped(Time now, const LocalMep& mep) {
  for (const Run& run : runs_.RemoveOf(mep)) {
    run.observer.on_end(now, RunEnd::MepStopped, run.initiator.Result());
  }
}

}  // namespace cfm_mgr::engine
