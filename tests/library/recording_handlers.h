/* SPDX-License-Identifier: Apache-2.0 */
// Handlers of all five kinds that put each call, with all it brings, into the host's record:
//   NAME OPERATION ARGUMENTS
// with strings in quotation marks, addresses in lower case, and records in braces as
// `member:value` in the order in which they declare their members.
#ifndef CFM_TESTS_LIBRARY_RECORDING_HANDLERS_H
#define CFM_TESTS_LIBRARY_RECORDING_HANDLERS_H

#include <cfm/client.h>

#include <charconv>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "client_fixture.h"
#include "recording_host.h"

namespace cfm_test {

template <typename Number>
std::enable_if_t<std::is_arithmetic_v<Number>, std::string> Text(Number value) {
  char digits[32];
  return {digits, std::to_chars(digits, digits + sizeof digits, value).ptr};
}
inline std::string Text(bool value) { return value ? "true" : "false"; }
inline std::string Text(const std::string& value) { return '"' + value + '"'; }
inline std::string Text(const cfm::st_mac& value) { return value.to_string(); }
std::string Text(const cfm::local_mep_status& status);
std::string Text(const cfm::remote_mep_status& status);
std::string Text(const cfm::local_mep_stats& stats);
std::string Text(const cfm::remote_mep_stats& stats);
std::string Text(const cfm::linktrace_trigger_error& error);
std::string Text(const cfm::LinktraceReplyEntry& reply);
std::string Text(const cfm::LtrEgressIdentifier& egress);
std::string Text(const cfm::LtrReplyPort& port);
std::string Text(const cfm::DelayMeasurementSessionResult& result);
template <typename Part>
std::string Text(const std::unique_ptr<Part>& part) {
  return part == nullptr ? "null" : Text(*part);
}

class Recorder {
 public:
  Recorder(RecordingHost& host, std::string name) : host_(host), name_(std::move(name)) {}

  // What the handler does once its call is in the record.
  std::function<void()> then = [] {};

 protected:
  // The handler may be gone when `then` returns. What it was called with may not have changed.
  template <typename... Args>
  void Record(const char* operation, const Args&... args) {
    const Running running(Running::Code::Host);
    RecordingHost& host = host_;
    const auto text = [&] { return (std::string() + ... + (' ' + Text(args))); };
    const std::string before = text();
    host.Note(name_ + ' ' + operation + before);
    const auto action = then;
    action();
    if (const std::string after = text(); after != before) {
      host.Note(std::string(operation) + " has changed meanwhile:" + after);
    }
  }

 private:
  RecordingHost& host_;
  std::string name_;
};

/// The three events that two kinds of handler get.
template <typename Interface>
class LinktraceEvents : public Interface, public Recorder {
 public:
  using Recorder::Recorder;

  void OnMepLinktraceStarted(const std::string& md_name, const std::string& ma_name,
                             std::uint16_t mep_id, std::uint32_t transaction_id,
                             cfm::st_mac target_mac, std::uint16_t remote_mep_id,
                             bool has_started_value, std::uint32_t started_value) override {
    const cfm::st_mac target = target_mac;
    target_mac.octets.fill(0xee);  // its own copy: whoever is called next must not see this
    Record("OnMepLinktraceStarted", md_name, ma_name, mep_id, transaction_id, target, remote_mep_id,
           has_started_value, started_value);
  }
  void OnMepLinktraceEnded(const std::string& md_name, const std::string& ma_name,
                           std::uint16_t mep_id, std::uint32_t transaction_id) override {
    Record("OnMepLinktraceEnded", md_name, ma_name, mep_id, transaction_id);
  }
  void OnMepLinktraceReplyRx(const std::string& md_name, const std::string& ma_name,
                             std::uint16_t mep_id, const cfm::LinktraceReplyEntry& reply) override {
    Record("OnMepLinktraceReplyRx", md_name, ma_name, mep_id, reply);
  }
};

class StatusRecorder : public LinktraceEvents<cfm::ReceivedStatusHandlerIntf> {
 public:
  using LinktraceEvents::LinktraceEvents;

  void OnStatusLocalMep(const std::string& md_name, const std::string& ma_name,
                        std::uint16_t mep_id, const cfm::local_mep_status& status) override {
    Record("OnStatusLocalMep", md_name, ma_name, mep_id, status);
  }
  void OnStatusRemoteMep(const std::string& md_name, const std::string& ma_name,
                         std::uint16_t mep_id, std::uint16_t remote_mep_id,
                         const cfm::remote_mep_status& status) override {
    Record("OnStatusRemoteMep", md_name, ma_name, mep_id, remote_mep_id, status);
  }
  void OnRemovedLocalMep(const std::string& md_name, const std::string& ma_name,
                         std::uint16_t mep_id) override {
    Record("OnRemovedLocalMep", md_name, ma_name, mep_id);
  }
  void OnRemovedRemoteMep(const std::string& md_name, const std::string& ma_name,
                          std::uint16_t mep_id, std::uint16_t remote_mep_id) override {
    Record("OnRemovedRemoteMep", md_name, ma_name, mep_id, remote_mep_id);
  }
  void OnDelayMeasurementSessionEnded(const cfm::DelayMeasurementSessionResult& result) override {
    Record("OnDelayMeasurementSessionEnded", result);
  }
  void OnServerFound() override { Record("OnServerFound"); }
};

class StatisticsRecorder : public cfm::ReceivedStatisticsHandlerIntf, public Recorder {
 public:
  using Recorder::Recorder;

