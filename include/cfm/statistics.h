/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * CCM statistics of local and remote MEPs, filled by the library with the server's counts.
 */
#ifndef CFM_STATISTICS_H
#define CFM_STATISTICS_H

#include <cstdint>

namespace cfm {

/** Statistics of a local MEP. */
struct local_mep_stats {
  std::uint64_t ccm_rx_seq_errors =
      0;  ///< CCMs received out of sequence (dot1agCfmMepCcmSequenceErrors).
  std::uint64_t ccm_tx_total = 0;       ///< CCMs sent (dot1agCfmMepCciSentCcms).
  std::uint32_t ccm_tx_seq_number = 0;  ///< Sequence number of the CCM sent last.
};

/** Statistics of a remote MEP as one local MEP sees it. */
struct remote_mep_stats {
  std::uint32_t last_ccm_seq_number = 0;  ///< Sequence number of the CCM received last.
};

}  // namespace cfm

#endif
