/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_STORE_LOCK_H
#define CFM_MGR_STORE_LOCK_H

#include <string>

namespace cfm_mgr {

/**
 * Keeps a store to one server, as long as this object or its process lives.
 *
 * What is locked is a file of its own beside the store, since the store is replaced by another file
 * with each save. It is empty, and stays when the server has ended: to remove it would take the
 * lock from a server that has just opened it.
 */
class StoreLock {
 public:
  /**
   * @param store Path of the store. The lock's is the same with `.lock` behind it.
   * @throws std::runtime_error with a text for the user, when another server has the store
   */
  explicit StoreLock(const std::string& store);
  ~StoreLock();
  StoreLock(const StoreLock&) = delete;
  StoreLock& operator=(const StoreLock&) = delete;

  /** Why the store could not be locked, such as a read-only file system; empty if it is. */
  const std::string& fault() const { return fault_; }

 private:
  int descriptor_;
  std::string fault_;
};

}  // namespace cfm_mgr

#endif
