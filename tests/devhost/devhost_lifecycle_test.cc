// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/time.h>
#include <vorx/host.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

#include "private_bus.h"
#include "test_process.h"

namespace cfm_test {
namespace {

using testing::HasSubstr;

constexpr vorx_sig_descriptor kRequest{"cC", 1, {}};
constexpr vorx_event_descriptor kEvent{"CFMM", 1};

/** An environment variable that is as it was when this object goes. */
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value) : name_(name) {
    const char* const before = std::getenv(name);
    had_value_ = before != nullptr;
    before_ = had_value_ ? before : "";
    Set(value);
  }
  ~ScopedVariable() { Set(had_value_ ? before_.c_str() : nullptr); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  void Set(const char* value) const {
    value == nullptr ? unsetenv(name_) : setenv(name_, value, 1);
  }

  const char* name_;
  std::string before_;
  bool had_value_ = false;
};

int OpenNamed(const char* name, const char* address) {
  vorx_options_t options{};
  options.name = name;
  options.bus_address = address;
  vorx_t* handle = nullptr;
  const int result = vorx_open(&options, &handle);
  EXPECT_EQ(result == 0, handle != nullptr);
  vorx_close(handle);
  return result;
}

class Opening : public testing::Test {
 protected:
  int Open(const char* name) { return OpenNamed(name, bus_.address().c_str()); }

  PrivateBus bus_;
};

TEST_F(Opening, GivesNameAndIdentifier) {
  const TestProcess process(bus_, "cfm-agent_1");
  EXPECT_STREQ(vorx_name(process.get()), "cfm-agent_1");
  EXPECT_GT(process.pid(), 0);
  EXPECT_STREQ(vorx_last_error(process.get()), "");
}

TEST_F(Opening, GivesEveryHandleItsOwnIdentifier) {
  const TestProcess first(bus_, "first");
  const TestProcess second(bus_, "second");
  EXPECT_NE(first.pid(), second.pid());
}

TEST_F(Opening, RefusesANameThatIsTaken) {
  const TestProcess first(bus_, "agent");
  EXPECT_EQ(Open("agent"), -EEXIST);
  EXPECT_THAT(vorx_last_error(nullptr), HasSubstr("another process is called 'agent' already"));
}

TEST_F(Opening, WaitsForANameThatIsGivenUpMeanwhile) {
  std::thread holder([first = std::make_unique<TestProcess>(bus_, "agent")]() mutable {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    first.reset();
  });
  EXPECT_EQ(Open("agent"), 0);
  holder.join();
}

TEST_F(Opening, TakesANameAgainAsSoonAsItsHandleIsClosed) {
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(Open("agent"), 0);
  }
}

TEST_F(Opening, RefusesUnusableNames) {
  for (const char* const name : {"", "a b", "a.b", "1a", "\xc3\xa4"}) {
    EXPECT_EQ(Open(name), -EINVAL) << name;
    EXPECT_THAT(vorx_last_error(nullptr), HasSubstr("unusable process name"));
  }
  EXPECT_EQ(Open(std::string(201, 'a').c_str()), -EINVAL);
  EXPECT_EQ(Open(std::string(200, 'a').c_str()), 0);
  EXPECT_EQ(Open(nullptr), -EINVAL);
  EXPECT_EQ(vorx_open(nullptr, nullptr), -EINVAL);
}

TEST_F(Opening, TakesTheAddressFromTheEnvironment) {
  const ScopedVariable session("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/session");
  {
    const ScopedVariable own("VORX_BUS_ADDRESS", bus_.address().c_str());
    EXPECT_EQ(OpenNamed("agent", nullptr), 0);
    EXPECT_NE(OpenNamed("agent", "unix:path=/nonexistent/option"), 0);
  }
  const ScopedVariable own("VORX_BUS_ADDRESS", nullptr);
  EXPECT_EQ(OpenNamed("agent", nullptr), -ENOENT);
  EXPECT_THAT(vorx_last_error(nullptr), HasSubstr("/nonexistent/session"));
  const ScopedVariable working("DBUS_SESSION_BUS_ADDRESS", bus_.address().c_str());
  EXPECT_EQ(OpenNamed("agent", nullptr), 0);
}

