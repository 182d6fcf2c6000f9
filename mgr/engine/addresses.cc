// SPDX-License-Identifier: Apache-2.0
#include "engine/addresses.h"

namespace cfm_mgr::engine {
namespace {

constexpr std::uint16_t kCTag = 0x8100;
constexpr std::uint16_t kSTag = 0x88a8;
constexpr unsigned kCcmGroup = 0x30;
constexpr unsigned kLtmGroup = 0x38;

Mac GroupAddress(unsigned last) {
  return {0x01, 0x80, 0xc2, 0x00, 0x00, static_cast<std::uint8_t>(last)};
}

}  // namespace

Mac CcmGroupAddress(std::uint8_t level) { return GroupAddress(kCcmGroup + level); }

bool IsCcmGroupAddress(const Mac& address) {
  Mac first = address;
  first[5] = static_cast<std::uint8_t>(first[5] & ~7U);
  return first == GroupAddress(kCcmGroup);
}

Mac LtmGroupAddress(std::uint8_t level) { return GroupAddress(kLtmGroup + level); }

ServiceTags ServiceOf(const Frame& frame) {
  ServiceTags service;
  if (!frame.tags.empty()) service.vid = frame.tags[0].vid;
  if (frame.tags.size() > 1) service.inner_vid = frame.tags[1].vid;
  return service;
}

std::vector<VlanTag> TagsOf(ServiceTags service, std::uint8_t pcp) {
  if (service.vid == 0) return {};
  if (service.inner_vid == 0) return {{kCTag, pcp, false, service.vid}};
  return {{kSTag, pcp, false, service.vid}, {kCTag, pcp, false, service.inner_vid}};
}

}  // namespace cfm_mgr::engine
