// SPDX-License-Identifier: Apache-2.0
#include "net/frame_codec.h"

#include <algorithm>

namespace cfm_mgr::net {
namespace {

constexpr std::size_t kAddressSize = 6;
constexpr std::size_t kTagSize = 4;
constexpr std::size_t kEtherTypeSize = 2;
constexpr std::uint8_t kMaxPriority = 7;

std::uint16_t Read16(const std::uint8_t* octets) {
  return static_cast<std::uint16_t>(octets[0] << 8U | octets[1]);
}

void Append16(std::uint16_t value, std::vector<std::uint8_t>& out) {
  out.push_back(static_cast<std::uint8_t>(value >> 8U));
  out.push_back(static_cast<std::uint8_t>(value & 0xFFU));
}

bool IsTpid(std::uint16_t value) { return value == kCustomerTag || value == kServiceTag; }

bool IsGroupAddress(const engine::Mac& mac) { return (mac[0] & 1U) != 0; }

std::size_t SizeOf(const engine::Frame& frame) {
  const std::size_t size = 2 * kAddressSize + frame.tags.size() * kTagSize + kEtherTypeSize;
  return std::max(size + frame.pdu.size(), kMinFrameSize);
}

bool CanStand(const engine::Frame& frame) {
  return frame.tags.size() <= kMaxTags && frame.pdu.size() >= kMinPduSize &&
         SizeOf(frame) <= kMaxFrameSize && !IsGroupAddress(frame.source) &&
         std::all_of(frame.tags.begin(), frame.tags.end(), [](const engine::VlanTag& tag) {
           return IsTpid(tag.tpid) && tag.pcp <= kMaxPriority && tag.vid <= kMaxVid;
         });
}

}  // namespace

std::optional<engine::VlanTag> DecodeTag(std::uint16_t tpid, std::uint16_t tci) {
  engine::VlanTag tag;
  tag.tpid = tpid;
  tag.pcp = static_cast<std::uint8_t>(tci >> 13U);
  tag.dei = (tci & 0x1000U) != 0;
  tag.vid = tci & 0x0FFFU;
  if (!IsTpid(tpid) || tag.vid > kMaxVid) return std::nullopt;
  return tag;
}

std::optional<engine::Frame> DecodeFrame(const std::uint8_t* octets, std::size_t size) {
  engine::Frame frame;
  std::size_t at = 2 * kAddressSize;
  if (size < at + kEtherTypeSize || size > kMaxFrameSize) return std::nullopt;
  std::copy_n(octets, kAddressSize, frame.destination.begin());
  std::copy_n(octets + kAddressSize, kAddressSize, frame.source.begin());
  while (IsTpid(Read16(octets + at))) {
    if (frame.tags.size() == kMaxTags || size < at + kTagSize + kEtherTypeSize) return std::nullopt;
    const auto tag = DecodeTag(Read16(octets + at), Read16(octets + at + 2));
    if (!tag) return std::nullopt;
    frame.tags.push_back(*tag);
    at += kTagSize;
  }
  if (Read16(octets + at) != engine::kCfmEtherType) return std::nullopt;
  frame.pdu.assign(octets + at + kEtherTypeSize, octets + size);
  if (!CanStand(frame)) return std::nullopt;
  return frame;
}

std::size_t EncodeFrame(const engine::Frame& frame, std::vector<std::uint8_t>& out) {
  if (!CanStand(frame)) return 0;
  const std::size_t begin = out.size();
  const std::size_t size = SizeOf(frame);
  out.reserve(begin + size);
  out.insert(out.end(), frame.destination.begin(), frame.destination.end());
  out.insert(out.end(), frame.source.begin(), frame.source.end());
  for (const engine::VlanTag& tag : frame.tags) {
    Append16(tag.tpid, out);
    Append16(
        static_cast<std::uint16_t>(unsigned{tag.pcp} << 13U | (tag.dei ? 0x1000U : 0U) | tag.vid),
        out);
  }
  Append16(engine::kCfmEtherType, out);
  out.insert(out.end(), frame.pdu.begin(), frame.pdu.end());
  out.resize(begin + size);
  return size;
}

}  // namespace cfm_mgr::net
