// SPDX-License-Identifier: Apache-2.0
#include "recording_handlers.h"

namespace cfm_test {
namespace {

std::string Members() { return ""; }

template <typename Value, typename... Rest>
std::string Members(const char* name, const Value& value, const Rest&... rest) {
  return std::string(name) + ':' + Text(value) + (sizeof...(rest) > 0 ? " " : "") +
         Members(rest...);
}

template <typename... Args>
std::string Braced(const Args&... members) {
  return '{' + Members(members...) + '}';
}

}  // namespace

std::string Text(const cfm::local_mep_status& status) {
  return Braced("mac", status.mac, "rdi", status.rdi, "intf_status", status.intf_status,
                "port_state", status.port_state, "block_state", status.block_state,
                "shutdown_state", status.shutdown_state, "highest_defect_priority",
                status.highest_defect_priority, "defect_rdi", status.defect_rdi,
                "defect_mac_status", status.defect_mac_status, "defect_remote_ccm",
                status.defect_remote_ccm, "defect_error_ccm", status.defect_error_ccm,
                "defect_xcon_ccm", status.defect_xcon_ccm, "defect_ais", status.defect_ais);
}

std::string Text(const cfm::remote_mep_status& status) {
  return Braced("fsm_state", status.fsm_state, "last_change_uptime", status.last_change_uptime,
                "mac", status.mac, "rdi", status.rdi, "port_state", status.port_state,
                "intf_status", status.intf_status, "sender_id", status.sender_id);
}

std::string Text(const cfm::local_mep_stats& stats) {
  return Braced("ccm_rx_seq_errors", stats.ccm_rx_seq_errors, "ccm_tx_total", stats.ccm_tx_total,
                "ccm_tx_seq_number", stats.ccm_tx_seq_number);
}

std::string Text(const cfm::remote_mep_stats& stats) {
  return Braced("last_ccm_seq_number", stats.last_ccm_seq_number);
}

std::string Text(const cfm::linktrace_trigger_error& error) {
  return Braced("request_id", error.request_id, "md_name", error.md_name, "ma_name", error.ma_name,
                "mep_id", error.mep_id, "remote_mep_id", error.remote_mep_id, "error_code",
                error.error_code);
}

std::string Text(const cfm::LtrEgressIdentifier& egress) {
  return Braced("last_mac", egress.last_mac, "last_id", egress.last_id, "next_mac", egress.next_mac,
                "next_id", egress.next_id);
}

std::string Text(const cfm::LtrReplyPort& port) {
  return Braced("action", port.action, "mac", port.mac, "port_id_present", port.port_id_present,
                "port_id_subtype", port.port_id_subtype, "port_id", port.port_id);
}

std::string Text(const cfm::LinktraceReplyEntry& reply) {
  return Braced("destination_mac", reply.destination_mac, "source_mac", reply.source_mac, "vlan",
                reply.vlan, "priority", reply.priority, "internal_vlan", reply.internal_vlan,
                "internal_priority", reply.internal_priority, "level", reply.level, "terminal_mep",
                reply.terminal_mep, "forwarded", reply.forwarded, "use_fdb_only",
                reply.use_fdb_only, "transaction_id", reply.transaction_id, "ttl", reply.ttl,
                "relay_action", reply.relay_action, "egress_id", reply.egress_id, "reply_ingress",
                reply.reply_ingress, "reply_egress", reply.reply_egress);
}

std::string Text(const cfm::DelayMeasurementSessionResult& result) {
  return Braced("s_word_1", result.s_word_1, "s_word_2", result.s_word_2, "s_byte", result.s_byte,
                "s_word_3", result.s_word_3, "s_wide_1", result.s_wide_1, "s_wide_2",
                result.s_wide_2, "s_word_4", result.s_word_4, "s_real_1", result.s_real_1,
                "s_real_2", result.s_real_2, "s_word_5", result.s_word_5, "s_word_6",
                result.s_word_6, "s_word_7", result.s_word_7, "s_word_8", result.s_word_8,
                "s_word_9", result.s_word_9, "s_word_10", result.s_word_10, "s_real_3",
                result.s_real_3, "s_real_4", result.s_real_4);
}

Handlers::Handlers(RecordingHost& host, const std::string& prefix)
    : status(host, prefix + "status"),
      statistics(host, prefix + "statistics"),
      linktrace(host, prefix + "linktrace"),
      loopback(host, prefix + "loopback"),
      delay(host, prefix + "delay") {}

void Handlers::Register(cfm::Client& client) {
  client.RegisterStatusHandler(&status);
  client.RegisterStatisticsHandler(&statistics);
  client.RegisterLinktraceHandler(&linktrace);
  client.RegisterLoopbackHandler(&loopback);
  client.RegisterDelayMeasurementHandler(&delay);
}

void Handlers::Clear(cfm::Client& client) {
  client.RegisterStatusHandler(nullptr);
  client.RegisterStatisticsHandler(nullptr);
  client.RegisterLinktraceHandler(nullptr);
  client.RegisterLoopbackHandler(nullptr);
  client.RegisterDelayMeasurementHandler(nullptr);
}

void Handlers::SetThen(const std::function<void()>& action) {
  status.then = action;
  statistics.then = action;
  linktrace.then = action;
  loopback.then = action;
  delay.then = action;
}

ReportTest::ReportTest() {
  handlers.Register(*client);
  host.Take();
}

std::vector<std::string> ReportTest::DeliverBytes(const vorx_sig_descriptor* signal,
                                                  const std::string& bytes) {
  host.Take();
  host.Signal(signal, bytes);
  return host.Take();
}

std::vector<std::string> ReportTest::DeliverBytes(const vorx_event_descriptor* event,
                                                  const std::string& bytes) {
  host.Take();
  host.Event(event, bytes);
  return host.Take();
}

}  // namespace cfm_test
