// SPDX-License-Identifier: Apache-2.0
// Domains, associations and endpoints: handed in by the application, or by the server's cache.
#include <iterator>
#include <memory>
#include <vector>

#include "contest.h"
#include "counting_host.h"
#include "floor.h"
#include "samples.h"

namespace cfm_bench {
namespace {

constexpr double kConfigGoal = 1.25;
constexpr double kCacheGoal = 1.3;

using Config = std::shared_ptr<const cfm::hierarchy>;

Config Make(std::size_t meps, std::uint8_t level = 4) {
  return std::make_shared<const cfm::hierarchy>(HierarchyOf(meps, level));
}

// Hands the configurations in one after the other, again and again.
void Alternate(const std::string& work, std::size_t meps, const std::vector<Config>& configs,
               void (*floor)(Copies&, const cfm::hierarchy&)) {
  const std::size_t repeats = RepeatsOf(meps) * configs.size();
  const auto run = [=](auto&& hand_in) {
    return SecondsOfOne(repeats, [&](std::size_t i) { hand_in(*configs[i % configs.size()]); });
  };
  Contest(
      work, meps, kConfigGoal,
      [=]() -> Pass {
        auto in_step = std::make_shared<ClientInStep>();
        in_step->client().UpdateConfig(*configs.back());
        return [=] {
          return run([&](const cfm::hierarchy& config) { in_step->client().UpdateConfig(config); });
        };
      },
      [=]() -> Pass {
        auto copies = std::make_shared<Copies>(Copies{*configs.back(), *configs.back()});
        return [=] { return run([&](const cfm::hierarchy& config) { floor(*copies, config); }); };
      });
}

void First(std::size_t meps) {
  const std::size_t repeats = RepeatsOf(meps);
  const auto config = Make(meps);
  Contest(
      "hierarchy/first", meps, kConfigGoal,
      [=]() -> Pass {
        return [=] {
          const auto clients = NewClients(repeats);
          return SecondsOfEach(clients,
                               [&](auto& in_step) { in_step->client().UpdateConfig(*config); });
        };
      },
      [=]() -> Pass {
        return [=] {
          std::vector<Copies> all(repeats);
          return SecondsOfEach(all, [&](Copies& copies) { FloorCreateAll(copies, *config); });
        };
      });
}

// The last association misses its last endpoint before; putting that back is not timed.
void OneMore(std::size_t meps) {
  const Config after = Make(meps);
  const auto less = std::make_shared<cfm::hierarchy>(*after);
  auto& last = less->mds.rbegin()->second.mas.rbegin()->second.meps;
  last.erase(std::prev(last.end()));
  const Config before = less;
  const std::size_t repeats = RepeatsOf(meps);
  Contest(
      "hierarchy/one MEP added", meps, kConfigGoal,
      [=]() -> Pass {
        auto clients =
            std::make_shared<std::vector<std::unique_ptr<ClientInStep>>>(NewClients(repeats));
        return [=] {
          for (auto& in_step : *clients) {
            in_step->client().UpdateConfig(*before);
          }
          return SecondsOfEach(*clients,
                               [&](auto& in_step) { in_step->client().UpdateConfig(*after); });
        };
      },
      [=]() -> Pass {
        auto all = std::make_shared<std::vector<Copies>>(repeats);
        return [=] {
          for (Copies& copies : *all) {
            FloorUpdateAll(copies, *before);
          }
          return SecondsOfEach(*all, [&](Copies& copies) { FloorAddLast(copies, *after); });
        };
      });
}

// The application restarted and has not handed in anything: it takes what the server has. The
// reconciliation then finds everything undesired, so all of it is released again within the call;
// the floor releases its message and its model too.
void Adopted(std::size_t meps) {
  const std::size_t repeats = RepeatsOf(meps);
  const auto payload =
      std::make_shared<const std::string>(CacheOf(HierarchyOf(meps)).SerializeAsString());
  Contest(
      "cache reply adopted", meps, kCacheGoal,
      [=]() -> Pass {
        return [=] {
          const auto clients = NewClients(repeats);
          return SecondsOfEach(clients, [&](auto& in_step) { in_step->CacheReply(*payload); });
        };
      },
      [=]() -> Pass {
        return [=] { return SecondsOfOne(repeats, [&](std::size_t) { FloorAdopt(*payload); }); };
      });
}

}  // namespace

void RegisterHierarchyContests() {
  for (const std::size_t meps : {100U, 1000U, 10000U, 100000U}) {
    First(meps);
    Alternate("hierarchy/same", meps, {Make(meps)}, FloorUpdateAll);
    Alternate("hierarchy/levels changed", meps, {Make(meps, 5), Make(meps, 4)}, FloorRecreateAll);
    OneMore(meps);
    Adopted(meps);
  }
}

}  // namespace cfm_bench
