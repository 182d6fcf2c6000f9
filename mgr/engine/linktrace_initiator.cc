// SPDX-License-Identifier: Apache-2.0
#include "engine/linktrace_initiator.h"

namespace cfm_mgr::engine {
namespace {

std::optional<ReplyPort> DescribePort(const std::optional<pdu::ReplyPortTlv>& tlv) {
  if (!tlv) return std::nullopt;
  return ReplyPort{
      tlv->action, tlv->mac, tlv->port_id_subtype, {tlv->port_id.begin(), tlv->port_id.end()}};
}

}  // namespace

LinktraceReply DescribeReply(const Frame& frame, const pdu::Ltr& ltr) {
  LinktraceReply reply;
  reply.destination = frame.destination;
  reply.source = frame.source;
  if (!frame.tags.empty()) {
    reply.vid = frame.tags.front().vid;
    reply.pcp = frame.tags.front().pcp;
  }
  if (frame.tags.size() > 1) {
    reply.inner_vid = frame.tags[1].vid;
    reply.inner_pcp = frame.tags[1].pcp;
  }
  reply.level = ltr.level;
  reply.terminal_mep = ltr.terminal_mep;
  reply.forwarded = ltr.forwarded;
  reply.use_fdb_only = ltr.use_fdb_only;
  reply.transaction_id = ltr.transaction_id;
  reply.ttl = ltr.ttl;
  reply.relay_action = ltr.relay_action;
  reply.last_egress = ltr.last_egress;
  reply.next_egress = ltr.next_egress;
  reply.ingress = DescribePort(ltr.ingress);
  reply.egress = DescribePort(ltr.egress);
  return reply;
}

}  // namespace cfm_mgr::engine
