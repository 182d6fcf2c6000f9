/* SPDX-License-Identifier: Apache-2.0 */
// The form in which the client keeps a configuration.
#ifndef CFM_SRC_CORE_KEPT_HIERARCHY_H
#define CFM_SRC_CORE_KEPT_HIERARCHY_H

#include <cfm/hierarchy.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace cfm::core {

/// Neighbours in a vector, in ascending order of their keys.
template <typename Entry>
class Run {
 public:
  Run() = default;
  Run(const Entry* begin, const Entry* end) : begin_(begin), end_(end) {}

  const Entry* begin() const { return begin_; }
  const Entry* end() const { return end_; }

 private:
  const Entry* begin_ = nullptr;
  const Entry* end_ = nullptr;
};

struct KeptMep {
  std::uint16_t key = 0;
  /// The names that the endpoint holds. Where `ma_name` equals the `name` of the association that
  /// the endpoint lies in, it points to that very string, so that comparing the pointers tells.
  const std::string* ma_name = nullptr;
  const std::string* md_name = nullptr;
  st_maintenance_endpoint_cfg cfg;
};

struct KeptMa {
  std::string name;  // its key
  std::string md_name;
  st_maintenance_association_cfg cfg;
  Run<KeptMep> meps;
};

struct KeptMd {
  std::string name;  // its key
  st_maintenance_domain_cfg cfg;
  Run<KeptMa> mas;
};

inline const std::string& KeyOf(const KeptMd& md) { return md.name; }
inline const std::string& KeyOf(const KeptMa& ma) { return ma.name; }
inline std::uint16_t KeyOf(const KeptMep& mep) { return mep.key; }

/// An unchangeable copy of a configuration in a few blocks of memory. Each reconciliation passes
/// over two of them several times: with the nodes of the maps, which lie apart, most of its time
/// would go into waiting for memory.
class KeptHierarchy {
 public:
  KeptHierarchy() = default;
  explicit KeptHierarchy(const hierarchy& config);
  KeptHierarchy(const KeptHierarchy&) = delete;
  KeptHierarchy& operator=(const KeptHierarchy&) = delete;
  ~KeptHierarchy() = default;

  bool IsEmpty() const { return mds_.empty(); }
  const std::vector<KeptMd>& Mds() const { return mds_; }

  /// How many domains, associations and endpoints there are.
  std::size_t Size() const { return mds_.size() + mas_.size() + meps_.size(); }

 private:
  void Reserve(const hierarchy& config);
  void Add(const hierarchy_md& md);
  void Add(std::uint16_t key, const hierarchy_mep& mep, const KeptMa& ma);
  /// The usual name if the two are equal, else a copy of the name.
  const std::string* Keep(const std::string& name, const std::string& usual);

  // Entries point to each other, so all room is made before the first of them.
  std::vector<KeptMd> mds_;
  std::vector<KeptMa> mas_;
  std::vector<KeptMep> meps_;
  // By which endpoints name other places than their own. A deque moves no string as it grows.
  std::deque<std::string> other_names_;
};

}  // namespace cfm::core

#endif
