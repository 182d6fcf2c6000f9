// SPDX-License-Identifier: Apache-2.0
// Probes and sessions, handed in by the application.
#include <memory>
#include <utility>
#include <vector>

#include "contest.h"
#include "counting_host.h"
#include "floor.h"
#include "samples.h"

namespace cfm_bench {
namespace {

constexpr double kGoal = 1.25;

using Config = std::shared_ptr<const cfm::probe>;

Config Make(std::size_t sessions) { return std::make_shared<const cfm::probe>(ProbesOf(sessions)); }

Config WithFirstSessionChanged(std::size_t sessions) {
  cfm::probe config = ProbesOf(sessions);
  config.probes.begin()->second.sessions.begin()->second.count = 7;
  return std::make_shared<const cfm::probe>(std::move(config));
}

void First(std::size_t sessions) {
  const std::size_t repeats = RepeatsOf(sessions);
  const Config config = Make(sessions);
  Contest(
      "probes/first", sessions, kGoal,
      [=]() -> Pass {
        return [=] {
          const auto clients = NewClients(repeats);
          return SecondsOfEach(
              clients, [&](auto& in_step) { in_step->client().UpdateConfigProbe(*config); });
        };
      },
      [=]() -> Pass {
        return [=] {
          std::vector<ProbeCopies> all(repeats);
          return SecondsOfEach(all,
                               [&](ProbeCopies& copies) { FloorCreateProbes(copies, *config); });
        };
      });
}

// Hands the configurations in one after the other, again and again.
void Alternate(const std::string& work, std::size_t sessions, const std::vector<Config>& configs,
               void (*floor)(ProbeCopies&, const cfm::probe&)) {
  const std::size_t repeats = RepeatsOf(sessions) * configs.size();
  const auto run = [=](auto&& hand_in) {
    return SecondsOfOne(repeats, [&](std::size_t i) { hand_in(*configs[i % configs.size()]); });
  };
  Contest(
      work, sessions, kGoal,
      [=]() -> Pass {
        auto in_step = std::make_shared<ClientInStep>();
        in_step->client().UpdateConfigProbe(*configs.back());
        return [=] {
          return run(
              [&](const cfm::probe& config) { in_step->client().UpdateConfigProbe(config); });
        };
      },
      [=]() -> Pass {
        auto copies = std::make_shared<ProbeCopies>(ProbeCopies{*configs.back(), *configs.back()});
        return [=] { return run([&](const cfm::probe& config) { floor(*copies, config); }); };
      });
}

}  // namespace

void RegisterProbeContests() {
  for (const std::size_t sessions : {10U, 100U, 1000U, 10000U, 60000U}) {
    First(sessions);
    Alternate("probes/same", sessions, {Make(sessions)}, FloorKeepProbes);
    Alternate("probes/one session changed", sessions,
              {WithFirstSessionChanged(sessions), Make(sessions)}, FloorChangeFirstSession);
  }
}

}  // namespace cfm_bench
