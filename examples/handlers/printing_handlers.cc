// SPDX-License-Identifier: Apache-2.0
#include "handlers/printing_handlers.h"

#include "common/host.h"
#include "common/one_endpoint.h"

namespace examples {
namespace {

// The state of a remote endpoint whose CCMs come in.
constexpr std::uint32_t kRemoteOk = 4;

std::string Number(std::uint64_t number) { return std::to_string(number); }

std::string Mep(const std::string& md_name, const std::string& ma_name, std::uint16_t mep_id) {
  return md_name + " " + ma_name + " " + Number(mep_id);
}

std::string Remote(const std::string& md_name, const std::string& ma_name, std::uint16_t mep_id,
                   std::uint16_t remote_mep_id) {
  return Mep(md_name, ma_name, mep_id) + " remote " + Number(remote_mep_id);
}

// Whether it is the endpoint that this program has: other applications may have some, too.
bool IsOurs(const std::string& md_name, const std::string& ma_name, std::uint16_t mep_id) {
  return md_name == kDomain && ma_name == kAssociation && mep_id == kHere;
}

void SayRefused(const std::string& test, const std::string& remote, std::uint32_t error_code) {
  Say(test + " from " + remote + ": refused with code " + Number(error_code));
}

}  // namespace

void StatusHandler::OnStatusLocalMep(const std::string& md_name, const std::string& ma_name,
                                     std::uint16_t mep_id, const cfm::local_mep_status& status) {
  Say(Mep(md_name, ma_name, mep_id) + ": address " + status.mac.to_string() + ", highest defect " +
      Number(status.highest_defect_priority));
  if (IsOurs(md_name, ma_name, mep_id)) course_.LocalMepKnown();
}

void StatusHandler::OnStatusRemoteMep(const std::string& md_name, const std::string& ma_name,
                                      std::uint16_t mep_id, std::uint16_t remote_mep_id,
                                      const cfm::remote_mep_status& status) {
  Say(Remote(md_name, ma_name, mep_id, remote_mep_id) + ": address " + status.mac.to_string() +
      ", state " + Number(status.fsm_state));
  if (IsOurs(md_name, ma_name, mep_id) && status.fsm_state == kRemoteOk) course_.RemoteMepSeen();
}

void StatusHandler::OnRemovedLocalMep(const std::string& md_name, const std::string& ma_name,
                                      std::uint16_t mep_id) {
  Say(Mep(md_name, ma_name, mep_id) + ": removed");
  if (IsOurs(md_name, ma_name, mep_id)) course_.LocalMepRemoved();
}

void StatusHandler::OnRemovedRemoteMep(const std::string& md_name, const std::string& ma_name,
                                       std::uint16_t mep_id, std::uint16_t remote_mep_id) {
  Say(Remote(md_name, ma_name, mep_id, remote_mep_id) + ": removed");
}

void StatusHandler::OnMepLinktraceStarted(const std::string& md_name, const std::string& ma_name,
                                          std::uint16_t mep_id, std::uint32_t /*transaction_id*/,
                                          cfm::st_mac /*target_mac*/,
                                          std::uint16_t /*remote_mep_id*/,
                                          bool /*has_started_value*/,
                                          std::uint32_t /*started_value*/) {
  Say(Mep(md_name, ma_name, mep_id) + ": traces");
}

void StatusHandler::OnMepLinktraceEnded(const std::string& md_name, const std::string& ma_name,
                                        std::uint16_t mep_id, std::uint32_t /*transaction_id*/) {
  Say(Mep(md_name, ma_name, mep_id) + ": traces no more");
}

void StatusHandler::OnMepLinktraceReplyRx(const std::string& md_name, const std::string& ma_name,
                                          std::uint16_t mep_id,
                                          const cfm::LinktraceReplyEntry& reply) {
  Say(Mep(md_name, ma_name, mep_id) + ": a reply from " + reply.source_mac.to_string());
}

// The reference server puts the probe and the session into the first two words, and what it sent
// and received into the fourth and fifth.
void StatusHandler::OnDelayMeasurementSessionEnded(
    const cfm::DelayMeasurementSessionResult& result) {
  Say("probe " + Number(result.s_word_1) + " session " + Number(result.s_word_2) + ": " +
      Number(result.s_word_5) + " of " + Number(result.s_word_4) + " replies");
  course_.SessionEnded();
}

void StatusHandler::OnServerFound() { Say("server found"); }

void StatisticsHandler::OnStatsReplyLocalMep(const std::string& md_name, const std::string& ma_name,
                                             std::uint16_t mep_id,
                                             const cfm::local_mep_stats& stats) {
  Say(Mep(md_name, ma_name, mep_id) + ": " + Number(stats.ccm_tx_total) + " CCMs sent");
}

void StatisticsHandler::OnStatsReplyRemoteMep(const std::string& md_name,
                                              const std::string& ma_name, std::uint16_t mep_id,
                                              std::uint16_t remote_mep_id,
                                              const cfm::remote_mep_stats& stats) {
  Say(Remote(md_name, ma_name, mep_id, remote_mep_id) + ": last CCM has number " +
      Number(stats.last_ccm_seq_number));
}

void StatisticsHandler::OnStatsReply() {
  Say("statistics: complete");
  course_.StatisticsComplete();
}

void LinktraceHandler::OnMepLinktraceStarted(const std::string& md_name, const std::string& ma_name,
                                             std::uint16_t mep_id, std::uint32_t transaction_id,
                                             cfm::st_mac target_mac, std::uint16_t remote_mep_id,
                                             bool /*has_started_value*/,
                                             std::uint32_t /*started_value*/) {
  Say("linktrace from " + Remote(md_name, ma_name, mep_id, remote_mep_id) + ": started, to " +
      target_mac.to_string());
  if (IsOurs(md_name, ma_name, mep_id)) course_.LinktraceStarted(transaction_id);
}

void LinktraceHandler::OnMepLinktraceEnded(const std::string& md_name, const std::string& ma_name,
                                           std::uint16_t mep_id, std::uint32_t transaction_id) {
  Say("linktrace from " + Mep(md_name, ma_name, mep_id) + ": ended");
  if (IsOurs(md_name, ma_name, mep_id)) course_.LinktraceEnded(transaction_id);
}

void LinktraceHandler::OnMepLinktraceReplyRx(const std::string& /*md_name*/,
                                             const std::string& /*ma_name*/,
                                             std::uint16_t /*mep_id*/,
                                             const cfm::LinktraceReplyEntry& reply) {
  Say("linktrace reply: " + cfm::LinktraceReplyEntry::Show(reply, 0));
}

void LinktraceHandler::OnLinktraceTriggerError(const cfm::linktrace_trigger_error& error) {
  SayRefused("linktrace", Remote(error.md_name, error.ma_name, error.mep_id, error.remote_mep_id),
             error.error_code);
  course_.TestEnded(error.request_id);
}

void LoopbackHandler::OnLoopbackTriggerError(std::uint32_t request_id, std::uint32_t error_code,
                                             const std::string& md_name, const std::string& ma_name,
                                             std::uint16_t mep_id, std::uint16_t remote_mep_id) {
  SayRefused("loopback", Remote(md_name, ma_name, mep_id, remote_mep_id), error_code);
  course_.TestEnded(request_id);
}

void LoopbackHandler::OnLoopbackStarted(std::uint32_t /*request_id*/,
                                        const cfm::st_mac& target_mac) {
  Say("loopback: started, to " + target_mac.to_string());
}

void LoopbackHandler::OnLoopbackReplyRx(std::uint32_t /*request_id*/, std::uint32_t transaction_id,
                                        const cfm::st_mac& mac) {
  Say("loopback: reply " + Number(transaction_id) + " from " + mac.to_string());
}

void LoopbackHandler::OnLoopbackEnded(std::uint32_t request_id, std::uint64_t expected_replies,
                                      std::uint64_t in_order_replies,
                                      std::uint64_t out_of_order_replies,
                                      std::uint64_t wrong_payload_replies) {
  Say("loopback: ended, " + Number(expected_replies) +
      " sent; replies: " + Number(in_order_replies) + " in order, " + Number(out_of_order_replies) +
      " out of order, " + Number(wrong_payload_replies) + " with a wrong payload");
  course_.TestEnded(request_id);
}

void DelayMeasurementHandler::OnDelayMeasurementTriggerError(
    std::uint32_t request_id, std::uint32_t error_code, const std::string& md_name,
    const std::string& ma_name, std::uint16_t mep_id, std::uint16_t remote_mep_id) {
  SayRefused("delay measurement", Remote(md_name, ma_name, mep_id, remote_mep_id), error_code);
  course_.TestEnded(request_id);
}

void DelayMeasurementHandler::OnDelayMeasurementStarted(std::uint32_t /*request_id*/,
                                                        const cfm::st_mac& target_mac) {
  Say("delay measurement: started, to " + target_mac.to_string());
}

void DelayMeasurementHandler::OnDelayMeasurementReplyRx(std::uint32_t /*request_id*/,
                                                        const cfm::st_mac& mac) {
  Say("delay measurement: a reply from " + mac.to_string());
}

// The first three results of the reference server are the least, mean and greatest delay.
void DelayMeasurementHandler::OnDelayMeasurementEnded(
    std::uint32_t request_id, std::uint64_t rx_count, std::uint64_t tx_count, double result_1,
    double result_2, double result_3, double /*result_4*/, double /*result_5*/, double /*result_6*/,
    std::uint64_t /*extra_count*/) {
  Say("delay measurement: ended, " + Number(rx_count) + " of " + Number(tx_count) +
      " replies; least, mean and greatest delay: " + std::to_string(result_1) + ", " +
      std::to_string(result_2) + ", " + std::to_string(result_3) + " us");
  course_.TestEnded(request_id);
}

}  // namespace examples
