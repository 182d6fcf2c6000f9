/* SPDX-License-Identifier: Apache-2.0 */
// Small random hierarchies that collide: between two of them much stays, much changes, and names,
// identifiers and keys disagree.
#ifndef CFM_TESTS_LIBRARY_DIFFERENTIAL_RANDOM_HIERARCHY_H
#define CFM_TESTS_LIBRARY_DIFFERENTIAL_RANDOM_HIERARCHY_H

#include <cfm/hierarchy.h>

#include <string>

#include "random_records.h"

namespace cfm_test {

class RandomHierarchy {
 public:
  explicit RandomHierarchy(RandomRecords& records) : records_(records) {}

  cfm::hierarchy Any();

  /// Mostly the given one changed in a few places, now and then the same one, an empty one or one
  /// that has nothing to do with it.
  cfm::hierarchy After(const cfm::hierarchy& config);

 private:
  cfm::hierarchy_md Md(const std::string& name);
  cfm::hierarchy_ma Ma(const std::string& md_name, const std::string& name);
  cfm::hierarchy_mep Mep(const std::string& md_name, const std::string& ma_name, std::uint16_t id);

  void Change(cfm::hierarchy& config);
  void ChangeMd(cfm::hierarchy& config, const std::string& name);
  void AddMa(const std::string& md_name, const std::string& name, cfm::hierarchy_md& md);
  void ChangeMa(cfm::hierarchy& config, const std::string& md_name, const std::string& name);
  void ChangeMep(cfm::hierarchy& config, const std::string& md_name, const std::string& ma_name);
  void MoveMep(cfm::hierarchy& config, cfm::hierarchy_ma& from);
  void Disturb(cfm::hierarchy_ma& ma);
  void Disturb(cfm::hierarchy_mep& mep);

  RandomRecords& records_;
};

}  // namespace cfm_test

#endif
