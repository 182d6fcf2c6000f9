/**
 * @file
 * The server without its bus: one entry for each signal a client may send, one way through which
 * every request is read, carried out and logged.
 */
#ifndef CFM_MGR_SERVER_H
#define CFM_MGR_SERVER_H

#include <vorx/vorx.h>

#include <string>
#include <string_view>
#include <vector>

#include "environment.h"
#include "reporter.h"
#include "store.h"

namespace cfm_mgr {

class Server {
 public:
  /** One signal that clients send. */
  struct Request {
    const vorx_sig_descriptor* signal;
    const char* title;  ///< As the log calls it.
    Outcome (Server::*run)(vorx_pid_t client, std::string_view payload);
  };

  /** All signals of the client-to-server block, in order of their numbers. */
  static const std::vector<Request>& Requests();

  /** Starts with a configuration, about which it publishes nothing until a client asks. */
  Server(Store store, Environment& environment);

  // The reporter refers to the store.
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;
  ~Server() = default;

  /** Carries out one request and logs one line about it. Whether it changed the configuration. */
  bool Handle(const Request& request, vorx_pid_t client, std::string_view payload);

  /** To be called when no request is waiting: publishes what the last ones made new. */
  void EndRound() { reporter_.Flush(); }

  const Tree& tree() const { return store_.tree(); }

 private:
  template <class Message>
  Outcome Configure(vorx_pid_t client, std::string_view payload);
  Outcome SendCache(vorx_pid_t client, std::string_view payload);
  Outcome SendStatistics(vorx_pid_t client, std::string_view payload);
  Outcome ClearStatistics(vorx_pid_t client, std::string_view payload);
  Outcome PublishStatus(vorx_pid_t client, std::string_view payload);
  Outcome RefuseLinktrace(vorx_pid_t client, std::string_view payload);
  Outcome RefuseLoopback(vorx_pid_t client, std::string_view payload);
  Outcome RefuseDelayMeasurement(vorx_pid_t client, std::string_view payload);

  /** Sends @p message to the client and says @p text of it. */
  template <class Message>
  Outcome Reply(vorx_pid_t client, const vorx_sig_descriptor& signal, const Message& message,
                const std::string& text);
  template <class Error, class Trigger>
  Outcome RefuseTest(vorx_pid_t client, std::string_view payload,
                     const vorx_sig_descriptor& signal);

  Store store_;
  Environment& environment_;
  Reporter reporter_;
};

}  // namespace cfm_mgr

#endif
