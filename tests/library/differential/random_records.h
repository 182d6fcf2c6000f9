/* SPDX-License-Identifier: Apache-2.0 */
// Fills and changes the configuration's records with few names and numbers, drawn again and again,
// so that what is drawn collides.
#ifndef CFM_TESTS_LIBRARY_DIFFERENTIAL_RANDOM_RECORDS_H
#define CFM_TESTS_LIBRARY_DIFFERENTIAL_RANDOM_RECORDS_H

#include <cstdint>
#include <iterator>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include "random.h"
#include "record_fields.h"

namespace cfm_test {

/// The words of one test case.
struct Vocabulary {
  explicit Vocabulary(Random& random);

  std::vector<std::string> names;
  std::vector<std::uint16_t> numbers;  // identifiers and VIDs
};

class RandomRecords {
 public:
  explicit RandomRecords(Random& source);

  void Make(bool& value) { value = random.OneIn(2); }
  void Make(std::uint8_t& value);
  void Make(std::uint16_t& value) { value = Number(); }
  void Make(std::uint32_t& value);
  void Make(std::string& value) { value = Name(); }
  void Make(std::set<std::uint16_t>& values);
  /// Often what is there, in another order or with one number more or less.
  void Make(std::vector<std::uint16_t>& values);
  template <typename Enumeration, typename = std::enable_if_t<std::is_enum_v<Enumeration>>>
  void Make(Enumeration& value) {
    value = static_cast<Enumeration>(Enumerator());
  }

  template <typename Record>
  void Fill(Record& record) {
    ForEachField(record, [&](const char*, auto& field) { Make(field); });
  }

  template <typename Record>
  void ChangeOneField(Record& record) {
    const std::size_t chosen = random.Below(FieldCount(record));
    std::size_t at = 0;
    ForEachField(record, [&](const char*, auto& field) {
      if (at++ == chosen) {
        Make(field);
      }
    });
  }

  template <typename Map>
  typename Map::iterator Entry(Map& map) {
    return std::next(map.begin(), static_cast<std::ptrdiff_t>(random.Below(map.size())));
  }

  template <typename Map>
  void EraseOne(Map& map) {
    if (!map.empty()) {
      map.erase(Entry(map));
    }
  }

  const std::string& Name() { return random.Pick(words.names); }
  std::uint16_t Number() { return random.Pick(words.numbers); }
  std::size_t FewOrNone() { return random.OneIn(6) ? 0 : 1 + random.Below(3); }

  Random& random;
  const Vocabulary words;
  const bool disturbed;  // names and identifiers may disagree with the keys

 private:
  std::int32_t Enumerator();
};

}  // namespace cfm_test

#endif
