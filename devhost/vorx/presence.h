/* SPDX-License-Identifier: Apache-2.0 */
#ifndef DEVHOST_VORX_PRESENCE_H
#define DEVHOST_VORX_PRESENCE_H

#include <vorx/vorx.h>

#include <memory>
#include <string>
#include <vector>

#include "bus.h"

/** A watch on a process name, known by its address outside. */
struct vorx_subscription {
  std::string process;
  vorx_proc_found_cb found = nullptr;
  vorx_proc_lost_cb lost = nullptr;
  void* user = nullptr;
  bool is_active = true;
  /** False until the bus has said who holds the name to begin with. */
  bool is_known = false;
  bool is_asked = false;
  devhost::Clock::time_point asked_at;
  vorx_pid_t present = 0;
};

namespace devhost {

/** Tells the watchers of a process name who comes and goes. */
class Presence {
 public:
  Presence(vorx_t* handle, Bus& bus, Diagnostics& diagnostics)
      : handle_(handle), bus_(bus), diagnostics_(diagnostics) {}

  /** Null when the bus is gone. */
  vorx_subscription* Add(const std::string& process, vorx_proc_found_cb found,
                         vorx_proc_lost_cb lost, void* user);
  void Remove(const vorx_subscription* subscription);

  /** Passes a change on to the watchers of the name. */
  void Deliver(const OwnerChange& change);
  /** Asks the bus anew about every name: something that it said may have been missed. */
  void Refresh();
  /** Asks again where the bus owes an answer for long: it drops answers too. */
  void AskAgain();
  /** How long until AskAgain() has something to do, in milliseconds; -1 when nothing is open. */
  [[nodiscard]] int TimeoutMs() const;
  /** Reports all watched processes lost. */
  void LoseAll();

 private:
  using SubscriptionPtr = std::shared_ptr<vorx_subscription>;

  int AskOwner(const SubscriptionPtr& subscription);
  void TakeOwner(vorx_subscription& subscription, sd_bus_message* reply);
  void Change(vorx_subscription& subscription, vorx_pid_t present);

  vorx_t* handle_;
  Bus& bus_;
  Diagnostics& diagnostics_;
  std::vector<SubscriptionPtr> subscriptions_;
};

}  // namespace devhost

#endif
