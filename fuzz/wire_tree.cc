// SPDX-License-Identifier: Apache-2.0
#include "wire_tree.h"

#include <optional>

namespace cfm_fuzz {
namespace {

// Takes from the front of what it reads, and nothing when there is not enough.
class WireReader {
 public:
  explicit WireReader(std::string_view bytes) : bytes_(bytes) {}

  std::string_view rest() const { return bytes_; }

  std::optional<std::uint64_t> Varint() {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < bytes_.size() && i < 10; ++i) {
      const auto octet = static_cast<std::uint8_t>(bytes_[i]);
      value |= std::uint64_t{octet & 0x7fU} << (7 * i);
      if ((octet & 0x80U) == 0) {
        bytes_.remove_prefix(i + 1);
        return value;
      }
    }
    return std::nullopt;
  }

  std::optional<std::string_view> Octets(std::uint64_t count) {
    if (count > bytes_.size()) {
      return std::nullopt;
    }
    const std::string_view taken = bytes_.substr(0, static_cast<std::size_t>(count));
    bytes_.remove_prefix(taken.size());
    return taken;
  }

  // Low byte first.
  std::optional<std::uint64_t> Fixed(std::size_t size) {
    const auto octets = Octets(size);
    if (!octets) {
      return std::nullopt;
    }
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < size; ++i) {
      value |= std::uint64_t{static_cast<std::uint8_t>((*octets)[i])} << (8 * i);
    }
    return value;
  }

 private:
  std::string_view bytes_;
};

bool Assign(std::uint64_t& to, const std::optional<std::uint64_t>& value) {
  to = value.value_or(0);
  return value.has_value();
}

// Whether there is one more field.
bool ReadField(WireReader& reader, const WireMessage& message, WireField& field) {
  const auto tag = reader.Varint();
  if (!tag || *tag >> 3U == 0 || *tag >> 32U != 0) {
    return false;
  }
  field.number = static_cast<std::uint32_t>(*tag >> 3U);
  field.type = static_cast<WireType>(*tag & 7U);
  switch (field.type) {
    case WireType::Varint:
      return Assign(field.value, reader.Varint());
    case WireType::Fixed64:
      return Assign(field.value, reader.Fixed(8));
    case WireType::Fixed32:
      return Assign(field.value, reader.Fixed(4));
    case WireType::Length:
      break;
    default:
      return false;
  }
  const auto length = reader.Varint();
  const auto octets = length ? reader.Octets(*length) : std::nullopt;
  if (!octets) {
    return false;
  }
  const auto* const known = SchemaOf(message, field.number);
  const auto* const inner = known == nullptr ? nullptr : cfm_test::Schema::Get().Find(known->type);
  field.is_message = inner != nullptr;
  if (field.is_message) {
    field.message = ParseWire(inner, *octets);
  } else {
    field.octets = *octets;
  }
  return true;
}

void AppendFixed(std::string& out, std::uint64_t value, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i) {
    out += static_cast<char>(value >> (8 * i) & 0xffU);
  }
}

void AppendField(std::string& out, const WireField& field) {
  AppendVarint(out, std::uint64_t{field.number} << 3U | static_cast<std::uint64_t>(field.type));
  switch (field.type) {
    case WireType::Varint:
      AppendVarint(out, field.value);
      break;
    case WireType::Fixed64:
      AppendFixed(out, field.value, 8);
      break;
    case WireType::Fixed32:
      AppendFixed(out, field.value, 4);
      break;
    case WireType::Length:
      const std::string octets = field.is_message ? WriteWire(field.message) : field.octets;
      AppendVarint(out, octets.size());
      out += octets;
      break;
  }
}

}  // namespace

const cfm_test::Schema::Field* SchemaOf(const WireMessage& message, std::uint32_t number) {
  if (message.schema == nullptr) {
    return nullptr;
  }
  const auto found = message.schema->find(number);
  return found == message.schema->end() ? nullptr : &found->second;
}

void AppendVarint(std::string& out, std::uint64_t value) {
  for (; value >= 0x80U; value >>= 7U) {
    out += static_cast<char>((value & 0x7fU) | 0x80U);
  }
  out += static_cast<char>(value);
}

WireMessage ParseWire(const cfm_test::Schema::Message* schema, std::string_view bytes) {
  WireMessage message;
  message.schema = schema;
  WireReader reader(bytes);
  while (!reader.rest().empty()) {
    message.rest = reader.rest();
    WireField field;
    if (!ReadField(reader, message, field)) {
      return message;
    }
    message.fields.push_back(std::move(field));
  }
  message.rest.clear();
  return message;
}

std::string WriteWire(const WireMessage& message) {
  std::string out;
  for (const WireField& field : message.fields) {
    AppendField(out, field);
  }
  return out + message.rest;
}

}  // namespace cfm_fuzz
