// SPDX-License-Identifier: Apache-2.0
#include "presence.h"

#include <algorithm>
#include <utility>

#include "names.h"

namespace devhost {
namespace {

/** How long the bus may take to answer. */
constexpr milliseconds kAnswerLimit{1'000};

}  // namespace

vorx_subscription* Presence::Add(const std::string& process, vorx_proc_found_cb found,
                                 vorx_proc_lost_cb lost, void* user) {
  auto subscription = std::make_shared<vorx_subscription>();
  subscription->process = process;
  subscription->found = found;
  subscription->lost = lost;
  subscription->user = user;
  if (AskOwner(subscription) < 0) {
    return nullptr;
  }
  subscriptions_.push_back(subscription);
  return subscription.get();
}

void Presence::Remove(const vorx_subscription* subscription) {
  const auto place =
      std::find_if(subscriptions_.begin(), subscriptions_.end(),
                   [subscription](const auto& each) { return each.get() == subscription; });
  (*place)->is_active = false;
  subscriptions_.erase(place);
}

int Presence::AskOwner(const SubscriptionPtr& subscription) {
  const std::string name = BusNameOf(subscription->process);
  subscription->is_asked = true;
  subscription->asked_at = Clock::now();
  return bus_.Call(MakeBusCall(bus_.raw(), "GetNameOwner", name.c_str()),
                   [this, subscription](sd_bus_message* reply) {
                     if (subscription->is_active) {
                       TakeOwner(*subscription, reply);
                     }
                   });
}

void Presence::TakeOwner(vorx_subscription& subscription, sd_bus_message* reply) {
  const sd_bus_error* const error = sd_bus_message_get_error(reply);
  const char* owner = nullptr;
  if (error != nullptr) {
    if (sd_bus_error_has_name(error, SD_BUS_ERROR_NAME_HAS_NO_OWNER) == 0) {
      diagnostics_.Say("cannot find out about process " + subscription.process + ": " +
                       error->name);
    }
  } else if (sd_bus_message_read(reply, "s", &owner) <= 0) {
    owner = nullptr;
  }
  subscription.is_known = true;
  subscription.is_asked = false;
  Change(subscription, owner == nullptr ? 0 : PidOf(owner));
}

void Presence::Deliver(const OwnerChange& change) {
  const std::vector<SubscriptionPtr> subscriptions = subscriptions_;
  for (const auto& subscription : subscriptions) {
    // What changed before the bus's first answer is part of that answer.
    if (subscription->is_active && subscription->is_known &&
        subscription->process == change.process) {
      Change(*subscription, change.to);
    }
  }
}

void Presence::Refresh() {
  for (const auto& subscription : subscriptions_) {
    AskOwner(subscription);
  }
}

void Presence::AskAgain() {
  for (const auto& subscription : subscriptions_) {
    if (subscription->is_asked && Clock::now() >= subscription->asked_at + kAnswerLimit) {
      AskOwner(subscription);
    }
  }
}

int Presence::TimeoutMs() const {
  int least = -1;
  for (const auto& subscription : subscriptions_) {
    if (subscription->is_asked) {
      const auto left = static_cast<int>(Until(subscription->asked_at + kAnswerLimit).count());
      least = least < 0 ? left : std::min(least, left);
    }
  }
  return least;
}

void Presence::LoseAll() {
  const std::vector<SubscriptionPtr> subscriptions = subscriptions_;
  for (const auto& subscription : subscriptions) {
    if (subscription->is_active) {
      Change(*subscription, 0);
    }
  }
}

void Presence::Change(vorx_subscription& subscription, vorx_pid_t present) {
  if (subscription.present == present) {
    return;
  }
  if (std::exchange(subscription.present, 0) != 0 && subscription.lost != nullptr) {
    subscription.lost(handle_, subscription.user);
  }
  if (present == 0 || !subscription.is_active) {
    return;
  }
  subscription.present = present;
  if (subscription.found != nullptr) {
    subscription.found(handle_, &present, subscription.user);
  }
}

}  // namespace devhost
