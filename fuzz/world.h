/* SPDX-License-Identifier: Apache-2.0 */
// A client, its host and a server, each of which can restart at any time, and what then has to hold
// between them:
//
//   - requests go to the process that the host reported last, none while client and server are not
//     in step;
//   - after a cache reply that tells what the server holds, and after each configuration handed in
//     from then on, the server holds that configuration, and every request on the way was one that
//     it could carry out.
//
// The second is promised for configurations whose entities hold the names and identifiers that
// their keys say. One that does not is handed in all the same, and must do no harm. After it the
// promise holds again from the next cache reply on, unless the server then turns out empty: it gets
// the old configuration again, as it was, before the new one.
#ifndef CFM_FUZZ_WORLD_H
#define CFM_FUZZ_WORLD_H

#include <cfm/client.h>

#include <optional>
#include <string>

#include "handlers.h"
#include "host.h"
#include "server_model.h"

namespace cfm_fuzz {

class World {
 public:
  World();

  void HandIn(const cfm::hierarchy& config);
  void HandIn(const cfm::probe& config);

  /// The host reports the server's process, new or known.
  void FindServer();
  void LoseServer();
  /// The server forgets all, which the client is not told.
  void ClearServer();

  /// All that the server holds, as it would send it.
  std::string Cache() const { return server_.Cache().SerializeAsString(); }
  void ReplyWithCache() { ReplyWith(Cache(), true); }
  /// A cache reply that may say anything.
  void ReplyWith(const std::string& cache) { ReplyWith(cache, false); }

  /// Any report but a cache reply. What ends the process makes the application restart.
  void Report(const Callback& callback, std::string_view payload);

  /// A new client, which was not handed in anything yet and has not found the server.
  void RestartApplication();

  void RunTests();

  Handlers& handlers() { return handlers_; }

 private:
  // What is known of one of the two kinds of configuration.
  struct Knowledge {
    bool wanted_is_consistent = true;   // what was handed in last
    bool applied_is_consistent = true;  // what the client believes the server to hold
    bool server_follows = false;        // the server holds what the client believes
  };

  bool InStep() const { return pid_ != 0 && in_step_; }
  void ReplyWith(const std::string& cache, bool is_true);
  void TakeRequest(const vorx_sig_descriptor* signal, vorx_pid_t destination,
                   const std::string& payload);
  bool HasParent(const std::string& signal, const std::string& payload) const;
  void ExpectHierarchy();
  void ExpectProbes();

  Host host_;
  cfm_test::ServerModel server_;
  Handlers handlers_{host_.digest};
  std::optional<cfm::Client> client_;

  vorx_pid_t pid_ = 0;  // as the host reported it
  vorx_pid_t last_pid_ = 0;
  bool in_step_ = false;
  cfm::hierarchy wanted_hierarchy_;
  cfm::probe wanted_probes_;
  Knowledge hierarchy_;
  Knowledge probes_;
  std::size_t requests_ = 0;
  const vorx_sig_descriptor* last_request_ = nullptr;
};

}  // namespace cfm_fuzz

#endif
