/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_TESTS_MGR_RECORDING_ENVIRONMENT_H
#define CFM_TESTS_MGR_RECORDING_ENVIRONMENT_H

#include <string>
#include <utility>
#include <vector>

#include "environment.h"

namespace cfm_mgr_test {

/** Keeps what the server sends, publishes and logs, in order. */
class RecordingEnvironment : public cfm_mgr::Environment {
 public:
  struct Sent {
    vorx_pid_t client;
    const vorx_sig_descriptor* signal;
    std::string payload;
  };
  struct Published {
    const vorx_event_descriptor* event;
    std::string payload;
  };

  std::string Send(vorx_pid_t client, const vorx_sig_descriptor& signal,
                   const std::string& payload) override {
    if (!send_fault.empty()) return send_fault;
    sent.push_back({client, &signal, payload});
    return {};
  }

  void Publish(const vorx_event_descriptor& event, const std::string& payload) override {
    published.push_back({&event, payload});
  }

  void Log(const std::string& line) override { log.push_back(line); }

  cfm_mgr::engine::Time Now() override { return now; }

  /** The last log line. */
  std::string Line() const { return log.empty() ? "" : log.back(); }

  std::vector<Sent> sent;
  std::vector<Published> published;
  std::vector<std::string> log;
  cfm_mgr::engine::Time now{};
  std::string send_fault;  ///< When set, every Send() fails with it.
};

}  // namespace cfm_mgr_test

#endif
