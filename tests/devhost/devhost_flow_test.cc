// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>
#include <vorx/host.h>

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <regex>
#include <string>

#include "child_process.h"
#include "private_bus.h"
#include "test_process.h"

namespace cfm_test {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

constexpr vorx_sig_descriptor kRequest{"cC", 1, {}};
constexpr vorx_sig_descriptor kMark{"cC", 2, {}};
constexpr vorx_event_descriptor kEvent{"CFMM", 1};

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

std::string Numbered(std::uint32_t number, std::size_t size = sizeof number) {
  std::string data(size, '\0');
  std::memcpy(data.data(), &number, sizeof number);
  return data;
}

std::uint32_t NumberIn(const void* data) {
  std::uint32_t number = 0;
  std::memcpy(&number, data, sizeof number);
  return number;
}

std::size_t ResidentBytes() {
  std::ifstream statm("/proc/self/statm");
  std::size_t pages = 0;
  statm >> pages >> pages;
  return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

/** Counts numbered signals, and notices one that is out of its turn. */
struct OrderCheck {
  std::uint32_t next = 0;
  bool is_broken = false;
  std::chrono::microseconds work{};

  static void OnSignal(vorx_t*, void* user, const vorx_pid_t*, void* data, unsigned int) {
    auto* const self = static_cast<OrderCheck*>(user);
    self->is_broken = self->is_broken || NumberIn(data) != self->next;
    ++self->next;
    const auto until = std::chrono::steady_clock::now() + self->work;
    while (std::chrono::steady_clock::now() < until) {
    }
  }
  void Register(const TestProcess& process) {
    vorx_sig_register_sized(process.get(), &kRequest, &OnSignal, this);
  }
};

TEST(Flood, ArrivesWholeAndInOrderAtASlowerReceiver) {
  constexpr std::uint32_t kMany = 100'000;
  constexpr std::size_t kMostGrowth = std::size_t{32} << 20U;
  const PrivateBus bus;
  ChildProcess receiver([&bus] {
    TestProcess process(bus, "receiver");
    OrderCheck check;
    check.work = std::chrono::microseconds(10);
    check.Register(process);
    const bool complete = ServiceUntil(
        {process.get()}, [&] { return check.next == kMany; }, 3 * kLimit);
    return complete && !check.is_broken ? 0 : 1;
  });
  TestProcess sender(bus, "sender");
  const PresenceRecorder presence(sender, "receiver");
  ASSERT_TRUE(ServiceUntil({sender.get()}, [&] { return presence.present() != 0; }));

  const std::size_t before = ResidentBytes();
  for (std::uint32_t i = 0; i < kMany; ++i) {
    ASSERT_EQ(sender.Send(presence.present(), kRequest, Numbered(i)), 0);
  }
  if (!kIsSanitized) {
    EXPECT_LT(ResidentBytes(), before + kMostGrowth);
  }
  EXPECT_TRUE(ServiceUntil(
      {sender.get()}, [&] { return presence.present() == 0; }, 3 * kLimit));
  EXPECT_EQ(receiver.Wait(), 0);
}

/** Sends many to the other as soon as that is there, from inside the callback; receives as many. */
class Flooder {
 public:
  Flooder(const PrivateBus& bus, const std::string& name, const std::string& other)
      : process_(bus, name, {0, std::size_t{256} << 10U, {}}) {
    vorx_sig_register_sized(process_.get(), &kRequest, &OnSignal, this);
    vorx_proc_subscribe(process_.get(), other.c_str(), &OnFound, nullptr, this);
  }
  bool Run() {
    return ServiceUntil(
               {process_.get()}, [this] { return is_sent_ && check_.next == kMany; }, 2 * kLimit) &&
           !check_.is_broken && !is_failed_;
  }

 private:
  static constexpr std::uint32_t kMany = 30'000;
  static constexpr std::size_t kSize = 1024;

  static void OnFound(vorx_t*, const vorx_pid_t* pid, void* user) {
    auto* const self = static_cast<Flooder*>(user);
    self->is_sending_ = true;
    for (std::uint32_t i = 0; i < kMany; ++i) {
      self->is_failed_ |= self->process_.Send(*pid, kRequest, Numbered(i, kSize)) != 0;
    }
    self->is_sending_ = false;
    self->is_sent_ = true;
  }
  static void OnSignal(vorx_t* handle, void* user, const vorx_pid_t* sender, void* data,
                       unsigned int length) {
    auto* const self = static_cast<Flooder*>(user);
    self->is_failed_ |= self->is_sending_;
    OrderCheck::OnSignal(handle, &self->check_, sender, data, length);
  }

  TestProcess process_;
  OrderCheck check_;
  bool is_sending_ = false;
  bool is_sent_ = false;
  bool is_failed_ = false;
};

TEST(Flood, PassesBothWaysAtOnceOnABusThatHoldsLittle) {
  const PrivateBus bus({{"max_incoming_bytes", 1 << 20}, {"max_outgoing_bytes", 4 << 20}});
  ChildProcess left([&bus] { return Flooder(bus, "left", "right").Run() ? 0 : 1; });
  ChildProcess right([&bus] { return Flooder(bus, "right", "left").Run() ? 0 : 1; });
  EXPECT_EQ(left.Wait(3 * kLimit), 0);
  EXPECT_EQ(right.Wait(3 * kLimit), 0);
}

class FullQueue : public testing::Test {
 protected:
  static constexpr std::size_t kSize = 16 << 10;
  static constexpr unsigned int kTimeoutMs = 300;

  /** Sends numbered signals until one is refused; how many were accepted. */
  std::uint32_t Fill() {
    std::uint32_t accepted = 0;
    while (accepted < kTooMany && (result_ = Send(accepted)) == 0) {
      ++accepted;
    }
    return accepted;
  }
  int Send(std::uint32_t number) {
    return sender_.Send(receiver_.pid(), kRequest, Numbered(number, kSize));
  }

  static constexpr std::uint32_t kTooMany = 20'000;
  const PrivateBus bus_{{{"max_incoming_bytes", 1 << 20}, {"max_outgoing_bytes", 4 << 20}}};
  TestProcess sender_{bus_, "sender", {kTimeoutMs, std::size_t{256} << 10U, {}}};
  TestProcess receiver_{bus_, "receiver"};
  int result_ = 0;
};

TEST_F(FullQueue, ReportsATimeoutWhenTheReceiverDoesNotRead) {
  testing::internal::CaptureStderr();
  const auto start = std::chrono::steady_clock::now();
  const std::uint32_t accepted = Fill();
  EXPECT_EQ(result_, -ETIMEDOUT);
  EXPECT_LT(accepted, kTooMany);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(kTimeoutMs));
  EXPECT_THAT(testing::internal::GetCapturedStderr(),
              HasSubstr("signal cC/1 to process " + std::to_string(receiver_.pid()) +
                        " not sent: Connection timed out"));
}

TEST_F(FullQueue, DoesNotMakeTheSenderWaitASecondTime) {
  testing::internal::CaptureStderr();
  Fill();
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < 100; ++i) {
    EXPECT_EQ(Send(0), -ETIMEDOUT);
    EXPECT_EQ(sender_.Publish(kEvent, std::string(kSize, 'x')), -ETIMEDOUT);
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(10 * kTimeoutMs));
  testing::internal::GetCapturedStderr();
}

