// SPDX-License-Identifier: Apache-2.0
// Octets from the wire: a frame, a PDU by itself, or a message of the kernel about its interfaces.
// The first octet of the input tells which.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#include "net/frame_codec.h"
#include "net/packet/link_message.h"
#include "pdu_rules.h"
#include "require.h"

namespace cfm_fuzz {
namespace {

using cfm_mgr::engine::Frame;
using cfm_mgr::engine::VlanTag;

enum Kind : std::uint8_t { kFrame = 0, kPdu = 1, kKernelMessage = 2, kKinds = 3 };

bool Same(const std::vector<VlanTag>& a, const std::vector<VlanTag>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const VlanTag& x, const VlanTag& y) {
    return x.tpid == y.tpid && x.pcp == y.pcp && x.dei == y.dei && x.vid == y.vid;
  });
}

// Frames that are too short get zeros at their end.
bool SameButPadding(const std::vector<std::uint8_t>& pdu, const std::vector<std::uint8_t>& padded) {
  return padded.size() >= pdu.size() && std::equal(pdu.begin(), pdu.end(), padded.begin()) &&
         std::all_of(padded.begin() + static_cast<std::ptrdiff_t>(pdu.size()), padded.end(),
                     [](std::uint8_t octet) { return octet == 0; });
}

void CheckFrame(const std::vector<std::uint8_t>& octets) {
  const auto frame = cfm_mgr::net::DecodeFrame(octets.data(), octets.size());
  if (!frame) return;
  std::vector<std::uint8_t> encoded;
  const std::size_t size = cfm_mgr::net::EncodeFrame(*frame, encoded);
  Require(size == encoded.size() && size >= cfm_mgr::net::kMinFrameSize,
          "a frame that was decoded can be encoded");
  Require(std::equal(octets.begin(), octets.end(), encoded.begin()),
          "a frame is encoded into the octets that it came from");
  const auto again = cfm_mgr::net::DecodeFrame(encoded.data(), encoded.size());
  Require(again && again->destination == frame->destination && again->source == frame->source &&
              Same(again->tags, frame->tags) && SameButPadding(frame->pdu, again->pdu),
          "a frame that was encoded means the same");
  RequireRightPdu(frame->pdu);
}

void CheckLink(const cfm_mgr::net::LinkState& link) {
  Require(link.interface_status >= 1 && link.interface_status <= 7 && link.port_status >= 1 &&
              link.port_status <= 2,
          "an interface has a status of the MIB");
  Require(link.name.find('\0') == std::string::npos, "a name ends before the first zero");
  const auto info = cfm_mgr::net::ToPortInfo(link);
  Require(info.name == link.name && info.mac == link.mac, "the engine learns name and address");
}

void CheckKernelMessage(std::vector<std::uint8_t> octets) {
  if (octets.size() < sizeof(nlmsghdr)) return;
  const auto size = static_cast<std::uint32_t>(octets.size());
  std::memcpy(octets.data(), &size, sizeof size);
  // The block of a vector is aligned for everything.
  const auto message =
      cfm_mgr::net::DecodeLinkMessage(*reinterpret_cast<const nlmsghdr*>(octets.data()));
  if (!message) return;
  if (const auto* link = std::get_if<cfm_mgr::net::LinkState>(&*message)) CheckLink(*link);
}

void Check(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return;
  const std::vector<std::uint8_t> octets(data + 1, data + size);
  switch (data[0] % kKinds) {
    case kFrame:
      return CheckFrame(octets);
    case kPdu:
      return RequireRightPdu(octets);
    default:
      return CheckKernelMessage(octets);
  }
}

}  // namespace
}  // namespace cfm_fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cfm_fuzz::Check(data, size);
  return 0;
}
