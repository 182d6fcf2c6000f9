// SPDX-License-Identifier: Apache-2.0
#include "wire_text.h"

#include <cctype>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <optional>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace cfm_test {
namespace {

class Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {}

  bool AtEnd() const { return bytes_.empty(); }

  std::optional<std::uint64_t> Varint() {
    std::uint64_t value = 0;
    for (unsigned shift = 0; shift < 64 && !bytes_.empty(); shift += 7) {
      const auto octet = static_cast<std::uint8_t>(bytes_.front());
      bytes_.remove_prefix(1);
      value |= static_cast<std::uint64_t>(octet & 0x7fU) << shift;
      if ((octet & 0x80U) == 0) {
        return value;
      }
    }
    return std::nullopt;
  }

  std::optional<std::string_view> Bytes(std::uint64_t length) {
    if (length > bytes_.size()) {
      return std::nullopt;
    }
    const auto count = static_cast<std::size_t>(length);
    const std::string_view result = bytes_.substr(0, count);
    bytes_.remove_prefix(count);
    return result;
  }

 private:
  std::string_view bytes_;
};

std::string Quoted(std::string_view text) {
  static const char digits[] = "0123456789abcdef";
  std::string out = "\"";
  for (const char c : text) {
    const auto octet = static_cast<unsigned char>(c);
    if (octet >= 0x20 && octet < 0x7f && c != '"' && c != '\\') {
      out += c;
    } else {
      out += "\\x";
      out += digits[octet >> 4U];
      out += digits[octet & 0x0fU];
    }
  }
  return out + "\"";
}

std::string Number(const std::string& type, std::uint64_t value) {
  if (type == "int32") {
    return std::to_string(static_cast<std::int32_t>(value));
  }
  return std::to_string(value);
}

std::string Double(std::string_view bytes) {
  // The wire has the lowest octet first, whatever this machine has.
  std::uint64_t bits = 0;
  for (const char c : bytes) {
    bits = bits >> 8U | static_cast<std::uint64_t>(static_cast<std::uint8_t>(c)) << 56U;
  }
  double value = 0;
  std::memcpy(&value, &bits, sizeof value);
  std::ostringstream out;
  out << value;
  return out.str();
}

std::string Packed(const std::string& type, std::string_view bytes) {
  std::string out = "[";
  for (Reader reader(bytes); !reader.AtEnd();) {
    const auto value = reader.Varint();
    out += out.size() > 1 ? " " : "";
    out += value ? Number(type, *value) : "?";
    if (!value) {
      break;
    }
  }
  return out + "]";
}

}  // namespace

const Schema& Schema::Get() {
  static const Schema schema = [] {
    std::ifstream file(CFM_SCHEMA_FILE);
    return Schema({std::istreambuf_iterator<char>(file), {}});
  }();
  return schema;
}

Schema::Schema(const std::string& source) {
  static const std::regex message_line(R"(\s*message\s+(\w+)\s*\{.*)");
  static const std::regex field_line(
      R"(\s*(optional|repeated)\s+(\w+)\s+(\w+)\s*=\s*(\d+)\s*(\[.*\])?;.*)");
  std::istringstream lines(source);
  Message* message = nullptr;
  std::smatch match;
  for (std::string line; std::getline(lines, line);) {
    if (std::regex_match(line, match, message_line)) {
      message = &messages_[match[1]];
    } else if (message != nullptr && std::regex_match(line, match, field_line)) {
      (*message)[static_cast<unsigned>(std::stoul(match[4]))] = {match[1], match[2], match[3],
                                                                 match[5]};
    } else if (message != nullptr && line.find('=') != std::string::npos &&
               line.find("//") == std::string::npos) {
      throw std::invalid_argument("not a field that the schema may hold: " + line);
    }
  }
}

const Schema::Message* Schema::Find(const std::string& name) const {
  const auto found = messages_.find(name);
  return found == messages_.end() ? nullptr : &found->second;
}

std::string Schema::Text(const std::string& message, std::string_view bytes) const {
  const Message* const fields = Find(message);
  if (fields == nullptr) {
    return "?";
  }
  std::string out;
  Reader reader(bytes);
  while (!reader.AtEnd()) {
    out += out.empty() ? "" : " ";
    const auto tag = reader.Varint();
    const auto field = tag ? fields->find(static_cast<unsigned>(*tag >> 3U)) : fields->end();
    if (field == fields->end()) {
      return out + "?";
    }
    const auto& [label, type, name, options] = field->second;
    out += name;
    const unsigned wire_type = *tag & 7U;
    if (wire_type == 1) {
      const auto value = reader.Bytes(8);
      out += ':' + (value ? Double(*value) : "?");
      continue;
    }
    const auto value = reader.Varint();
    if (wire_type == 0 && value) {
      out += ':' + Number(type, *value);
      continue;
    }
    const auto content = wire_type == 2 && value ? reader.Bytes(*value) : std::nullopt;
    if (!content) {
      return out + "?";
    }
    if (Find(type) != nullptr) {
      out += '{' + Text(type, *content) + '}';
    } else if (type == "string" || type == "bytes") {
      out += ':' + Quoted(*content);
    } else {
      out += ':' + Packed(type, *content);
    }
  }
  return out;
}

}  // namespace cfm_test
