/* SPDX-License-Identifier: Apache-2.0 */
// Handlers of all five kinds that read every byte of all they are given.
#ifndef CFM_FUZZ_HANDLERS_H
#define CFM_FUZZ_HANDLERS_H

#include <cfm/client.h>

#include <functional>
#include <string_view>

#include "digest.h"

namespace cfm_fuzz {

class Reading {
 public:
  explicit Reading(Digest& digest) : digest_(digest) {}

  /// What the handler does in the midst of each call.
  std::function<void()> then;

 protected:
  template <typename... Values>
  void Read(std::string_view operation, const Values&... values) {
    digest_.AddAll(operation, values...);
    if (then) {
      then();
    }
  }

 private:
  Digest& digest_;
};

/// The three events that two kinds of handler get.
template <typename Interface>
class LinktraceEvents : public Interface, public Reading {
 public:
  using Reading::Reading;

  void OnMepLinktraceStarted(const std::string& md_name, const std::string& ma_name,
                             std::uint16_t mep_id, std::uint32_t transaction_id,
                             cfm::st_mac target_mac, std::uint16_t remote_mep_id,
                             bool has_started_value, std::uint32_t started_value) override {
    Read("started", md_name, ma_name, mep_id, transaction_id, target_mac, remote_mep_id,
         has_started_value, started_value);
  }
  void OnMepLinktraceEnded(const std::string& md_name, const std::string& ma_name,
                           std::uint16_t mep_id, std::uint32_t transaction_id) override {
    Read("ended", md_name, ma_name, mep_id, transaction_id);
  }
  void OnMepLinktraceReplyRx(const std::string& md_name, const std::string& ma_name,
                             std::uint16_t mep_id, const cfm::LinktraceReplyEntry& reply) override {
    Read("reply", md_name, ma_name, mep_id, reply, cfm::LinktraceReplyEntry::Show(reply, 2));
  }
};

class StatusReading : public LinktraceEvents<cfm::ReceivedStatusHandlerIntf> {
 public:
  using LinktraceEvents::LinktraceEvents;

  void OnStatusLocalMep(const std::string& md_name, const std::string& ma_name,
                        std::uint16_t mep_id, const cfm::local_mep_status& status) override {
    Read("local status", md_name, ma_name, mep_id, status);
  }
  void OnStatusRemoteMep(const std::string& md_name, const std::string& ma_name,
                         std::uint16_t mep_id, std::uint16_t remote_mep_id,
                         const cfm::remote_mep_status& status) override {
    Read("remote status", md_name, ma_name, mep_id, remote_mep_id, status);
  }
  void OnRemovedLocalMep(const std::string& md_name, const std::string& ma_name,
                         std::uint16_t mep_id) override {
    Read("local removed", md_name, ma_name, mep_id);
  }
  void OnRemovedRemoteMep(const std::string& md_name, const std::string& ma_name,
                          std::uint16_t mep_id, std::uint16_t remote_mep_id) override {
    Read("remote removed", md_name, ma_name, mep_id, remote_mep_id);
  }
  void OnDelayMeasurementSessionEnded(const cfm::DelayMeasurementSessionResult& result) override {
    Read("session ended", result);
  }
  void OnServerFound() override { Read("found"); }
};

class StatisticsReading : public cfm::ReceivedStatisticsHandlerIntf, public Reading {
 public:
  using Reading::Reading;

  void OnStatsReplyLocalMep(const std::string& md_name, const std::string& ma_name,
                            std::uint16_t mep_id, const cfm::local_mep_stats& stats) override {
    Read("local statistics", md_name, ma_name, mep_id, stats);
  }
  void OnStatsReplyRemoteMep(const std::string& md_name, const std::string& ma_name,
                             std::uint16_t mep_id, std::uint16_t remote_mep_id,
                             const cfm::remote_mep_stats& stats) override {
    Read("remote statistics", md_name, ma_name, mep_id, remote_mep_id, stats);
  }
  void OnStatsReply() override { Read("statistics end"); }
};

class LinktraceReading : public LinktraceEvents<cfm::ReceivedLinktraceHandlerIntf> {
 public:
  using LinktraceEvents::LinktraceEvents;

  void OnLinktraceTriggerError(const cfm::linktrace_trigger_error& error) override {
    Read("linktrace refused", error);
  }
};

class LoopbackReading : public cfm::ReceivedLoopbackHandlerIntf, public Reading {
 public:
  using Reading::Reading;

  void OnLoopbackTriggerError(std::uint32_t request_id, std::uint32_t error_code,
                              const std::string& md_name, const std::string& ma_name,
                              std::uint16_t mep_id, std::uint16_t remote_mep_id) override {
    Read("loopback refused", request_id, error_code, md_name, ma_name, mep_id, remote_mep_id);
  }
  void OnLoopbackStarted(std::uint32_t request_id, const cfm::st_mac& target_mac) override {
    Read("loopback started", request_id, target_mac);
  }
  void OnLoopbackReplyRx(std::uint32_t request_id, std::uint32_t transaction_id,
                         const cfm::st_mac& mac) override {
    Read("loopback reply", request_id, transaction_id, mac);
  }
  void OnLoopbackEnded(std::uint32_t request_id, std::uint64_t expected_replies,
                       std::uint64_t in_order_replies, std::uint64_t out_of_order_replies,
                       std::uint64_t wrong_payload_replies) override {
    Read("loopback ended", request_id, expected_replies, in_order_replies, out_of_order_replies,
         wrong_payload_replies);
  }
};

class DelayReading : public cfm::ReceivedDelayMeasurementHandlerIntf, public Reading {
 public:
  using Reading::Reading;

  void OnDelayMeasurementTriggerError(std::uint32_t request_id, std::uint32_t error_code,
                                      const std::string& md_name, const std::string& ma_name,
                                      std::uint16_t mep_id, std::uint16_t remote_mep_id) override {
    Read("delay refused", request_id, error_code, md_name, ma_name, mep_id, remote_mep_id);
  }
  void OnDelayMeasurementStarted(std::uint32_t request_id, const cfm::st_mac& target_mac) override {
    Read("delay started", request_id, target_mac);
  }
  void OnDelayMeasurementReplyRx(std::uint32_t request_id, const cfm::st_mac& mac) override {
    Read("delay reply", request_id, mac);
  }
  void OnDelayMeasurementEnded(std::uint32_t request_id, std::uint64_t rx_count,
                               std::uint64_t tx_count, double result_1, double result_2,
                               double result_3, double result_4, double result_5, double result_6,
                               std::uint64_t extra_count) override {
    Read("delay ended", request_id, rx_count, tx_count, result_1, result_2, result_3, result_4,
         result_5, result_6, extra_count);
  }
};

/// One handler of each kind.
struct Handlers {
  explicit Handlers(Digest& digest)
      : status(digest), statistics(digest), linktrace(digest), loopback(digest), delay(digest) {}

  void Register(cfm::Client& client) {
    client.RegisterStatusHandler(&status);
    client.RegisterStatisticsHandler(&statistics);
    client.RegisterLinktraceHandler(&linktrace);
    client.RegisterLoopbackHandler(&loopback);
    client.RegisterDelayMeasurementHandler(&delay);
  }

  StatusReading status;
  StatisticsReading statistics;
  LinktraceReading linktrace;
  LoopbackReading loopback;
  DelayReading delay;
};

}  // namespace cfm_fuzz

#endif
