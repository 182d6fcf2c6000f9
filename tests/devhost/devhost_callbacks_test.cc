// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vorx/host.h>

#include <cerrno>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "private_bus.h"
#include "test_process.h"

namespace cfm_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr vorx_sig_descriptor kRequest{"cC", 1, {}};
constexpr vorx_sig_descriptor kReply{"dC", 1, {}};
constexpr vorx_event_descriptor kEvent{"CFMM", 1};

/** Calls a function for each signal. */
struct SignalAction {
  SignalAction(const TestProcess& process, const vorx_sig_descriptor& descriptor,
               std::function<void(SignalAction&)> what)
      : action(std::move(what)),
        registration(vorx_sig_register_sized(process.get(), &descriptor, &OnSignal, this)) {}
  static void OnSignal(vorx_t*, void* user, const vorx_pid_t*, void*, unsigned int) {
    auto* const self = static_cast<SignalAction*>(user);
    ++self->calls;
    self->action(*self);
  }

  std::function<void(SignalAction&)> action;
  vorx_registration_t* registration;
  int calls = 0;
};

class Callbacks : public testing::Test {
 protected:
  /** Sends two requests to itself and a mark behind them, and services until the mark is there. */
  void SendTwo() {
    const std::size_t marks = mark_.count();
    process_.Send(process_.pid(), kRequest);
    process_.Send(process_.pid(), kRequest);
    process_.Send(process_.pid(), kReply);
    ASSERT_TRUE(ServiceUntil({process_.get()}, [&] { return mark_.count() > marks; }));
  }

  PrivateBus bus_;
  TestProcess process_{bus_, "process"};
  SignalRecorder mark_{process_, kReply};
};

TEST_F(Callbacks, MayDeregisterThemselves) {
  SignalAction once(process_, kRequest,
                    [](SignalAction& self) { vorx_sig_deregister(&self.registration); });
  SignalAction always(process_, kRequest, [](SignalAction&) {});
  SendTwo();
  EXPECT_EQ(once.calls, 1);
  EXPECT_EQ(once.registration, nullptr);
  EXPECT_EQ(always.calls, 2);
}

TEST_F(Callbacks, MayDeregisterOthersOfTheSameSignal) {
  SignalAction* victim = nullptr;
  const SignalAction first(process_, kRequest,
                           [&](SignalAction&) { vorx_sig_deregister(&victim->registration); });
  SignalAction second(process_, kRequest, [](SignalAction&) {});
  const SignalAction third(process_, kRequest, [](SignalAction&) {});
  victim = &second;
  SendTwo();
  EXPECT_EQ(first.calls, 2);
  EXPECT_EQ(second.calls, 0);
  EXPECT_EQ(third.calls, 2);
}

TEST_F(Callbacks, MayRegisterForTheSameSignal) {
  std::vector<std::unique_ptr<SignalAction>> added;
  const SignalAction adds(process_, kRequest, [&](SignalAction&) {
    added.push_back(std::make_unique<SignalAction>(process_, kRequest, [](SignalAction&) {}));
  });
  SendTwo();
  ASSERT_EQ(added.size(), 2U);
  EXPECT_EQ(added[0]->calls, 1);
  EXPECT_EQ(added[1]->calls, 0);
}

TEST_F(Callbacks, MaySendAndPublish) {
  const EventRecorder events(process_, kEvent);
  const SignalAction answers(process_, kRequest, [&](SignalAction&) {
    EXPECT_EQ(process_.Publish(kEvent, "event"), 0);
    EXPECT_EQ(process_.Send(process_.pid(), kReply, "answer"), 0);
  });
  process_.Send(process_.pid(), kRequest);
  ASSERT_TRUE(
      ServiceUntil({process_.get()}, [&] { return mark_.count() == 1 && events.count() == 1; }));
  EXPECT_EQ(mark_.entries()[0].data, "answer");
  EXPECT_THAT(events.entries(), ElementsAre("event"));
}

