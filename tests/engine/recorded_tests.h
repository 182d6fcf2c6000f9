/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_TESTS_ENGINE_RECORDED_TESTS_H
#define CFM_TESTS_ENGINE_RECORDED_TESTS_H

#include <cstdint>
#include <vector>

#include "engine/notifications.h"

namespace cfm_mgr::engine {

/** What an engine notified of its tests, in order, and when. */
struct RecordedTests {
  struct LoopbackReply {
    Time time{};
    std::uint32_t request_id = 0;
    Mac source{};
    std::uint32_t transaction_id = 0;
  };
  struct LoopbackEnd {
    Time time{};
    std::uint32_t request_id = 0;
    LoopbackResult result;
  };
  struct TraceReply {
    Time time{};
    MepKey mep;
    LinktraceReply reply;
  };
  struct TraceEnd {
    Time time{};
    MepKey mep;
    std::uint32_t transaction_id = 0;
  };
  struct DelayReply {
    Time time{};
    std::uint32_t request_id = 0;
    Mac source{};
  };
  struct DelayEnd {
    Time time{};
    std::uint32_t request_id = 0;
    DelayResult result;
  };

  std::vector<LoopbackReply> loopback_replies;
  std::vector<LoopbackEnd> loopback_ends;
  std::vector<TraceReply> trace_replies;
  std::vector<TraceEnd> trace_ends;
  std::vector<DelayReply> delay_replies;
  std::vector<DelayEnd> delay_ends;
  std::vector<SessionResult> sessions;
};

}  // namespace cfm_mgr::engine

#endif
