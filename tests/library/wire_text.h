/* SPDX-License-Identifier: Apache-2.0 */
// Reads wire messages without the generated code: from the schema's source and the bytes alone, so
// that a test sees what really travels, presence included.
#ifndef CFM_TESTS_LIBRARY_WIRE_TEXT_H
#define CFM_TESTS_LIBRARY_WIRE_TEXT_H

#include <map>
#include <string>
#include <string_view>

namespace cfm_test {

class Schema {
 public:
  struct Field {
    std::string label;  // optional or repeated
    std::string type;
    std::string name;
    std::string options;
  };
  using Message = std::map<unsigned, Field>;

  /// The project's schema, read from its source file.
  static const Schema& Get();

  explicit Schema(const std::string& source);

  /// Null when there is no such message.
  const Message* Find(const std::string& name) const;

  const std::map<std::string, Message>& messages() const { return messages_; }

  /// The fields present, in the order of the bytes: `name:value` for numbers, `name:"..."` for
  /// strings and bytes (hexadecimal where not printable), `name:[1 2]` for packed numbers and
  /// `name{...}` for messages. Bytes that the schema does not explain show as `?`.
  std::string Text(const std::string& message, std::string_view bytes) const;

 private:
  std::map<std::string, Message> messages_;
};

}  // namespace cfm_test

#endif