TEST_F(FullQueue, DeliversAllThatWasAcceptedOnceTheReceiverReads) {
  OrderCheck check;
  check.Register(receiver_);
  testing::internal::CaptureStderr();
  const std::uint32_t accepted = Fill();
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("not sent"));
  testing::internal::CaptureStderr();
  EXPECT_TRUE(ServiceUntil({sender_.get(), receiver_.get()},
                           [&] { return check.next == accepted && Send(accepted) == 0; }));
  EXPECT_TRUE(
      ServiceUntil({sender_.get(), receiver_.get()}, [&] { return check.next == accepted + 1; }));
  EXPECT_FALSE(check.is_broken);
  EXPECT_THAT(testing::internal::GetCapturedStderr(), Not(HasSubstr("lost")));
}

TEST_F(FullQueue, HoldsAMessageThatIsLargerThanItself) {
  const SignalRecorder received(receiver_, kRequest);
  ASSERT_EQ(sender_.Send(receiver_.pid(), kRequest, std::string(4U << 20U, 'x')), 0);
  EXPECT_TRUE(
      ServiceUntil({sender_.get(), receiver_.get()}, [&] { return received.count() == 1; }));
}

/** A bus that reads much more from a sender than it keeps for a receiver: it drops. */
class DroppingBus : public testing::Test {
 protected:
  static constexpr int kMany = 3000;

