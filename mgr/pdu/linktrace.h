/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_PDU_LINKTRACE_H
#define CFM_MGR_PDU_LINKTRACE_H

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "pdu/sender_id.h"

namespace cfm_mgr::pdu {

using MacAddress = std::array<std::uint8_t, 6>;

/** Whether an address is that of a group. */
constexpr bool IsGroup(const MacAddress& address) { return (address[0] & 1U) != 0; }

/** Names the sender of an LTM: two octets of its choice, then an address of its system. */
using EgressIdentifier = std::array<std::uint8_t, 8>;

/** A Linktrace Message, IEEE 802.1Q 21.8. */
struct Ltm {
  std::uint8_t level = 0;
  bool use_fdb_only = false;
  std::uint32_t transaction_id = 0;
  std::uint8_t ttl = 0;
  MacAddress original{};              ///< The MEP that began it, to which replies go.
  MacAddress target{};                ///< What is looked for.
  EgressIdentifier egress_id{};       ///< The system that sent this very LTM.
  std::optional<SenderId> sender_id;  ///< Points into the PDU that was decoded.
};

/** Codes of relay actions, IEEE 802.1Q 21.9.5. */
enum class RelayAction : std::uint8_t { Hit = 1, Fdb = 2, Mpdb = 3 };

/** Codes of ingress and egress actions, IEEE 802.1Q 21.9.8.1 and 21.9.9.1. */
enum class PortAction : std::uint8_t { Ok = 1, Down = 2, Blocked = 3, Vid = 4 };

/** A Reply Ingress or Reply Egress TLV. */
struct ReplyPortTlv {
  std::uint8_t action = 0;  ///< A PortAction; other codes only from later versions.
  MacAddress mac{};
  std::optional<std::uint8_t> port_id_subtype;  ///< As in IEEE 802.1AB; none: no port identifier.
  OctetView port_id;                            ///< 1 to 255 octets when there is one.
};

/** A Linktrace Reply, IEEE 802.1Q 21.9. */
struct Ltr {
  std::uint8_t level = 0;
  bool use_fdb_only = false;
  bool forwarded = false;
  bool terminal_mep = false;
  std::uint32_t transaction_id = 0;
  std::uint8_t ttl = 0;
  std::uint8_t relay_action = 0;  ///< A RelayAction; other codes only from later versions.
  EgressIdentifier last_egress{};
  EgressIdentifier next_egress{};
  std::optional<ReplyPortTlv> ingress;  ///< Views point into the PDU that was decoded.
  std::optional<ReplyPortTlv> egress;
  std::optional<SenderId> sender_id;
};

/** Refuses an LTM without LTM Egress Identifier TLV, or with a group as origin or as target. */
Decoded<Ltm> DecodeLtm(OctetView pdu);

/** Refuses an LTR without LTR Egress Identifier TLV, or with codes that version 0 does not have. */
Decoded<Ltr> DecodeLtr(OctetView pdu);

/** Version 0, TLVs in the order egress identifier, sender ID. */
std::vector<std::uint8_t> Encode(const Ltm& ltm);

/**
 * An LTM as it goes on: the octets that came, with the TTL, egress identifier and sender ID of
 * @p ltm. All else stays as it came and where it was: version, flags, fields and TLVs of any type.
 * The sender ID follows the egress identifier; padding is left out.
 *
 * @param received An LTM that DecodeLtm() accepts.
 */
std::vector<std::uint8_t> ForwardLtm(OctetView received, const Ltm& ltm);

/** Version 0, TLVs in the order egress identifier, reply ingress, reply egress, sender ID. */
std::vector<std::uint8_t> Encode(const Ltr& ltr);

}  // namespace cfm_mgr::pdu

#endif
