/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * The server without its bus: one entry for each signal a client may send, one way through which
 * every request is read, carried out and logged, and the network that the protocol runs over.
 */
#ifndef CFM_MGR_SERVER_H
#define CFM_MGR_SERVER_H

#include <vorx/vorx.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine_events.h"
#include "environment.h"
#include "net/network.h"
#include "provisioner.h"
#include "reporter.h"
#include "store.h"
#include "trigger_error.h"

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

  /** Makes the network, whose engine tells what happens to the notifications passed. */
  using MakeNetwork =
      std::function<std::unique_ptr<net::Network>(engine::Notifications& notifications)>;

  /**
   * Starts with a configuration, about which it publishes nothing until a client asks or something
   * changes.
   */
  Server(Store store, Environment& environment, const MakeNetwork& make_network);

  // What it consists of refers to each other.
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;
  ~Server() = default;

  /** Carries out one request and logs one line about it. Whether it changed the configuration. */
  bool Handle(const Request& request, vorx_pid_t client, std::string_view payload);

  /** Runs the protocol up to the present. */
  void Run();

  /** Whether the status of an endpoint has changed that EndRound() is to publish. */
  bool HasNews() const { return events_.HasChanges(); }

  /** To be called when no request is waiting: publishes what the last ones made new. */
  void EndRound();

  /** When Run() has something to do next; none while only frames can bring it. */
  std::optional<engine::Time> NextDeadline() const { return network_->NextDeadline(); }

  /** Readable when Run() has something to do; -1 when that never is so. */
  int Descriptor() const { return network_->Descriptor(); }

  /** What its network dropped, by interface and reason. */
  std::vector<net::DropCount> Drops() const { return network_->Drops(); }

  const Tree& tree() const { return store_.tree(); }

 private:
  template <class Message>
  Outcome Configure(vorx_pid_t client, std::string_view payload);
  Outcome SendCache(vorx_pid_t client, std::string_view payload);
  Outcome SendStatistics(vorx_pid_t client, std::string_view payload);
  Outcome ClearStatistics(vorx_pid_t client, std::string_view payload);
  Outcome PublishStatus(vorx_pid_t client, std::string_view payload);
  Outcome StartLinktrace(vorx_pid_t client, std::string_view payload);
  Outcome StartLoopback(vorx_pid_t client, std::string_view payload);
  Outcome StartDelayMeasurement(vorx_pid_t client, std::string_view payload);

  /** Brings the engine to the present and gives it what changed. The present. */
  engine::Time Settle();

  /** Sends @p message to the client and says @p text of it. */
  template <class Message>
  Outcome Reply(vorx_pid_t client, const vorx_sig_descriptor& signal, const Message& message,
                const std::string& text);
  template <class Trigger, class Error, class Start>
  Outcome StartTest(vorx_pid_t client, std::string_view payload, const vorx_event_descriptor& event,
                    const vorx_sig_descriptor& refusal, const Start& start);
  template <class Error, class Trigger>
  Outcome RefuseTest(vorx_pid_t client, const Trigger& trigger, TriggerError code,
                     const vorx_sig_descriptor& signal);

  Store store_;
  Environment& environment_;
  EngineEvents events_;
  std::unique_ptr<net::Network> network_;
  Provisioner provisioner_;
  Reporter reporter_;
};

}  // namespace cfm_mgr

#endif
