#ifndef CFM_TESTS_MGR_RECORDING_ENVIRONMENT_H
#define CFM_TESTS_MGR_RECORDING_ENVIRONMENT_H

#include <map>
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

  cfm_mgr::Interface FindInterface(std::uint32_t ifindex) override {
    ++interface_lookups;
    const auto found = interfaces.find(ifindex);
    return found == interfaces.end() ? cfm_mgr::Interface{} : found->second;
  }

  /** The last log line. */
  std::string Line() const { return log.empty() ? "" : log.back(); }

  std::vector<Sent> sent;
  std::vector<Published> published;
  std::vector<std::string> log;
  std::map<std::uint32_t, cfm_mgr::Interface> interfaces;
  int interface_lookups = 0;
  std::string send_fault;  ///< When set, every Send() fails with it.
};

}  // namespace cfm_mgr_test

#endif
