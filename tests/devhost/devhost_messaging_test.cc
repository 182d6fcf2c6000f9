// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vorx/host.h>

#include <cerrno>
#include <cstddef>
#include <string>
#include <vector>

#include "private_bus.h"
#include "test_process.h"

namespace cfm_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr vorx_sig_descriptor kRequest{"cC", 1, {}};
constexpr vorx_sig_descriptor kOtherNumber{"cC", 2, {}};
constexpr vorx_sig_descriptor kOtherBlock{"dC", 1, {}};
constexpr vorx_event_descriptor kEvent{"CFMM", 1};
constexpr vorx_event_descriptor kOtherEvent{"CFMM", 2};

class Messaging : public testing::Test {
 protected:
  bool ServiceBoth(const std::function<bool()>& condition) {
    return ServiceUntil({client_.get(), server_.get()}, condition);
  }

  PrivateBus bus_;
  TestProcess client_{bus_, "client"};
  TestProcess server_{bus_, "server"};
};

class CarriesPayloadOfSize : public Messaging, public testing::WithParamInterface<std::size_t> {};

TEST_F(Messaging, CarriesASignalToTheProcessItIsSentToAndNoOther) {
  const SignalRecorder received(server_, kRequest);
  const SignalRecorder elsewhere(client_, kRequest);
  ASSERT_EQ(client_.Send(server_.pid(), kRequest, "content"), 0);
  ASSERT_TRUE(ServiceBoth([&] { return received.count() == 1; }));
  EXPECT_EQ(received.entries()[0].data, "content");
  EXPECT_EQ(received.entries()[0].sender, client_.pid());
  EXPECT_EQ(elsewhere.count(), 0U);
}

TEST_F(Messaging, ComparesDescriptorsByContent) {
  const std::string block = "cC";
  const SignalRecorder received(server_, {block.c_str(), 1, {}});
  const SignalRecorder other_number(server_, kOtherNumber);
  const SignalRecorder other_block(server_, kOtherBlock);
  client_.Send(server_.pid(), kRequest, "first");
  client_.Send(server_.pid(), kOtherBlock, "second");
  ASSERT_TRUE(ServiceBoth([&] { return other_block.count() == 1; }));
  EXPECT_EQ(received.count(), 1U);
  EXPECT_EQ(other_number.count(), 0U);
}

TEST_F(Messaging, CallsEveryRegistrationOfADescriptor) {
  const SignalRecorder first(server_, kRequest);
  const SignalRecorder second(server_, kRequest);
  client_.Send(server_.pid(), kRequest, "content");
  EXPECT_TRUE(ServiceBoth([&] { return first.count() == 1 && second.count() == 1; }));
}

TEST_F(Messaging, CarriesSignalsToItself) {
  const SignalRecorder received(server_, kRequest);
  ASSERT_EQ(server_.Send(server_.pid(), kRequest, "content"), 0);
  ASSERT_TRUE(ServiceBoth([&] { return received.count() == 1; }));
  EXPECT_EQ(received.entries()[0].sender, server_.pid());
}

TEST_F(Messaging, KeepsTheOrderOfSignalsAndEvents) {
  struct Log {
    std::vector<std::string> entries;
  } log;
  const auto on_signal = [](vorx_t*, void* user, const vorx_pid_t*, void* data, unsigned int size) {
    static_cast<Log*>(user)->entries.push_back("s" +
                                               std::string(static_cast<const char*>(data), size));
  };
  const auto on_event = [](vorx_t*, void* user, void* data, unsigned int size) {
    static_cast<Log*>(user)->entries.push_back("e" +
                                               std::string(static_cast<const char*>(data), size));
  };
  vorx_sig_register_sized(client_.get(), &kRequest, on_signal, &log);
  vorx_sig_register_sized(client_.get(), &kOtherBlock, on_signal, &log);
  vorx_event_register_sized(client_.get(), &kEvent, on_event, &log);
  vorx_event_register_sized(client_.get(), &kOtherEvent, on_event, &log);
  // The bus knows of the registrations once it has answered something that was sent after them.
  const SignalRecorder marker(client_, kOtherNumber);
  client_.Send(client_.pid(), kOtherNumber);
  ASSERT_TRUE(ServiceBoth([&] { return marker.count() == 1; }));

  std::vector<std::string> sent;
  for (int i = 0; i < 200; ++i) {
    const std::string text = std::to_string(i);
    if (i % 2 == 0) {
      server_.Send(client_.pid(), i % 4 == 0 ? kRequest : kOtherBlock, text);
      sent.push_back("s" + text);
    } else {
      server_.Publish(i % 3 == 0 ? kEvent : kOtherEvent, text);
      sent.push_back("e" + text);
    }
  }
  ASSERT_TRUE(ServiceBoth([&] { return log.entries.size() >= sent.size(); }));
  EXPECT_EQ(log.entries, sent);
}

