// SPDX-License-Identifier: Apache-2.0
#include "pdu_layout.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include "require.h"

namespace cfm_fuzz {
namespace {

using cfm_mgr::pdu::OctetView;

constexpr std::size_t kHeaderSize = 4;
constexpr std::size_t kMaidAt = 10;
constexpr std::size_t kMaidSize = 48;
constexpr unsigned kLastKnownType = 8;

// Values of TLVs by their types.
using Tlvs = std::map<unsigned, OctetView>;

// What a PDU of an opcode has: octets of fixed fields, TLVs that are looked at, one that it needs.
struct Layout {
  unsigned opcode;
  std::size_t fixed;
  const char* looked_at;  // Types of TLVs as digits.
  unsigned needed;        // 0 for none.
};

constexpr std::array<Layout, 8> kLayouts = {{{1, 70, "124", 0},
                                             {2, 4, "1", 0},
                                             {3, 4, "1", 0},
                                             {4, 6, "1568", 8},
                                             {5, 17, "17", 7},
                                             {33, 0, "", 0},
                                             {46, 32, "", 0},
                                             {47, 32, "", 0}}};

// A length octet at `at`, and behind it, where the length is not 0, `extra` octets and as many as
// it says. Where that ends; past the end of the value when it is not all there.
std::size_t AfterCounted(OctetView value, std::size_t at, std::size_t extra) {
  if (at >= value.size()) return value.size() + 1;
  return at + 1 + (value[at] == 0 ? 0 : extra + value[at]);
}

std::size_t EndOfSenderId(OctetView value) {
  std::size_t at = AfterCounted(value, 0, 1);
  if (at >= value.size()) return at;
  const bool has_address = value[at] != 0;
  at = AfterCounted(value, at, 0);
  return has_address ? AfterCounted(value, at, 0) : at;
}

std::size_t EndOfReplyPort(OctetView value) {
  constexpr std::size_t kActionAndMac = 7;
  return value.size() <= kActionAndMac ? kActionAndMac : AfterCounted(value, kActionAndMac, 1);
}

// Where the fields of a TLV's value end.
std::size_t EndOfFields(unsigned type, OctetView value) {
  switch (type) {
    case 1:
      return EndOfSenderId(value);
    case 5:
    case 6:
      return EndOfReplyPort(value);
    case 7:
      return 8;
    case 8:
      return 16;
    default:
      return 1;  // Port Status and Interface Status.
  }
}

Tlvs ReadTlvs(OctetView octets) {
  Tlvs tlvs;
  for (;;) {
    Require(!octets.empty(), "the TLVs of an accepted PDU are closed");
    const unsigned type = octets[0];
    if (type == 0) return tlvs;
    Require(octets.size() >= 3, "a TLV of an accepted PDU has a length");
    const std::size_t size = std::size_t{octets[1]} << 8U | octets[2];
    Require(octets.size() >= 3 + size, "a TLV of an accepted PDU is all there");
    const bool is_new = tlvs.emplace(type, octets.After(3).First(size)).second;
    Require(is_new || type > kLastKnownType, "an accepted PDU has each TLV once");
    octets = octets.After(3 + size);
  }
}

void RequireMaid(OctetView maid) {
  const std::size_t ma_at = maid[0] == 1 ? 1 : 2 + std::size_t{maid[1]};
  Require(ma_at >= 1 && ma_at + 2 < maid.size(), "the MD name of an accepted MAID is all there");
  Require(maid[ma_at + 1] > 0 && ma_at + 2 + maid[ma_at + 1] <= maid.size(),
          "the MA name of an accepted MAID is all there");
}

}  // namespace

void RequireLayout(OctetView pdu) {
  Require(pdu.size() >= kHeaderSize, "an accepted PDU has a header");
  const auto* layout = std::find_if(kLayouts.begin(), kLayouts.end(),
                                    [pdu](const Layout& l) { return l.opcode == pdu[1]; });
  Require(layout != kLayouts.end(), "an accepted PDU has an opcode that is known");
  const std::size_t offset = pdu[3];
  Require(offset >= layout->fixed, "an accepted PDU has all fields of its opcode");
  Require(pdu.size() >= kHeaderSize + offset, "the fields of an accepted PDU are all there");
  const Tlvs tlvs = ReadTlvs(pdu.After(kHeaderSize + offset));
  Require(layout->needed == 0 || tlvs.count(layout->needed) != 0,
          "an accepted PDU has the TLV that it needs");
  const bool version0 = (pdu[0] & 0x1fU) == 0;
  for (const auto& [type, value] : tlvs) {
    const bool counts =
        type <= kLastKnownType &&
        std::string(layout->looked_at).find(static_cast<char>('0' + type)) != std::string::npos;
    if (!counts) continue;
    const std::size_t end = EndOfFields(type, value);
    Require(version0 ? end == value.size() : end <= value.size(),
            "a TLV of an accepted PDU has the length of its fields");
  }
  if (layout->opcode == 1) RequireMaid(pdu.After(kMaidAt).First(kMaidSize));
}

}  // namespace cfm_fuzz
