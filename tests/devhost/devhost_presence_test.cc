// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <systemd/sd-bus.h>
#include <vorx/host.h>

#include <memory>
#include <optional>
#include <string>

#include "child_process.h"
#include "private_bus.h"
#include "test_process.h"

namespace cfm_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string Found(vorx_pid_t pid) { return "found " + std::to_string(pid); }

class Presence : public testing::Test {
 protected:
  bool Service(const std::function<bool()>& condition) {
    return ServiceUntil({watcher_.get()}, condition);
  }

  /** A process of its own that does nothing but be there. */
  ChildProcess StartServer() {
    return ChildProcess([this] {
      TestProcess server(bus_, "server");
      return vorx_run(server.get());
    });
  }

  PrivateBus bus_;
  TestProcess watcher_{bus_, "watcher"};
  PresenceRecorder presence_{watcher_, "server"};
};

TEST_F(Presence, ReportsAProcessThatAppears) {
  TestProcess server(bus_, "server");
  ASSERT_TRUE(Service([&] { return presence_.count() == 1; }));
  EXPECT_THAT(presence_.entries(), ElementsAre(Found(server.pid())));
}

TEST_F(Presence, ReportsAProcessThatIsThereAlready) {
  TestProcess server(bus_, "server");
  const PresenceRecorder late(watcher_, "server");
  EXPECT_THAT(late.entries(), IsEmpty());
  ASSERT_TRUE(Service([&] { return late.count() == 1; }));
  EXPECT_THAT(late.entries(), ElementsAre(Found(server.pid())));
}

TEST_F(Presence, ReportsOnlyTheProcessThatIsWatched) {
  TestProcess other(bus_, "server2");
  TestProcess another(bus_, "serve");
  TestProcess server(bus_, "server");
  ASSERT_TRUE(Service([&] { return presence_.count() >= 1; }));
  EXPECT_THAT(presence_.entries(), ElementsAre(Found(server.pid())));
}

TEST_F(Presence, ReportsItself) {
  const PresenceRecorder own(watcher_, "watcher");
  ASSERT_TRUE(Service([&] { return own.count() == 1; }));
  EXPECT_EQ(own.present(), watcher_.pid());
}

TEST_F(Presence, ReportsAProcessLostWhenItCloses) {
  auto server = std::make_unique<TestProcess>(bus_, "server");
  const vorx_pid_t pid = server->pid();
  ASSERT_TRUE(Service([&] { return presence_.count() == 1; }));
  server.reset();
  ASSERT_TRUE(Service([&] { return presence_.count() == 2; }));
  EXPECT_THAT(presence_.entries(), ElementsAre(Found(pid), "lost"));
}

TEST_F(Presence, ReportsAProcessLostWhenItIsKilled) {
  ChildProcess server = StartServer();
  ASSERT_TRUE(Service([&] { return presence_.count() == 1; }));
  server.Signal(SIGKILL);
  ASSERT_TRUE(Service([&] { return presence_.count() == 2; }));
  EXPECT_EQ(presence_.entries()[1], "lost");
}

TEST_F(Presence, ReportsARestartedProcessUnderANewIdentifier) {
  ChildProcess server = StartServer();
  ASSERT_TRUE(Service([&] { return presence_.count() == 1; }));
  const vorx_pid_t first = presence_.present();
  server.Kill();
  server = StartServer();
  ASSERT_TRUE(Service([&] { return presence_.count() == 3; }));
  EXPECT_NE(presence_.present(), first);
  EXPECT_THAT(presence_.entries(), ElementsAre(Found(first), "lost", Found(presence_.present())));
}

TEST_F(Presence, ReportsNothingThatCameAndWentBeforeItAsked) {
  { const TestProcess server(bus_, "server"); }
  const PresenceRecorder late(watcher_, "server");
  const PresenceRecorder own(watcher_, "watcher");
  ASSERT_TRUE(Service([&] { return own.count() == 1; }));
  EXPECT_THAT(late.entries(), IsEmpty());
}

