/* SPDX-License-Identifier: Apache-2.0 */
// Linktrace reports as the records that handlers get.
#ifndef CFM_SRC_CORE_LINKTRACE_RECORDS_H
#define CFM_SRC_CORE_LINKTRACE_RECORDS_H

#include <cfm/client_server.pb.h>
#include <cfm/linktrace.h>

#include <memory>

namespace cfm::core {

/// Takes the names out of the message.
linktrace_trigger_error LinktraceError(client_server::OpLinktraceTriggerError&& message);

/// Internal VLAN and priority are taken only if the server sent the VLAN; a port only if it sent
/// that.
std::shared_ptr<LinktraceReplyEntry> LinktraceReply(const client_server::LinktraceReply& message);

}  // namespace cfm::core

#endif
