/* SPDX-License-Identifier: Apache-2.0 */
#ifndef DEVHOST_VORX_REGISTRY_H
#define DEVHOST_VORX_REGISTRY_H

#include <vorx/vorx.h>

#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace devhost {

/**
 * The open handles of this process, and which of them each registration and subscription belongs
 * to. Thanks to it, one that ended already, or whose handle is closed, can be ended again without
 * harm.
 */
class Registry {
 public:
  static Registry& Instance();

  void AddHandle(vorx_t* handle, const std::string& description);
  /** Also forgets all tokens of the handle. */
  void RemoveHandle(vorx_t* handle);

  void AddToken(const void* token, vorx_t* handle);
  /** The handle of the token, which is forgotten; null for an unknown one. */
  vorx_t* TakeToken(const void* token);

  /** What the open handles are called, for a report. */
  std::vector<std::string> Descriptions();

 private:
  std::mutex mutex_;
  std::unordered_map<vorx_t*, std::string> handles_;
  std::unordered_map<const void*, vorx_t*> tokens_;
};

}  // namespace devhost

#endif
