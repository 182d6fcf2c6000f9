/* SPDX-License-Identifier: Apache-2.0 */
// What makes a record binary interface: its members' types and order, and what they start as.
#ifndef CFM_TESTS_LIBRARY_RECORD_LAYOUT_H
#define CFM_TESTS_LIBRARY_RECORD_LAYOUT_H

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

namespace cfm_test {

using U8 = std::uint8_t;
using U16 = std::uint16_t;
using U32 = std::uint32_t;
using U64 = std::uint64_t;

template <typename Type, typename = void>
struct IsContainer : std::false_type {};
template <typename Type>
struct IsContainer<Type, std::void_t<decltype(std::declval<const Type&>().empty())>>
    : std::true_type {};

// Zero, false or empty; a record within a record has its own test.
template <typename Member>
bool IsUntouched(const Member& member) {
  if constexpr (IsContainer<Member>::value) {
    return member.empty();
  } else if constexpr (std::is_arithmetic_v<Member> || std::is_enum_v<Member>) {
    return member == Member{};
  } else {
    return true;
  }
}

/// That these are members of just these types, laid out in this order from the very start, and
/// that they start as zero, false or empty.
template <typename Record, typename... Types>
void ExpectLayout(Types Record::*... members) {
  // Made where every bit was set, so that a member without a default shows.
  alignas(Record) std::array<unsigned char, sizeof(Record)> memory{};
  memory.fill(0xff);
  const auto destroy = [](Record* record) { record->~Record(); };
  const std::unique_ptr<Record, decltype(destroy)> owner(new (memory.data()) Record, destroy);
  const Record& record = *owner;
  const auto* const start = reinterpret_cast<const char*>(&record);
  const std::vector<std::ptrdiff_t> offsets = {
      (reinterpret_cast<const char*>(&(record.*members)) - start)...};
  EXPECT_EQ(offsets.front(), 0);
  EXPECT_TRUE(std::is_sorted(offsets.begin(), offsets.end())) << testing::PrintToString(offsets);
  const std::vector<bool> untouched = {IsUntouched(record.*members)...};
  EXPECT_EQ(untouched, std::vector<bool>(sizeof...(Types), true));
}

}  // namespace cfm_test

#endif
