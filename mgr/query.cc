// SPDX-License-Identifier: Apache-2.0
#include "query.h"

#include <cfm/client_server.pb.h>
#include <cfm/identifiers.h>
#include <unistd.h>

#include <chrono>
#include <optional>

#include "bus.h"
#include "render.h"
#include "store.h"

namespace cfm_mgr {
namespace {

using Clock = std::chrono::steady_clock;

/** How far a query has come. */
struct Conversation {
  bool asked = false;
  std::optional<std::string> reply;
};

void Found(vorx_t* handle, const vorx_pid_t* pid, void* user) {
  vorx_sig_send(handle, pid, CFM_MGR_C2S_SIG_CACHE_GET, nullptr, 0);
  static_cast<Conversation*>(user)->asked = true;
}

void Lost(vorx_t*, void* user) { static_cast<Conversation*>(user)->asked = false; }

void Replied(vorx_t*, void* user, const vorx_pid_t*, void* data, unsigned int length) {
  auto& reply = static_cast<Conversation*>(user)->reply;
  reply.emplace();
  if (length != 0) reply->assign(static_cast<const char*>(data), length);
}

std::string RenderReply(const std::string& reply) {
  client_server::OpCacheSync cache;
  if (!cache.ParseFromString(reply)) throw Failure("the server's reply is not a configuration");
  Store store;
  std::string text;
  for (const std::string& refused : store.Load(cache)) text += "not allowed: " + refused + "\n";
  return text + Render(store.tree());
}

}  // namespace

std::string Query(const Options& options) {
  const auto deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                           std::chrono::duration<double>(options.timeout));
  // Lives longer than the handle, whose callbacks refer to it.
  Conversation conversation;
  const Handle handle = Join("cfm-mgr-query-" + std::to_string(getpid()), options);
  Register(handle, *CFM_MGR_S2C_SIG_CACHE_REPLY, Replied, &conversation);
  if (vorx_proc_subscribe(handle.get(), CFM_MGR_PROCESS, Found, Lost, &conversation) == nullptr) {
    throw Failure("cannot watch for " + std::string(CFM_MGR_PROCESS) + ": " + LastError(handle));
  }
  while (!conversation.reply && Clock::now() < deadline) {
    Wait(handle, deadline);
    Dispatch(handle);
  }
  if (conversation.reply) return RenderReply(*conversation.reply);
  throw Failure(conversation.asked ? "the server does not answer"
                                   : "no " + std::string(CFM_MGR_PROCESS) + " on this bus");
}

}  // namespace cfm_mgr
