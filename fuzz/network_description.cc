// SPDX-License-Identifier: Apache-2.0
// Any text as the description of a simulated network. It is either refused with mistakes, each with
// its line and fit to be printed, or accepted, and then a network can be made of it that runs.
#include <chrono>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>

#include "ignored_notifications.h"
#include "mistake_rules.h"
#include "net/simulated/description_reader.h"
#include "net/simulated/simulated_network.h"
#include "require.h"

namespace cfm_fuzz {
namespace {

using cfm_mgr::net::NetworkDescription;

constexpr std::size_t kMostEndpoints = 200;

// Groups of bridges that frames can get between.
class Groups {
 public:
  // False when the two were in one group before: a second way between them is a loop.
  bool Join(const std::string& a, const std::string& b) {
    const std::string from = GroupOf(a);
    const std::string to = GroupOf(b);
    if (from == to) return false;
    parents_[from] = to;
    return true;
  }

 private:
  std::string GroupOf(std::string name) const {
    for (auto it = parents_.find(name); it != parents_.end(); it = parents_.find(name)) {
      name = it->second;
    }
    return name;
  }

  std::map<std::string, std::string> parents_;
};

// A network with a loop floods itself, as a real one does: it keeps its bounds, but not the
// fuzzer's time.
bool HasLoop(const NetworkDescription& network) {
  Groups groups;
  for (const auto& link : network.links) {
    if (!groups.Join(link.ends[0].bridge, link.ends[1].bridge)) return true;
  }
  return !network.cross_connections.empty();
}

std::size_t EndpointsOf(const NetworkDescription& network) {
  std::size_t count = 0;
  for (const auto& bridge : network.bridges) {
    for (const auto& domain : bridge.domains) {
      for (const auto& association : domain.second.associations) {
        count += association.second.meps.size();
      }
    }
  }
  return count;
}

void Run(const NetworkDescription& description) {
  IgnoredNotifications notifications;
  try {
    cfm_mgr::net::SimulatedNetwork network(description, notifications, 1);
    if (HasLoop(description) || EndpointsOf(description) > kMostEndpoints) return;
    const auto now = std::chrono::milliseconds(20);
    network.Advance(now);
    const auto deadline = network.NextDeadline();
    Require(!deadline || *deadline > now, "all that was due is done");
  } catch (const std::invalid_argument& error) {
    Fail("an accepted description names what it has: " + std::string(error.what()));
  }
}

void Check(std::string_view text) {
  std::map<std::string, cfm_mgr::engine::PortId> ports;
  const auto result = cfm_mgr::net::ReadDescription(text, [&](const std::string& name) {
    return ports.try_emplace(name, static_cast<cfm_mgr::engine::PortId>(ports.size() + 1))
        .first->second;
  });
  Require(result.description.has_value() == result.mistakes.empty(),
          "a text is either accepted or has mistakes");
  RequireRightMistakes(result.mistakes, text);
  if (result.description) Run(*result.description);
}

}  // namespace
}  // namespace cfm_fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cfm_fuzz::Check({reinterpret_cast<const char*>(data), size});
  return 0;
}