  void OnStatsReplyLocalMep(const std::string& md_name, const std::string& ma_name,
                            std::uint16_t mep_id, const cfm::local_mep_stats& stats) override {
    Record("OnStatsReplyLocalMep", md_name, ma_name, mep_id, stats);
  }
  void OnStatsReplyRemoteMep(const std::string& md_name, const std::string& ma_name,
                             std::uint16_t mep_id, std::uint16_t remote_mep_id,
                             const cfm::remote_mep_stats& stats) override {
    Record("OnStatsReplyRemoteMep", md_name, ma_name, mep_id, remote_mep_id, stats);
  }
  void OnStatsReply() override { Record("OnStatsReply"); }
};

class LinktraceRecorder : public LinktraceEvents<cfm::ReceivedLinktraceHandlerIntf> {
 public:
  using LinktraceEvents::LinktraceEvents;

  void OnLinktraceTriggerError(const cfm::linktrace_trigger_error& error) override {
    Record("OnLinktraceTriggerError", error);
  }
};

class LoopbackRecorder : public cfm::ReceivedLoopbackHandlerIntf, public Recorder {
 public:
  using Recorder::Recorder;

  void OnLoopbackTriggerError(std::uint32_t request_id, std::uint32_t error_code,
                              const std::string& md_name, const std::string& ma_name,
                              std::uint16_t mep_id, std::uint16_t remote_mep_id) override {
    Record("OnLoopbackTriggerError", request_id, error_code, md_name, ma_name, mep_id,
           remote_mep_id);
  }
  void OnLoopbackStarted(std::uint32_t request_id, const cfm::st_mac& target_mac) override {
    Record("OnLoopbackStarted", request_id, target_mac);
  }
  void OnLoopbackReplyRx(std::uint32_t request_id, std::uint32_t transaction_id,
                         const cfm::st_mac& mac) override {
    Record("OnLoopbackReplyRx", request_id, transaction_id, mac);
  }
  void OnLoopbackEnded(std::uint32_t request_id, std::uint64_t expected_replies,
                       std::uint64_t in_order_replies, std::uint64_t out_of_order_replies,
                       std::uint64_t wrong_payload_replies) override {
    Record("OnLoopbackEnded", request_id, expected_replies, in_order_replies, out_of_order_replies,
           wrong_payload_replies);
  }
};

class DelayRecorder : public cfm::ReceivedDelayMeasurementHandlerIntf, public Recorder {
 public:
  using Recorder::Recorder;

  void OnDelayMeasurementTriggerError(std::uint32_t request_id, std::uint32_t error_code,
                                      const std::string& md_name, const std::string& ma_name,
                                      std::uint16_t mep_id, std::uint16_t remote_mep_id) override {
    Record("OnDelayMeasurementTriggerError", request_id, error_code, md_name, ma_name, mep_id,
           remote_mep_id);
  }
  void OnDelayMeasurementStarted(std::uint32_t request_id, const cfm::st_mac& target_mac) override {
    Record("OnDelayMeasurementStarted", request_id, target_mac);
  }
  void OnDelayMeasurementReplyRx(std::uint32_t request_id, const cfm::st_mac& mac) override {
    Record("OnDelayMeasurementReplyRx", request_id, mac);
  }
  void OnDelayMeasurementEnded(std::uint32_t request_id, std::uint64_t rx_count,
                               std::uint64_t tx_count, double result_1, double result_2,
                               double result_3, double result_4, double result_5, double result_6,
                               std::uint64_t extra_count) override {
    Record("OnDelayMeasurementEnded", request_id, rx_count, tx_count, result_1, result_2, result_3,
           result_4, result_5, result_6, extra_count);
  }
};

/// One handler of each kind, named by its kind after an optional prefix.
struct Handlers {
  explicit Handlers(RecordingHost& host, const std::string& prefix = "");

  void Register(cfm::Client& client);
  static void Clear(cfm::Client& client);
  void SetThen(const std::function<void()>& action);

  StatusRecorder status;
  StatisticsRecorder statistics;
  LinktraceRecorder linktrace;
  LoopbackRecorder loopback;
  DelayRecorder delay;
};

/// A client that has handlers of all kinds; the record holds nothing of how it came to be.
class ReportTest : public ClientTest {
 protected:
  ReportTest();

  // All that an incoming message brings about.
  template <typename Descriptor, typename Message>
  std::vector<std::string> Deliver(const Descriptor* from, const Message& message) {
    return DeliverBytes(from, message.SerializeAsString());
  }
  std::vector<std::string> DeliverBytes(const vorx_sig_descriptor* signal,
                                        const std::string& bytes);
  std::vector<std::string> DeliverBytes(const vorx_event_descriptor* event,
                                        const std::string& bytes);

  Handlers handlers{host};
};

}  // namespace cfm_test

#endif
