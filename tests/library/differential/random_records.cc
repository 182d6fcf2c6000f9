// SPDX-License-Identifier: Apache-2.0
#include "random_records.h"

#include <array>
#include <limits>

#include "lean_host.h"

namespace cfm_test {
namespace {

using namespace std::string_literals;

// Prefixes of each other, zero bytes, bytes beyond ASCII whose order shows how they are compared,
// and one that is longer than a string holds without an allocation.
const std::array<std::string, 12> kNames = {
    ""s,    "A"s,  "A\0"s,  "A\0B"s,     "AB"s,       "B"s,
    "B\0"s, "\0"s, "\x7f"s, "\xc3\xa4"s, "\xff\xfe"s, "a domain with a rather long name"s};

constexpr std::array<std::uint16_t, 11> kNumbers = {0,   1,    2,    3,    10,    127,
                                                    255, 4094, 8191, 8192, 0xffff};
constexpr std::array<std::uint8_t, 6> kOctets = {0, 1, 7, 127, 128, 255};
constexpr std::array<std::int32_t, 8> kEnumerators = {0,
                                                      1,
                                                      2,
                                                      3,
                                                      4,
                                                      -1,
                                                      std::numeric_limits<std::int32_t>::min(),
                                                      std::numeric_limits<std::int32_t>::max()};

template <typename Pool>
auto Some(Random& random, const Pool& pool) {
  std::vector<typename Pool::value_type> some;
  for (std::size_t count = 2 + random.Below(3); count > 0; --count) {
    some.push_back(random.Pick(pool));
  }
  return some;
}

}  // namespace

Vocabulary::Vocabulary(Random& random)
    : names(Some(random, kNames)), numbers(Some(random, kNumbers)) {}

RandomRecords::RandomRecords(Random& source)
    : random(source), words(source), disturbed(source.OneIn(2)) {}

void RandomRecords::Make(std::uint8_t& value) { value = random.Pick(kOctets); }

void RandomRecords::Make(std::uint32_t& value) { value = random.Pick(kPorts); }

void RandomRecords::Make(std::set<std::uint16_t>& values) {
  values.clear();
  for (std::size_t count = FewOrNone(); count > 0; --count) {
    values.insert(Number());
  }
}

void RandomRecords::Make(std::vector<std::uint16_t>& values) {
  if (values.empty() || random.OneIn(3)) {
    values.clear();
    for (std::size_t count = FewOrNone(); count > 0; --count) {
      values.push_back(Number());
    }
    return;
  }
  switch (random.Below(3)) {
    case 0:
      random.Shuffle(values);
      break;
    case 1:
      values.push_back(random.Pick(values));
      break;
    default:
      values.pop_back();
  }
}

std::int32_t RandomRecords::Enumerator() { return random.Pick(kEnumerators); }

}  // namespace cfm_test
