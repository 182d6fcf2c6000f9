/* SPDX-License-Identifier: Apache-2.0 */
// A host process for the library that keeps an ordered record of all that the library does to it.
//
// What it leaves out: it delivers nothing by itself (a test plays the server through ServerFound(),
// Signal() and Event()), every send succeeds, and the log is kept instead of written.
#ifndef CFM_TESTS_LIBRARY_RECORDING_HOST_H
#define CFM_TESTS_LIBRARY_RECORDING_HOST_H

#include <cfm/client_server.pb.h>
#include <sepan/sepan.h>
#include <vorx/vorx.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "descriptors.h"

struct vorx {};

namespace cfm_test {

/// Whose code runs: the library's, from when it is called until it returns or calls out; or that of
/// the host, a handler or a test. The host notes each change but the calls of cfm::Client, which a
/// test notes itself where it matters.
class Running {
 public:
  enum class Code { Host, Library };

  explicit Running(Code code) : before_(current_) { current_ = code; }
  ~Running() { current_ = before_; }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

  static Code Now() { return current_; }

 private:
  inline static Code current_ = Code::Host;
  const Code before_;
};

class RecordingHost {
 public:
  RecordingHost();
  ~RecordingHost();
  RecordingHost(const RecordingHost&) = delete;
  RecordingHost& operator=(const RecordingHost&) = delete;

  static RecordingHost& Current();

  vorx_t* handle() { return &handle_; }

  // The record, one line of text per entry:
  //   subscribe NAME, unsubscribe, trace NAME, register SIGNAL, deregister SIGNAL
  //   log LEVEL FUNCTION:LINE TEXT
  //   send PID SIGNAL FIELDS
  //   fault KIND FUNCTION FILE:LINE TEXT, backtrace
  // and whatever a test adds with Note(), usually what a handler was called with.
  std::vector<std::string> Take();
  void Note(std::string entry) {
    record_.push_back(std::move(entry));
    on_note();
  }

  // Only the entries that begin with the prefix, without it; the record is emptied all the same.
  std::vector<std::string> Take(std::string_view prefix);

  // What the middleware would call.
  void ServerFound(vorx_pid_t pid = 77);
  void ServerLost();
  void Signal(const vorx_sig_descriptor* signal, std::string payload);
  void Event(const vorx_event_descriptor* event, std::string payload);
  void SignalNull(const vorx_sig_descriptor* signal);
  void EventNull(const vorx_event_descriptor* event);

  // The server found and its cache reply taken; the record is emptied.
  void GetInStep(const client_server::OpCacheSync& cache = {});

  // How the host behaves.
  bool subscription_works = true;
  bool trace_works = true;
  bool dump_level_enabled = true;
  std::function<bool(const std::string& name)> registration_works = [](auto&) { return true; };
  std::function<void()> on_subscribe = [] {};
  std::function<void()> on_note = [] {};
  std::function<void()> on_port_name = [] {};  // a port's name is asked for
  std::function<void(const std::string& signal, const std::string& payload)> on_send;
  std::map<sepan_port_t, std::string> interfaces = {{1, "eth1"}, {2, "eth2"}};

  // For the C functions that the library calls.
  struct Callback {
    std::string name;
    vorx_sig_cb signal = nullptr;
    vorx_event_cb event = nullptr;
    void* user = nullptr;
  };
  struct Subscription {
    vorx_proc_found_cb found = nullptr;
    vorx_proc_lost_cb lost = nullptr;
    void* user = nullptr;
  };
  Callback* Register(Callback callback);
  void Deregister(const void* callback);
  Subscription subscription;

 private:
  const Callback* FindCallback(const std::string& name) const;

  vorx handle_;
  std::vector<std::string> record_;
  std::vector<std::unique_ptr<Callback>> callbacks_;
};

}  // namespace cfm_test

#endif
