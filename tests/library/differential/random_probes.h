/* SPDX-License-Identifier: Apache-2.0 */
// Small random sets of probes that collide.
#ifndef CFM_TESTS_LIBRARY_DIFFERENTIAL_RANDOM_PROBES_H
#define CFM_TESTS_LIBRARY_DIFFERENTIAL_RANDOM_PROBES_H

#include <cfm/probe.h>

#include "random_records.h"

namespace cfm_test {

class RandomProbes {
 public:
  explicit RandomProbes(RandomRecords& records) : records_(records) {}

  cfm::probe Any();

  /// Mostly the given one changed in a few places, now and then the same one, an empty one or one
  /// that has nothing to do with it.
  cfm::probe After(const cfm::probe& config);

 private:
  cfm::probe_cfg Probe(std::uint16_t id);
  void Change(cfm::probe& config);

  RandomRecords& records_;
};

}  // namespace cfm_test

#endif
