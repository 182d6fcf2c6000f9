/* SPDX-License-Identifier: Apache-2.0 */
// Follows requests that the server answers later, each to its one end.
#ifndef CFM_AGENT_CORE_TEST_TRACKER_H
#define CFM_AGENT_CORE_TEST_TRACKER_H

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core/mep.h"
#include "core/settle_timer.h"

namespace cfm_agent {

enum class TestKind : std::uint8_t {
  Linktrace,
  Loopback,
  Delay,
  Statistics,  // of all MEPs, printed as they come
  Refresh,     // statistics asked for only to know that what was reported before has come
};

enum class EndReason : std::uint8_t { Complete, Refused, TimedOut, EndpointRemoved, ServerLost };

struct Test {
  std::uint32_t request_id = 0;
  std::uint32_t number = 0;  // as people call it, from 1; not of a refresh
  TestKind kind = TestKind::Linktrace;
  MepKey mep;                                // of a linktrace, loopback or delay measurement, as is
  std::uint16_t remote = 0;                  // the remote MEP
  std::optional<std::uint32_t> transaction;  // of a linktrace that was started
  std::uint64_t replies = 0;
  TimePoint deadline;
};

struct TestEnd {
  Test test;
  EndReason reason = EndReason::Complete;
  std::uint32_t error_code = 0;  // of a refused test
};

// "loopback 3 from MEP d a 1 to 2"
std::string Describe(const Test& test);
// "complete", "refused with error code 1 (no such local endpoint)", ...
std::string Describe(const TestEnd& end);

// Reports that fit no running test, because it has ended or is another client's, change nothing.
class TestTracker {
 public:
  // Request identifiers follow `base`. A test that hears nothing for `patience` times out.
  TestTracker(std::uint32_t base, Duration patience) : base_(base), patience_(patience) {}

  // Begins a test; its request identifier goes into the trigger.
  std::uint32_t Begin(TestKind kind, const MepKey& mep, std::uint16_t remote, TimePoint now);

  // The server began a test, or had a reply. The test, while it runs.
  const Test* Started(TestKind kind, std::uint32_t request_id, TimePoint now);
  const Test* Replied(TestKind kind, std::uint32_t request_id, TimePoint now);
  const Test* LinktraceStarted(const MepKey& mep, std::uint16_t remote, std::uint32_t transaction,
                               TimePoint now);
  const Test* LinktraceReplied(const MepKey& mep, std::uint32_t transaction, TimePoint now);
  // A part of the statistics came. What they are for, if they were asked for.
  const Test* StatisticsArrived(TimePoint now);

  // Each gives the ends it brought about.
  std::vector<TestEnd> Complete(TestKind kind, std::uint32_t request_id);
  std::vector<TestEnd> LinktraceComplete(const MepKey& mep, std::uint32_t transaction);
  std::vector<TestEnd> StatisticsComplete();
  std::vector<TestEnd> Refused(TestKind kind, std::uint32_t request_id, std::uint32_t error_code);
  std::vector<TestEnd> LocalMepRemoved(const MepKey& mep);
  std::vector<TestEnd> RemoteMepRemoved(const MepKey& mep, std::uint16_t remote);
  std::vector<TestEnd> ServerLost();
  std::vector<TestEnd> Expire(TimePoint now);

  // By request identifier less the base, in the order in which they began.
  const std::map<std::uint32_t, Test>& tests() const { return tests_; }
  bool Idle() const { return tests_.empty(); }
  // When Expire() next has something to do.
  std::optional<TimePoint> Deadline() const;

 private:
  const Test* Heard(Test* test, TimePoint now) const;
  Test* Find(TestKind kind, std::uint32_t request_id);
  template <typename Predicate>
  Test* FindFirst(Predicate predicate);
  template <typename Predicate>
  std::vector<TestEnd> End(Predicate predicate, EndReason reason, std::uint32_t error_code = 0);
  std::vector<TestEnd> EndOne(const Test* test, EndReason reason, std::uint32_t error_code = 0);

  std::uint32_t base_;
  Duration patience_;
  std::uint32_t begun_ = 0;
  std::uint32_t numbered_ = 0;
  std::map<std::uint32_t, Test> tests_;
};

}  // namespace cfm_agent

#endif
