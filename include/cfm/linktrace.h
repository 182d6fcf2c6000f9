/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * On-demand linktrace (IEEE 802.1ag LTM/LTR).
 */
#ifndef CFM_LINKTRACE_H
#define CFM_LINKTRACE_H

#include <cfm/export.h>
#include <cfm/mac.h>

#include <cstdint>
#include <memory>
#include <string>

namespace cfm {

/** A linktrace to run, filled by the application. */
struct linktrace_trigger {
  /** The application's own number for this request; a refusal brings it back. */
  std::uint32_t request_id = 0;
  std::string md_name;              ///< Maintenance domain of the local MEP.
  std::string ma_name;              ///< Maintenance association of the local MEP.
  std::uint16_t mep_id = 0;         ///< Local MEP that sends the LTM.
  std::uint16_t remote_mep_id = 0;  ///< Remote MEP that the LTM is for.
  std::uint8_t ttl = 0;             ///< Initial TTL of the LTM; the standard's default is 64.
};

/** The server's refusal of a linktrace, filled by the library. */
struct linktrace_trigger_error {
  std::uint32_t request_id = 0;     ///< As in the trigger.
  std::string md_name;              ///< As in the trigger.
  std::string ma_name;              ///< As in the trigger.
  std::uint16_t mep_id = 0;         ///< As in the trigger.
  std::uint16_t remote_mep_id = 0;  ///< As in the trigger.
  std::uint32_t error_code = 0;     ///< The server's reason, in its own numbering.
};

/** LTR Egress Identifier TLV, filled by the library (IEEE 802.1ag, 21.9.7): who forwarded the LTM,
 * and to whom. */
struct LtrEgressIdentifier {
  st_mac last_mac;            ///< Address of the MP that sent the LTM this replies to.
  std::uint16_t last_id = 0;  ///< The two octets before that address.
  st_mac next_mac;            ///< Address of the MP that forwarded the LTM; zero if none did.
  std::uint16_t next_id = 0;  ///< The two octets before that address.
};

/** Reply Ingress or Reply Egress TLV of an LTR, filled by the library (IEEE 802.1ag, 21.9.8). */
struct LtrReplyPort {
  std::uint8_t action = 0;           ///< OK 1, down 2, blocked 3, VID 4.
  st_mac mac;                        ///< Address of the ingress or egress MP.
  bool port_id_present = false;      ///< Whether the TLV holds a port identifier.
  std::uint8_t port_id_subtype = 0;  ///< IEEE 802.1AB port identifier subtype.
  std::string port_id;               ///< The port identifier's octets.
};

/** One received LTR, filled by the library. Not copyable. */
struct CFM_API LinktraceReplyEntry {
  /** An entry of zeros that has an egress identifier and neither port. */
  LinktraceReplyEntry();
  ~LinktraceReplyEntry();
  LinktraceReplyEntry(const LinktraceReplyEntry&) = delete;
  LinktraceReplyEntry& operator=(const LinktraceReplyEntry&) = delete;

  /**
   * Renders a reply as text, with decimal numbers whatever the process's locale.
   *
   * @param entry   the reply
   * @param indent  0 for a single line; otherwise the text has a line per item, those
   *                of a group indented by so many spaces
   */
  static std::string Show(const LinktraceReplyEntry& entry, unsigned int indent);

  st_mac destination_mac;                          ///< Destination address of the LTR.
  st_mac source_mac;                               ///< Address of the replying MP.
  std::uint16_t vlan = 0;                          ///< VLAN that the LTR came in.
  std::uint8_t priority = 0;                       ///< Priority of the LTR, 0 to 7.
  std::uint16_t internal_vlan = 0;                 ///< 0 when the server sent none.
  std::uint8_t internal_priority = 0;              ///< 0 when the server sent no internal VLAN.
  std::uint8_t level = 0;                          ///< MD level.
  bool terminal_mep = false;                       ///< The replier is the terminal MEP.
  bool forwarded = false;                          ///< The LTM was forwarded.
  bool use_fdb_only = false;                       ///< The LTM was to follow the FDB only.
  std::uint32_t transaction_id = 0;                ///< That of the LTM.
  std::uint8_t ttl = 0;                            ///< Reply TTL: one less than the LTM's.
  std::int32_t relay_action = 0;                   ///< Hit 1, FDB 2, MPDB 3.
  std::unique_ptr<LtrEgressIdentifier> egress_id;  ///< Never null.
  std::unique_ptr<LtrReplyPort> reply_ingress;     ///< Null when the LTR had none.
  std::unique_ptr<LtrReplyPort> reply_egress;      ///< Null when the LTR had none.
};

}  // namespace cfm

#endif