TEST_F(Callbacks, MayDeregisterEvents) {
  struct Once {
    vorx_eventreg_t* registration = nullptr;
    int calls = 0;
  } once;
  once.registration = vorx_event_register_sized(
      process_.get(), &kEvent,
      [](vorx_t*, void* user, void*, unsigned int) {
        auto* const self = static_cast<Once*>(user);
        ++self->calls;
        vorx_event_deregister(&self->registration);
      },
      &once);
  process_.Publish(kEvent);
  process_.Publish(kEvent);
  process_.Send(process_.pid(), kReply);
  ASSERT_TRUE(ServiceUntil({process_.get()}, [&] { return mark_.count() == 1; }));
  EXPECT_EQ(once.calls, 1);
}

TEST_F(Callbacks, MayUnsubscribeAndSubscribeAnewWhenAProcessIsFound) {
  struct Watch {
    vorx_subscription_t* first = nullptr;
    vorx_subscription_t* second = nullptr;
    int found = 0;
    static void OnFound(vorx_t* handle, const vorx_pid_t*, void* user) {
      auto* const self = static_cast<Watch*>(user);
      ++self->found;
      if (self->first != nullptr) {
        vorx_proc_unsubscribe(&self->first);
        self->second = vorx_proc_subscribe(handle, "process", &OnFound, nullptr, user);
        EXPECT_EQ(self->found, 1) << "called back from inside the subscription";
      }
    }
  } watch;
  watch.first = vorx_proc_subscribe(process_.get(), "process", &Watch::OnFound, nullptr, &watch);
  ASSERT_TRUE(ServiceUntil({process_.get()}, [&] { return watch.found == 2; }));
  vorx_proc_unsubscribe(&watch.second);
}

TEST_F(Callbacks, MayUnsubscribeWhenAProcessIsLostForAnother) {
  struct Watch {
    vorx_subscription_t* subscription = nullptr;
    std::vector<std::string> log;
    static void OnFound(vorx_t*, const vorx_pid_t*, void* user) {
      static_cast<Watch*>(user)->log.emplace_back("found");
    }
    static void OnLost(vorx_t*, void* user) {
      auto* const self = static_cast<Watch*>(user);
      self->log.emplace_back("lost");
      vorx_proc_unsubscribe(&self->subscription);
    }
  } watch;
  watch.subscription =
      vorx_proc_subscribe(process_.get(), "other", &Watch::OnFound, &Watch::OnLost, &watch);
  const PresenceRecorder also(process_, "other");
  const SignalAction ignores(process_, kRequest, [](SignalAction&) {});
  SendTwo();
  { const TestProcess other(bus_, "other"); }
  const TestProcess again(bus_, "other");
  ASSERT_TRUE(ServiceUntil({process_.get()}, [&] { return also.present() == again.pid(); }));
  EXPECT_THAT(watch.log, ElementsAre("found", "lost"));
  EXPECT_EQ(also.count(), 3U);
}

TEST_F(Callbacks, MustNotServiceOrCloseTheirHandle) {
  testing::internal::CaptureStderr();
  const SignalAction misuse(process_, kRequest, [&](SignalAction&) {
    EXPECT_EQ(vorx_dispatch(process_.get()), -EBUSY);
    EXPECT_EQ(vorx_run(process_.get()), -EBUSY);
    vorx_close(process_.get());
  });
  SendTwo();
  EXPECT_EQ(misuse.calls, 2);
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("vorx_close called from inside"));
}

TEST_F(Callbacks, MayThrowThroughTheDispatch) {
  const SignalAction throws(process_, kRequest,
                            [](SignalAction&) { throw std::runtime_error("thrown"); });
  process_.Send(process_.pid(), kRequest);
  EXPECT_THROW(ServiceUntil({process_.get()}, [] { return false; }), std::runtime_error);
  process_.Send(process_.pid(), kReply);
  EXPECT_TRUE(ServiceUntil({process_.get()}, [&] { return mark_.count() == 1; }));
}

}  // namespace
}  // namespace cfm_test
