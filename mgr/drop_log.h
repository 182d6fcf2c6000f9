/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_DROP_LOG_H
#define CFM_MGR_DROP_LOG_H

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "net/drop_count.h"

namespace cfm_mgr {

/**
 * What the log says of frames that were dropped: each interface and reason as soon as there is
 * something to say, and then again when it has become more, but seldom.
 */
class DropLog {
 public:
  using Clock = std::chrono::steady_clock;

  /** From one look at the counters to the next. */
  static constexpr std::chrono::seconds kPause{1};
  /** From one record of an interface and reason to the next. */
  static constexpr std::chrono::hours kRepeat{1};

  /** Frames may have been dropped. Whether to look at the counters now; otherwise when due() says.
   */
  bool ShouldLook(Clock::time_point now);
  std::optional<Clock::time_point> due() const { return due_; }

  /** The records that are to be written now, of counters that never go back while they are there.
   */
  std::vector<std::string> TakeNews(Clock::time_point now,
                                    const std::vector<net::DropCount>& counts);

 private:
  struct Told {
    Clock::time_point when;
    std::uint64_t frames = 0;
  };

  std::optional<Clock::time_point> last_look_;
  std::optional<Clock::time_point> due_;
  std::map<std::pair<std::string, std::string>, Told> told_;  ///< By interface and reason.
};

/** All counters, a record each. */
std::vector<std::string> DescribeDrops(const std::vector<net::DropCount>& counts);

}  // namespace cfm_mgr

#endif
