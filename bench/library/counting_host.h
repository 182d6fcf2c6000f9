/* SPDX-License-Identifier: Apache-2.0 */
// A host process for the library that does as little as one can: it counts what is sent, and calls
// back what was registered.
#ifndef CFM_BENCH_LIBRARY_COUNTING_HOST_H
#define CFM_BENCH_LIBRARY_COUNTING_HOST_H

#include <cfm/client.h>
#include <vorx/vorx.h>
#include <zlog.h>

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

struct vorx {};

namespace cfm_bench {

struct Sent {
  std::size_t messages = 0;
  std::size_t bytes = 0;
};

class CountingHost {
 public:
  static CountingHost& Instance();

  vorx_t* handle() { return &handle_; }
  // Of the real zlog, set up so that no record of the library is written.
  zlog_category_t* category() { return category_; }

  // What the middleware would call, on the client whose callbacks are registered with this user.
  void ServerFound();
  void Signal(const vorx_sig_descriptor* signal, const std::string& payload);

  // For the C functions that the library calls.
  Sent sent;
  void* user = nullptr;
  vorx_proc_found_cb found = nullptr;
  std::array<vorx_sig_cb, 256> signals{};
  std::array<vorx_event_cb, 256> events{};

 private:
  CountingHost();

  vorx handle_;
  zlog_category_t* category_ = nullptr;
};

// A client that is in step with an empty server.
class ClientInStep {
 public:
  ClientInStep();
  cfm::Client& client() { return client_; }
  // The server sends its cache once more.
  void CacheReply(const std::string& payload);

 private:
  cfm::Client client_;
  void* user_;
};

std::vector<std::unique_ptr<ClientInStep>> NewClients(std::size_t count);

}  // namespace cfm_bench

#endif
