/* SPDX-License-Identifier: Apache-2.0 */
// Changes messages in ways that keep most of them whole: fields come, go and change places, and
// take values of their type that matter to the library.
#ifndef CFM_FUZZ_MESSAGE_MUTATOR_H
#define CFM_FUZZ_MESSAGE_MUTATOR_H

#include <cstdint>
#include <random>
#include <string>

#include "message_input.h"
#include "wire_tree.h"

namespace cfm_fuzz {

class MessageMutator {
 public:
  explicit MessageMutator(unsigned seed) : random_(seed) {}

  /// One to four changes.
  void Change(MessageInput& input);

  /// Puts messages, or what messages of the same kind hold, of `other` into `input`.
  void Cross(MessageInput& input, const MessageInput& other);

  /// A message of this kind with some of its fields.
  WireMessage Make(const cfm_test::Schema::Message* schema, unsigned depth = 0);

 private:
  std::size_t Below(std::size_t bound) { return random_() % bound; }
  bool OneIn(std::size_t count) { return Below(count) == 0; }

  void ChangeList(MessageInput& input);
  void ChangePayload(MessageInput::Message& message);
  void ChangeMessage(WireMessage& message);
  void ChangeField(const WireMessage& owner, WireField& field);
  void AddField(WireMessage& message, unsigned depth);
  WireField MakeField(std::uint32_t number, const cfm_test::Schema::Field& known, unsigned depth);
  std::uint64_t Number(const std::string& type);
  std::string Octets(const std::string& type);
  std::string PackedNumbers(const std::string& type);

  std::minstd_rand random_;
};

}  // namespace cfm_fuzz

#endif
