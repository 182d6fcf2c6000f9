/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * The store in a file: one OpCacheSync message.
 *
 * A new content is written beside the file, brought to the disk and then put in its place, so that
 * the file always is either the old or the new one. A file that cannot be taken over whole is never
 * written over: it is put aside under a new name.
 */
#ifndef CFM_MGR_STORE_FILE_H
#define CFM_MGR_STORE_FILE_H

#include <string>
#include <vector>

#include "store.h"

namespace cfm_mgr {

class StoreFile {
 public:
  explicit StoreFile(std::string path) : path_(std::move(path)) {}

  struct Loaded {
    Store store;
    std::vector<std::string> messages;  ///< What there is to say about it, a line each.
    bool on_disk = false;               ///< The file is there and holds this store.
  };

  /**
   * Reads the file. No file is an empty store, and so is one that is no OpCacheSync, which is put
   * aside. Of a file with entries that the store refuses the others are taken; it is put aside.
   *
   * @throws std::system_error when the file cannot be read or put aside
   */
  Loaded Load() const;

  /**
   * Replaces the file by the tree. On failure it is as it was.
   *
   * @throws std::system_error when the file cannot be written
   */
  void Save(const Tree& tree) const;

  const std::string& path() const { return path_; }

 private:
  std::string SetAside() const;

  std::string path_;
};

}  // namespace cfm_mgr

#endif
