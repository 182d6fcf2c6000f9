/* SPDX-License-Identifier: Apache-2.0 */
// Runs one operation of a client again and again, each time with another of its allocations
// failing, until none is left to fail; and compares the client with undisturbed ones.
#ifndef CFM_TESTS_LIBRARY_FAILURE_SWEEP_H
#define CFM_TESTS_LIBRARY_FAILURE_SWEEP_H

#include <cfm/client.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "recording_handlers.h"
#include "recording_host.h"

namespace cfm_test {

/// What a client knows, as far as its behaviour shows it.
struct ClientState {
  cfm::hierarchy applied;
  cfm::hierarchy desired;
  cfm::probe applied_probes;
  cfm::probe desired_probes;
  bool server_present = false;
  bool in_step = false;  // an undisturbed client then has applied all that is desired

  static ClientState InStep(const cfm::hierarchy& config, const cfm::probe& probes);
};

/// A host with a client in some state.
struct World {
  /// Makes an undisturbed client get there, and forgets how.
  explicit World(const ClientState& state, bool with_handlers = true, bool with_dumps = true);

  RecordingHost host;
  Handlers handlers{host};
  std::optional<cfm::Client> client{std::in_place, host.handle()};
};

/// A point that the state passes through while an operation runs.
struct Stage {
  ClientState state;
  /// The records without which the operation cannot have come here, and with which it has.
  std::string not_before;
  std::string by_then;
};

struct Operation {
  ClientState before;
  /// Calls the library once.
  std::function<void(World&)> run;
  /// How the state changes on the way.
  std::vector<Stage> stages;
  /// Whether it matters to the operation that the client is in step, and not what is desired.
  bool depends_on_step = true;
  bool with_handlers = true;
  bool with_dumps = true;
};

/// A run over a public operation, with the library counted as running.
template <typename Run>
std::function<void(World&)> Call(Run run) {
  return [run](World& world) {
    const Running running(Running::Code::Library);
    run(*world.client);
  };
}

/// Fails each allocation of the operation in turn, and expects after each of them that
/// - std::bad_alloc came out of the call, and the library allocated nothing after it;
/// - what the call did until then is the beginning of what it does undisturbed;
/// - the client is in the state that the call had reached: it goes on as an undisturbed client that
///   is in this state, be it that the same call is made again, that another configuration comes, or
///   that the server restarts;
/// - nothing of the library's is left on the heap once the client is gone.
/// Returns how many allocations there were.
std::size_t FailEachAllocation(const Operation& operation);

/// The same with the operation's calls of the host and of handlers: each in turn throws
/// std::bad_alloc, as one does whose own memory ran out. Returns how many calls there were.
std::size_t FailEachCallOut(const Operation& operation);

/// Both, and expects that there was something to fail.
void FailEverything(const Operation& operation);

/// Adds failures injected otherwise to those that the program counts and prints in the end.
void CountInjected(std::size_t count);

testing::AssertionResult Begins(const std::vector<std::string>& whole,
                                const std::vector<std::string>& beginning);

}  // namespace cfm_test

#endif
