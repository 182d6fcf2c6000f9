/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_TESTS_SUPPORT_PRIVATE_BUS_H
#define CFM_TESTS_SUPPORT_PRIVATE_BUS_H

#include <cstdint>
#include <map>
#include <string>

#include "child_process.h"

namespace cfm_test {

/** A directory of its own under the system's place for temporary files, removed at the end. */
class TemporaryDirectory {
 public:
  TemporaryDirectory();
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::string& path() const { return path_; }
  std::string File(const std::string& name) const { return path_ + '/' + name; }

 private:
  std::string path_;
};

/** The whole content of a file; empty when there is none. */
std::string ReadFile(const std::string& path);

/**
 * A message bus of its own, on a socket in a temporary directory, ready when the constructor
 * returns and gone with this object. A bus that does not come up throws std::runtime_error with
 * what it said.
 */
class PrivateBus {
 public:
  /** The session bus's usual limits. */
  PrivateBus();
  /** These limits, by their names in a bus configuration. */
  explicit PrivateBus(const std::map<std::string, std::int64_t>& limits);

  const std::string& address() const { return address_; }
  pid_t pid() const { return daemon_.pid(); }

  /** Ends the bus at once, as a crash would. */
  void Kill() { daemon_.Kill(); }
  /** Starts the bus again at the same address, after Kill(). */
  void Restart();

 private:
  void Start();

  TemporaryDirectory directory_;
  std::string address_;
  std::string config_;
  ChildProcess daemon_;
};

}  // namespace cfm_test

#endif
