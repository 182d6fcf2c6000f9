// SPDX-License-Identifier: Apache-2.0
#include "store_keeper.h"

#include <system_error>
#include <utility>

namespace cfm_mgr {

using Clock = SaveSchedule::Clock;

StoreKeeper::StoreKeeper(const std::string& path, const Logger& logger) : logger_(logger) {
  if (!path.empty()) file_.emplace(path);
}

Store StoreKeeper::Load() {
  if (!file_) return {};
  lock_.emplace(file_->path());
  if (!lock_->fault().empty()) logger_.Write("store: " + lock_->fault());
  StoreFile::Loaded loaded = file_->Load();
  for (const std::string& message : loaded.messages) logger_.Write("store: " + message);
  // Also shows at once whether the file can be written.
  if (!loaded.on_disk) Save(loaded.store.tree());
  return std::move(loaded.store);
}

void StoreKeeper::Change() {
  if (file_) schedule_.Change(Clock::now());
}

void StoreKeeper::SaveIfDue(const Tree& tree) {
  if (!due() || Clock::now() < *due()) return;
  try {
    Save(tree);
  } catch (const std::system_error& error) {
    logger_.Write(std::string("store: ") + error.what() + "; trying again");
    schedule_.Failed(Clock::now());
  }
}

void StoreKeeper::Finish(const Tree& tree) {
  if (due()) Save(tree);
}

void StoreKeeper::Save(const Tree& tree) {
  const auto start = Clock::now();
  file_->Save(tree);
  schedule_.Saved(start, Clock::now());
}

}  // namespace cfm_mgr