TEST_P(CarriesPayloadOfSize, AsSignal) {
  std::string payload(GetParam(), '\0');
  for (std::size_t i = 0; i < payload.size(); ++i) {
    payload[i] = static_cast<char>(i * 7U + i / 251U);
  }
  const SignalRecorder received(server_, kRequest);
  ASSERT_EQ(client_.Send(server_.pid(), kRequest, payload), 0);
  ASSERT_TRUE(ServiceBoth([&] { return received.count() == 1; }));
  EXPECT_TRUE(received.entries()[0].data == payload);
}

TEST_P(CarriesPayloadOfSize, AsEvent) {
  const std::string payload(GetParam(), 'x');
  const EventRecorder received(client_, kEvent);
  const SignalRecorder registered(server_, kRequest);
  client_.Send(server_.pid(), kRequest);
  ASSERT_TRUE(ServiceBoth([&] { return registered.count() == 1; }));
  ASSERT_EQ(server_.Publish(kEvent, payload), 0);
  ASSERT_TRUE(ServiceBoth([&] { return received.count() == 1; }));
  EXPECT_TRUE(received.entries()[0] == payload);
}

INSTANTIATE_TEST_SUITE_P(Messaging, CarriesPayloadOfSize,
                         testing::Values(0, 1, 4U << 20U, 20U << 20U));

TEST_F(Messaging, RefusesAPayloadThatNoMessageHolds) {
  const SignalRecorder received(server_, kRequest);
  const std::string too_long((64U << 20U) + 1, 'x');
  EXPECT_EQ(client_.Send(server_.pid(), kRequest, too_long), -EMSGSIZE);
  EXPECT_EQ(client_.Publish(kEvent, too_long), -EMSGSIZE);
  ASSERT_EQ(client_.Send(server_.pid(), kRequest, "short"), 0);
  ASSERT_TRUE(ServiceBoth([&] { return received.count() == 1; }));
  EXPECT_EQ(received.entries()[0].data, "short");
}

TEST_F(Messaging, RefusesASignalToNobody) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(client_.Send(0, kRequest), -ESRCH);
  EXPECT_EQ(client_.Send(-1, kRequest), -ESRCH);
  EXPECT_EQ(client_.Send(server_.pid() + 1000, kRequest), -ESRCH);
  EXPECT_THAT(testing::internal::GetCapturedStderr(),
              HasSubstr("vorx client: signal cC/1 to process 0 not sent: No such process"));
  EXPECT_THAT(vorx_last_error(client_.get()), HasSubstr("not sent: No such process"));
}

TEST_F(Messaging, RefusesASignalToAProcessThatHasGone) {
  const vorx_pid_t gone = server_.pid();
  ASSERT_EQ(client_.Send(gone, kRequest), 0);
  server_.Close();
  const PresenceRecorder watch(client_, "server");
  const SignalRecorder marker(client_, kOtherNumber);
  client_.Send(client_.pid(), kOtherNumber);
  ASSERT_TRUE(ServiceUntil({client_.get()}, [&] { return marker.count() == 1; }));
  EXPECT_EQ(client_.Send(gone, kRequest), -ESRCH);
}

TEST_F(Messaging, ReportsSignalsThatTheBusReturns) {
  ASSERT_EQ(client_.Send(server_.pid(), kRequest), 0);
  const vorx_pid_t gone = server_.pid();
  server_.Close();
  testing::internal::CaptureStderr();
  // The bus knows as soon as it tells a newcomer so.
  ASSERT_TRUE(ServiceUntil(
      {}, [&] { return TestProcess(bus_, "newcomer").Send(gone, kRequest) == -ESRCH; }));
  // The client has read nothing meanwhile.
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(client_.Send(gone, kRequest), 0);
  }
  EXPECT_TRUE(ServiceUntil({client_.get()}, [&] { return client_.Send(gone, kRequest) < 0; }));
  const SignalRecorder marker(client_, kOtherNumber);
  client_.Send(client_.pid(), kOtherNumber);
  EXPECT_TRUE(ServiceUntil({client_.get()}, [&] { return marker.count() == 1; }));
  const std::string process = "process " + std::to_string(gone);
  const std::string said = testing::internal::GetCapturedStderr();
  EXPECT_THAT(said, HasSubstr("vorx client: a signal to " + process +
                              " was not delivered: " + "there is no such process any more\n"));
  EXPECT_THAT(said, HasSubstr("(10 such so far)"));
}

