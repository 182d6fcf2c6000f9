/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_TESTS_DEVHOST_TEST_PROCESS_H
#define CFM_TESTS_DEVHOST_TEST_PROCESS_H

#include <poll.h>
#include <vorx/host.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <vector>

#include "private_bus.h"

namespace cfm_test {

inline constexpr std::chrono::seconds kLimit(20);

struct ProcessOptions {
  unsigned int send_timeout_ms = 0;
  std::size_t max_queued_bytes = 0;
  std::string log_config;
};

/** A handle of its own on a bus; several of them may live in one test. */
class TestProcess {
 public:
  TestProcess(const PrivateBus& bus, const std::string& name, const ProcessOptions& extra = {}) {
    vorx_options_t options{};
    options.name = name.c_str();
    options.bus_address = bus.address().c_str();
    options.log_config = extra.log_config.empty() ? nullptr : extra.log_config.c_str();
    options.send_timeout_ms = extra.send_timeout_ms;
    options.max_queued_bytes = extra.max_queued_bytes;
    if (vorx_open(&options, &handle_) < 0) {
      throw std::runtime_error(vorx_last_error(nullptr));
    }
  }
  ~TestProcess() { Close(); }
  TestProcess(const TestProcess&) = delete;
  TestProcess& operator=(const TestProcess&) = delete;

  vorx_t* get() const { return handle_; }
  vorx_pid_t pid() const { return vorx_self(handle_); }
  void Close() {
    vorx_close(handle_);
    handle_ = nullptr;
  }

  int Send(vorx_pid_t destination, const vorx_sig_descriptor& descriptor,
           const std::string& data = {}) const {
    return vorx_sig_send(handle_, &destination, &descriptor, data.empty() ? nullptr : data.data(),
                         static_cast<unsigned int>(data.size()));
  }
  int Publish(const vorx_event_descriptor& descriptor, const std::string& data = {}) const {
    return vorx_event_publish(handle_, &descriptor, data.empty() ? nullptr : data.data(),
                              static_cast<unsigned int>(data.size()));
  }

 private:
  vorx_t* handle_ = nullptr;
};

/** Services the handles until the condition holds. False when the time is over first. */
inline bool ServiceUntil(std::initializer_list<vorx_t*> handles,
                         const std::function<bool()>& condition,
                         std::chrono::milliseconds limit = kLimit) {
  const auto deadline = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= deadline) {
      return false;
    }
    std::vector<pollfd> descriptors;
    int wait = 100;
    for (vorx_t* const handle : handles) {
      const int timeout = vorx_poll_timeout(handle);
      wait = timeout < 0 ? wait : std::min(wait, timeout);
      const int events = vorx_poll_events(handle);
      descriptors.push_back({vorx_fd(handle), static_cast<short>(std::max(events, 0)), 0});
    }
    poll(descriptors.data(), descriptors.size(), wait);
    for (vorx_t* const handle : handles) {
      vorx_dispatch(handle);
    }
  }
  return true;
}

/** Records the signals of one descriptor as they arrive. */
class SignalRecorder {
 public:
  struct Entry {
    vorx_pid_t sender = 0;
    std::string data;
  };

  SignalRecorder(const TestProcess& process, const vorx_sig_descriptor& descriptor)
      : registration_(vorx_sig_register_sized(process.get(), &descriptor, &OnSignal, this)) {}
  ~SignalRecorder() { vorx_sig_deregister(&registration_); }
  SignalRecorder(const SignalRecorder&) = delete;
  SignalRecorder& operator=(const SignalRecorder&) = delete;

  const std::vector<Entry>& entries() const { return entries_; }
  std::size_t count() const { return entries_.size(); }

 private:
  static void OnSignal(vorx_t*, void* user, const vorx_pid_t* sender, void* data,
                       unsigned int length) {
    auto* const self = static_cast<SignalRecorder*>(user);
    self->entries_.push_back({*sender, std::string(static_cast<const char*>(data), length)});
  }

  vorx_registration_t* registration_;
  std::vector<Entry> entries_;
};

/** Records the events of one descriptor as they arrive. */
class EventRecorder {
 public:
  EventRecorder(const TestProcess& process, const vorx_event_descriptor& descriptor)
      : registration_(vorx_event_register_sized(process.get(), &descriptor, &OnEvent, this)) {}
  ~EventRecorder() { vorx_event_deregister(&registration_); }
  EventRecorder(const EventRecorder&) = delete;
  EventRecorder& operator=(const EventRecorder&) = delete;

  const std::vector<std::string>& entries() const { return entries_; }
  std::size_t count() const { return entries_.size(); }

 private:
  static void OnEvent(vorx_t*, void* user, void* data, unsigned int length) {
    static_cast<EventRecorder*>(user)->entries_.emplace_back(static_cast<const char*>(data),
                                                             length);
  }

  vorx_eventreg_t* registration_;
  std::vector<std::string> entries_;
};

/** Records who comes and goes under a name: "found 12", "lost". */
class PresenceRecorder {
 public:
  PresenceRecorder(const TestProcess& process, const std::string& name)
      : subscription_(vorx_proc_subscribe(process.get(), name.c_str(), &OnFound, &OnLost, this)) {}
  ~PresenceRecorder() { vorx_proc_unsubscribe(&subscription_); }
  PresenceRecorder(const PresenceRecorder&) = delete;
  PresenceRecorder& operator=(const PresenceRecorder&) = delete;

  const std::vector<std::string>& entries() const { return entries_; }
  std::size_t count() const { return entries_.size(); }
  vorx_pid_t present() const { return present_; }

 private:
  static void OnFound(vorx_t*, const vorx_pid_t* pid, void* user) {
    auto* const self = static_cast<PresenceRecorder*>(user);
    self->present_ = *pid;
    self->entries_.push_back("found " + std::to_string(*pid));
  }
  static void OnLost(vorx_t*, void* user) {
    auto* const self = static_cast<PresenceRecorder*>(user);
    self->present_ = 0;
    self->entries_.emplace_back("lost");
  }

  vorx_pid_t present_ = 0;
  std::vector<std::string> entries_;
  vorx_subscription_t* subscription_;
};

}  // namespace cfm_test

#endif
