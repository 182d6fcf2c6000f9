/* SPDX-License-Identifier: Apache-2.0 */
// Watches a file through the directories it lies in, so that one that is replaced, removed or
// reached through symbolic links stays watched.
#ifndef CFM_AGENT_SHELL_FILE_WATCH_H
#define CFM_AGENT_SHELL_FILE_WATCH_H

#include <cstdint>
#include <string>
#include <string_view>

#include "shell/unique_fd.h"

namespace cfm_agent {

class FileWatch {
 public:
  enum class Activity {
    None,
    Busy,      // being written
    Finished,  // written and closed, replaced, or removed
  };

  // Throws std::system_error when the kernel has no watch to give.
  explicit FileWatch(std::string path);

  int fd() const { return inotify_.get(); }

  // What happened to the file since the last call. Never waits.
  Activity Read();

  // Looks again for the directories to watch, after the file's place was missing.
  void Renew();
  // Whether changes will be noticed: the file's directory is there.
  bool watching() const { return own_.descriptor >= 0; }

 private:
  // A directory, and the name in it that matters.
  struct Place {
    int descriptor = -1;
    std::string name;
  };

  Place Watch(const std::string& path) const;
  bool InUse(int descriptor) const;
  Activity Judge(int descriptor, std::uint32_t mask, std::string_view name) const;
  std::string Resolved() const;

  std::string path_;
  std::string resolved_;
  UniqueFd inotify_;
  Place own_;     // of the path as it was given
  Place target_;  // of what symbolic links lead to
};

}  // namespace cfm_agent

#endif
