/* SPDX-License-Identifier: Apache-2.0 */
// One handler for each interface: prints what comes, and tells the course of the program.
#ifndef CFM_EXAMPLES_HANDLERS_PRINTING_HANDLERS_H
#define CFM_EXAMPLES_HANDLERS_PRINTING_HANDLERS_H

#include <cfm/handlers.h>

#include <cstdint>
#include <string>

#include "handlers/course.h"

namespace examples {

// Two interfaces have the linktrace operations. A class that implements both would be called twice
// for each; here each has a class of its own.
class StatusHandler : public cfm::ReceivedStatusHandlerIntf {
 public:
  explicit StatusHandler(Course& course) : course_(course) {}

  void OnStatusLocalMep(const std::string& md_name, const std::string& ma_name,
                        std::uint16_t mep_id, const cfm::local_mep_status& status) override;
  void OnStatusRemoteMep(const std::string& md_name, const std::string& ma_name,
                         std::uint16_t mep_id, std::uint16_t remote_mep_id,
                         const cfm::remote_mep_status& status) override;
  void OnRemovedLocalMep(const std::string& md_name, const std::string& ma_name,
                         std::uint16_t mep_id) override;
  void OnRemovedRemoteMep(const std::string& md_name, const std::string& ma_name,
                          std::uint16_t mep_id, std::uint16_t remote_mep_id) override;
  void OnMepLinktraceStarted(const std::string& md_name, const std::string& ma_name,
                             std::uint16_t mep_id, std::uint32_t transaction_id,
                             cfm::st_mac target_mac, std::uint16_t remote_mep_id,
                             bool has_started_value, std::uint32_t started_value) override;
  void OnMepLinktraceEnded(const std::string& md_name, const std::string& ma_name,
                           std::uint16_t mep_id, std::uint32_t transaction_id) override;
  void OnMepLinktraceReplyRx(const std::string& md_name, const std::string& ma_name,
                             std::uint16_t mep_id, const cfm::LinktraceReplyEntry& reply) override;
  void OnDelayMeasurementSessionEnded(const cfm::DelayMeasurementSessionResult& result) override;
  void OnServerFound() override;

 private:
  Course& course_;
};

class StatisticsHandler : public cfm::ReceivedStatisticsHandlerIntf {
 public:
  explicit StatisticsHandler(Course& course) : course_(course) {}

  void OnStatsReplyLocalMep(const std::string& md_name, const std::string& ma_name,
                            std::uint16_t mep_id, const cfm::local_mep_stats& stats) override;
  void OnStatsReplyRemoteMep(const std::string& md_name, const std::string& ma_name,
                             std::uint16_t mep_id, std::uint16_t remote_mep_id,
                             const cfm::remote_mep_stats& stats) override;
  void OnStatsReply() override;

 private:
  Course& course_;
};

class LinktraceHandler : public cfm::ReceivedLinktraceHandlerIntf {
 public:
  explicit LinktraceHandler(Course& course) : course_(course) {}

  void OnMepLinktraceStarted(const std::string& md_name, const std::string& ma_name,
                             std::uint16_t mep_id, std::uint32_t transaction_id,
                             cfm::st_mac target_mac, std::uint16_t remote_mep_id,
                             bool has_started_value, std::uint32_t started_value) override;
  void OnMepLinktraceEnded(const std::string& md_name, const std::string& ma_name,
                           std::uint16_t mep_id, std::uint32_t transaction_id) override;
  void OnMepLinktraceReplyRx(const std::string& md_name, const std::string& ma_name,
                             std::uint16_t mep_id, const cfm::LinktraceReplyEntry& reply) override;
  void OnLinktraceTriggerError(const cfm::linktrace_trigger_error& error) override;

 private:
  Course& course_;
};

class LoopbackHandler : public cfm::ReceivedLoopbackHandlerIntf {
 public:
  explicit LoopbackHandler(Course& course) : course_(course) {}

  void OnLoopbackTriggerError(std::uint32_t request_id, std::uint32_t error_code,
                              const std::string& md_name, const std::string& ma_name,
                              std::uint16_t mep_id, std::uint16_t remote_mep_id) override;
  void OnLoopbackStarted(std::uint32_t request_id, const cfm::st_mac& target_mac) override;
  void OnLoopbackReplyRx(std::uint32_t request_id, std::uint32_t transaction_id,
                         const cfm::st_mac& mac) override;
  void OnLoopbackEnded(std::uint32_t request_id, std::uint64_t expected_replies,
                       std::uint64_t in_order_replies, std::uint64_t out_of_order_replies,
                       std::uint64_t wrong_payload_replies) override;

 private:
  Course& course_;
};

class DelayMeasurementHandler : public cfm::ReceivedDelayMeasurementHandlerIntf {
 public:
  explicit DelayMeasurementHandler(Course& course) : course_(course) {}

  void OnDelayMeasurementTriggerError(std::uint32_t request_id, std::uint32_t error_code,
                                      const std::string& md_name, const std::string& ma_name,
                                      std::uint16_t mep_id, std::uint16_t remote_mep_id) override;
  void OnDelayMeasurementStarted(std::uint32_t request_id, const cfm::st_mac& target_mac) override;
  void OnDelayMeasurementReplyRx(std::uint32_t request_id, const cfm::st_mac& mac) override;
  void OnDelayMeasurementEnded(std::uint32_t request_id, std::uint64_t rx_count,
                               std::uint64_t tx_count, double result_1, double result_2,
                               double result_3, double result_4, double result_5, double result_6,
                               std::uint64_t extra_count) override;

 private:
  Course& course_;
};

}  // namespace examples

#endif
