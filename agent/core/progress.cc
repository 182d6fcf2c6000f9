// SPDX-License-Identifier: Apache-2.0
#include "core/progress.h"

#include <chrono>

#include "core/status_words.h"
#include "core/text.h"

namespace cfm_agent {

std::string ProgressOf(const Test& test, const Plan& plan, Duration elapsed) {
  if (test.kind == TestKind::Statistics || test.kind == TestKind::Refresh) {
    return "";
  }
  const std::string done = test.kind == TestKind::Linktrace ? Count(test.replies, "hop")
                           : plan.replies == 0 ? Count(test.replies, "reply", "replies")
                                               : std::to_string(test.replies) + '/' +
                                                     Count(plan.replies, "reply", "replies");
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(elapsed).count();
  return WordFor(kTestKinds, test.kind) + ' ' + std::to_string(test.number) + ": " + done + ", " +
         std::to_string(seconds) + " s";
}

}  // namespace cfm_agent
