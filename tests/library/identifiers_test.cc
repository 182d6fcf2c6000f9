// SPDX-License-Identifier: Apache-2.0
#include <cfm/identifiers.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "recording_host.h"

namespace cfm_test {
namespace {

TEST(Identifiers, NamesAreThoseOfTheServer) {
  EXPECT_STREQ(CFM_MGR_PROCESS, "cfm-mgr");
  EXPECT_STREQ(CFM_MGR_SIGBLOCK, "bC");
  EXPECT_STREQ(CFM_MGR_C2S_SIGBLOCK, "cC");
  EXPECT_STREQ(CFM_MGR_S2C_SIGBLOCK, "dC");
  EXPECT_STREQ(CFM_MGR_SRV_EVENTGROUP, "CFMM");
}

void ExpectSignals(const std::vector<const vorx_sig_descriptor*>& signals, const char* block) {
  std::uint8_t number = 0;
  for (const vorx_sig_descriptor* const signal : signals) {
    ++number;
    EXPECT_EQ(signal->number, number) << NameOf(signal);
    EXPECT_EQ(static_cast<const void*>(signal->block), block) << NameOf(signal);
    EXPECT_EQ(signal->reserved[0] | signal->reserved[1] | signal->reserved[2], 0);
  }
}

TEST(Identifiers, ClientSignalsAreNumberedOneToTwentyInTheirBlock) {
  ASSERT_EQ(ClientSignals().size(), 20U);
  ExpectSignals(ClientSignals(), CFM_MGR_C2S_SIGBLOCK);
}

TEST(Identifiers, ServerSignalsAreNumberedOneToFiveInTheirBlock) {
  ASSERT_EQ(ServerSignals().size(), 5U);
  ExpectSignals(ServerSignals(), CFM_MGR_S2C_SIGBLOCK);
}

TEST(Identifiers, TheTickIsTheFirstSignalOfTheServersOwnBlock) {
  ExpectSignals({CFM_MGR_SIG_TICK_SCHED}, CFM_MGR_SIGBLOCK);
}

TEST(Identifiers, EventsAreNumberedOneToFourteenInTheirGroup) {
  ASSERT_EQ(ServerEvents().size(), 14U);
  std::uint32_t number = 0;
  for (const vorx_event_descriptor* const event : ServerEvents()) {
    ++number;
    EXPECT_EQ(event->number, number) << NameOf(event);
    EXPECT_EQ(static_cast<const void*>(event->group), CFM_MGR_SRV_EVENTGROUP) << NameOf(event);
  }
}

TEST(Identifiers, TheLinktraceReplyEventComesBeforeTheEndEvent) {
  EXPECT_EQ(CFM_MGR_SRV_EVENT_LINKTRACE_REPLY_RX->number, 6U);
  EXPECT_EQ(CFM_MGR_SRV_EVENT_LINKTRACE_ENDED->number, 7U);
}

// What lies at an offset of a descriptor, as the middleware reads it.
template <typename Value, typename Descriptor>
Value ReadAt(const Descriptor* descriptor, std::size_t offset) {
  Value value{};
  EXPECT_LE(offset + sizeof value, sizeof *descriptor);
  std::memcpy(&value, reinterpret_cast<const char*>(descriptor) + offset, sizeof value);
  return value;
}

TEST(Identifiers, ASignalIsItsBlockItsNumberAndThreeZeros) {
  const vorx_sig_descriptor* const signal = CFM_MGR_C2S_SIG_DM_SESSION_DELETE;
  EXPECT_EQ(ReadAt<const char*>(signal, 0), CFM_MGR_C2S_SIGBLOCK);
  EXPECT_EQ(ReadAt<std::uint8_t>(signal, sizeof(void*)), 20U);
  EXPECT_EQ((ReadAt<std::array<std::uint8_t, 3>>(signal, sizeof(void*) + 1)),
            (std::array<std::uint8_t, 3>{}));
}

TEST(Identifiers, AnEventIsItsGroupAndItsNumberAsAWord) {
  const vorx_event_descriptor* const event = CFM_MGR_SRV_EVENT_DELAY_MEASUREMENT_SESSION_ENDED;
  EXPECT_EQ(ReadAt<const char*>(event, 0), CFM_MGR_SRV_EVENTGROUP);
  EXPECT_EQ(ReadAt<std::uint32_t>(event, sizeof(void*)), 14U);
}

TEST(Identifiers, DescriptorsAreTwoWordsLong) {
  EXPECT_EQ(sizeof(vorx_sig_descriptor), 2 * sizeof(void*));
  EXPECT_EQ(sizeof(vorx_event_descriptor), 2 * sizeof(void*));
}

}  // namespace
}  // namespace cfm_test
