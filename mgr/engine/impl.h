/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_IMPL_H
#define CFM_MGR_ENGINE_IMPL_H

#include <cstdint>

#include "engine/context.h"
#include "engine/mep_table.h"
#include "engine/test_functions.h"

namespace cfm_mgr::engine {

/**
 * Takes frames to the MPs of a port, IEEE 802.1Q 22.1.
 *
 * From the wire to the relay function a frame meets the Down MEPs, the lowest level first, then the
 * MHFs, then the Up MEPs; the other way round from the relay function. A MEP takes frames of its
 * own level from the side that it faces, and of lower levels from there it looks at CCMs only, for
 * cross connections; it drops all frames of its own and lower levels from its back, and lets higher
 * levels pass both ways.
 */
class Engine::Impl {
 public:
  Impl(Surroundings& surroundings, Notifications& notifications, std::uint64_t seed);

  Verdict Receive(Time now, PortId port, Side from, const Frame& frame);

  Context& context() { return context_; }
  MepTable& table() { return table_; }
  /** Loopback, linktrace, delay measurement and probes; it has all their frames and deadlines. */
  TestFunctions& tests() { return tests_; }

 private:
  /** A frame on its way through the MPs of a port. */
  struct Passage {
    PortId port;
    Side from;
    const pdu::Header& header;
    const Frame& frame;
    const MepStack* stack;  ///< Null without MEPs.
  };

  Verdict Pass(Time now, const Passage& passage);
  Verdict MeetFacing(Time now, const Passage& passage);
  Verdict MeetBacks(const Passage& passage);
  void Deliver(Time now, LocalMep& mep, const Passage& passage);
  void SendBehind(Time now, const LocalMep& mep, const Frame& frame);

  Context context_;
  MepTable table_;
  TestFunctions tests_;
};

}  // namespace cfm_mgr::engine

#endif