TEST_F(Opening, RefusesToGuessAnAddress) {
  const ScopedVariable session("DBUS_SESSION_BUS_ADDRESS", nullptr);
  const ScopedVariable own("VORX_BUS_ADDRESS", "");
  EXPECT_EQ(OpenNamed("agent", nullptr), -EINVAL);
  EXPECT_THAT(vorx_last_error(nullptr), HasSubstr("VORX_BUS_ADDRESS"));
  EXPECT_LT(OpenNamed("agent", "nonsense"), 0);
}

TEST_F(Opening, ReachesTheBusAgainAfterARestart) {
  bus_.Kill();
  EXPECT_LT(Open("agent"), 0);
  bus_.Restart();
  EXPECT_EQ(Open("agent"), 0);
}

class Servicing : public testing::Test {
 protected:
  PrivateBus bus_;
  TestProcess process_{bus_, "process"};
};

TEST_F(Servicing, RunReturnsTheStatusOfAStopInACallback) {
  vorx_sig_register_sized(
      process_.get(), &kRequest,
      [](vorx_t* handle, void*, const vorx_pid_t*, void*, unsigned int) { vorx_stop(handle, 7); },
      nullptr);
  process_.Send(process_.pid(), kRequest);
  EXPECT_EQ(vorx_run(process_.get()), 7);
}

TEST_F(Servicing, RunDeliversWhatAStopLeftBehind) {
  struct Count {
    int signals = 0;
  } count;
  vorx_sig_register_sized(
      process_.get(), &kRequest,
      [](vorx_t* handle, void* user, const vorx_pid_t*, void*, unsigned int) {
        vorx_stop(handle, ++static_cast<Count*>(user)->signals);
      },
      &count);
  for (int i = 0; i < 3; ++i) {
    process_.Send(process_.pid(), kRequest);
  }
  EXPECT_EQ(vorx_run(process_.get()), 1);
  EXPECT_EQ(vorx_run(process_.get()), 2);
  EXPECT_EQ(vorx_run(process_.get()), 3);
}

TEST_F(Servicing, RunReturnsAtOnceAfterAnEarlierStop) {
  vorx_stop(process_.get(), 3);
  EXPECT_EQ(vorx_run(process_.get()), 3);
}

TEST_F(Servicing, RunReturnsWhenAnotherThreadStopsIt) {
  std::thread other([this] { vorx_stop(process_.get(), 4); });
  EXPECT_EQ(vorx_run(process_.get()), 4);
  other.join();
}

TEST_F(Servicing, RunReturnsWhenASignalHandlerStopsIt) {
  static vorx_t* handle;
  handle = process_.get();
  struct sigaction action {};
  action.sa_handler = [](int) { vorx_stop(handle, 5); };
  struct sigaction before {};
  sigaction(SIGALRM, &action, &before);
  itimerval timer{};
  timer.it_value.tv_usec = 20'000;
  setitimer(ITIMER_REAL, &timer, nullptr);
  EXPECT_EQ(vorx_run(process_.get()), 5);
  sigaction(SIGALRM, &before, nullptr);
}

TEST_F(Servicing, RunReturnsAnErrorWhenTheBusGoes) {
  testing::internal::CaptureStderr();
  std::thread killer([this] { bus_.Kill(); });
  EXPECT_EQ(vorx_run(process_.get()), -ENOTCONN);
  killer.join();
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("vorx process: the bus is gone"));
  EXPECT_THAT(vorx_last_error(process_.get()), HasSubstr("the bus is gone"));
}

