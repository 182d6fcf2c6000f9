// SPDX-License-Identifier: Apache-2.0
#include "deliveries.h"

#include <cfm/client.h>
#include <cfm/identifiers.h>

#include <algorithm>
#include <cstdint>
#include <utility>

#include "handlers.h"
#include "host.h"
#include "require.h"

namespace cfm_fuzz {
namespace {

cfm::hierarchy_ma Association(std::initializer_list<std::uint16_t> mep_ids) {
  cfm::hierarchy_ma ma;
  ma.md_name = "D";
  ma.cfg.vids = {10, 20};
  ma.cfg.ais.enabled = true;
  for (const std::uint16_t id : mep_ids) {
    cfm::hierarchy_mep& mep = ma.meps[id];
    mep.md_name = "D";
    mep.ma_name = "A";
    mep.cfg.mep_id = id;
    mep.cfg.port = id;
  }
  return ma;
}

const cfm::hierarchy& Domains() {
  static const cfm::hierarchy config = [] {
    cfm::hierarchy result;
    result.mds["D"].cfg.level = 5;
    result.mds["D"].mas["A"] = Association({1, 11});
    return result;
  }();
  return config;
}

const cfm::probe& Probes() {
  static const cfm::probe config = [] {
    cfm::probe result;
    result.probes[5] = {5, 60, "D", "A", 1, 2, {{6, {10, 20, 64, 3}}}};
    return result;
  }();
  return config;
}

class ReceivingClient {
 public:
  explicit ReceivingClient(Receiver receiver) {
    if (receiver.has_handlers) {
      handlers_.Register(client_);
    }
    client_.UpdateConfig(Domains());
    client_.UpdateConfigProbe(Probes());
    host_.ServerFound(77);
    if (receiver.in_step) {
      host_.Deliver(Callbacks().front(), "");
    }
  }

  bool Take(const Callback& callback, const std::string& payload) {
    return host_.Deliver(callback, payload);
  }

  /// What the client does with them.
  std::uint64_t DigestOf(const std::vector<Delivery>& deliveries) {
    host_.digest = Digest();
    for (const auto& [callback, payload] : deliveries) {
      Require(Take(*callback, payload), "what can be used does not end the process");
    }
    return host_.digest.value();
  }

 private:
  Host host_;
  Handlers handlers_{host_.digest};
  cfm::Client client_{host_.handle()};
};

// Only a cache reply changes what the client does with what comes after it.
void CheckThatNothingStays(Receiver receiver, std::vector<Delivery> deliveries) {
  const Callback* const cache_reply = &Callbacks().front();
  deliveries.erase(std::remove_if(deliveries.begin(), deliveries.end(),
                                  [cache_reply](const Delivery& delivery) {
                                    return delivery.callback == cache_reply;
                                  }),
                   deliveries.end());
  std::vector<Delivery> empty = deliveries;
  for (Delivery& delivery : empty) {
    delivery.payload.clear();
  }
  const std::uint64_t of_empty = ReceivingClient(receiver).DigestOf(empty);
  ReceivingClient client(receiver);
  const std::uint64_t first = client.DigestOf(deliveries);
  Require(client.DigestOf(deliveries) == first && client.DigestOf(empty) == of_empty,
          "nothing of a report stays for those after it");
}

}  // namespace

void CheckDeliveries(Receiver receiver, const std::vector<Delivery>& deliveries) {
  std::vector<Delivery> usable;
  std::vector<Delivery> reread;
  bool is_other = false;
  bool can_compare = true;
  for (const Delivery& delivery : deliveries) {
    Reread read = delivery.callback->reread(delivery.payload);
    if (delivery.callback->has_to_be_whole && !read.whole) {
      ReceivingClient client(receiver);
      Require(!client.Take(*delivery.callback, delivery.payload),
              "a linktrace event that is not whole ends the process");
      continue;
    }
    is_other = is_other || read.bytes != delivery.payload;
    can_compare = can_compare && read.bytes_whole;
    usable.push_back(delivery);
    reread.push_back({delivery.callback, std::move(read.bytes)});
  }
  if (usable.empty()) {
    return;
  }
  const std::uint64_t digest = ReceivingClient(receiver).DigestOf(usable);
  if (is_other && can_compare) {
    Require(digest == ReceivingClient(receiver).DigestOf(reread),
            "a payload is used as far as it can be read");
  }
  CheckThatNothingStays(receiver, std::move(usable));
}

}  // namespace cfm_fuzz
