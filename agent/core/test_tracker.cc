// SPDX-License-Identifier: Apache-2.0
#include "core/test_tracker.h"

#include <algorithm>

#include "core/status_words.h"

namespace cfm_agent {
namespace {

bool IsStatistics(const Test& test) {
  return test.kind == TestKind::Statistics || test.kind == TestKind::Refresh;
}

bool IsLinktraceOf(const Test& test, const MepKey& mep, std::uint32_t transaction) {
  return test.kind == TestKind::Linktrace && test.transaction == transaction && test.mep == mep;
}

}  // namespace

std::string Describe(const Test& test) {
  std::string text = WordFor(kTestKinds, test.kind) + ' ' + std::to_string(test.number);
  if (!IsStatistics(test)) {
    text += " from " + Describe(test.mep) + " to " + std::to_string(test.remote);
  }
  return text;
}

std::string Describe(const TestEnd& end) {
  std::string text = WordFor(kEndReasons, end.reason);
  if (end.reason == EndReason::Refused) {
    const std::string meaning = WordFor(kErrorCodes, end.error_code);
    const std::string code = std::to_string(end.error_code);
    text += " with error code " + code + (meaning == code ? "" : " (" + meaning + ')');
  }
  return text;
}

std::uint32_t TestTracker::Begin(TestKind kind, const MepKey& mep, std::uint16_t remote,
                                 TimePoint now) {
  Test test;
  test.request_id = base_ + ++begun_;
  test.number = kind == TestKind::Refresh ? 0 : ++numbered_;
  test.kind = kind;
  test.mep = mep;
  test.remote = remote;
  test.deadline = now + patience_;
  tests_.emplace(begun_, test);
  return test.request_id;
}

const Test* TestTracker::Heard(Test* test, TimePoint now) const {
  if (test != nullptr) {
    test->deadline = now + patience_;
  }
  return test;
}

Test* TestTracker::Find(TestKind kind, std::uint32_t request_id) {
  const auto found = tests_.find(request_id - base_);
  return found == tests_.end() || found->second.kind != kind ? nullptr : &found->second;
}

template <typename Predicate>
Test* TestTracker::FindFirst(Predicate predicate) {
  const auto found = std::find_if(tests_.begin(), tests_.end(),
                                  [&](const auto& entry) { return predicate(entry.second); });
  return found == tests_.end() ? nullptr : &found->second;
}

template <typename Predicate>
std::vector<TestEnd> TestTracker::End(Predicate predicate, EndReason reason,
                                      std::uint32_t error_code) {
  std::vector<TestEnd> ends;
  for (auto entry = tests_.begin(); entry != tests_.end();) {
    if (predicate(entry->second)) {
      ends.push_back({std::move(entry->second), reason, error_code});
      entry = tests_.erase(entry);
    } else {
      ++entry;
    }
  }
  return ends;
}

std::vector<TestEnd> TestTracker::EndOne(const Test* test, EndReason reason,
                                         std::uint32_t error_code) {
  return End([test](const Test& candidate) { return &candidate == test; }, reason, error_code);
}

const Test* TestTracker::Started(TestKind kind, std::uint32_t request_id, TimePoint now) {
  return Heard(Find(kind, request_id), now);
}

const Test* TestTracker::Replied(TestKind kind, std::uint32_t request_id, TimePoint now) {
  Test* test = Find(kind, request_id);
  if (test != nullptr) {
    ++test->replies;
  }
  return Heard(test, now);
}

// A started linktrace is told by its ends only: the first one that waits between them is meant.
const Test* TestTracker::LinktraceStarted(const MepKey& mep, std::uint16_t remote,
                                          std::uint32_t transaction, TimePoint now) {
  Test* test = FindFirst([&](const Test& candidate) {
    return candidate.kind == TestKind::Linktrace && !candidate.transaction &&
           candidate.mep == mep && candidate.remote == remote;
  });
  if (test != nullptr) {
    test->transaction = transaction;
  }
  return Heard(test, now);
}

const Test* TestTracker::LinktraceReplied(const MepKey& mep, std::uint32_t transaction,
                                          TimePoint now) {
  Test* test =
      FindFirst([&](const Test& candidate) { return IsLinktraceOf(candidate, mep, transaction); });
  if (test != nullptr) {
    ++test->replies;
  }
  return Heard(test, now);
}

const Test* TestTracker::StatisticsArrived(TimePoint now) {
  return Heard(FindFirst(IsStatistics), now);
}

std::vector<TestEnd> TestTracker::Complete(TestKind kind, std::uint32_t request_id) {
  return EndOne(Find(kind, request_id), EndReason::Complete);
}

std::vector<TestEnd> TestTracker::LinktraceComplete(const MepKey& mep, std::uint32_t transaction) {
  return End([&](const Test& test) { return IsLinktraceOf(test, mep, transaction); },
             EndReason::Complete);
}

std::vector<TestEnd> TestTracker::StatisticsComplete() {
  return EndOne(FindFirst(IsStatistics), EndReason::Complete);
}

std::vector<TestEnd> TestTracker::Refused(TestKind kind, std::uint32_t request_id,
                                          std::uint32_t error_code) {
  return EndOne(Find(kind, request_id), EndReason::Refused, error_code);
}

std::vector<TestEnd> TestTracker::LocalMepRemoved(const MepKey& mep) {
  return End([&](const Test& test) { return !IsStatistics(test) && test.mep == mep; },
             EndReason::EndpointRemoved);
}

std::vector<TestEnd> TestTracker::RemoteMepRemoved(const MepKey& mep, std::uint16_t remote) {
  return End(
      [&](const Test& test) {
        return !IsStatistics(test) && test.mep == mep && test.remote == remote;
      },
      EndReason::EndpointRemoved);
}

std::vector<TestEnd> TestTracker::ServerLost() {
  return End([](const Test&) { return true; }, EndReason::ServerLost);
}

std::vector<TestEnd> TestTracker::Expire(TimePoint now) {
  return End([now](const Test& test) { return test.deadline <= now; }, EndReason::TimedOut);
}

std::optional<TimePoint> TestTracker::Deadline() const {
  std::optional<TimePoint> earliest;
  for (const auto& [number, test] : tests_) {
    if (!earliest || test.deadline < *earliest) {
      earliest = test.deadline;
    }
  }
  return earliest;
}

}  // namespace cfm_agent
