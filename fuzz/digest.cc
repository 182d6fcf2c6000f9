// SPDX-License-Identifier: Apache-2.0
#include "digest.h"

namespace cfm_fuzz {

// Fowler, Noll and Vo's hash, its variant 1a.
void Digest::Octets(const void* data, std::size_t size) {
  constexpr std::uint64_t prime = 1099511628211U;
  const auto* const octets = static_cast<const std::uint8_t*>(data);
  for (std::size_t i = 0; i < size; ++i) {
    value_ = (value_ ^ octets[i]) * prime;
  }
}

void Digest::Add(const cfm::local_mep_status& status) {
  AddAll(status.mac, status.rdi, status.intf_status, status.port_state, status.block_state,
         status.shutdown_state, status.highest_defect_priority, status.defect_rdi,
         status.defect_mac_status, status.defect_remote_ccm, status.defect_error_ccm,
         status.defect_xcon_ccm, status.defect_ais);
}

void Digest::Add(const cfm::remote_mep_status& status) {
  AddAll(status.fsm_state, status.last_change_uptime, status.mac, status.rdi, status.port_state,
         status.intf_status, status.sender_id);
}

void Digest::Add(const cfm::local_mep_stats& stats) {
  AddAll(stats.ccm_rx_seq_errors, stats.ccm_tx_total, stats.ccm_tx_seq_number);
}

void Digest::Add(const cfm::remote_mep_stats& stats) { Add(stats.last_ccm_seq_number); }

void Digest::Add(const cfm::linktrace_trigger_error& error) {
  AddAll(error.request_id, error.md_name, error.ma_name, error.mep_id, error.remote_mep_id,
         error.error_code);
}

void Digest::Add(const cfm::LtrEgressIdentifier& egress) {
  AddAll(egress.last_mac, egress.last_id, egress.next_mac, egress.next_id);
}

void Digest::Add(const cfm::LtrReplyPort& port) {
  AddAll(port.action, port.mac, port.port_id_present, port.port_id_subtype, port.port_id);
}

template <typename Part>
void Digest::AddPart(const std::unique_ptr<Part>& part) {
  Add(part != nullptr);
  if (part != nullptr) {
    Add(*part);
  }
}

void Digest::Add(const cfm::LinktraceReplyEntry& reply) {
  AddAll(reply.destination_mac, reply.source_mac, reply.vlan, reply.priority, reply.internal_vlan,
         reply.internal_priority, reply.level, reply.terminal_mep, reply.forwarded,
         reply.use_fdb_only, reply.transaction_id, reply.ttl, reply.relay_action);
  AddPart(reply.egress_id);
  AddPart(reply.reply_ingress);
  AddPart(reply.reply_egress);
}

void Digest::Add(const cfm::DelayMeasurementSessionResult& result) {
  AddAll(result.s_word_1, result.s_word_2, result.s_byte, result.s_word_3, result.s_wide_1,
         result.s_wide_2, result.s_word_4, result.s_real_1, result.s_real_2, result.s_word_5,
         result.s_word_6, result.s_word_7, result.s_word_8, result.s_word_9, result.s_word_10,
         result.s_real_3, result.s_real_4);
}

}  // namespace cfm_fuzz
