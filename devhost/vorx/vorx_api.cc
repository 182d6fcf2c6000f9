// SPDX-License-Identifier: Apache-2.0
#include <vorx/vorx.h>

#include <cerrno>
#include <string>

#include "export.h"
#include "names.h"
#include "registry.h"
#include "trace.h"

using devhost::Guarded;
using devhost::Registry;

namespace {

/** Makes a fresh token known, or reports why there is none. */
template <typename Token>
Token* Announce(vorx_t* handle, Token* token, const std::string& what) {
  if (token == nullptr) {
    handle->Fail(handle->bus().IsConnected() ? -EINVAL : -ENOTCONN, what);
  } else {
    Registry::Instance().AddToken(token, handle);
  }
  return token;
}

/** Ends what a token stands for, if it stands for anything still, and clears the pointer. */
template <typename Token, typename End>
void EndToken(Token** token, End end) {
  if (token == nullptr || *token == nullptr) {
    return;
  }
  if (vorx_t* const handle = Registry::Instance().TakeToken(*token); handle != nullptr) {
    end(*handle, *token);
  }
  *token = nullptr;
}

}  // namespace

VORX_EXPORT vorx_subscription_t* vorx_proc_subscribe(vorx_t* handle, const char* process_name,
                                                     vorx_proc_found_cb found,
                                                     vorx_proc_lost_cb lost, void* user) {
  vorx_subscription_t* const none = nullptr;
  if (handle == nullptr) {
    return none;
  }
  return Guarded(none, [&] {
    const std::string name = process_name == nullptr ? "" : process_name;
    vorx_subscription_t* const subscription =
        devhost::IsProcessName(name) ? handle->presence().Add(name, found, lost, user) : none;
    return Announce(handle, subscription, "cannot watch for process '" + name + "'");
  });
}

VORX_EXPORT void vorx_proc_unsubscribe(vorx_subscription_t** subscription) {
  EndToken(subscription, [](vorx_t& handle, const vorx_subscription_t* ended) {
    handle.presence().Remove(ended);
  });
}

VORX_EXPORT zlog_category_t* vorx_trace_init(vorx_t* handle, const char* name) {
  zlog_category_t* const none = nullptr;
  if (handle == nullptr) {
    return none;
  }
  return Guarded(none, [&] {
    std::string why;
    zlog_category_t* const category = devhost::InitTrace(
        handle->options().log_config, name == nullptr ? "" : name, handle->diagnostics(), why);
    if (category == nullptr) {
      handle->Fail(-EINVAL, "cannot set up logging: " + why);
    }
    return category;
  });
}

VORX_EXPORT vorx_registration_t* vorx_sig_register_sized(vorx_t* handle,
                                                         const vorx_sig_descriptor* descriptor,
                                                         vorx_sig_cb callback, void* user) {
  vorx_registration_t* const none = nullptr;
  if (handle == nullptr) {
    return none;
  }
  return Guarded(none, [&] {
    const bool is_usable =
        descriptor != nullptr && descriptor->block != nullptr && callback != nullptr;
    return Announce(handle, is_usable ? handle->signals().Add(*descriptor, callback, user) : none,
                    "cannot register for a signal without descriptor or callback");
  });
}

VORX_EXPORT void vorx_sig_deregister(vorx_registration_t** registration) {
  EndToken(registration, [](vorx_t& handle, const vorx_registration_t* ended) {
    handle.signals().Remove(ended);
  });
}

VORX_EXPORT vorx_eventreg_t* vorx_event_register_sized(vorx_t* handle,
                                                       const vorx_event_descriptor* descriptor,
                                                       vorx_event_cb callback, void* user) {
  vorx_eventreg_t* const none = nullptr;
  if (handle == nullptr) {
    return none;
  }
  return Guarded(none, [&] {
    if (descriptor == nullptr || descriptor->group == nullptr || callback == nullptr) {
      return Announce(handle, none, "cannot register for an event without descriptor or callback");
    }
    return Announce(
        handle, handle->events().Add(*descriptor, callback, user),
        "cannot register for event " + devhost::ToText({descriptor->group, descriptor->number}));
  });
}

VORX_EXPORT void vorx_event_deregister(vorx_eventreg_t** registration) {
  EndToken(registration,
           [](vorx_t& handle, const vorx_eventreg_t* ended) { handle.events().Remove(ended); });
}

VORX_EXPORT int vorx_sig_send(vorx_t* handle, const vorx_pid_t* destination,
                              const vorx_sig_descriptor* descriptor, const void* data,
                              unsigned int length) {
  if (handle == nullptr) {
    return -EINVAL;
  }
  return Guarded(-ENOMEM, [&] {
    if (destination == nullptr || descriptor == nullptr || descriptor->block == nullptr ||
        (data == nullptr && length > 0)) {
      return handle->Fail(-EINVAL,
                          "signal not sent, for want of a destination, a descriptor or data");
    }
    return handle->SendSignal(*destination, *descriptor, {data, length});
  });
}
