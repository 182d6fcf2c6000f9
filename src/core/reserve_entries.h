/* SPDX-License-Identifier: Apache-2.0 */
// Room for the entries of a list before it is read.
#ifndef CFM_SRC_CORE_RESERVE_ENTRIES_H
#define CFM_SRC_CORE_RESERVE_ENTRIES_H

#include <cfm/client_server.pb.h>

#include <string_view>

namespace cfm::core {

/// Makes room in a message for all entries that its bytes hold. protobuf makes room while it reads,
/// but loses an entry if there is no memory for that.
void ReserveEntries(client_server::OpCacheSync& message, std::string_view bytes);
void ReserveEntries(client_server::OpReplyAllStats& message, std::string_view bytes);
/// A message without lists.
inline void ReserveEntries(google::protobuf::MessageLite& /*message*/, std::string_view /*bytes*/) {
}

}  // namespace cfm::core

#endif
