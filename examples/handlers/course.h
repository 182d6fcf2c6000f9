/* SPDX-License-Identifier: Apache-2.0 */
// What the program does, one step after the other. The handlers tell it what has come.
#ifndef CFM_EXAMPLES_HANDLERS_COURSE_H
#define CFM_EXAMPLES_HANDLERS_COURSE_H

#include <cfm/client.h>

#include <cstdint>
#include <set>
#include <string>

#include "common/host.h"

namespace examples {

// 1. The first status of the endpoint comes: the server holds it. A test of each kind is triggered
//    against a remote endpoint that the association does not have, to see the refusals.
// 2. The other endpoint is seen. A test of each kind is triggered against it: not earlier, because
//    a server cannot send to an endpoint whose address no CCM has told yet.
// 3. All tests and the first run of the probe's session are over. Statistics are asked for.
// 4. The statistics are complete. The configuration is taken back.
// 5. The endpoint is removed. The program ends.
//
// It waits for each of these as long as it takes. A program that owes somebody an answer gives each
// test a deadline: what is asked of a server that is absent, or that goes away, gets none.
class Course {
 public:
  // Both outlive this object.
  Course(const Handle& handle, cfm::Client& client);

  void Begin(const std::string& interface);

  void LocalMepKnown();
  void RemoteMepSeen();
  void TestEnded(std::uint32_t request_id);
  // The end of a linktrace brings no request identifier: the transaction identifier that its
  // beginning told is what leads back to it.
  void LinktraceStarted(std::uint32_t transaction_id);
  void LinktraceEnded(std::uint32_t transaction_id);
  void SessionEnded();
  void StatisticsComplete();
  void LocalMepRemoved();

 private:
  // Triggers one test of each kind and gives the number of the linktrace.
  std::uint32_t Trigger(std::uint16_t remote_mep_id);
  std::uint32_t NewRequest();
  void AskForStatisticsWhenAllIsOver();

  const Handle& handle_;
  cfm::Client& client_;
  std::uint32_t last_request_;
  std::set<std::uint32_t> running_;  // tests, by request identifier
  std::uint32_t linktrace_request_ = 0;
  std::uint32_t linktrace_transaction_ = 0;
  bool local_known_ = false;
  bool remote_seen_ = false;
  bool session_ended_ = false;
  bool statistics_asked_ = false;
  bool taken_back_ = false;
};

}  // namespace examples

#endif
