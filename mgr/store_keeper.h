/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_STORE_KEEPER_H
#define CFM_MGR_STORE_KEEPER_H

#include <optional>
#include <string>

#include "logger.h"
#include "save_schedule.h"
#include "store_file.h"
#include "store_lock.h"

namespace cfm_mgr {

/** Keeps the store in its file, if there is to be one, and logs what happens to it. */
class StoreKeeper {
 public:
  /** An empty path keeps nothing. The logger outlives this object. */
  StoreKeeper(const std::string& path, const Logger& logger);

  /**
   * Locks the file, and reads the store to start with.
   *
   * @throws std::runtime_error when another server has the file, std::system_error when the store
   *     cannot be kept
   */
  Store Load();

  /** The store has changed. */
  void Change();

  /** When to call SaveIfDue() at the latest. */
  std::optional<SaveSchedule::Clock::time_point> due() const { return schedule_.due(); }

  /** Saves if it is time to. A failure is logged, and the save tried again later. */
  void SaveIfDue(const Tree& tree);

  /** Saves what is not saved yet. @throws std::system_error */
  void Finish(const Tree& tree);

 private:
  void Save(const Tree& tree);

  const Logger& logger_;
  std::optional<StoreFile> file_;
  std::optional<StoreLock> lock_;
  SaveSchedule schedule_;
};

}  // namespace cfm_mgr

#endif
