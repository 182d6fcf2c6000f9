/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * What a bridge does with an LTM that one of its MPs has taken, IEEE 802.1Q 20.47.
 */
#ifndef CFM_MGR_ENGINE_LINKTRACE_RESPONDER_H
#define CFM_MGR_ENGINE_LINKTRACE_RESPONDER_H

#include <cstdint>
#include <optional>

#include "engine/engine.h"
#include "pdu/linktrace.h"

namespace cfm_mgr::engine {

/** The MPs of a port as an LTM of one VID and level meets them on its way to the wire. */
struct EgressPoint {
  bool mip = false;      ///< There is an MHF of this level.
  bool up_mep = false;   ///< There is an Up MEP of this level.
  bool guarded = false;  ///< A MEP keeps frames of this level from leaving.
};

/** What the responder has to know of its bridge. */
class LinktraceBridge {
 public:
  LinktraceBridge() = default;
  LinktraceBridge(const LinktraceBridge&) = delete;
  LinktraceBridge& operator=(const LinktraceBridge&) = delete;
  virtual ~LinktraceBridge() = default;

  /** Null for a port that is not there. The result lives until the bridge's ports change. */
  virtual const PortInfo* FindPort(PortId port) const = 0;
  virtual EgressPoint PointAt(PortId port, std::uint16_t vid, std::uint8_t level) const = 0;
  /** The port of this address that has an MHF or Up MEP of this VID and level. */
  virtual std::optional<PortId> FindOwnPort(std::uint16_t vid, std::uint8_t level,
                                            const Mac& address) const = 0;
  /** As Surroundings::FindEgress(). */
  virtual EgressPorts FindEgress(PortId ingress, std::uint16_t vid, const Mac& address) = 0;
  virtual std::optional<PortId> FindInMipDatabase(std::uint16_t vid, const Mac& address) const = 0;
};

/** Where an LTM was taken. */
struct LtmArrival {
  PortId port = 0;
  Side side = Side::Wire;  ///< From which it came: from the wire a Down MP took it.
  bool mep = false;        ///< By a MEP rather than by an MHF.
  std::uint16_t vid = 0;
  std::optional<pdu::SenderId> sender_id{};  ///< How the MP names its bridge, if it may.
};

/**
 * An LTM that goes on to the wire of another port, or of the one whose Up MHF took it. Its TTL,
 * egress identifier and sender ID are new; pdu::ForwardLtm() puts them into what came.
 */
struct ForwardedLtm {
  PortId port = 0;
  Mac source{};
  pdu::Ltm ltm;
};

/** The reply goes back by the port and side of arrival, from this port's address. */
struct LinktraceAnswer {
  pdu::Ltr ltr;  ///< Port identifiers point into the names of the bridge's ports.
  std::optional<ForwardedLtm> forwarded;
};

/**
 * Finds the reply to an LTM and whether it goes on.
 *
 * There is no reply when the TTL is 0, and when the bridge does not know a way to the target other
 * than back. An MP whose address is the target's ends the trace with the relay action Hit. For all
 * others the way is that of the filtering database: the port where the target was learnt, or the
 * only other port of the VLAN. If that does not tell and the LTM allows it, it is the port that the
 * MIP CCM Database gives.
 *
 * An LTM goes on when it was taken by an MHF, has a TTL above 1, has not hit, would leave through
 * ports that are up, unblocked and in the VLAN, and meets no MEP that ends its level. It goes on
 * with our egress identifier and with the sender ID of the MP that took it.
 */
std::optional<LinktraceAnswer> AnswerLtm(LinktraceBridge& bridge, const LtmArrival& arrival,
                                         const pdu::Ltm& ltm);

/** How the sender of an LTM names itself: by an address of its own. */
pdu::EgressIdentifier EgressIdentifierOf(const Mac& address);

}  // namespace cfm_mgr::engine

#endif
