// SPDX-License-Identifier: Apache-2.0
#include "sample_network.h"

namespace cfm_mgr::net {
namespace {

constexpr engine::PortId kWest = 1;
constexpr engine::PortId kEast = 2;
constexpr std::int32_t kCharacterString = 4;
constexpr std::int32_t kMaCharacterString = 2;
constexpr std::int32_t kOneSecond = 4;
constexpr std::int32_t kDeferSenderId = 5;
constexpr std::int32_t kDeferMhfCreation = 4;

BridgeDescription SampleBridge(std::uint8_t number) {
  BridgeDescription bridge;
  bridge.name = "b" + std::to_string(number);
  bridge.ports = {{"west", kWest, {0x02, 0, 0, 0, number, 1}, {}},
                  {"east", kEast, {0x02, 0, 0, 0, number, 2}, {}}};
  return bridge;
}

}  // namespace

DomainSettings SampleDomain() {
  DomainSettings domain;
  domain.format = kCharacterString;
  domain.level = 4;
  domain.sender_id = 1;
  domain.mhf_creation = 1;
  return domain;
}

Association SampleAssociation(std::uint32_t mep_id, engine::PortId port, std::int32_t direction,
                              std::uint32_t vid) {
  Association association;
  association.settings.format = kMaCharacterString;
  association.settings.vids = {vid};
  association.settings.ccm_interval = kOneSecond;
  association.settings.mep_ids = {1, 2};
  association.settings.sender_id = kDeferSenderId;
  association.settings.mhf_creation = kDeferMhfCreation;
  Mep& mep = association.meps[mep_id];
  mep.direction = direction;
  mep.ifindex = port;
  mep.admin_state = true;
  mep.ccm_enabled = true;
  mep.ccm_priority = 7;
  mep.lowest_prio_defect = 1;
  mep.fng_alarm_time = 250;
  mep.fng_reset_time = 1000;
  return association;
}

NetworkDescription SampleLine(std::size_t bridges, const LinkQuality& quality) {
  NetworkDescription description;
  description.local = "b1";
  for (std::size_t i = 1; i <= bridges; ++i) {
    description.bridges.push_back(SampleBridge(static_cast<std::uint8_t>(i)));
    if (i == 1) continue;
    LinkDescription link;
    link.ends[0] = {"b" + std::to_string(i - 1), "east"};
    link.ends[1] = {"b" + std::to_string(i), "west"};
    link.quality = quality;
    description.links.push_back(link);
  }
  return description;
}

NetworkDescription WithFarMep(NetworkDescription description) {
  Domain& domain = description.bridges.back().domains["D"];
  domain.settings = SampleDomain();
  domain.associations["A"] = SampleAssociation(2, kWest);
  return description;
}

engine::Frame SampleFrame(std::uint8_t source, std::uint8_t destination, std::uint16_t vid) {
  engine::Frame frame;
  frame.source = {0x02, 0, 0, 0, 0xff, source};
  frame.destination = {0x02, 0, 0, 0, 0xff, destination};
  if (vid != 0) frame.tags.push_back({0x8100, 0, false, vid});
  // A loopback message: level 7, opcode 3, first TLV at 4, transaction 1, End TLV.
  frame.pdu = {0xe0, 0x03, 0x00, 0x04, 0x00, 0x00, 0x00, 0x01, 0x00};
  return frame;
}

}  // namespace cfm_mgr::net