  /**
   * Has a mark go from the sender to itself, so that all that the sender sent is at the bus. The
   * bus may drop marks as well, while the sender has not read what came back to it.
   */
  void Settle() {
    const SignalRecorder mark(sender_, kMark);
    ASSERT_TRUE(ServiceUntil({sender_.get()}, [&] {
      sender_.Send(sender_.pid(), kMark);
      return mark.count() > 0;
    }));
  }
  bool ServiceReceiver(const std::function<bool()>& condition) {
    return ServiceUntil({receiver_.get()}, condition);
  }
  /** The last number of lost messages that @p text gives; 0 when it gives none. */
  static std::size_t LostInAll(const std::string& text) {
    const std::regex pattern("vorx receiver: .*?([0-9]+) messages lost in all");
    std::size_t lost = 0;
    for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end;
         ++match) {
      lost = std::stoul((*match)[1]);
    }
    return lost;
  }

  const PrivateBus bus_{{{"max_incoming_bytes", 256 << 20}, {"max_outgoing_bytes", 64 << 10}}};
  TestProcess sender_{bus_, "sender"};
  TestProcess receiver_{bus_, "receiver"};
};

TEST_F(DroppingBus, TellsBothSidesOfLostSignals) {
  const SignalRecorder received(receiver_, kRequest);
  const SignalRecorder mark(receiver_, kMark);
  testing::internal::CaptureStderr();
  for (int i = 0; i < kMany; ++i) {
    ASSERT_EQ(sender_.Send(receiver_.pid(), kRequest, std::string(4096, 'x')), 0);
  }
  Settle();
  const std::string said_by_sender = testing::internal::GetCapturedStderr();
  EXPECT_THAT(said_by_sender, HasSubstr("vorx sender: a signal to process " +
                                        std::to_string(receiver_.pid()) + " was not delivered: " +
                                        "it does not read and its queue at the bus is full"));
  EXPECT_THAT(said_by_sender, HasSubstr("(100 such so far)"));

  testing::internal::CaptureStderr();
  std::size_t sent = kMany;
  EXPECT_TRUE(ServiceUntil({sender_.get(), receiver_.get()}, [&] {
    sent += sender_.Send(receiver_.pid(), kMark) == 0 ? 1U : 0U;
    return mark.count() > 0;
  }));
  receiver_.Close();
  const std::string said = testing::internal::GetCapturedStderr();
  EXPECT_THAT(said, ContainsRegex("vorx receiver: [0-9]+ signals of process " +
                                  std::to_string(sender_.pid()) + " were lost"));
  const std::size_t known = received.count() + mark.count() + LostInAll(said);
  EXPECT_LT(received.count(), std::size_t{kMany});
  EXPECT_GE(known, std::size_t{kMany});
  EXPECT_LE(known, sent);
}