TEST_F(Presence, ReportsNothingAfterTheSubscriptionEnded) {
  struct Count {
    int found = 0;
  } count;
  vorx_subscription_t* subscription = vorx_proc_subscribe(
      watcher_.get(), "server",
      [](vorx_t*, const vorx_pid_t*, void* user) { ++static_cast<Count*>(user)->found; }, nullptr,
      &count);
  ASSERT_NE(subscription, nullptr);
  vorx_proc_unsubscribe(&subscription);
  EXPECT_EQ(subscription, nullptr);
  vorx_proc_unsubscribe(&subscription);
  vorx_proc_unsubscribe(nullptr);
  TestProcess server(bus_, "server");
  ASSERT_TRUE(Service([&] { return presence_.count() == 1; }));
  EXPECT_EQ(count.found, 0);
}

TEST_F(Presence, RefusesNamesThatNoProcessHas) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(vorx_proc_subscribe(watcher_.get(), nullptr, nullptr, nullptr, nullptr), nullptr);
  EXPECT_EQ(vorx_proc_subscribe(watcher_.get(), "", nullptr, nullptr, nullptr), nullptr);
  EXPECT_EQ(vorx_proc_subscribe(watcher_.get(), "a.b", nullptr, nullptr, nullptr), nullptr);
  EXPECT_EQ(vorx_proc_subscribe(nullptr, "server", nullptr, nullptr, nullptr), nullptr);
  testing::internal::GetCapturedStderr();
}

/** A bus connection that is no vorx process, and may do what those never do. */
class ForeignOwner {
 public:
  explicit ForeignOwner(const PrivateBus& bus) {
    sd_bus_new(&bus_);
    sd_bus_set_address(bus_, bus.address().c_str());
    sd_bus_set_bus_client(bus_, 1);
    EXPECT_GE(sd_bus_start(bus_), 0);
  }
  ~ForeignOwner() { sd_bus_close_unref(bus_); }
  ForeignOwner(const ForeignOwner&) = delete;
  ForeignOwner& operator=(const ForeignOwner&) = delete;

  void Take(const char* name) {
    EXPECT_GE(sd_bus_request_name(bus_, name,
                                  SD_BUS_NAME_ALLOW_REPLACEMENT | SD_BUS_NAME_REPLACE_EXISTING),
              0);
  }

 private:
  sd_bus* bus_ = nullptr;
};

TEST_F(Presence, ReportsAnOwnerThatFollowsWithoutAGapAsLostAndFound) {
  ForeignOwner first(bus_);
  first.Take("vorx.server");
  ASSERT_TRUE(Service([&] { return presence_.count() == 1; }));
  const vorx_pid_t before = presence_.present();
  ForeignOwner second(bus_);
  second.Take("vorx.server");
  ASSERT_TRUE(Service([&] { return presence_.count() == 3; }));
  EXPECT_NE(presence_.present(), before);
  EXPECT_THAT(presence_.entries(), ElementsAre(Found(before), "lost", Found(presence_.present())));
}

TEST_F(Presence, ReportsEverybodyLostWhenTheBusGoes) {
  TestProcess server(bus_, "server");
  const PresenceRecorder absent(watcher_, "absent");
  ASSERT_TRUE(Service([&] { return presence_.count() == 1; }));
  testing::internal::CaptureStderr();
  bus_.Kill();
  int result = 0;
  EXPECT_TRUE(ServiceUntil({}, [&] {
    result = vorx_dispatch(watcher_.get());
    return result < 0;
  }));
  EXPECT_EQ(result, -ENOTCONN);
  EXPECT_THAT(presence_.entries(), ElementsAre(Found(server.pid()), "lost"));
  EXPECT_THAT(absent.entries(), IsEmpty());
  EXPECT_EQ(vorx_dispatch(watcher_.get()), -ENOTCONN);
  EXPECT_EQ(presence_.count(), 2U);
  testing::internal::GetCapturedStderr();
}

}  // namespace
}  // namespace cfm_test
