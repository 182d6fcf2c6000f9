// SPDX-License-Identifier: Apache-2.0
#include "engine/on_demand_tests.h"

#include <utility>

#include "engine/linktrace_responder.h"
#include "engine/test_ends.h"

namespace cfm_mgr::engine {
namespace {

constexpr std::uint32_t kMaxCount = 1024;
constexpr std::uint32_t kMaxLoopbackData = 1480;
constexpr std::uint32_t kDefaultTtl = 64;
constexpr std::uint32_t kMaxTtl = 255;
constexpr std::uint8_t kMaxPriority = 7;

StartedTest Refuse(TriggerError error) { return {error, {}, 0}; }

std::uint32_t OrDefault(std::uint32_t value, std::uint32_t if_zero) {
  return value == 0 ? if_zero : value;
}

DelayParameters ParametersOf(const DelayRequest& request) {
  return {OrDefault(request.count, kDefaultDelayCount),
          OrDefault(request.interval_ms, kDefaultDelayInterval),
          OrDefault(request.size, kMinDelayFrame), request.pcp};
}

bool IsValid(const DelayParameters& parameters) {
  return parameters.count <= kMaxCount && parameters.interval_ms >= kMinDelayInterval &&
         parameters.interval_ms <= kMaxDelayInterval && parameters.size >= kMinDelayFrame &&
         parameters.size <= kMaxDelayFrame && parameters.pcp <= kMaxPriority;
}

}  // namespace

OnDemandTests::OnDemandTests(Context& context, const MepTable& table, DelayRuns& delay_runs)
    : context_(context),
      table_(table),
      delay_runs_(delay_runs),
      loopbacks_(context.timers, [this](Time now, Loopback& test) { return Step(now, test); }),
      linktraces_(context.timers, [this](Time now, Linktrace& test) { return Step(now, test); }) {}

StartedTest OnDemandTests::StartLoopback(Time now, const LoopbackRequest& request) {
  const TestEnds ends = FindTestEnds(table_, request.mep, request.remote_mep_id);
  if (ends.error) return Refuse(*ends.error);
  if (request.count > kMaxCount || request.data_size > kMaxLoopbackData) {
    return Refuse(TriggerError::BadParameter);
  }
  if (loopbacks_.CountOf(*ends.mep) == kMaxTests) return Refuse(TriggerError::TooMany);
  LoopbackSettings settings;
  settings.level = ends.mep->settings().level;
  settings.target = ends.target;
  settings.first_transaction_id = next_loopback_id_;
  settings.count = OrDefault(request.count, 1);
  settings.data_size = request.data_size;
  next_loopback_id_ += settings.count;
  loopbacks_.Add(now, {ends.mep, request.request_id, LoopbackInitiator(now, settings)});
  return {std::nullopt, ends.target, settings.first_transaction_id};
}

StartedTest OnDemandTests::StartLinktrace(Time now, const LinktraceRequest& request) {
  const TestEnds ends = FindTestEnds(table_, request.mep, request.remote_mep_id);
  if (ends.error) return Refuse(*ends.error);
  if (request.ttl > kMaxTtl) return Refuse(TriggerError::BadParameter);
  if (linktraces_.CountOf(*ends.mep) == kMaxTests) return Refuse(TriggerError::TooMany);
  pdu::Ltm ltm;
  ltm.level = ends.mep->settings().level;
  ltm.use_fdb_only = request.use_fdb_only;
  ltm.transaction_id = next_linktrace_id_++;
  ltm.ttl = static_cast<std::uint8_t>(OrDefault(request.ttl, kDefaultTtl));
  ltm.original = ends.mep->mac();
  ltm.target = ends.target;
  ltm.egress_id = EgressIdentifierOf(ltm.original);
  ltm.sender_id = ends.mep->sender_id();
  linktraces_.Add(now, {ends.mep, LinktraceInitiator(now, ltm)});
  return {std::nullopt, ends.target, ltm.transaction_id};
}

StartedTest OnDemandTests::StartDelayMeasurement(Time now, const DelayRequest& request) {
  const TestEnds ends = FindTestEnds(table_, request.mep, request.remote_mep_id);
  if (ends.error) return Refuse(*ends.error);
  const DelayParameters parameters = ParametersOf(request);
  if (!IsValid(parameters)) return Refuse(TriggerError::BadParameter);
  if (delay_tests_[ends.mep] == kMaxTests) return Refuse(TriggerError::TooMany);
  ++delay_tests_[ends.mep];
  DelayRuns::Observer observer;
  observer.on_reply = [this, id = request.request_id](const Mac& source) {
    context_.notifications.OnDelayReply(id, source);
  };
  observer.on_end = [this, mep = ends.mep, id = request.request_id](Time, RunEnd,
                                                                    const DelayResult& result) {
    if (--delay_tests_[mep] == 0) delay_tests_.erase(mep);
    context_.notifications.OnDelayEnded(id, result);
  };
  delay_runs_.Begin(now, *ends.mep, ends.target, parameters, std::move(observer));
  return {std::nullopt, ends.target, 0};
}

bool OnDemandTests::Step(Time now, Loopback& test) {
  while (auto lbm = test.initiator.TakeDue(context_.surroundings.TimeOfSending(now))) {
    test.mep->Transmit(test.mep->MakeFrame(test.initiator.target(), std::move(*lbm),
                                           test.mep->settings().priority));
  }
  if (!test.initiator.Ended(now)) return true;
  End(test);
  return false;
}

bool OnDemandTests::Step(Time now, Linktrace& test) {
  while (auto ltm = test.initiator.TakeDue(now)) {
    const MepSettings& settings = test.mep->settings();
    test.mep->Transmit(
        test.mep->MakeFrame(LtmGroupAddress(settings.level), std::move(*ltm), settings.priority));
  }
  if (!test.initiator.Ended(now)) return true;
  End(test);
  return false;
}

void OnDemandTests::End(const Loopback& test) {
  context_.notifications.OnLoopbackEnded(test.request_id, test.initiator.Result());
}

void OnDemandTests::End(const Linktrace& test) {
  context_.notifications.OnLinktraceEnded(test.mep->settings().key,
                                          test.initiator.transaction_id());
}

void OnDemandTests::TakeLbr(const LocalMep& mep, const Frame& frame) {
  const pdu::Decoded<pdu::Loopback> lbr = pdu::DecodeLbr(frame.pdu);
  if (!lbr) {
    context_.drops.CountMalformed(lbr.fault());
    return;
  }
  const bool taken = loopbacks_.Offer(mep, [&](Loopback& test) {
    if (!test.initiator.OnReply(frame.source, *lbr, frame.pdu)) return false;
    context_.notifications.OnLoopbackReply(test.request_id, frame.source, lbr->transaction_id);
    return true;
  });
  if (!taken) ++context_.drops.here().unexpected;
}

void OnDemandTests::TakeLtr(const LocalMep& mep, const Frame& frame) {
  const pdu::Decoded<pdu::Ltr> ltr = pdu::DecodeLtr(frame.pdu);
  if (!ltr) {
    context_.drops.CountMalformed(ltr.fault());
    return;
  }
  const bool taken =
      linktraces_.Offer(mep, [&ltr](const Linktrace& test) { return test.initiator.Owns(*ltr); });
  if (taken) {
    context_.notifications.OnLinktraceReply(mep.settings().key, DescribeReply(frame, *ltr));
  } else {
    ++context_.drops.here().unexpected;
  }
}

void OnDemandTests::OnMepStopped(const LocalMep& mep) {
  for (const Loopback& test : loopbacks_.RemoveOf(mep)) End(test);
  for (const Linktrace& test : linktraces_.RemoveOf(mep)) End(test);
}

}  // namespace cfm_mgr::engine
