// SPDX-License-Identifier: Apache-2.0
#include "random_script.h"

#include <array>
#include <limits>

#include "random_cache.h"
#include "random_hierarchy.h"
#include "random_probes.h"

namespace cfm_test {
namespace {

constexpr std::array<vorx_pid_t, 5> kPids = {77, 1, 4711, -1,
                                             std::numeric_limits<vorx_pid_t>::max()};

// A client in step with an empty server, and two configurations or three.
template <typename RandomConfig>
Script PairScript(std::uint64_t seed) {
  Random random(seed);
  RandomRecords records(random);
  RandomConfig configs(records);
  auto applied = configs.Any();
  auto desired = configs.After(applied);
  Script script = {ServerFound(), CacheReply(), applied, desired};
  if (random.OneIn(8)) {
    script.emplace_back(configs.After(desired));
  }
  return script;
}

class CacheCase {
 public:
  explicit CacheCase(std::uint64_t seed) : random_(seed) {}

  Script Make() {
    if (random_.OneIn(2)) {
      Found();
      Reply({}, {});
      Configure();
    }
    if (random_.OneIn(2)) {
      script_.emplace_back(ServerLost());
    }
    if (random_.OneIn(2)) {
      Configure();
    }
    if (!random_.OneIn(8)) {
      Found();
    }
    if (random_.OneIn(4)) {
      Configure();
    }
    ReplyOfSomeServer();
    if (random_.OneIn(4)) {
      Configure();
    }
    if (random_.OneIn(6)) {
      Found();
      ReplyOfSomeServer();
    }
    return std::move(script_);
  }

 private:
  void Found() { script_.emplace_back(ServerFound{random_.Pick(kPids)}); }

  void Configure() {
    hierarchy_ = random_.OneIn(8) ? hierarchies_.Any() : hierarchies_.After(hierarchy_);
    script_.emplace_back(hierarchy_);
    probe_ = random_.OneIn(8) ? probes_.Any() : probes_.After(probe_);
    if (!random_.OneIn(8)) {
      script_.emplace_back(probe_);
    }
  }

  void Reply(const cfm::hierarchy& hierarchy, const cfm::probe& probes) {
    script_.emplace_back(CacheReply{RandomCache(records_, hierarchy, probes)});
  }

  // One that has restarted, one that holds what the client knows, more or less, or another one.
  void ReplyOfSomeServer() {
    cfm::hierarchy hierarchy;
    cfm::probe probes;
    switch (random_.Below(4)) {
      case 0:
        break;
      case 1:
        hierarchy = hierarchies_.Any();
        probes = probes_.Any();
        break;
      default:
        hierarchy = hierarchies_.After(hierarchy_);
        probes = probes_.After(probe_);
    }
    Reply(hierarchy, probes);
    if (random_.OneIn(16)) {
      std::get<CacheReply>(script_.back()).cut = 1 + random_.Below(64);
    }
  }

  Random random_;
  RandomRecords records_{random_};
  RandomHierarchy hierarchies_{records_};
  RandomProbes probes_{records_};
  cfm::hierarchy hierarchy_;
  cfm::probe probe_;
  Script script_;
};

}  // namespace

Script HierarchyScript(std::uint64_t seed) { return PairScript<RandomHierarchy>(seed); }

Script ProbeScript(std::uint64_t seed) { return PairScript<RandomProbes>(seed); }

Script CacheScript(std::uint64_t seed) { return CacheCase(seed).Make(); }

}  // namespace cfm_test
