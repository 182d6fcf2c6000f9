#include "engine/test_functions.h"

namespace cfm_mgr::engine {

void TestFunctions::TakeAtMep(Time, LocalMep&, const pdu::Header&, const Frame&) {
  ++context_.drops.unknown;
}

Verdict TestFunctions::TakeAtMip(Time, PortId, Side, const pdu::Header&, const Frame&) {
  return Verdict::Pass;
}

void TestFunctions::OnConfigurationChanged(Time) {}

void TestFunctions::OnMepStopped(Time, const LocalMep&) {}

StartedTest TestFunctions::StartLoopback(Time, const LoopbackRequest& request) {
  const bool known = table_.FindMep(request.mep) != nullptr;
  return {known ? TriggerError::NotSupported : TriggerError::UnknownMep, {}, 0};
}

StartedTest TestFunctions::StartLinktrace(Time, const LinktraceRequest& request) {
  const bool known = table_.FindMep(request.mep) != nullptr;
  return {known ? TriggerError::NotSupported : TriggerError::UnknownMep, {}, 0};
}

StartedTest TestFunctions::StartDelayMeasurement(Time, const DelayRequest& request) {
  const bool known = table_.FindMep(request.mep) != nullptr;
  return {known ? TriggerError::NotSupported : TriggerError::UnknownMep, {}, 0};
}

void TestFunctions::SetProbe(Time, std::uint32_t, const Probe&) {}

void TestFunctions::RemoveProbe(Time, std::uint32_t) {}

}  // namespace cfm_mgr::engine
