/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_TEST_FUNCTIONS_H
#define CFM_MGR_ENGINE_TEST_FUNCTIONS_H

#include <cstdint>

#include "engine/context.h"
#include "engine/delay_runs.h"
#include "engine/mep_table.h"
#include "engine/mip_table.h"
#include "engine/on_demand_tests.h"
#include "engine/probe_runner.h"
#include "engine/responders.h"
#include "pdu/header.h"

namespace cfm_mgr::engine {

/**
 * Loopback, linktrace and delay measurement: what MEPs and MIPs answer, and the tests that MEPs
 * run.
 *
 * Frames and events come in by the members below, in the order in which they happen. Deadlines are
 * Timers of the context's queue. Frames of a MEP go out by LocalMep::MakeFrame() and Transmit(),
 * those of a MIP by the surroundings.
 */
class TestFunctions {
 public:
  /** Both live at least as long. */
  TestFunctions(Context& context, const MepTable& table);

  /** @name What happens
   * @{ */
  /**
   * A frame with one of the opcodes LBR, LBM, LTR, LTM, DMM and DMR of a MEP's own level and
   * service has come from the side that the MEP faces. Nothing but its header was looked at.
   */
  void TakeAtMep(Time now, LocalMep& mep, const pdu::Header& header, const Frame& frame);

  /**
   * A frame that no MEP on the one side of a port has taken or dropped has come to the place where
   * the port's MHFs are. MEPs on the other side come next. The port is there; the frame has at most
   * two tags.
   */
  Verdict TakeAtMip(Time now, PortId port, Side from, const pdu::Header& header,
                    const Frame& frame);

  /** Ports or associations have changed; MEPs have stopped before, when it made them stop. */
  void OnConfigurationChanged(Time now);

  /** A MEP has stopped running. It is still in the table. */
  void OnMepStopped(Time now, const LocalMep& mep);
  /** @} */

  /** @name As Engine has them
   * @{ */
  StartedTest StartLoopback(Time now, const LoopbackRequest& request);
  StartedTest StartLinktrace(Time now, const LinktraceRequest& request);
  StartedTest StartDelayMeasurement(Time now, const DelayRequest& request);
  void SetProbe(Time now, std::uint32_t probe_id, const Probe& probe);
  void RemoveProbe(Time now, std::uint32_t probe_id);
  /** @} */

 private:
  void TakeReply(Time now, const LocalMep& mep, pdu::Opcode opcode, const Frame& frame);

  Context& context_;
  const MepTable& table_;
  MipTable mips_;
  Responders responders_;
  DelayRuns delay_runs_;
  OnDemandTests on_demand_;
  ProbeRunner probes_;
};

}  // namespace cfm_mgr::engine

#endif
