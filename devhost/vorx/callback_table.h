/* SPDX-License-Identifier: Apache-2.0 */
#ifndef DEVHOST_VORX_CALLBACK_TABLE_H
#define DEVHOST_VORX_CALLBACK_TABLE_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace devhost {

/** A signal or event descriptor by content. */
struct DescriptorKey {
  std::string name;
  std::uint32_t number = 0;
};

struct DescriptorView {
  DescriptorView(std::string_view n, std::uint32_t k) : name(n), number(k) {}
  // NOLINTNEXTLINE(google-explicit-constructor): a view of a key, as string_view is of a string.
  DescriptorView(const DescriptorKey& key) : name(key.name), number(key.number) {}

  std::string_view name;
  std::uint32_t number;
};

struct DescriptorLess {
  using is_transparent = void;
  bool operator()(const DescriptorView& a, const DescriptorView& b) const {
    return a.number != b.number ? a.number < b.number : a.name < b.name;
  }
};

/** "block/number", for people to read. */
inline std::string ToText(const DescriptorView& descriptor) {
  return std::string(descriptor.name) + '/' + std::to_string(descriptor.number);
}

/**
 * The callbacks of each descriptor, in the order of their registration. A callback may add and
 * remove entries, its own too, while it is being called: what is removed is not called any more,
 * what is added waits for the next time.
 *
 * @tparam Entry  has `DescriptorKey key` and `bool is_active`
 */
template <typename Entry>
class CallbackTable {
 public:
  /** Whether the entry is the first of its descriptor. */
  bool Add(std::shared_ptr<Entry> entry) {
    auto& list = entries_[entry->key];
    list.push_back(std::move(entry));
    return list.size() == 1;
  }

  /** Whether the entry was the last of its descriptor. */
  bool Remove(const Entry* entry) {
    const auto found = entries_.find(entry->key);
    auto& list = found->second;
    const auto place = std::find_if(list.begin(), list.end(),
                                    [entry](const auto& each) { return each.get() == entry; });
    (*place)->is_active = false;
    const std::shared_ptr<Entry> keep = std::move(*place);
    list.erase(place);
    if (!list.empty()) {
      return false;
    }
    entries_.erase(found);
    return true;
  }

  [[nodiscard]] bool Has(const DescriptorView& descriptor) const {
    return entries_.find(descriptor) != entries_.end();
  }

  /** Has @p call called with each entry of a descriptor. */
  template <typename Call>
  void ForEach(const DescriptorView& descriptor, Call call) const {
    const auto found = entries_.find(descriptor);
    if (found == entries_.end()) {
      return;
    }
    const std::vector<std::shared_ptr<Entry>> entries = found->second;
    for (const auto& entry : entries) {
      if (entry->is_active) {
        call(*entry);
      }
    }
  }

 private:
  std::map<DescriptorKey, std::vector<std::shared_ptr<Entry>>, DescriptorLess> entries_;
};

}  // namespace devhost

#endif
