// SPDX-License-Identifier: Apache-2.0
// Whatever a link loses, delays and reorders: a remote MEP is lost exactly when no CCM has come for
// 3.5 intervals.

#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "engine/ccm_interval.h"
#include "samples.h"
#include "virtual_network.h"

namespace cfm_mgr::engine {
namespace {

using Changes = std::vector<std::pair<Time, bool>>;  ///< When a remote MEP came (true) and went.

/** Two bridges with a MEP each on the link between them; MEP 1 is watched. */
class Pair {
 public:
  Pair(std::uint8_t interval, std::uint64_t seed)
      : watched_(network_.AddBridge(seed)), far_(network_.AddBridge(seed + 1000)) {
    Association association = SampleAssociation();
    association.settings.ccm_interval = interval;
    Add(watched_, WithMep(association, 1, SampleMep()));
    Add(far_, WithMep(association, 2, SampleMep()));
    network_.Connect(watched_, 1, far_, 1);
  }

  /** The rule is for CCMs of the far MEP; those of the watched one are lost. */
  void SetRule(const std::function<std::optional<Time>()>& rule) {
    network_.SetLinkRule([this, rule](const Frame& frame) -> std::optional<Time> {
      if (frame.source != far_.MacOf(1)) return std::nullopt;
      const std::optional<Time> delay = rule();
      if (delay) arrivals_.insert(network_.now() + *delay);
      return delay;
    });
  }

  /** Runs, noting all changes of the remote MEP's state between found and lost. */
  Changes Run(Time duration) {
    Changes changes;
    const Time end = network_.now() + duration;
    while (network_.now() < end) {
      const std::size_t before = watched_.remote_changes.size();
      const Time step = std::min(end - network_.now(), NextStep());
      network_.Run(step);
      if (watched_.remote_changes.size() == before) continue;
      const auto status = watched_.engine().RemoteStatus(SampleKey(1), 2);
      const bool found = status->state == 4;
      if (found != was_found_) changes.emplace_back(status->last_change, found);
      was_found_ = found;
    }
    return changes;
  }

  const std::multiset<Time>& arrivals() const { return arrivals_; }

 private:
  void Add(Bridge& bridge, const Association& association) {
    bridge.SetPort(1);
    bridge.engine().SetAssociation({}, SampleMa(), SampleDomain(), association);
  }
  /** To the next moment at which anything can happen, frames on the link included. */
  Time NextStep() {
    Time next = *watched_.engine().NextDeadline();
    next = std::min(next, *far_.engine().NextDeadline());
    const auto arrival = arrivals_.upper_bound(network_.now());
    if (arrival != arrivals_.end()) next = std::min(next, *arrival);
    return std::max(next - network_.now(), Time(1));
  }

  VirtualNetwork network_;
  Bridge& watched_;
  Bridge& far_;
  std::multiset<Time> arrivals_;
  bool was_found_ = false;
};

/** What the arrivals of CCMs make of a remote MEP that lives as long after each of them. */
Changes Expected(const std::multiset<Time>& arrivals, Time lifetime, Time end) {
  Changes changes;
  std::optional<Time> last;
  for (const Time arrival : arrivals) {
    if (arrival > end) break;
    // A CCM that comes at the very moment of the loss comes before it.
    if (last && arrival > *last + lifetime) {
      changes.emplace_back(*last + lifetime, false);
      last.reset();
    }
    if (!last) changes.emplace_back(arrival, true);
    last = arrival;
  }
  if (last && *last + lifetime <= end) changes.emplace_back(*last + lifetime, false);
  return changes;
}

class LossAt : public testing::TestWithParam<std::uint8_t> {
 protected:
  std::uint8_t code() const { return GetParam(); }
  Time Intervals(std::int64_t count) const { return ThreeIntervals(code()) * count / 3; }
};

TEST_P(LossAt, IsNeverSeenWhileGapsStayBelowThreeAndAHalfIntervals) {
  for (std::uint64_t seed = 1; seed <= 3; ++seed) {
    Pair pair(code(), seed);
    std::mt19937_64 random(seed);
    int lost_in_row = 0;
    // Two CCMs lost in a row and a third one late by less than half an interval: just in time.
    pair.SetRule([&]() -> std::optional<Time> {
      if (lost_in_row < 2 && random() % 2 == 0) {
        ++lost_in_row;
        return std::nullopt;
      }
      lost_in_row = 0;
      const auto half = static_cast<std::uint64_t>((Interval(code()) / 2).count() - 2);
      return Time(random() % half);
    });
    const Changes changes = pair.Run(Intervals(2000));
    ASSERT_EQ(1U, changes.size()) << seed;
    EXPECT_TRUE(changes[0].second);
    EXPECT_GT(pair.arrivals().size(), 700U);
  }
}

TEST_P(LossAt, IsSeenExactlyWhenNoCcmCameForThreeAndAHalfIntervals) {
  for (std::uint64_t seed = 1; seed <= 3; ++seed) {
    Pair pair(code(), seed);
    std::mt19937_64 random(seed);
    // Two of three are lost; delays of up to three intervals change the order of the others.
    pair.SetRule([&]() -> std::optional<Time> {
      if (random() % 3 != 0) return std::nullopt;
      return Time(random() % static_cast<std::uint64_t>(Intervals(3).count()));
    });
    const Time end = Intervals(2000);
    const Changes changes = pair.Run(end);
    EXPECT_EQ(Expected(pair.arrivals(), Lifetime(code()), end), changes) << seed;
    EXPECT_GT(changes.size(), 50U) << "losses are seen";
  }
}

TEST_P(LossAt, IsSeenThreeAndAHalfIntervalsAfterTheLastCcm) {
  Pair pair(code(), 1);
  bool cut = false;
  pair.SetRule([&]() -> std::optional<Time> {
    if (cut) return std::nullopt;
    return Time{};
  });
  pair.Run(Intervals(100));
  cut = true;
  const Changes changes = pair.Run(Intervals(10));
  ASSERT_EQ(1U, changes.size());
  EXPECT_FALSE(changes[0].second);
  EXPECT_EQ(*pair.arrivals().rbegin() + Lifetime(code()), changes[0].first);
}

INSTANTIATE_TEST_SUITE_P(Intervals, LossAt, testing::Values(1, 2, 3, 4, 5, 6, 7));

}  // namespace
}  // namespace cfm_mgr::engine
