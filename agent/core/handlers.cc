// SPDX-License-Identifier: Apache-2.0
#include "core/handlers.h"

namespace cfm_agent {

void StatusHandler::OnStatusLocalMep(const std::string& md_name, const std::string& ma_name,
                                     std::uint16_t mep_id, const cfm::local_mep_status& status) {
  monitor_.LocalStatus({md_name, ma_name, mep_id}, status);
}

void StatusHandler::OnStatusRemoteMep(const std::string& md_name, const std::string& ma_name,
                                      std::uint16_t mep_id, std::uint16_t remote_mep_id,
                                      const cfm::remote_mep_status& status) {
  monitor_.RemoteStatus({md_name, ma_name, mep_id}, remote_mep_id, status);
}

void StatusHandler::OnRemovedLocalMep(const std::string& md_name, const std::string& ma_name,
                                      std::uint16_t mep_id) {
  monitor_.LocalRemoved({md_name, ma_name, mep_id});
}

void StatusHandler::OnRemovedRemoteMep(const std::string& md_name, const std::string& ma_name,
                                       std::uint16_t mep_id, std::uint16_t remote_mep_id) {
  monitor_.RemoteRemoved({md_name, ma_name, mep_id}, remote_mep_id);
}

void StatusHandler::OnDelayMeasurementSessionEnded(
    const cfm::DelayMeasurementSessionResult& result) {
  monitor_.SessionEnded(result);
}

void StatusHandler::OnServerFound() { monitor_.ServerFound(); }

void StatisticsHandler::OnStatsReplyLocalMep(const std::string& md_name, const std::string& ma_name,
                                             std::uint16_t mep_id,
                                             const cfm::local_mep_stats& stats) {
  monitor_.LocalStatistics({md_name, ma_name, mep_id}, stats);
}

void StatisticsHandler::OnStatsReplyRemoteMep(const std::string& md_name,
                                              const std::string& ma_name, std::uint16_t mep_id,
                                              std::uint16_t remote_mep_id,
                                              const cfm::remote_mep_stats& stats) {
  monitor_.RemoteStatistics({md_name, ma_name, mep_id}, remote_mep_id, stats);
}

void StatisticsHandler::OnStatsReply() { monitor_.StatisticsComplete(); }

void LinktraceHandler::OnMepLinktraceStarted(const std::string& md_name, const std::string& ma_name,
                                             std::uint16_t mep_id, std::uint32_t transaction_id,
                                             cfm::st_mac target_mac, std::uint16_t remote_mep_id,
                                             bool has_started_value, std::uint32_t started_value) {
  monitor_.LinktraceStarted({md_name, ma_name, mep_id}, remote_mep_id, transaction_id, target_mac,
                            has_started_value ? std::optional(started_value) : std::nullopt);
}

void LinktraceHandler::OnMepLinktraceEnded(const std::string& md_name, const std::string& ma_name,
                                           std::uint16_t mep_id, std::uint32_t transaction_id) {
  monitor_.LinktraceEnded({md_name, ma_name, mep_id}, transaction_id);
}

void LinktraceHandler::OnMepLinktraceReplyRx(const std::string& md_name, const std::string& ma_name,
                                             std::uint16_t mep_id,
                                             const cfm::LinktraceReplyEntry& reply) {
  monitor_.LinktraceReply({md_name, ma_name, mep_id}, reply);
}

void LinktraceHandler::OnLinktraceTriggerError(const cfm::linktrace_trigger_error& error) {
  monitor_.Refused(TestKind::Linktrace, error.request_id, error.error_code);
}

void LoopbackHandler::OnLoopbackTriggerError(std::uint32_t request_id, std::uint32_t error_code,
                                             const std::string& /*md_name*/,
                                             const std::string& /*ma_name*/,
                                             std::uint16_t /*mep_id*/,
                                             std::uint16_t /*remote_mep_id*/) {
  monitor_.Refused(TestKind::Loopback, request_id, error_code);
}

void LoopbackHandler::OnLoopbackStarted(std::uint32_t request_id, const cfm::st_mac& target_mac) {
  monitor_.Started(TestKind::Loopback, request_id, target_mac);
}

void LoopbackHandler::OnLoopbackReplyRx(std::uint32_t request_id, std::uint32_t transaction_id,
                                        const cfm::st_mac& mac) {
  monitor_.Replied(TestKind::Loopback, request_id, mac, transaction_id);
}

void LoopbackHandler::OnLoopbackEnded(std::uint32_t request_id, std::uint64_t expected_replies,
                                      std::uint64_t in_order_replies,
                                      std::uint64_t out_of_order_replies,
                                      std::uint64_t wrong_payload_replies) {
  monitor_.Ended(request_id, LoopbackResult{expected_replies, in_order_replies,
                                            out_of_order_replies, wrong_payload_replies});
}

void DelayMeasurementHandler::OnDelayMeasurementTriggerError(
    std::uint32_t request_id, std::uint32_t error_code, const std::string& /*md_name*/,
    const std::string& /*ma_name*/, std::uint16_t /*mep_id*/, std::uint16_t /*remote_mep_id*/) {
  monitor_.Refused(TestKind::Delay, request_id, error_code);
}

void DelayMeasurementHandler::OnDelayMeasurementStarted(std::uint32_t request_id,
                                                        const cfm::st_mac& target_mac) {
  monitor_.Started(TestKind::Delay, request_id, target_mac);
}

void DelayMeasurementHandler::OnDelayMeasurementReplyRx(std::uint32_t request_id,
                                                        const cfm::st_mac& mac) {
  monitor_.Replied(TestKind::Delay, request_id, mac);
}

void DelayMeasurementHandler::OnDelayMeasurementEnded(std::uint32_t request_id,
                                                      std::uint64_t rx_count,
                                                      std::uint64_t tx_count, double result_1,
                                                      double result_2, double result_3,
                                                      double result_4, double result_5,
                                                      double result_6, std::uint64_t extra_count) {
  monitor_.Ended(request_id, DelayResult{rx_count,
                                         tx_count,
                                         {result_1, result_2, result_3},
                                         {result_4, result_5, result_6},
                                         extra_count});
}

}  // namespace cfm_agent
