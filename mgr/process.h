/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_PROCESS_H
#define CFM_MGR_PROCESS_H

#include <deque>
#include <optional>
#include <string_view>

#include "bus.h"
#include "drop_log.h"
#include "host_environment.h"
#include "logger.h"
#include "options.h"
#include "round.h"
#include "server.h"
#include "signal_queue.h"
#include "store_keeper.h"

namespace cfm_mgr {

/** The server with its bus, its store file and its event loop. */
class Process {
 public:
  /**
   * Joins the bus and loads the store.
   *
   * @throws std::exception with a text for the user, when the server cannot start
   */
  explicit Process(const Options& options);

  /**
   * Serves until SIGTERM, SIGINT or SIGHUP.
   *
   * @throws std::exception with a text for the user, when the bus goes away or the last changes
   *         could not be saved
   */
  void Run();

 private:
  /** What a signal's callback needs to know. */
  struct Entry {
    Process* process;
    const Server::Request* request;
  };

  static void Receive(vorx_t* handle, void* user, const vorx_pid_t* sender, void* data,
                      unsigned int length);

  /** What the callback of a signal that is no request needs to know. */
  struct Unknown {
    Process* process;
    vorx_sig_descriptor signal;
  };

  /** Takes the rest of the block's signals too, so that none of them is refused silently. */
  void RegisterUnknown();
  static void ReceiveUnknown(vorx_t* handle, void* user, const vorx_pid_t* sender, void* data,
                             unsigned int length);

  /** Does what the signals to this process ask for; false when it is to end. */
  bool HandleSignals() const;

  void LogDrops();

  /** Runs the protocol, reports and saves what is due, waits for what comes, and delivers it. */
  void Turn();

  /** When to work next even if nothing comes; none if never. */
  std::optional<SaveSchedule::Clock::time_point> NextWork() const;

  void Finish();

  SignalQueue signals_;
  Handle handle_;
  Logger logger_;
  HostEnvironment environment_;
  StoreKeeper keeper_;
  Server server_;
  std::deque<Entry> entries_;
  std::deque<Unknown> unknown_;
  Round round_;
  DropLog drop_log_;
};

}  // namespace cfm_mgr

#endif
