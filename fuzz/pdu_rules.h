/* SPDX-License-Identifier: Apache-2.0 */
// What holds of every PDU, whatever its octets.
#ifndef CFM_FUZZ_PDU_RULES_H
#define CFM_FUZZ_PDU_RULES_H

#include "pdu/octets.h"

namespace cfm_fuzz {

/// Gives the octets to all decoders. Only that of their opcode may take them, and what it makes of
/// them has to survive being encoded and decoded again.
void RequireRightPdu(cfm_mgr::pdu::OctetView octets);

/// Whether the decoder of its opcode takes a PDU.
bool IsDecodable(cfm_mgr::pdu::OctetView octets);

}  // namespace cfm_fuzz

#endif
