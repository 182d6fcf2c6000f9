/* SPDX-License-Identifier: Apache-2.0 */
// A host process that keeps what the library sends and logs, and nothing else, so that hundreds of
// thousands of clients can live and die on it in a few seconds.
#ifndef CFM_TESTS_LIBRARY_DIFFERENTIAL_LEAN_HOST_H
#define CFM_TESTS_LIBRARY_DIFFERENTIAL_LEAN_HOST_H

#include <sepan/sepan.h>
#include <vorx/vorx.h>

#include <array>
#include <string>

#include "trace.h"

namespace cfm_test {

/// Ports that the host maps, the way it treats the two that it does not, and the ends of the range.
constexpr std::array<sepan_port_t, 6> kPorts = {0, 1, 2, 3, 4, 0xffffffffU};
constexpr sepan_port_t kUnmappedPort = 3;      // the conversion fails and writes nothing
constexpr sepan_port_t kMiswrittenPort = 4;    // the conversion fails and writes all the same
constexpr std::uint32_t kMiswritten = 0xbadU;  // what it writes

class LeanHost {
 public:
  LeanHost();
  ~LeanHost();
  LeanHost(const LeanHost&) = delete;
  LeanHost& operator=(const LeanHost&) = delete;

  static LeanHost& Current();

  vorx_t* handle();

  Trace Take();

  // What the middleware would call.
  void ServerFound(vorx_pid_t pid);
  void ServerLost();
  void CacheReply(std::string payload);

  // For the C functions that the library calls.
  Trace trace;
  vorx_proc_found_cb found = nullptr;
  vorx_proc_lost_cb lost = nullptr;
  vorx_sig_cb cache_reply = nullptr;
  void* user = nullptr;
};

}  // namespace cfm_test

#endif
