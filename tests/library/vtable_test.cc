// SPDX-License-Identifier: Apache-2.0
// The virtual tables as a program meets them that was built long ago: slots that are called by
// their numbers, by the Itanium C++ ABI.
#include <array>
#include <cstring>
#include <typeinfo>
#include <utility>

#include "client_fixture.h"
#include "sample_reports.h"

namespace cfm_test {
namespace {

std::vector<std::size_t> called;

template <std::size_t Slot>
void NoteSlot(void*) {
  called.push_back(Slot);
}

/// An object that is nothing but a virtual table of `Interface`, whose slots note their numbers.
template <typename Interface>
class RawHandler {
 public:
  Interface* get() { return reinterpret_cast<Interface*>(&slots_); }

 private:
  using Function = void (*)(void*);
  static constexpr std::size_t kSlots = 12;

  struct Table {
    std::ptrdiff_t offset_to_top = 0;
    const std::type_info* type = &typeid(Interface);
    std::array<Function, kSlots> slots;
  };

  template <std::size_t... Slot>
  static constexpr std::array<Function, kSlots> AllSlots(std::index_sequence<Slot...>) {
    return {&NoteSlot<Slot>...};
  }

  Table table_{0, &typeid(Interface), AllSlots(std::make_index_sequence<kSlots>())};
  const Function* slots_ = table_.slots.data();
};

/// What `object` has in a slot; counted from its first function on.
void* SlotOf(const void* object, std::ptrdiff_t slot) {
  void* const* table = nullptr;
  std::memcpy(&table, object, sizeof table);
  return table[slot];
}

template <typename... Arguments>
void CallSlot(void* object, std::ptrdiff_t slot, Arguments... arguments) {
  using Function = void (*)(void*, Arguments...);
  reinterpret_cast<Function>(SlotOf(object, slot))(object, arguments...);
}

using Slots = std::vector<std::size_t>;

class VirtualTable : public InStepTest {
 protected:
  VirtualTable() { called.clear(); }

  // The slots of the registered handlers that are called when these reports come.
  Slots CalledFor(const std::vector<std::string>& names) {
    called.clear();
    for (const std::string& name : names) {
      for (const Report& report : AllReports()) {
        if (report.name == name) {
          report.Deliver(host, report.bytes);
        }
      }
    }
    return called;
  }

  template <typename Argument>
  std::vector<std::string> SentBySlot(std::ptrdiff_t slot, const Argument& argument) {
    return Brief(Sent([&] { CallSlot<const Argument&>(&*client, slot, argument); }));
  }
};

TEST_F(VirtualTable, OfTheStatusHandler) {
  RawHandler<cfm::ReceivedStatusHandlerIntf> handler;
  CallSlot(&*client, 0, handler.get());
  EXPECT_EQ(CalledFor({"STATUS_LOCAL_MEP", "STATUS_REMOTE_MEP", "REMOVED_LOCAL_MEP",
                       "REMOVED_REMOTE_MEP", "LINKTRACE_STARTED", "LINKTRACE_ENDED",
                       "LINKTRACE_REPLY_RX", "DELAY_MEASUREMENT_SESSION_ENDED"}),
            (Slots{0, 1, 2, 3, 4, 5, 6, 7}));
  called.clear();
  host.ServerFound();
  EXPECT_EQ(called, Slots{8});
}

TEST_F(VirtualTable, OfTheStatisticsHandler) {
  RawHandler<cfm::ReceivedStatisticsHandlerIntf> handler;
  CallSlot(&*client, 1, handler.get());
  EXPECT_EQ(CalledFor({"STATS_REPLY"}), (Slots{0, 0, 1, 1, 1, 2}));
}

TEST_F(VirtualTable, OfTheLinktraceHandler) {
  RawHandler<cfm::ReceivedLinktraceHandlerIntf> handler;
  CallSlot(&*client, 2, handler.get());
  EXPECT_EQ(
      CalledFor({"LINKTRACE_STARTED", "LINKTRACE_ENDED", "LINKTRACE_REPLY_RX", "LT_TRIGGER_ERROR"}),
      (Slots{0, 1, 2, 3}));
}

TEST_F(VirtualTable, OfTheLoopbackHandler) {
  RawHandler<cfm::ReceivedLoopbackHandlerIntf> handler;
  CallSlot(&*client, 3, handler.get());
  EXPECT_EQ(
      CalledFor({"LB_TRIGGER_ERROR", "LOOPBACK_STARTED", "LOOPBACK_REPLY_RX", "LOOPBACK_ENDED"}),
      (Slots{0, 1, 2, 3}));
}

TEST_F(VirtualTable, OfTheDelayMeasurementHandler) {
  RawHandler<cfm::ReceivedDelayMeasurementHandlerIntf> handler;
  CallSlot(&*client, 4, handler.get());
  EXPECT_EQ(CalledFor({"DM_TRIGGER_ERROR", "DELAY_MEASUREMENT_STARTED",
                       "DELAY_MEASUREMENT_REPLY_RX", "DELAY_MEASUREMENT_ENDED"}),
            (Slots{0, 1, 2, 3}));
}

TEST_F(VirtualTable, OfTheClientBeginsBehindItsTypeInformation) {
  EXPECT_EQ(SlotOf(&*client, -1), static_cast<const void*>(&typeid(cfm::Client)));
}

// The destructor is declared sixth and takes two places: destroy alone, destroy and free.
TEST(ClientTable, DestroysInTheSixthAndSeventhPlace) {
  RecordingHost host;
  alignas(cfm::Client) std::array<unsigned char, sizeof(cfm::Client)> memory{};
  auto* const placed = new (memory.data()) cfm::Client(host.handle());
  host.Take();
  CallSlot(placed, 5);
  EXPECT_EQ(host.Take().front(), "unsubscribe");
  auto* const allocated = new cfm::Client(host.handle());
  host.Take();
  CallSlot(allocated, 6);
  EXPECT_EQ(host.Take().front(), "unsubscribe");
}

TEST_F(VirtualTable, OfTheClientHasTheConfigurationNext) {
  EXPECT_THAT(SentBySlot(7, OneMa({})), ElementsAre("MD_CREATE D", "MA_CREATE D A"));
  cfm::probe probes;
  probes.probes[3].id = 3;
  EXPECT_THAT(SentBySlot(8, probes), ElementsAre(testing::StartsWith("DM_PROBE_CREATE ")));
}

TEST_F(VirtualTable, OfTheClientHasTheStatisticsNext) {
  EXPECT_THAT(Sent([&] { CallSlot(&*client, 9); }), ElementsAre("STATS_GET no payload"));
  EXPECT_THAT(Brief(Sent([&] {
                CallSlot<const char*, const char*, std::uint16_t>(&*client, 10, "D", "A", 5);
              })),
              ElementsAre("STATS_CLEAR D A 5"));
}

TEST_F(VirtualTable, OfTheClientHasTheTestsLast) {
  EXPECT_THAT(Sent([&] { CallSlot<const cfm::linktrace_trigger&>(&*client, 11, {}); }),
              ElementsAre(testing::StartsWith("LT_TRIGGER ")));
  EXPECT_THAT(Sent([&] { CallSlot<const cfm::loopback_trigger&>(&*client, 12, {}); }),
              ElementsAre(testing::StartsWith("LB_TRIGGER ")));
  EXPECT_THAT(Sent([&] { CallSlot<const cfm::delay_measurement_trigger&>(&*client, 13, {}); }),
              ElementsAre(testing::StartsWith("DM_TRIGGER ")));
}

}  // namespace
}  // namespace cfm_test
