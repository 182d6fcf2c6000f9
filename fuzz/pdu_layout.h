/* SPDX-License-Identifier: Apache-2.0 */
// The layout of CFM PDUs, told without the decoders: from the tables of IEEE 802.1Q clause 21 and
// ITU-T Y.1731 clause 9.
#ifndef CFM_FUZZ_PDU_LAYOUT_H
#define CFM_FUZZ_PDU_LAYOUT_H

#include "pdu/octets.h"

namespace cfm_fuzz {

/// Requires of a PDU that a decoder accepts that its fields and TLVs are there, whole and, in
/// version 0, just as long as they have to be.
void RequireLayout(cfm_mgr::pdu::OctetView pdu);

}  // namespace cfm_fuzz

#endif
