/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * On-demand loopback (IEEE 802.1ag LBM/LBR).
 */
#ifndef CFM_LOOPBACK_H
#define CFM_LOOPBACK_H

#include <cstdint>
#include <string>

namespace cfm {

/** A loopback test to run, filled by the application. */
struct loopback_trigger {
  /** The application's own number for this request; every report brings it back. */
  std::uint32_t request_id = 0;
  std::string md_name;              ///< Maintenance domain of the local MEP.
  std::string ma_name;              ///< Maintenance association of the local MEP.
  std::uint16_t mep_id = 0;         ///< Local MEP that sends the LBMs.
  std::uint16_t remote_mep_id = 0;  ///< Remote MEP that the LBMs are for.
  std::uint32_t param_a = 0;        ///< First test parameter; the server's meaning.
  std::uint16_t param_b = 0;        ///< Second test parameter; the server's meaning.
};

}  // namespace cfm

#endif
