// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <systemd/sd-bus.h>
#include <vorx/host.h>

#include <cstdint>
#include <string>

#include "private_bus.h"
#include "test_process.h"

namespace cfm_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr vorx_sig_descriptor kRequest{"cC", 1, {}};
constexpr vorx_event_descriptor kEvent{"CFMM", 1};

/** Messages of programs that know nothing of the messaging, or get it wrong. */
class ForeignMessages : public testing::Test {
 protected:
  ForeignMessages() {
    sd_bus_new(&foreign_);
    sd_bus_set_address(foreign_, bus_.address().c_str());
    sd_bus_set_bus_client(foreign_, 1);
    EXPECT_GE(sd_bus_start(foreign_), 0);
    const char* own_name = nullptr;
    EXPECT_GE(sd_bus_get_unique_name(foreign_, &own_name), 0);
  }
  ~ForeignMessages() override { sd_bus_close_unref(foreign_); }

  template <typename... Content>
  void SendSignal(const char* interface, const char* member, const char* types,
                  Content... content) {
    sd_bus_message* message = nullptr;
    ASSERT_GE(sd_bus_message_new_signal(foreign_, &message, "/some/path", interface, member), 0);
    ASSERT_GE(sd_bus_message_set_destination(message, "vorx.process"), 0);
    ASSERT_GE(sd_bus_message_append(message, types, content...), 0);
    ASSERT_GE(sd_bus_send(foreign_, message, nullptr), 0);
    sd_bus_message_unref(message);
  }

  /** Sends a good signal behind the others, and services until it is there. */
  void ExpectStillWorking() {
    const std::size_t before = received_.count();
    SendSignal("vorx.Messaging", "Signal", "sytay", "cC", 1, ++sequence_, 2, 'o', 'k');
    ASSERT_TRUE(ServiceUntil({process_.get()}, [&] { return received_.count() > before; }));
    EXPECT_EQ(received_.entries().back().data, "ok");
  }

  PrivateBus bus_;
  TestProcess process_{bus_, "process"};
  SignalRecorder received_{process_, kRequest};
  EventRecorder events_{process_, kEvent};
  sd_bus* foreign_ = nullptr;
  std::uint64_t sequence_ = 0;
};

TEST_F(ForeignMessages, AreIgnoredWhenMalformed) {
  testing::internal::CaptureStderr();
  SendSignal("vorx.Messaging", "Signal", "");
  SendSignal("vorx.Messaging", "Signal", "s", "cC");
  SendSignal("vorx.Messaging", "Signal", "syts", "cC", 1, std::uint64_t{1}, "text");
  SendSignal("vorx.Messaging", "Signal", "suay", "cC", 1, 0);
  SendSignal("vorx.Messaging", "Event", "sstay", "CFMM", "x", std::uint64_t{1}, 0);
  SendSignal("vorx.Messaging", "Event", "sstay", "CFMM", "", std::uint64_t{1}, 0);
  SendSignal("vorx.Messaging", "Event", "sstay", "CFMM", "4294967297", std::uint64_t{1}, 0);
  SendSignal("vorx.Messaging", "Event", "sstay", "CFMM", "-1", std::uint64_t{1}, 0);
  SendSignal("vorx.Messaging", "Other", "sytay", "cC", 1, std::uint64_t{1}, 0);
  ExpectStillWorking();
  EXPECT_EQ(received_.count(), 1U);
  EXPECT_EQ(events_.count(), 0U);
  EXPECT_THAT(testing::internal::GetCapturedStderr(),
              HasSubstr("vorx process: ignored a message that is no signal or event: "
                        "'vorx.Messaging.Signal' from :1."));
}

TEST_F(ForeignMessages, AreIgnoredWhenOfAnotherKind) {
  testing::internal::CaptureStderr();
  SendSignal("org.example.Other", "Changed", "s", "content");
  SendSignal("org.example.Other", "Changed", "");
  ExpectStillWorking();
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("'org.example.Other.Changed'"));
}

TEST_F(ForeignMessages, CannotPretendThatAProcessIsThere) {
  const PresenceRecorder presence(process_, "other");
  testing::internal::CaptureStderr();
  SendSignal("org.freedesktop.DBus", "NameOwnerChanged", "sss", "vorx.other", "", ":1.77");
  ExpectStillWorking();
  EXPECT_EQ(presence.count(), 0U);
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("NameOwnerChanged"));
}

TEST_F(ForeignMessages, GetAnErrorWhenTheyAreCalls) {
  sd_bus_message* call = nullptr;
  ASSERT_GE(sd_bus_message_new_method_call(foreign_, &call, "vorx.process", "/", "org.example.Some",
                                           "Method"),
            0);
  struct Answer {
    bool has_come = false;
    std::string error;
  } answer;
  testing::internal::CaptureStderr();
  sd_bus_call_async(
      foreign_, nullptr, call,
      [](sd_bus_message* reply, void* user, sd_bus_error*) {
        auto* const self = static_cast<Answer*>(user);
        self->has_come = true;
        const sd_bus_error* const error = sd_bus_message_get_error(reply);
        self->error = error == nullptr ? "" : error->name;
        return 1;
      },
      &answer, 0);
  sd_bus_message_unref(call);
  EXPECT_TRUE(ServiceUntil({process_.get()}, [&] {
    sd_bus_process(foreign_, nullptr);
    return answer.has_come;
  }));
  EXPECT_EQ(answer.error, "org.freedesktop.DBus.Error.UnknownMethod");
  ExpectStillWorking();
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("refused a call"));
}

}  // namespace
}  // namespace cfm_test
