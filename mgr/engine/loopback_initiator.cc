// SPDX-License-Identifier: Apache-2.0
#include "engine/loopback_initiator.h"

namespace cfm_mgr::engine {

std::vector<std::uint8_t> LoopbackInitiator::BuildLbm(std::uint32_t transaction_id) const {
  // Octets that count up from the transaction identifier: neither a shift nor a mix-up of two LBMs
  // leaves them as they were.
  std::vector<std::uint8_t> data(settings_.data_size);
  std::uint32_t next = transaction_id;
  for (std::uint8_t& octet : data) octet = static_cast<std::uint8_t>(next++);
  pdu::Loopback lbm;
  lbm.level = settings_.level;
  lbm.transaction_id = transaction_id;
  if (!data.empty()) lbm.data = data;
  return pdu::EncodeLbm(lbm);
}

std::optional<std::vector<std::uint8_t>> LoopbackInitiator::TakeDue(Time now) {
  const std::uint32_t transaction_id = settings_.first_transaction_id + pacer_.sent();
  if (!pacer_.TakeDue(now)) return std::nullopt;
  return BuildLbm(transaction_id);
}

bool LoopbackInitiator::OnReply(const Mac& source, const pdu::Loopback& lbr,
                                pdu::OctetView octets) {
  // The difference wraps as the identifiers do.
  const std::uint32_t index = lbr.transaction_id - settings_.first_transaction_id;
  if (index >= pacer_.sent() || source != settings_.target) return false;
  if (!pdu::BringsBack(octets, BuildLbm(lbr.transaction_id))) {
    ++result_.wrong_payload;
    return true;
  }
  ++(lbr.transaction_id == expected_id_ ? result_.in_order : result_.out_of_order);
  expected_id_ = lbr.transaction_id + 1;
  return true;
}

LoopbackResult LoopbackInitiator::Result() const {
  LoopbackResult result = result_;
  result.expected = pacer_.sent();
  return result;
}

}  // namespace cfm_mgr::engine