TEST_F(DroppingBus, TellsTheReceiverOfLostEvents) {
  const EventRecorder received(receiver_, kEvent);
  const SignalRecorder registered(receiver_, kMark);
  receiver_.Send(receiver_.pid(), kMark);
  ASSERT_TRUE(ServiceReceiver([&] { return registered.count() == 1; }));
  std::size_t published = 0;
  for (; published < 3; ++published) {
    ASSERT_EQ(sender_.Publish(kEvent), 0);
  }
  ASSERT_TRUE(
      ServiceUntil({sender_.get(), receiver_.get()}, [&] { return received.count() == 3; }));
  for (int i = 0; i < kMany; ++i) {
    ASSERT_EQ(sender_.Publish(kEvent, std::string(4096, 'x')), 0);
    ++published;
  }
  Settle();
  testing::internal::CaptureStderr();
  EXPECT_TRUE(ServiceReceiver([&] {
    published += sender_.Publish(kEvent, "last") == 0 ? 1U : 0U;
    return received.entries().back() == "last";
  }));
  receiver_.Close();
  const std::string said = testing::internal::GetCapturedStderr();
  EXPECT_THAT(said, ContainsRegex("vorx receiver: [0-9]+ events CFMM/1 of process " +
                                  std::to_string(sender_.pid()) + " were lost"));
  const std::size_t known = received.count() + LostInAll(said);
  EXPECT_LT(received.count(), std::size_t{kMany});
  EXPECT_GE(known, std::size_t{kMany});
  EXPECT_LE(known, published);
}

TEST_F(DroppingBus, ReportsNoLossOfEventsThatNobodyWantedMeanwhile) {
  testing::internal::CaptureStderr();
  for (int round = 0; round < 20; ++round) {
    sender_.Publish(kEvent, "unwanted");
    const EventRecorder received(receiver_, kEvent);
    ASSERT_TRUE(ServiceUntil({sender_.get(), receiver_.get()}, [&] {
      sender_.Publish(kEvent, "wanted");
      return received.count() >= 2;
    }));
  }
  EXPECT_THAT(testing::internal::GetCapturedStderr(), Not(HasSubstr("lost")));
}

TEST_F(DroppingBus, LearnsAfterALossWhoCameMeanwhile) {
  const SignalRecorder received(receiver_, kRequest);
  const PresenceRecorder presence(receiver_, "late");
  const PresenceRecorder own(receiver_, "receiver");
  ASSERT_TRUE(ServiceReceiver([&] { return own.count() == 1; }));
  testing::internal::CaptureStderr();
  for (int i = 0; i < kMany; ++i) {
    ASSERT_EQ(sender_.Send(receiver_.pid(), kRequest, std::string(4096, 'x')), 0);
  }
  Settle();
  const TestProcess late(bus_, "late");
  EXPECT_TRUE(ServiceUntil({sender_.get(), receiver_.get()}, [&] {
    sender_.Send(receiver_.pid(), kRequest);
    return presence.present() == late.pid();
  }));
  testing::internal::GetCapturedStderr();
}

TEST_F(DroppingBus, LearnsWhoLeftWhileTooMuchWasWaiting) {
  const SignalRecorder received(receiver_, kRequest);
  const PresenceRecorder presence(receiver_, "other");
  TestProcess other(bus_, "other");
  ASSERT_TRUE(ServiceReceiver([&] { return presence.count() == 1; }));
  testing::internal::CaptureStderr();
  for (int i = 0; i < kMany; ++i) {
    ASSERT_EQ(sender_.Send(receiver_.pid(), kRequest, std::string(4096, 'x')), 0);
  }
  Settle();
  other.Close();
  EXPECT_TRUE(ServiceReceiver([&] { return presence.present() == 0; }));
  testing::internal::GetCapturedStderr();
}

TEST_F(DroppingBus, AsksAgainWhoIsThereWhenTheAnswerWasDropped) {
  const SignalRecorder received(receiver_, kRequest);
  testing::internal::CaptureStderr();
  for (int i = 0; i < kMany; ++i) {
    ASSERT_EQ(sender_.Send(receiver_.pid(), kRequest, std::string(4096, 'x')), 0);
  }
  Settle();
  const PresenceRecorder presence(receiver_, "sender");
  // The bus has come round to the question, and to dropping the answer, before anything is read.
  Settle();
  Settle();
  EXPECT_TRUE(ServiceReceiver([&] { return presence.present() == sender_.pid(); }));
  testing::internal::GetCapturedStderr();
}

}  // namespace
}  // namespace cfm_test
