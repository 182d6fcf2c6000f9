/* SPDX-License-Identifier: Apache-2.0 */
// Building block of the configuration dumps and renderings.
#ifndef CFM_SRC_CORE_TEXT_BUFFER_H
#define CFM_SRC_CORE_TEXT_BUFFER_H

#include <array>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace cfm::core {

/// Collects a text. The many short pieces that a dump consists of go through a small buffer, since
/// appending each to a string takes several times as long.
///
/// Numbers are plain decimal whatever the process's locale: a boolean is 0 or 1, an 8-bit number
/// never a character, an enumeration its value.
class TextBuffer {
 public:
  TextBuffer() = default;
  TextBuffer(const TextBuffer&) = delete;
  TextBuffer& operator=(const TextBuffer&) = delete;
  ~TextBuffer() = default;

  void Add(std::string_view text) {
    if (text.size() > room_.size() - used_) {
      Flush();
      if (text.size() > room_.size()) {
        text_ += text;
        return;
      }
    }
    std::memcpy(room_.data() + used_, text.data(), text.size());
    used_ += text.size();
  }

  template <typename Number>
  void AddNumber(Number number) {
    if constexpr (std::is_enum_v<Number>) {
      AddNumber(static_cast<std::underlying_type_t<Number>>(number));
    } else if constexpr (std::is_same_v<Number, bool>) {
      Add(number ? "1" : "0");
    } else {
      constexpr std::size_t kMostDigits = 24;
      if (kMostDigits > room_.size() - used_) {
        Flush();
      }
      char* const begin = room_.data() + used_;
      const char* const end = std::to_chars(begin, begin + kMostDigits, number).ptr;
      used_ += static_cast<std::size_t>(end - begin);
    }
  }

  /// Adds a label, as it stands, and a value.
  template <typename Value>
  void AddField(std::string_view label, const Value& value) {
    Add(label);
    if constexpr (std::is_convertible_v<Value, std::string_view>) {
      Add(value);
    } else {
      AddNumber(value);
    }
  }

  /// Adds a label, then each number after a blank, then a blank and a closing brace.
  template <typename Numbers>
  void AddList(std::string_view label, const Numbers& numbers) {
    Add(label);
    for (const auto number : numbers) {
      AddField(" ", number);
    }
    Add(" }");
  }

  /// Ends one of a number of similar lines, and makes room for those that are still to come. A
  /// string that only doubles when it is full takes three times the text while it grows.
  void EndLine(std::size_t lines_to_come);

  std::string Take() && {
    Flush();
    return std::move(text_);
  }

 private:
  void Flush() {
    text_.append(room_.data(), used_);
    used_ = 0;
  }

  std::string text_;
  std::size_t lines_ = 0;
  std::array<char, 2048> room_{};
  std::size_t used_ = 0;
};

}  // namespace cfm::core

#endif
