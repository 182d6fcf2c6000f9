/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Bridges and links in memory.
 *
 * Failure model: a frame is lost by chance, when its link is down or is cut while it is under way,
 * when it has passed too many relays, and when too many are under way. It is late by a link's
 * delay, by jitter and by being held back, which alone lets frames overtake. It comes out elsewhere
 * through a cross-connection. It is never altered or doubled. Bridges do not fail, relay in no
 * time, and run no spanning tree: the links must not form a loop. All chance comes from the seed.
 */
#ifndef CFM_MGR_NET_SIMULATED_SIMULATED_NETWORK_H
#define CFM_MGR_NET_SIMULATED_SIMULATED_NETWORK_H

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <queue>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "net/network.h"
#include "net/simulated/bridge.h"
#include "net/simulated/description.h"
#include "net/simulated/link.h"

namespace cfm_mgr::net {

/** A frame that leaves a bridge by a port, whatever becomes of it. */
struct Passage {
  engine::Time at{};
  std::string_view bridge;
  std::string_view port;
  const engine::Frame& frame;
};

/** What became of the frames that left a bridge. */
struct SimulationCounters {
  std::uint64_t delivered = 0;
  std::uint64_t lost = 0;          ///< By chance, and on links that were down or were cut.
  std::uint64_t misdelivered = 0;  ///< By a cross-connection.
  std::uint64_t unconnected = 0;   ///< At ports without a link.
  std::uint64_t overwhelmed = 0;   ///< Over the bounds on relays passed and frames under way.
};

class SimulatedNetwork : public Network {
 public:
  /**
   * @param description Every name in it stands for something in it.
   * @param notifications Of the local bridge's engine; outlives the network.
   * @param start The present. The times of link changes count from it.
   * @throws std::invalid_argument for a name that stands for nothing
   */
  SimulatedNetwork(const NetworkDescription& description, engine::Notifications& notifications,
                   std::uint64_t seed, engine::Time start = {});

  engine::Engine& engine() override;
  void Advance(engine::Time now) override;
  std::optional<engine::Time> NextDeadline() const override;
  int Descriptor() const override { return -1; }
  std::vector<DropCount> Drops() override { return local_->Drops(); }

  /** The engine of any bridge; null for an unknown name. */
  engine::Engine* FindEngine(const std::string& bridge);

  /** Cuts or mends the link of a port now. @throws std::invalid_argument when it has none */
  void SetLinkUp(const PortName& port, bool up);
  /** Replaces the quality of the link of a port. @throws std::invalid_argument when it has none */
  void SetLinkQuality(const PortName& port, const LinkQuality& quality);

  /** Lets a frame come in by a port from outside. @throws std::invalid_argument */
  void Inject(const PortName& port, const engine::Frame& frame);

  /** Calls @p tap for every frame that leaves a bridge; it must not call the network. */
  void SetTap(std::function<void(const Passage&)> tap) { tap_ = std::move(tap); }

  const SimulationCounters& counters() const { return counters_; }

 private:
  struct Place {
    Bridge* bridge = nullptr;
    engine::PortId port = 0;
    bool operator<(const Place& other) const {
      return std::tie(bridge, port) < std::tie(other.bridge, other.port);
    }
  };
  struct Connection {
    Link link;
    Place ends[2];
  };
  struct Arrival {
    engine::Time at{};
    std::uint64_t order = 0;  ///< Tells apart what arrives at the same time.
    Place to;
    const Connection* by = nullptr;  ///< None for what no link carries.
    std::uint32_t cuts = 0;          ///< Of the link, when the frame left.
    engine::Frame frame;
    unsigned hops = 0;
    bool operator>(const Arrival& other) const {
      return std::tie(at, order) > std::tie(other.at, other.order);
    }
  };
  struct Change {
    engine::Time at{};
    Connection* connection = nullptr;
    bool up = true;
  };
  struct Diversion {
    Place to;
    std::optional<std::uint16_t> vid;
    std::optional<std::uint16_t> to_vid;
  };
  struct LinkEnd {
    Connection* connection = nullptr;
    std::size_t end = 0;
  };

  void AddBridges(const NetworkDescription& description, engine::Notifications& notifications);
  void AddLink(const LinkDescription& link, engine::Time start);
  Place Find(const PortName& name) const;
  Connection& ConnectionOf(const PortName& name);
  void SetUp(Connection& connection, bool up);

  void Step(engine::Time now);
  void ApplyChanges();
  void Deliver(const Arrival& arrival);
  void Settle();
  void Leave(const Departure& departure);
  bool Divert(const Departure& departure);
  void Queue(Arrival arrival);

  engine::Time now_{};
  Random random_;
  std::unique_ptr<engine::Notifications> ignored_;  ///< What remote engines have to tell.
  std::vector<Departure> departures_;
  std::map<std::string, std::unique_ptr<Bridge>> bridges_;
  Bridge* local_ = nullptr;
  std::vector<std::unique_ptr<Connection>> connections_;
  std::map<Place, LinkEnd> links_;
  std::multimap<Place, Diversion> diversions_;
  std::vector<Change> changes_;  ///< The next one last.
  std::priority_queue<Arrival, std::vector<Arrival>, std::greater<>> arrivals_;
  std::uint64_t order_ = 0;
  SimulationCounters counters_;
  std::function<void(const Passage&)> tap_;
};

}  // namespace cfm_mgr::net

#endif