TEST_F(Messaging, RefusesNullArguments) {
  const vorx_pid_t pid = server_.pid();
  const vorx_sig_descriptor no_block{nullptr, 1, {}};
  const vorx_event_descriptor no_group{nullptr, 1};
  testing::internal::CaptureStderr();
  EXPECT_EQ(vorx_sig_send(client_.get(), nullptr, &kRequest, nullptr, 0), -EINVAL);
  EXPECT_EQ(vorx_sig_send(client_.get(), &pid, nullptr, nullptr, 0), -EINVAL);
  EXPECT_EQ(vorx_sig_send(client_.get(), &pid, &no_block, nullptr, 0), -EINVAL);
  EXPECT_EQ(vorx_sig_send(client_.get(), &pid, &kRequest, nullptr, 1), -EINVAL);
  EXPECT_EQ(vorx_sig_send(nullptr, &pid, &kRequest, nullptr, 0), -EINVAL);
  EXPECT_EQ(vorx_event_publish(client_.get(), &no_group, nullptr, 0), -EINVAL);
  EXPECT_EQ(vorx_event_publish(client_.get(), &kEvent, nullptr, 1), -EINVAL);
  EXPECT_EQ(vorx_sig_register_sized(client_.get(), &kRequest, nullptr, nullptr), nullptr);
  EXPECT_EQ(vorx_event_register_sized(client_.get(), &no_group, nullptr, nullptr), nullptr);
  testing::internal::GetCapturedStderr();
}

TEST_F(Messaging, ReportsASignalThatNobodyRegisteredFor) {
  const SignalRecorder other(server_, kOtherNumber);
  testing::internal::CaptureStderr();
  for (int i = 0; i < 10; ++i) {
    client_.Send(server_.pid(), kRequest);
  }
  client_.Send(server_.pid(), kOtherNumber);
  EXPECT_TRUE(ServiceBoth([&] { return other.count() == 1; }));
  const std::string text = "vorx server: signal cC/1 of process " + std::to_string(client_.pid()) +
                           " ignored: nothing is registered for it";
  EXPECT_EQ(testing::internal::GetCapturedStderr(), text + "\n" + text + " (10 such so far)\n");
}

TEST_F(Messaging, CarriesEventsToAllThatRegisteredAndNoOthers) {
  TestProcess second(bus_, "second");
  const EventRecorder in_client(client_, kEvent);
  const EventRecorder in_second(second, kEvent);
  const EventRecorder other_event(second, kOtherEvent);
  const SignalRecorder registered(server_, kRequest);
  client_.Send(server_.pid(), kRequest);
  second.Send(server_.pid(), kRequest);
  ASSERT_TRUE(ServiceUntil({client_.get(), second.get(), server_.get()},
                           [&] { return registered.count() == 2; }));
  server_.Publish(kEvent, "one");
  server_.Publish({"OTHER", 1}, "lost on everybody");
  server_.Publish(kEvent, "two");
  ASSERT_TRUE(ServiceUntil({client_.get(), second.get(), server_.get()},
                           [&] { return in_client.count() == 2 && in_second.count() == 2; }));
  EXPECT_THAT(in_client.entries(), ElementsAre("one", "two"));
  EXPECT_THAT(in_second.entries(), ElementsAre("one", "two"));
  EXPECT_EQ(other_event.count(), 0U);
}

TEST_F(Messaging, TakesEventGroupsWithAnyCharacters) {
  const vorx_event_descriptor odd{"it's, a='group'\\", 7};
  const EventRecorder received(client_, odd);
  const SignalRecorder registered(server_, kRequest);
  client_.Send(server_.pid(), kRequest);
  ASSERT_TRUE(ServiceBoth([&] { return registered.count() == 1; }));
  server_.Publish(odd, "content");
  EXPECT_TRUE(ServiceBoth([&] { return received.count() == 1; }));
}

TEST_F(Messaging, StopsEventsAfterTheLastDeregistration) {
  struct Count {
    int events = 0;
  } count;
  const auto on_event = [](vorx_t*, void* user, void*, unsigned int) {
    ++static_cast<Count*>(user)->events;
  };
  vorx_eventreg_t* first = vorx_event_register_sized(client_.get(), &kEvent, on_event, &count);
  vorx_eventreg_t* second = vorx_event_register_sized(client_.get(), &kEvent, on_event, &count);
  const SignalRecorder registered(server_, kRequest);
  const SignalRecorder marker(client_, kRequest);
  const auto publish_after_sync = [&](std::size_t round) {
    client_.Send(server_.pid(), kRequest);
    EXPECT_TRUE(ServiceBoth([&] { return registered.count() == round; }));
    server_.Publish(kEvent);
    server_.Send(client_.pid(), kRequest);
    EXPECT_TRUE(ServiceBoth([&] { return marker.count() == round; }));
  };
  publish_after_sync(1);
  EXPECT_EQ(count.events, 2);
  vorx_event_deregister(&first);
  EXPECT_EQ(first, nullptr);
  publish_after_sync(2);
  EXPECT_EQ(count.events, 3);
  vorx_event_deregister(&second);
  publish_after_sync(3);
  EXPECT_EQ(count.events, 3);
}

}  // namespace
}  // namespace cfm_test
