/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_ENGINE_TEST_LIST_H
#define CFM_MGR_ENGINE_TEST_LIST_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

#include "engine/timer_queue.h"

namespace cfm_mgr::engine {

class LocalMep;

/**
 * The tests of one kind that MEPs are running, with their deadlines.
 *
 * @tparam Test Has `const LocalMep* mep`, and `NextDeadline()` that moves on with each step.
 */
template <class Test>
class TestList {
 public:
  using Id = std::uint64_t;
  /** Does what is due; tells whether the test goes on. Must not call the list. */
  using Step = std::function<bool(Time now, Test& test)>;

  TestList(TimerQueue& timers, Step step)
      : step_(std::move(step)), timer_(timers, [this](Time now) { RunDue(now); }) {}

  /** Takes a test and its first step. */
  Id Add(Time now, Test test) {
    const Id id = ++last_id_;
    ids_of_[test.mep].insert(id);
    Run(now, tests_.emplace(id, std::move(test)).first);
    ArmTimer();
    return id;
  }

  /** Shows a MEP's tests, oldest first, until @p take has taken what it looks for. */
  template <class Take>
  bool Offer(const LocalMep& mep, Take&& take) {
    const auto ids = ids_of_.find(&mep);
    if (ids == ids_of_.end()) return false;
    for (const Id id : ids->second) {
      if (take(tests_.at(id))) return true;
    }
    return false;
  }

  std::size_t CountOf(const LocalMep& mep) const {
    const auto ids = ids_of_.find(&mep);
    return ids == ids_of_.end() ? 0 : ids->second.size();
  }

  /** Takes a test away; none when it has ended before. */
  std::optional<Test> Remove(Id id) {
    const auto found = tests_.find(id);
    if (found == tests_.end()) return std::nullopt;
    Test test = std::move(found->second);
    deadlines_.erase({test.NextDeadline(), id});
    Erase(found);
    ArmTimer();
    return test;
  }

  /** Takes a MEP's tests away, oldest first. */
  std::vector<Test> RemoveOf(const LocalMep& mep) {
    std::vector<Test> removed;
    const auto ids = ids_of_.find(&mep);
    if (ids == ids_of_.end()) return removed;
    const std::set<Id> all = ids->second;
    for (const Id id : all) removed.push_back(std::move(*Remove(id)));
    return removed;
  }

 private:
  using Tests = std::map<Id, Test>;

  void RunDue(Time now) {
    while (!deadlines_.empty() && deadlines_.begin()->first <= now) {
      const Id id = deadlines_.begin()->second;
      deadlines_.erase(deadlines_.begin());
      Run(now, tests_.find(id));
    }
    ArmTimer();
  }

  void Run(Time now, typename Tests::iterator test) {
    if (step_(now, test->second)) {
      deadlines_.insert({test->second.NextDeadline(), test->first});
    } else {
      Erase(test);
    }
  }

  void Erase(typename Tests::iterator test) {
    const auto ids = ids_of_.find(test->second.mep);
    ids->second.erase(test->first);
    if (ids->second.empty()) ids_of_.erase(ids);
    tests_.erase(test);
  }

  void ArmTimer() {
    if (deadlines_.empty()) {
      timer_.Stop();
    } else {
      timer_.Arm(deadlines_.begin()->first);
    }
  }

  Step step_;
  Tests tests_;
  std::set<std::pair<Time, Id>> deadlines_;
  std::unordered_map<const LocalMep*, std::set<Id>> ids_of_;
  Id last_id_ = 0;
  Timer timer_;
};

}  // namespace cfm_mgr::engine

#endif
