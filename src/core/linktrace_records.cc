// SPDX-License-Identifier: Apache-2.0
#include "core/linktrace_records.h"

#include <utility>

#include "core/mac.h"
#include "core/numbers.h"

namespace cfm::core {
namespace {

// The first two octets as a big-endian number; what a short field lacks is zero.
std::uint16_t LeadingUint16(std::string_view bytes) {
  std::uint16_t number = 0;
  for (std::size_t i = 0; i < 2; ++i) {
    const unsigned octet = i < bytes.size() ? static_cast<std::uint8_t>(bytes[i]) : 0U;
    number = Low16((static_cast<unsigned>(number) << 8U) | octet);
  }
  return number;
}

LtrEgressIdentifier EgressIdentifier(const client_server::LtrEgressId& message) {
  LtrEgressIdentifier egress;
  egress.last_mac = MacFromBytes(message.last().mac());
  egress.last_id = LeadingUint16(message.last().id());
  egress.next_mac = MacFromBytes(message.next().mac());
  egress.next_id = LeadingUint16(message.next().id());
  return egress;
}

std::unique_ptr<LtrReplyPort> ReplyPort(const client_server::LtrReplyEgressIngress& message) {
  auto port = std::make_unique<LtrReplyPort>();
  port->action = Low8(message.action());
  port->mac = MacFromBytes(message.mac());
  port->port_id_present = message.port_id().present();
  port->port_id_subtype = Low8(message.port_id().subtype());
  port->port_id = message.port_id().value();
  return port;
}

}  // namespace

linktrace_trigger_error LinktraceError(client_server::OpLinktraceTriggerError&& message) {
  client_server::OpLinktraceTriggerKey& key = *message.mutable_key();
  return {key.request_id(),    std::move(*key.mutable_md_name()), std::move(*key.mutable_ma_name()),
          Low16(key.mep_id()), Low16(key.remote_mep_id()),        message.error_code()};
}

std::shared_ptr<LinktraceReplyEntry> LinktraceReply(const client_server::LinktraceReply& message) {
  auto entry = std::make_shared<LinktraceReplyEntry>();
  entry->destination_mac = MacFromBytes(message.destination_mac());
  entry->source_mac = MacFromBytes(message.source_mac());
  entry->vlan = Low16(message.vlan());
  entry->priority = Low8(message.priority());
  if (message.has_internal_vlan()) {
    entry->internal_vlan = Low16(message.internal_vlan());
    entry->internal_priority = Low8(message.internal_priority());
  }
  entry->level = Low8(message.level());
  entry->terminal_mep = message.flags().terminal_mep();
  entry->forwarded = message.flags().forwarded();
  entry->use_fdb_only = message.flags().use_fdb_only();
  entry->transaction_id = message.transaction_id();
  entry->ttl = Low8(message.ttl());
  entry->relay_action = message.relay_action();
  *entry->egress_id = EgressIdentifier(message.egress_id());
  if (message.has_reply_ingress()) {
    entry->reply_ingress = ReplyPort(message.reply_ingress());
  }
  if (message.has_reply_egress()) {
    entry->reply_egress = ReplyPort(message.reply_egress());
  }
  return entry;
}

}  // namespace cfm::core
