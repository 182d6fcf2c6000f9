// SPDX-License-Identifier: Apache-2.0
#include "registry.h"

namespace devhost {

Registry& Registry::Instance() {
  // Never destroyed: handles may be closed while the process exits.
  static auto* const registry = new Registry;
  return *registry;
}

void Registry::AddHandle(vorx_t* handle, const std::string& description) {
  const std::lock_guard<std::mutex> lock(mutex_);
  handles_[handle] = description;
}

void Registry::RemoveHandle(vorx_t* handle) {
  const std::lock_guard<std::mutex> lock(mutex_);
  handles_.erase(handle);
  for (auto token = tokens_.begin(); token != tokens_.end();) {
    token = token->second == handle ? tokens_.erase(token) : std::next(token);
  }
}

void Registry::AddToken(const void* token, vorx_t* handle) {
  const std::lock_guard<std::mutex> lock(mutex_);
  tokens_[token] = handle;
}

vorx_t* Registry::TakeToken(const void* token) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = tokens_.find(token);
  if (found == tokens_.end()) {
    return nullptr;
  }
  vorx_t* const handle = found->second;
  tokens_.erase(found);
  return handle;
}

std::vector<std::string> Registry::Descriptions() {
  const std::lock_guard<std::mutex> lock(mutex_);
  std::vector<std::string> all;
  all.reserve(handles_.size());
  for (const auto& [handle, description] : handles_) {
    all.push_back(description);
  }
  return all;
}

}  // namespace devhost
