/* SPDX-License-Identifier: Apache-2.0 */
// The bytes of a message as a tree of its fields, which can be changed and written again.
#ifndef CFM_FUZZ_WIRE_TREE_H
#define CFM_FUZZ_WIRE_TREE_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "wire_text.h"

namespace cfm_fuzz {

enum class WireType : std::uint8_t { Varint = 0, Fixed64 = 1, Length = 2, Fixed32 = 5 };

struct WireField;

struct WireMessage {
  const cfm_test::Schema::Message* schema = nullptr;  // null: not known
  std::vector<WireField> fields;
  std::string rest;  // what is no field, at the end
};

struct WireField {
  std::uint32_t number = 0;
  WireType type = WireType::Varint;
  std::uint64_t value = 0;  // of a Varint, Fixed64 or Fixed32
  std::string octets;       // of a Length that is no message
  bool is_message = false;
  WireMessage message;
};

/// Any bytes are a tree; writing it gives a message that reads the same.
WireMessage ParseWire(const cfm_test::Schema::Message* schema, std::string_view bytes);
std::string WriteWire(const WireMessage& message);

/// What the schema says of a field; null when it does not know it.
const cfm_test::Schema::Field* SchemaOf(const WireMessage& message, std::uint32_t number);

void AppendVarint(std::string& out, std::uint64_t value);

}  // namespace cfm_fuzz

#endif
