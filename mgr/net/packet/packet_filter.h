/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_NET_PACKET_PACKET_FILTER_H
#define CFM_MGR_NET_PACKET_PACKET_FILTER_H

#include <linux/filter.h>

#include <vector>

namespace cfm_mgr::net {

/**
 * A classic BPF program that lets frames of CFM's EtherType through, behind up to two tags that
 * stand in the frame, and nothing else. The kernel has taken the outermost tag out by then.
 */
std::vector<sock_filter> CfmFilter();

}  // namespace cfm_mgr::net

#endif
