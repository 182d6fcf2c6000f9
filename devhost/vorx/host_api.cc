// SPDX-License-Identifier: Apache-2.0
#include <vorx/host.h>

#include <cerrno>
#include <memory>
#include <string>

#include "export.h"
#include "options.h"

namespace {

/** Of the calls on this thread that had no handle. */
std::string& LastErrorWithoutHandle() {
  thread_local std::string text;
  return text;
}

int Open(const vorx_options_t* options, vorx_t** handle) {
  devhost::Options resolved;
  std::string& why = LastErrorWithoutHandle();
  why.clear();
  int result = devhost::ResolveOptions(options, resolved, why);
  if (result < 0) {
    return result;
  }
  auto opened = std::make_unique<vorx>(std::move(resolved));
  result = opened->Open();
  if (result < 0) {
    why = opened->last_error();
    return result;
  }
  *handle = opened.release();
  return 0;
}

}  // namespace

VORX_EXPORT int vorx_open(const vorx_options_t* options, vorx_t** handle) {
  if (handle == nullptr) {
    return -EINVAL;
  }
  *handle = nullptr;
  return devhost::Guarded(-ENOMEM, [&] { return Open(options, handle); });
}

VORX_EXPORT void vorx_close(vorx_t* handle) {
  if (handle == nullptr) {
    return;
  }
  if (handle->IsDispatching()) {
    handle->diagnostics().Say("vorx_close called from inside a callback: the handle stays open");
    return;
  }
  delete handle;
}

VORX_EXPORT vorx_pid_t vorx_self(const vorx_t* handle) {
  return handle == nullptr ? 0 : handle->self();
}

VORX_EXPORT const char* vorx_name(const vorx_t* handle) {
  return handle == nullptr ? "" : handle->options().name.c_str();
}

VORX_EXPORT const char* vorx_last_error(const vorx_t* handle) {
  return handle == nullptr ? LastErrorWithoutHandle().c_str() : handle->last_error().c_str();
}

VORX_EXPORT int vorx_fd(const vorx_t* handle) {
  return handle == nullptr ? -EINVAL : handle->bus().Fd();
}

VORX_EXPORT int vorx_poll_events(vorx_t* handle) {
  return handle == nullptr ? -EINVAL : handle->bus().Events();
}

VORX_EXPORT int vorx_poll_timeout(vorx_t* handle) {
  return handle == nullptr ? -EINVAL : handle->TimeoutMs();
}

VORX_EXPORT int vorx_dispatch(vorx_t* handle) {
  return handle == nullptr ? -EINVAL : handle->Dispatch();
}

VORX_EXPORT int vorx_run(vorx_t* handle) { return handle == nullptr ? -EINVAL : handle->Run(); }

VORX_EXPORT void vorx_stop(vorx_t* handle, int status) {
  if (handle != nullptr) {
    handle->Stop(status);
  }
}

VORX_EXPORT int vorx_event_publish(vorx_t* handle, const vorx_event_descriptor* descriptor,
                                   const void* data, unsigned int length) {
  if (handle == nullptr) {
    return -EINVAL;
  }
  return devhost::Guarded(-ENOMEM, [&] {
    if (descriptor == nullptr || descriptor->group == nullptr || (data == nullptr && length > 0)) {
      return handle->Fail(-EINVAL, "event not published, for want of a descriptor or of data");
    }
    return handle->PublishEvent(*descriptor, {data, length});
  });
}
