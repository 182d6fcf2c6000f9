// SPDX-License-Identifier: Apache-2.0
// The renderings that an application may call by itself, while memory runs out.
#include <cfm/linktrace.h>
#include <cfm/mac.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <string>

#include "failing_allocator.h"
#include "failure_sweep.h"
#include "recording_host.h"

namespace cfm_test {
namespace {

using Rendering = std::function<std::string()>;

// The text, in memory of the test's own; nothing if memory ran out.
std::optional<std::string> Render(const Rendering& rendering) {
  std::string text;
  try {
    const Running running(Running::Code::Library);
    const std::string rendered = rendering();
    const Running own(Running::Code::Host);
    text = rendered.c_str();
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  }
  return text;
}

// Fails each allocation in turn: the exception passes, nothing stays on the heap, and the next call
// gives the same text as ever.
void FailEachAllocationOf(const Rendering& rendering) {
  const std::optional<std::string> undisturbed = Render(rendering);
  ASSERT_TRUE(undisturbed.has_value());
  const std::size_t held = HeldByLibrary().blocks;
  std::size_t index = 0;
  for (bool failed = true; failed; ++index) {
    SCOPED_TRACE(index);
    {
      const FailingAllocation failing(index);
      const auto text = Render(rendering);
      failed = failing.happened();
      EXPECT_EQ(text.has_value(), !failed);
      EXPECT_EQ(failing.allocations_after(), 0U);
    }
    EXPECT_EQ(HeldByLibrary().blocks, held);
    EXPECT_EQ(Render(rendering), undisturbed);
  }
  EXPECT_GT(index, 1U);
  CountInjected(index - 1);
}

std::unique_ptr<cfm::LtrReplyPort> NamedPort() {
  auto port = std::make_unique<cfm::LtrReplyPort>();
  port->port_id_present = true;
  port->port_id_subtype = 5;
  port->port_id = "an-interface-with-a-long-name";
  return port;
}

TEST(RenderingFailure, OfAnAddressLeavesNothingBehind) {
  FailEachAllocationOf([] { return cfm::st_mac{{2, 0, 0x5e, 0, 1, 2}}.to_string(); });
}

TEST(RenderingFailure, OfALinktraceReplyLeavesItAsItWas) {
  cfm::LinktraceReplyEntry entry;
  entry.reply_ingress = NamedPort();
  entry.reply_egress = NamedPort();
  for (const unsigned indent : {0U, 3U}) {
    SCOPED_TRACE(indent);
    FailEachAllocationOf([&] { return cfm::LinktraceReplyEntry::Show(entry, indent); });
  }
}

}  // namespace
}  // namespace cfm_test
