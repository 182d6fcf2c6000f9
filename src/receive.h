/* SPDX-License-Identifier: Apache-2.0 */
// The one way from received bytes to a message.
#ifndef CFM_SRC_RECEIVE_H
#define CFM_SRC_RECEIVE_H

#include <cfm/client_server.pb.h>

#include <memory>
#include <string>
#include <tuple>
#include <utility>

#include "core/reserve_entries.h"

namespace cfm {

/// What reports of one type are read into: an empty message, kept from one report to the next,
/// because most of the time that it takes to read a short one goes into memory for its strings.
/// Null while it is in use, and until the first report.
template <typename Message>
using KeptMessage = std::unique_ptr<Message>;

/// One for each type of report without lists. An entry of a list keeps the memory of the longest
/// names that it ever had: a list that is kept could come to hold much, by short reports alone.
using KeptMessages = std::tuple<
    KeptMessage<client_server::OpLinktraceTriggerError>,
    KeptMessage<client_server::OpLoopbackTriggerError>,
    KeptMessage<client_server::OpDelayMeasurementTriggerError>,
    KeptMessage<client_server::StatusLocalMaintenanceEndpoint>,
    KeptMessage<client_server::StatusRemoteMaintenanceEndpoint>,
    KeptMessage<client_server::RemovedLocalMaintenanceEndpoint>,
    KeptMessage<client_server::RemovedRemoteMaintenanceEndpoint>,
    KeptMessage<client_server::OpLinktraceStarted>, KeptMessage<client_server::OpLinktraceEnded>,
    KeptMessage<client_server::OpLinktraceReplyRx>, KeptMessage<client_server::OpLoopbackStarted>,
    KeptMessage<client_server::OpLoopbackReplyRx>, KeptMessage<client_server::OpLoopbackEnded>,
    KeptMessage<client_server::OpDelayMeasurementStarted>,
    KeptMessage<client_server::OpDelayMeasurementReplyRx>,
    KeptMessage<client_server::OpDelayMeasurementEnded>,
    KeptMessage<client_server::OpDelayMeasurementSessionEnded>>;

/// Copies a payload and parses it into an empty message. What does not parse still leaves the
/// fields read so far. A null payload is an empty one.
///
/// @return whether the bytes were one complete message
template <typename Message>
bool ReadPayload(const void* data, unsigned length, Message& message) {
  const auto bytes =
      data == nullptr ? std::string() : std::string(static_cast<const char*>(data), length);
  core::ReserveEntries(message, bytes);
  return message.MergeFromString(bytes);
}

/// A report with lists, as far as it can be read.
template <typename Message>
Message ReceiveLists(const void* data, unsigned length) {
  Message message;
  ReadPayload(data, length, message);
  return message;
}

/// Any other report while it is handled.
template <typename Message>
class Received {
 public:
  Received(KeptMessages& kept, const void* data, unsigned length)
      : kept_(std::get<KeptMessage<Message>>(kept)),
        message_(length <= kLongestKept && kept_ != nullptr ? std::move(kept_)
                                                            : std::make_unique<Message>()),
        length_(length),
        is_whole_(ReadPayload(data, length, *message_)) {}
  Received(const Received&) = delete;
  Received& operator=(const Received&) = delete;
  // Not run where reading failed for want of memory: nothing is certain of a message then but that
  // it can be destroyed.
  ~Received() {
    if (length_ <= kLongestKept) {
      message_->Clear();
      kept_ = std::move(message_);
    }
  }

  /// Whether the payload was one complete message.
  bool IsWhole() const { return is_whole_; }
  const Message& operator*() const { return *message_; }
  const Message* operator->() const { return message_.get(); }

 private:
  // Longer reports are rare, and would keep their memory for good.
  static constexpr unsigned kLongestKept = 4096;

  KeptMessage<Message>& kept_;
  // One of its own where a handler lets the host go on with its work, so that the next report of
  // the type comes while the kept message is in use.
  KeptMessage<Message> message_;
  unsigned length_;
  bool is_whole_;
};

}  // namespace cfm

#endif
