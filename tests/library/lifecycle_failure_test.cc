// SPDX-License-Identifier: Apache-2.0
// A client made, told of handlers and of the server while memory runs out.
#include <cfm/identifiers.h>

#include <new>

#include "failing_allocator.h"
#include "failure_configurations.h"
#include "failure_sweep.h"

namespace cfm_test {
namespace {

class ConstructionFailure : public testing::Test {
 protected:
  // What a constructor that fails does to the host; nothing when it does not fail.
  std::optional<std::vector<std::string>> RecordOfFailure() {
    const Running running(Running::Code::Library);
    try {
      const cfm::Client client(host.handle());
    } catch (const std::bad_alloc&) {
      return host.Take();
    }
    return std::nullopt;
  }

  // A client is made and works.
  void ExpectTheNextToWork() {
    host.Take();
    std::optional<cfm::Client> client(std::in_place, host.handle());
    EXPECT_EQ(host.Take(), undisturbed);
    host.GetInStep();
    client->UpdateConfig(OneMa({1}));
    EXPECT_THAT(Brief(host.Take("send 77 ")),
                ElementsAre("MD_CREATE D", "MA_CREATE D A", "MEP_CREATE D A 1"));
    client.reset();
    EXPECT_EQ(host.Take().size(), 21U);  // unsubscribed, 19 times deregistered, logged
  }

  static std::vector<std::string> RecordOfSuccess() {
    RecordingHost host;
    const cfm::Client client(host.handle());
    return host.Take();
  }

  const std::vector<std::string> undisturbed = RecordOfSuccess();
  const std::size_t held = HeldByLibrary().blocks;
  RecordingHost host;
};

TEST_F(ConstructionFailure, ComesBeforeTheHostHearsOfTheClient) {
  std::size_t index = 0;
  for (;; ++index) {
    SCOPED_TRACE(index);
    const FailingAllocation failing(index);
    const auto record = RecordOfFailure();
    ASSERT_EQ(record.has_value(), failing.happened());
    if (!record) {
      break;
    }
    EXPECT_THAT(*record, IsEmpty());
    EXPECT_EQ(failing.allocations_after(), 0U);
    EXPECT_EQ(HeldByLibrary().blocks, held);
    ExpectTheNextToWork();
  }
  EXPECT_GT(index, 0U);
  CountInjected(index);
}

// The host's own memory may run out too: the exception passes, what the client had built goes, and
// the host is left as it is.
TEST_F(ConstructionFailure, OfTheHostLeavesTheHostAsItIs) {
  for (std::size_t index = 0; index < 19; ++index) {
    SCOPED_TRACE(index);
    host.registration_works = [index, count = std::size_t{0}](auto&) mutable -> bool {
      return count++ == index ? throw std::bad_alloc() : true;
    };
    const auto record = RecordOfFailure();
    ASSERT_TRUE(record.has_value());
    EXPECT_TRUE(Begins(undisturbed, *record));
    EXPECT_EQ(record->size(), index + 4);  // subscribed, trace, logged, each registration
    EXPECT_EQ(HeldByLibrary().blocks, held);
  }
}

TEST_F(ConstructionFailure, OfTheSubscriptionLeavesNothing) {
  host.on_subscribe = [] { throw std::bad_alloc(); };
  EXPECT_EQ(RecordOfFailure(), std::vector<std::string>{"subscribe cfm-mgr"});
  EXPECT_EQ(HeldByLibrary().blocks, held);
  host.on_subscribe = [] {};
  ExpectTheNextToWork();
}

// What takes no memory cannot run out of it.
Operation WithoutMemory(const std::function<void(World&)>& run) {
  Operation operation;
  operation.before = ClientState::InStep(FirstConfiguration(), FirstProbes());
  operation.run = run;
  return operation;
}

TEST(WithoutMemory, HandlersAreRegistered) {
  EXPECT_EQ(FailEachAllocation(WithoutMemory([](World& world) {
              const Running running(Running::Code::Library);
              Handlers::Clear(*world.client);
              world.handlers.Register(*world.client);
            })),
            0U);
}

TEST(WithoutMemory, AServerIsFound) {
  Operation found = WithoutMemory([](World& world) { world.host.ServerFound(78); });
  EXPECT_EQ(FailEachAllocation(found), 0U);
  found.with_handlers = false;
  EXPECT_EQ(FailEachAllocation(found), 0U);
}

TEST(WithoutMemory, AServerIsLost) {
  EXPECT_EQ(FailEachAllocation(WithoutMemory([](World& world) { world.host.ServerLost(); })), 0U);
}

// A handler that is told of the server may fail for want of memory of its own.
TEST(PresenceFailure, OfTheHandlerLeavesTheServerFound) {
  Operation found;
  found.before = ClientState::InStep(FirstConfiguration(), FirstProbes());
  found.before.in_step = false;
  found.before.server_present = false;
  found.run = [](World& world) { world.host.ServerFound(); };
  ClientState present = found.before;
  present.server_present = true;
  found.stages = {{present, "log 10 ServerFound:75", "send 77 CACHE_GET"}};
  EXPECT_EQ(FailEachCallOut(found), 3U);
}

TEST(WithoutMemory, StatisticsAreRequested) {
  EXPECT_EQ(FailEachAllocation(
                WithoutMemory(Call([](cfm::Client& client) { client.RequestStatistics(); }))),
            0U);
}

TEST(WithoutMemory, AClientIsDestroyed) {
  World world(ClientState::InStep(FirstConfiguration(), FirstProbes()));
  const FailingAllocation failing(0);
  {
    const Running running(Running::Code::Library);
    world.client.reset();
  }
  EXPECT_FALSE(failing.happened());
  EXPECT_EQ(world.host.Take().size(), 21U);
}

}  // namespace
}  // namespace cfm_test
