// SPDX-License-Identifier: Apache-2.0
// The records of reports and triggers are binary interface: their members' types and order.
#include <cfm/client.h>
#include <gtest/gtest.h>

#include "record_layout.h"

namespace cfm_test {
namespace {

using cfm::st_mac;
using std::string;

TEST(RecordLayout, LocalMepStatus) {
  using R = cfm::local_mep_status;
  ExpectLayout<R, st_mac, bool, U8, U32, U32, U32, U32, bool, bool, bool, bool, bool, bool>(
      &R::mac, &R::rdi, &R::intf_status, &R::port_state, &R::block_state, &R::shutdown_state,
      &R::highest_defect_priority, &R::defect_rdi, &R::defect_mac_status, &R::defect_remote_ccm,
      &R::defect_error_ccm, &R::defect_xcon_ccm, &R::defect_ais);
}

TEST(RecordLayout, RemoteMepStatus) {
  using R = cfm::remote_mep_status;
  ExpectLayout<R, U32, U64, st_mac, bool, U32, U8, string>(&R::fsm_state, &R::last_change_uptime,
                                                           &R::mac, &R::rdi, &R::port_state,
                                                           &R::intf_status, &R::sender_id);
}

TEST(RecordLayout, Statistics) {
  using L = cfm::local_mep_stats;
  ExpectLayout<L, U64, U64, U32>(&L::ccm_rx_seq_errors, &L::ccm_tx_total, &L::ccm_tx_seq_number);
  using R = cfm::remote_mep_stats;
  ExpectLayout<R, U32>(&R::last_ccm_seq_number);
}

TEST(RecordLayout, LinktraceTriggerAndItsRefusal) {
  using T = cfm::linktrace_trigger;
  ExpectLayout<T, U32, string, string, U16, U16, U8>(&T::request_id, &T::md_name, &T::ma_name,
                                                     &T::mep_id, &T::remote_mep_id, &T::ttl);
  using E = cfm::linktrace_trigger_error;
  ExpectLayout<E, U32, string, string, U16, U16, U32>(
      &E::request_id, &E::md_name, &E::ma_name, &E::mep_id, &E::remote_mep_id, &E::error_code);
}

TEST(RecordLayout, LinktraceReply) {
  using R = cfm::LinktraceReplyEntry;
  using Egress = std::unique_ptr<cfm::LtrEgressIdentifier>;
  using Port = std::unique_ptr<cfm::LtrReplyPort>;
  ExpectLayout<R, st_mac, st_mac, U16, U8, U16, U8, U8, bool, bool, bool, U32, U8, std::int32_t,
               Egress, Port, Port>(&R::destination_mac, &R::source_mac, &R::vlan, &R::priority,
                                   &R::internal_vlan, &R::internal_priority, &R::level,
                                   &R::terminal_mep, &R::forwarded, &R::use_fdb_only,
                                   &R::transaction_id, &R::ttl, &R::relay_action, &R::egress_id,
                                   &R::reply_ingress, &R::reply_egress);
  EXPECT_FALSE(std::is_copy_constructible_v<R>);
  EXPECT_FALSE(std::is_copy_assignable_v<R>);
}

TEST(RecordLayout, PartsOfALinktraceReply) {
  using E = cfm::LtrEgressIdentifier;
  ExpectLayout<E, st_mac, U16, st_mac, U16>(&E::last_mac, &E::last_id, &E::next_mac, &E::next_id);
  using P = cfm::LtrReplyPort;
  ExpectLayout<P, U8, st_mac, bool, U8, string>(&P::action, &P::mac, &P::port_id_present,
                                                &P::port_id_subtype, &P::port_id);
}

TEST(RecordLayout, LoopbackTrigger) {
  using T = cfm::loopback_trigger;
  ExpectLayout<T, U32, string, string, U16, U16, U32, U16>(&T::request_id, &T::md_name, &T::ma_name,
                                                           &T::mep_id, &T::remote_mep_id,
                                                           &T::param_a, &T::param_b);
}

TEST(RecordLayout, DelayMeasurementTrigger) {
  using T = cfm::delay_measurement_trigger;
  ExpectLayout<T, U32, string, string, U16, U16, U32, U32, U16, U8>(
      &T::request_id, &T::md_name, &T::ma_name, &T::mep_id, &T::remote_mep_id, &T::param_a,
      &T::param_b, &T::param_c, &T::param_d);
}

// Not the order of the wire, which has s_real_1 before s_word_4, s_word_5 before s_real_2, and
// s_word_10 last.
TEST(RecordLayout, DelayMeasurementSessionResult) {
  using R = cfm::DelayMeasurementSessionResult;
  ExpectLayout<R, U32, U32, U8, U32, U64, U64, U32, double, double, U32, U32, U32, U32, U32, U32,
               double, double>(&R::s_word_1, &R::s_word_2, &R::s_byte, &R::s_word_3, &R::s_wide_1,
                               &R::s_wide_2, &R::s_word_4, &R::s_real_1, &R::s_real_2, &R::s_word_5,
                               &R::s_word_6, &R::s_word_7, &R::s_word_8, &R::s_word_9,
                               &R::s_word_10, &R::s_real_3, &R::s_real_4);
}

}  // namespace
}  // namespace cfm_test
