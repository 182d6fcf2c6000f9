// SPDX-License-Identifier: Apache-2.0
#include "message_mutator.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace cfm_fuzz {
namespace {

constexpr unsigned kDeepest = 4;

// Bounds of the types that the library narrows to, and identifiers that its configuration uses.
constexpr std::array<std::uint64_t, 28> kNumbers = {
    0,     1,     2,          3,          4,          5,          6,          7,    10,   11,
    20,    60,    127,        128,        255,        256,        1001,       1011, 4095, 65535,
    65536, 65541, 0x7fffffff, 0x80000000, 0xffffffff, 1ULL << 32, 1ULL << 63, ~0ULL};

const std::array<std::string, 10> kTexts = {"D",
                                            "A",
                                            "",
                                            "E",
                                            "B",
                                            std::string("D\0x", 3),
                                            "%s%n%99999d",
                                            "\xff\xfe\n",
                                            std::string(45, 'n'),
                                            std::string(300, 'w')};

}  // namespace

void MessageMutator::Change(MessageInput& input) {
  for (std::size_t changes = 1 + Below(4); changes > 0; --changes) {
    if (input.messages.empty() || OneIn(6)) {
      ChangeList(input);
    } else {
      ChangePayload(input.messages[Below(input.messages.size())]);
    }
  }
}

void MessageMutator::Cross(MessageInput& input, const MessageInput& other) {
  for (const auto& theirs : other.messages) {
    const auto ours =
        std::find_if(input.messages.begin(), input.messages.end(),
                     [&](const auto& message) { return message.callback == theirs.callback; });
    if (ours != input.messages.end() && OneIn(2)) {
      // Two messages one after the other are their union.
      ours->payload += theirs.payload;
    } else if (input.messages.size() < MessageInput::kMostMessages) {
      const auto at = static_cast<std::ptrdiff_t>(Below(input.messages.size() + 1));
      input.messages.insert(input.messages.begin() + at, theirs);
    }
  }
}

void MessageMutator::ChangeList(MessageInput& input) {
  auto& messages = input.messages;
  const std::size_t choice = messages.empty() ? 0 : Below(5);
  const std::size_t at = messages.empty() ? 0 : Below(messages.size());
  switch (choice) {
    case 0: {
      const std::size_t callback = Below(Callbacks().size());
      const auto* const schema = cfm_test::Schema::Get().Find(Callbacks()[callback].message);
      messages.push_back({callback, WriteWire(Make(schema))});
      break;
    }
    case 1:
      messages.erase(messages.begin() + static_cast<std::ptrdiff_t>(at));
      break;
    case 2:
      messages.push_back(messages[at]);
      break;
    case 3:
      std::swap(messages[at], messages[Below(messages.size())]);
      break;
    default:
      input.state = static_cast<std::uint8_t>(Below(4));
      break;
  }
  if (messages.size() > MessageInput::kMostMessages) {
    messages.resize(MessageInput::kMostMessages);
  }
}

void MessageMutator::ChangePayload(MessageInput::Message& message) {
  const auto* const schema = cfm_test::Schema::Get().Find(Callbacks()[message.callback].message);
  WireMessage tree = ParseWire(schema, message.payload);
  ChangeMessage(tree);
  message.payload = WriteWire(tree);
  if (OneIn(64)) {
    message.payload.resize(Below(message.payload.size() + 1));
  }
}

void MessageMutator::ChangeMessage(WireMessage& message) {
  auto& fields = message.fields;
  if (fields.empty() || OneIn(4)) {
    AddField(message, 0);
    return;
  }
  const std::size_t at = Below(fields.size());
  if (fields[at].is_message && !OneIn(5)) {
    ChangeMessage(fields[at].message);
    return;
  }
  switch (Below(8)) {
    case 0:
      fields.erase(fields.begin() + static_cast<std::ptrdiff_t>(at));
      break;
    case 1:
      fields.push_back(fields[at]);
      break;
    case 2:
      std::swap(fields[at], fields[Below(fields.size())]);
      break;
    case 3:
      message.rest.clear();
      break;
    default:
      ChangeField(message, fields[at]);
      break;
  }
}

void MessageMutator::ChangeField(const WireMessage& owner, WireField& field) {
  const auto* const known = SchemaOf(owner, field.number);
  if (known == nullptr || OneIn(40)) {
    field.number = static_cast<std::uint32_t>(1 + Below(20));
    return;
  }
  if (OneIn(40)) {
    field.type = OneIn(2) ? WireType::Varint : WireType::Length;
    return;
  }
  field = MakeField(field.number, *known, 0);
}

void MessageMutator::AddField(WireMessage& message, unsigned depth) {
  if (message.schema == nullptr || message.schema->empty()) {
    return;
  }
  const auto known = std::next(message.schema->begin(),
                               static_cast<std::ptrdiff_t>(Below(message.schema->size())));
  message.fields.push_back(MakeField(known->first, known->second, depth));
}

WireMessage MessageMutator::Make(const cfm_test::Schema::Message* schema, unsigned depth) {
  WireMessage message;
  message.schema = schema;
  for (const auto& [number, known] : *schema) {
    const std::size_t times = known.label == "repeated" ? Below(4) : Below(4) == 0 ? 0 : 1;
    for (std::size_t i = 0; i < times; ++i) {
      message.fields.push_back(MakeField(number, known, depth));
    }
  }
  return message;
}

WireField MessageMutator::MakeField(std::uint32_t number, const cfm_test::Schema::Field& known,
                                    unsigned depth) {
  WireField field;
  field.number = number;
  if (const auto* const inner = cfm_test::Schema::Get().Find(known.type)) {
    field.type = WireType::Length;
    field.is_message = true;
    field.message.schema = inner;
    if (depth < kDeepest) {
      field.message = Make(inner, depth + 1);
    }
  } else if (known.type == "string" || known.type == "bytes") {
    field.type = WireType::Length;
    field.octets = Octets(known.type);
  } else if (known.label == "repeated" && !OneIn(4)) {
    field.type = WireType::Length;
    field.octets = PackedNumbers(known.type);
  } else {
    field.type = known.type == "double" ? WireType::Fixed64 : WireType::Varint;
    field.value = Number(known.type);
  }
  return field;
}

std::uint64_t MessageMutator::Number(const std::string& type) {
  const std::uint64_t number =
      OneIn(4) ? std::uint64_t{random_()} << Below(33) : kNumbers[Below(kNumbers.size())];
  if (type == "bool") {
    return number & 1U;
  }
  if (type == "double" || type == "uint64" || type == "int32") {
    return number;
  }
  return OneIn(16) ? number : number & 0xffffffffU;
}

std::string MessageMutator::Octets(const std::string& type) {
  if (type == "string" && !OneIn(8)) {
    return kTexts[Below(3) == 0 ? Below(kTexts.size()) : Below(3)];
  }
  std::string octets(OneIn(2) ? 6 : Below(12), '\0');
  std::generate(octets.begin(), octets.end(), [this] { return static_cast<char>(random_()); });
  return octets;
}

std::string MessageMutator::PackedNumbers(const std::string& type) {
  std::string octets;
  for (std::size_t count = Below(6); count > 0; --count) {
    AppendVarint(octets, Number(type));
  }
  return octets;
}

}  // namespace cfm_fuzz
