/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * An analyser that has nothing in common with the code under test: dumpcap(1) and tshark(1).
 */
#ifndef CFM_TESTS_NET_ANALYSER_H
#define CFM_TESTS_NET_ANALYSER_H

#include <map>
#include <string>
#include <vector>

#include "child_process.h"
#include "private_bus.h"

namespace cfm_mgr::net {

/**
 * What the analyser reads in a frame, by its names of the fields. Fields that a frame does not have
 * are left out; commas separate the values of one that is there several times. Numbers are decimal.
 */
using Fields = std::map<std::string, std::string>;

/** The frames of an interface, from the moment when this object is there until Finish(). */
class Capture {
 public:
  /** Whether the analyser is installed. */
  static bool IsPossible();

  /** Fails the test when frames cannot be captured. */
  explicit Capture(const std::string& interface);

  /** Ends it as soon as all is kept that has been sent. */
  void Finish();

  /** The frames that pass a display filter, after Finish(), with these of their fields. */
  std::vector<Fields> Decode(const std::string& filter,
                             const std::vector<std::string>& fields) const;

 private:
  std::string File(const std::string& name) const { return directory_.File(name); }

  std::string interface_;
  cfm_test::TemporaryDirectory directory_;
  cfm_test::ChildProcess dumpcap_;
};

}  // namespace cfm_mgr::net

#endif