TEST_F(Servicing, AnEventLoopSeesTheEndOfTheBusAtTheDescriptor) {
  testing::internal::CaptureStderr();
  vorx_dispatch(process_.get());
  bus_.Kill();
  pollfd descriptor{vorx_fd(process_.get()), static_cast<short>(vorx_poll_events(process_.get())),
                    0};
  ASSERT_EQ(poll(&descriptor, 1, 10'000), 1);
  EXPECT_EQ(vorx_dispatch(process_.get()), -ENOTCONN);
  // The descriptor still belongs to the handle, so that it can be taken out of an event loop.
  EXPECT_GE(vorx_fd(process_.get()), 0);
  EXPECT_EQ(poll(&descriptor, 1, 0), 1);
  EXPECT_LT(vorx_poll_events(process_.get()), 0);
  EXPECT_EQ(process_.Send(process_.pid(), kRequest), -ENOTCONN);
  EXPECT_EQ(process_.Publish(kEvent), -ENOTCONN);
  EXPECT_EQ(vorx_proc_subscribe(process_.get(), "other", nullptr, nullptr, nullptr), nullptr);
  testing::internal::GetCapturedStderr();
}

TEST_F(Servicing, AnIdleHandleWaitsForEver) {
  // What joining the bus brought has been read.
  while (vorx_poll_timeout(process_.get()) == 0 || [this] {
    pollfd descriptor{vorx_fd(process_.get()), POLLIN, 0};
    return poll(&descriptor, 1, 50) > 0;
  }()) {
    ASSERT_EQ(vorx_dispatch(process_.get()), 0);
  }
  EXPECT_EQ(vorx_poll_timeout(process_.get()), -1);
  EXPECT_EQ(vorx_poll_events(process_.get()), POLLIN);
}

TEST_F(Servicing, DispatchGivesTheEventLoopItsTurn) {
  const SignalRecorder received(process_, kRequest);
  constexpr std::size_t kMany = 3000;
  for (std::size_t i = 0; i < kMany; ++i) {
    ASSERT_EQ(process_.Send(process_.pid(), kRequest), 0);
  }
  std::size_t most_at_once = 0;
  EXPECT_TRUE(ServiceUntil({}, [&] {
    const std::size_t before = received.count();
    vorx_dispatch(process_.get());
    most_at_once = std::max(most_at_once, received.count() - before);
    return received.count() == kMany;
  }));
  EXPECT_LE(most_at_once, 1000U);
}

TEST(Closing, SendsWhatIsStillQueued) {
  const PrivateBus bus;
  const TestProcess receiver(bus, "receiver");
  const SignalRecorder received(receiver, kRequest);
  constexpr std::size_t kMany = 10;
  {
    const TestProcess sender(bus, "sender", {0, std::size_t{64} << 20U, {}});
    for (std::size_t i = 0; i < kMany; ++i) {
      ASSERT_EQ(sender.Send(receiver.pid(), kRequest, std::string(3U << 20U, 'x')), 0);
    }
  }
  EXPECT_TRUE(ServiceUntil({receiver.get()}, [&] { return received.count() == kMany; }));
}

TEST(Closing, EndsWhatIsStillRegistered) {
  const PrivateBus bus;
  TestProcess process(bus, "process");
  vorx_registration_t* signal = vorx_sig_register_sized(
      process.get(), &kRequest, [](vorx_t*, void*, const vorx_pid_t*, void*, unsigned int) {},
      nullptr);
  vorx_eventreg_t* event = vorx_event_register_sized(
      process.get(), &kEvent, [](vorx_t*, void*, void*, unsigned int) {}, nullptr);
  vorx_subscription_t* subscription =
      vorx_proc_subscribe(process.get(), "other", nullptr, nullptr, nullptr);
  ASSERT_TRUE(signal != nullptr && event != nullptr && subscription != nullptr);
  process.Close();
  vorx_sig_deregister(&signal);
  vorx_event_deregister(&event);
  vorx_proc_unsubscribe(&subscription);
  EXPECT_TRUE(signal == nullptr && event == nullptr && subscription == nullptr);
}

TEST(Closing, GivesUpOnABusThatTakesNothing) {
  PrivateBus bus;
  const TestProcess receiver(bus, "receiver");
  testing::internal::CaptureStderr();
  std::chrono::steady_clock::time_point start;
  {
    const TestProcess sender(bus, "sender", {200, std::size_t{64} << 20U, {}});
    ASSERT_EQ(sender.Send(receiver.pid(), kRequest), 0);
    kill(bus.pid(), SIGSTOP);
    for (int i = 0; i < 10; ++i) {
      ASSERT_EQ(sender.Send(receiver.pid(), kRequest, std::string(4U << 20U, 'x')), 0);
    }
    start = std::chrono::steady_clock::now();
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  kill(bus.pid(), SIGCONT);
  EXPECT_THAT(testing::internal::GetCapturedStderr(),
              testing::ContainsRegex("vorx sender: closed with [0-9]+ messages not sent"));
}

}  // namespace
}  // namespace cfm_test
