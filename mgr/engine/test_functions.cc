// SPDX-License-Identifier: Apache-2.0
#include "engine/test_functions.h"

namespace cfm_mgr::engine {

TestFunctions::TestFunctions(Context& context, const MepTable& table)
    : context_(context),
      table_(table),
      mips_(table),
      responders_(context, table, mips_),
      delay_runs_(context),
      on_demand_(context, table, delay_runs_),
      probes_(context, table, delay_runs_) {}

void TestFunctions::TakeAtMep(Time now, LocalMep& mep, const pdu::Header& header,
                              const Frame& frame) {
  const MepSettings& settings = mep.settings();
  const AnsweringMp mp{settings.port,  settings.side, mep.mac(),
                       settings.level, true,          mep.sender_id()};
  bool taken = false;
  switch (const auto opcode = static_cast<pdu::Opcode>(header.opcode)) {
    case pdu::Opcode::Lbm:
      taken = responders_.TakeLbm(now, mp, frame);
      break;
    case pdu::Opcode::Dmm:
      taken = responders_.TakeDmm(now, mp, frame);
      break;
    case pdu::Opcode::Ltm:
      taken = responders_.TakeLtm(now, mp, frame);
      break;
    default:
      taken = frame.destination == mep.mac();
      if (taken) TakeReply(now, mep, opcode, frame);
  }
  // Those for others end here too.
  if (!taken) ++context_.drops.here().unexpected;
}

void TestFunctions::TakeReply(Time now, const LocalMep& mep, pdu::Opcode opcode,
                              const Frame& frame) {
  if (opcode == pdu::Opcode::Lbr) on_demand_.TakeLbr(mep, frame);
  if (opcode == pdu::Opcode::Ltr) on_demand_.TakeLtr(mep, frame);
  if (opcode == pdu::Opcode::Dmr) delay_runs_.TakeDmr(now, mep, frame);
}

Verdict TestFunctions::TakeAtMip(Time now, PortId port, Side from, const pdu::Header& header,
                                 const Frame& frame) {
  if (frame.tags.size() > 1) return Verdict::Pass;
  const Mip* const mip = mips_.Find(port, ServiceOf(frame).vid);
  if (mip == nullptr || mip->level != header.level) return Verdict::Pass;
  const PortInfo& info = *table_.FindPort(port);
  const AnsweringMp mp{port,         from,  info.mac,
                       header.level, false, SenderIdOf(mip->sender_id, info.mac)};
  bool taken = false;
  switch (static_cast<pdu::Opcode>(header.opcode)) {
    case pdu::Opcode::Lbm:
      taken = responders_.TakeLbm(now, mp, frame);
      break;
    case pdu::Opcode::Ltm:
      taken = responders_.TakeLtm(now, mp, frame);
      break;
    case pdu::Opcode::Ccm:
      if (from == Side::Wire) responders_.SeeCcm(now, port, frame);
      break;
    default:
      break;
  }
  return taken ? Verdict::Stop : Verdict::Pass;
}

void TestFunctions::OnConfigurationChanged(Time) { mips_.Invalidate(); }

void TestFunctions::OnMepStopped(Time now, const LocalMep& mep) {
  on_demand_.OnMepStopped(mep);
  delay_runs_.OnMepStopped(now, mep);
}

StartedTest TestFunctions::StartLoopback(Time now, const LoopbackRequest& request) {
  return on_demand_.StartLoopback(now, request);
}

StartedTest TestFunctions::StartLinktrace(Time now, const LinktraceRequest& request) {
  return on_demand_.StartLinktrace(now, request);
}

StartedTest TestFunctions::StartDelayMeasurement(Time now, const DelayRequest& request) {
  return on_demand_.StartDelayMeasurement(now, request);
}

void TestFunctions::SetProbe(Time now, std::uint32_t probe_id, const Probe& probe) {
  probes_.SetProbe(now, probe_id, probe);
}

void TestFunctions::RemoveProbe(Time now, std::uint32_t probe_id) {
  probes_.RemoveProbe(now, probe_id);
}

}  // namespace cfm_mgr::engine
