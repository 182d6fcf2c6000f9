// SPDX-License-Identifier: Apache-2.0
// What clients of the server send, one after the other: requests of every kind with any payload,
// and time that passes between them.
#include <cfm/client_server.pb.h>
#include <cfm/identifiers.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "byte_reader.h"
#include "convert.h"
#include "render.h"
#include "require.h"
#include "server.h"

namespace cfm_fuzz {
namespace {

namespace engine = cfm_mgr::engine;
namespace net = cfm_mgr::net;

using cfm_mgr::Server;

constexpr vorx_pid_t kClient = 7;

/// Two ports with a link between them.
class LinkedNetwork : public net::Network, private engine::Surroundings {
 public:
  explicit LinkedNetwork(engine::Notifications& notifications) : engine_(*this, notifications, 1) {
    for (const std::uint8_t port : {std::uint8_t{1}, std::uint8_t{2}}) {
      engine_.SetPort({}, port, {{2, 0, 0, 0, 0, port}, 1, 2, "p"});
    }
  }

  engine::Engine& engine() override { return engine_; }
  void Advance(engine::Time now) override {
    engine_.Advance(now);
    for (int count = 0; count < kMostAtOnce && !on_the_wire_.empty(); ++count) {
      const auto [port, frame] = std::move(on_the_wire_.front());
      on_the_wire_.pop_front();
      engine_.Receive(now, port, engine::Side::Wire, frame);
    }
    on_the_wire_.clear();
  }
  std::optional<engine::Time> NextDeadline() const override { return engine_.NextDeadline(); }
  int Descriptor() const override { return -1; }

 private:
  void Transmit(engine::PortId port, engine::Side side, const engine::Frame& frame) override {
    if (side == engine::Side::Wire) on_the_wire_.emplace_back(port == 1 ? 2U : 1U, frame);
  }
  engine::EgressPorts FindEgress(engine::PortId, std::uint16_t, const engine::Mac&) override {
    return {};
  }

  static constexpr int kMostAtOnce = 256;

  std::deque<std::pair<engine::PortId, engine::Frame>> on_the_wire_;
  engine::Engine engine_;
};

/// Looks at what the server logs, and keeps the last cache reply.
class Surroundings : public cfm_mgr::Environment {
 public:
  std::string Send(vorx_pid_t client, const vorx_sig_descriptor& signal,
                   const std::string& payload) override {
    Require(client == kClient, "replies go to who has asked");
    if (&signal == CFM_MGR_S2C_SIG_CACHE_REPLY) cache = payload;
    return "";
  }
  void Publish(const vorx_event_descriptor&, const std::string&) override {}
  void Log(const std::string& line) override {
    Require(std::all_of(line.begin(), line.end(), [](char c) { return c >= ' ' && c < 0x7f; }),
            "what is logged is one line that can be printed");
    ++lines;
  }
  engine::Time Now() override { return now; }

  engine::Time now{};
  std::size_t lines = 0;
  std::string cache;
};

class World {
 public:
  void Step(ByteReader& input) {
    const std::vector<Server::Request>& requests = Server::Requests();
    const std::uint8_t choice = input.Next();
    if (choice % 32U >= requests.size()) return PassTime(choice / 32U);
    const std::string_view payload = input.Take(input.Next());
    const std::size_t lines = surroundings_.lines;
    server_.Handle(requests[choice % 32U], kClient, payload);
    Require(surroundings_.lines > lines, "every request is logged");
  }

  void End() {
    PassTime(1);
    RequireAllIsRun();
    RequireAllIsTold();
  }

 private:
  void PassTime(unsigned halves) {
    surroundings_.now += std::chrono::milliseconds(500) * halves;
    server_.Run();
    server_.EndRound();
  }

  void RequireAllIsRun() {
    cfm_mgr::ForEachAssociation(
        server_.tree(), [this](const std::string& md_name, const std::string& ma_name,
                               const cfm_mgr::Association& association) {
          for (const auto& mep : association.meps) {
            Require(network_->engine().LocalStatus({{md_name, ma_name}, mep.first}).has_value(),
                    "the engine has every endpoint of the configuration");
          }
        });
  }

  // A cache reply is what the file of the store holds, too.
  void RequireAllIsTold() {
    const auto& requests = Server::Requests();
    const auto cache_request = std::find_if(
        requests.begin(), requests.end(),
        [](const Server::Request& request) { return request.signal == CFM_MGR_C2S_SIG_CACHE_GET; });
    server_.Handle(*cache_request, kClient, {});
    client_server::OpCacheSync cache;
    Require(cache.ParseFromString(surroundings_.cache), "a cache reply is a whole message");
    cfm_mgr::Store store;
    Require(store.Load(cache).empty(), "what the server holds is allowed");
    Require(cfm_mgr::Render(store.tree()) == cfm_mgr::Render(server_.tree()),
            "a cache reply tells all");
  }

  Surroundings surroundings_;
  LinkedNetwork* network_ = nullptr;
  Server server_{cfm_mgr::Store(), surroundings_, [this](engine::Notifications& notifications) {
                   auto network = std::make_unique<LinkedNetwork>(notifications);
                   network_ = network.get();
                   return network;
                 }};
};

}  // namespace
}  // namespace cfm_fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cfm_fuzz::ByteReader input(data, size);
  cfm_fuzz::World world;
  while (!input.AtEnd()) world.Step(input);
  world.End();
  return 0;
}
