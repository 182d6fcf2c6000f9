/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_TESTS_MGR_SERVER_FIXTURE_H
#define CFM_TESTS_MGR_SERVER_FIXTURE_H

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "quiet_network.h"
#include "recording_environment.h"
#include "server.h"

namespace cfm_mgr_test {

/** The entry of the dispatch table for a signal. */
inline const cfm_mgr::Server::Request& RequestOf(const vorx_sig_descriptor* signal) {
  for (const auto& request : cfm_mgr::Server::Requests()) {
    if (request.signal == signal) return request;
  }
  throw std::out_of_range("no such request");
}

/** A server without a bus, asked by client 7. */
class ServerTest : public testing::Test {
 protected:
  static constexpr vorx_pid_t kClient = 7;

  /** Whether the request changed the configuration. */
  bool SendBytes(const vorx_sig_descriptor* signal, std::string_view payload) {
    return server_.Handle(RequestOf(signal), kClient, payload);
  }

  template <class Message>
  bool Send(const vorx_sig_descriptor* signal, const Message& message) {
    return SendBytes(signal, message.SerializeAsString());
  }

  cfm_mgr::engine::Engine& engine() { return network_->engine(); }

  RecordingEnvironment environment_;
  QuietNetwork* network_ = nullptr;  // the server's
  cfm_mgr::Server server_{cfm_mgr::Store(), environment_,
                          [this](cfm_mgr::engine::Notifications& notifications) {
                            auto network = std::make_unique<QuietNetwork>(notifications);
                            network_ = network.get();
                            return network;
                          }};
};

}  // namespace cfm_mgr_test

#endif
