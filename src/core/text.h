// Building blocks of the configuration dumps. Everything is appended to one growing string.
#ifndef CFM_SRC_CORE_TEXT_H
#define CFM_SRC_CORE_TEXT_H

#include <charconv>
#include <string>
#include <string_view>
#include <type_traits>

namespace cfm::core {

/// Appends a number in plain decimal whatever the process's locale: a boolean as 0 or 1, an 8-bit
/// number never as a character, an enumeration as its value.
template <typename Number>
void AppendNumber(std::string& out, Number number) {
  if constexpr (std::is_enum_v<Number>) {
    AppendNumber(out, static_cast<std::underlying_type_t<Number>>(number));
  } else if constexpr (std::is_same_v<Number, bool>) {
    out += number ? '1' : '0';
  } else {
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    out.append(digits, end);
  }
}

/// Appends a label, as it stands, and a value.
template <typename Value>
void AppendField(std::string& out, std::string_view label, const Value& value) {
  out += label;
  if constexpr (std::is_convertible_v<Value, std::string_view>) {
    out += value;
  } else {
    AppendNumber(out, value);
  }
}

/// Appends a label, then each number after a blank, then a blank and a closing brace.
template <typename Numbers>
void AppendList(std::string& out, std::string_view label, const Numbers& numbers) {
  out += label;
  for (const auto number : numbers) {
    out += ' ';
    AppendNumber(out, number);
  }
  out += " }";
}

}  // namespace cfm::core

#endif
