/* SPDX-License-Identifier: Apache-2.0 */
// The send path of the on-demand tests: as any request, with a record before each step.
#ifndef CFM_SRC_SEND_TRIGGER_H
#define CFM_SRC_SEND_TRIGGER_H

#include <google/protobuf/message_lite.h>

#include "client_impl.h"

namespace cfm {

template <const LogPoint& Serializing, const LogPoint& Sending, const LogPoint& Sent>
void ClientImpl::SendTrigger(const vorx_sig_descriptor* signal,
                             const google::protobuf::MessageLite& message) const {
  Log<Serializing>(log_category);
  std::string bytes;
  message.SerializeToString(&bytes);
  Log<Sending>(log_category);
  SendBytes(signal, bytes);
  Log<Sent>(log_category);
}

}  // namespace cfm

#endif
