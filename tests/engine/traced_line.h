/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_TESTS_ENGINE_TRACED_LINE_H
#define CFM_TESTS_ENGINE_TRACED_LINE_H

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "line.h"

namespace cfm_mgr::engine {

/** A trace's replies, nearest first; of one TTL in the order in which they came. */
inline std::vector<LinktraceReply> Sorted(const Bridge& bridge) {
  std::vector<LinktraceReply> replies;
  for (const auto& entry : bridge.tests.trace_replies) replies.push_back(entry.reply);
  std::stable_sort(replies.begin(), replies.end(),
                   [](const auto& a, const auto& b) { return a.ttl > b.ttl; });
  return replies;
}

/** A trace from MEP 1 to MEP 2 over some bridges, with all of its replies. */
class TracedLine : public ::testing::Test {
 protected:
  void Build(std::size_t bridges, Ends ends) {
    line_ = std::make_unique<Line>(bridges, ends);
    line_->Settle();
  }
  std::vector<LinktraceReply> Trace(std::uint32_t ttl = 64, bool use_fdb_only = true) {
    started_ =
        line_->engine().StartLinktrace(line_->network.now(), line_->Linktrace(ttl, use_fdb_only));
    EXPECT_FALSE(started_.error);
    line_->network.Run(seconds(6));
    return Sorted(line_->First());
  }

  std::unique_ptr<Line> line_;
  StartedTest started_;
};

}  // namespace cfm_mgr::engine

#endif
