/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Status of local and remote MEPs, as the server reports it.
 *
 * The library fills these records. Numbers are the server's, passed through as they come; the
 * values named here are those of the IEEE 802.1ag MIB. What the server leaves out is zero, false
 * or empty, an interface status keeps its low eight bits, and an address that is too short is
 * filled up with zeros.
 */
#ifndef CFM_STATUS_H
#define CFM_STATUS_H

#include <cfm/mac.h>

#include <cstdint>
#include <string>

namespace cfm {

/** Status of a local MEP. The defects stand in the standard's order of priority. */
struct local_mep_status {
  st_mac mac;                        ///< Address of the MEP (dot1agCfmMepMacAddress).
  bool rdi = false;                  ///< The MEP sends RDI in its CCMs.
  std::uint8_t intf_status = 0;      ///< Interface status: up 1, down 2, testing 3, ...
  std::uint32_t port_state = 0;      ///< Port status: blocked 1, up 2.
  std::uint32_t block_state = 0;     ///< Whether the port is blocked; the server's codes.
  std::uint32_t shutdown_state = 0;  ///< Whether the port is shut down; the server's codes.
  std::uint32_t highest_defect_priority = 0;  ///< None 0 to cross-connect CCM 5.
  bool defect_rdi = false;                    ///< Some remote MEP sends RDI.
  bool defect_mac_status = false;             ///< Some remote MEP reports its port not up.
  bool defect_remote_ccm = false;             ///< CCMs of some remote MEP are missing.
  bool defect_error_ccm = false;              ///< Erroneous CCMs are received.
  bool defect_xcon_ccm = false;               ///< CCMs of another MA are received.
  bool defect_ais = false;                    ///< AIS frames are received.
};

/** Status of a remote MEP as one local MEP sees it. */
struct remote_mep_status {
  std::uint32_t fsm_state = 0;  ///< Remote MEP state: idle 1, start 2, failed 3, ok 4.
  std::uint64_t last_change_uptime =
      0;                         ///< System uptime at the last change of state; the server's unit.
  st_mac mac;                    ///< Source address of its last CCM.
  bool rdi = false;              ///< Its last CCM carried RDI.
  std::uint32_t port_state = 0;  ///< Port status TLV: blocked 1, up 2.
  std::uint8_t intf_status = 0;  ///< Interface status TLV: up 1, down 2, ...
  std::string sender_id;         ///< Sender ID TLV as text.
};

}  // namespace cfm

#endif
