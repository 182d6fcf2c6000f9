// SPDX-License-Identifier: Apache-2.0
#include "samples.h"

#include "engine/addresses.h"
#include "pdu/header.h"

namespace cfm_mgr::engine {

DomainSettings SampleDomain(std::uint32_t level) {
  DomainSettings domain;
  domain.format = 4;
  domain.level = level;
  domain.sender_id = 1;
  domain.mhf_creation = 1;
  return domain;
}

Association SampleAssociation() {
  Association association;
  association.settings.format = 2;
  association.settings.vids = {100};
  association.settings.ccm_interval = kOneSecond;
  association.settings.mep_ids = {1, 2};
  association.settings.sender_id = 1;
  association.settings.mhf_creation = 1;
  return association;
}

Mep SampleMep() {
  Mep mep;
  mep.direction = kDown;
  mep.ifindex = 1;
  mep.admin_state = true;
  mep.ccm_enabled = true;
  mep.ccm_priority = 6;
  mep.lowest_prio_defect = 1;
  return mep;
}

Association WithMep(Association association, std::uint32_t mep_id, const Mep& mep) {
  association.meps[mep_id] = mep;
  return association;
}

pdu::Ccm SampleCcm() {
  pdu::Ccm ccm;
  ccm.level = 3;
  ccm.interval = kOneSecond;
  ccm.mep_id = 2;
  ccm.maid = *pdu::EncodeMaid(4, "D1", 2, "A1");
  return ccm;
}

Frame FrameOf(const pdu::Ccm& ccm) { return TaggedFrame({100}, pdu::Encode(ccm)); }

Frame TaggedFrame(std::vector<std::uint16_t> vids, std::vector<std::uint8_t> pdu) {
  Frame frame;
  frame.source = {0x02, 0, 0, 0, 9, 9};
  const auto header = pdu::DecodeHeader(pdu);
  if (header) frame.destination = CcmGroupAddress(header->level);
  for (const std::uint16_t vid : vids) {
    VlanTag tag;
    tag.vid = vid;
    frame.tags.push_back(tag);
  }
  frame.pdu = std::move(pdu);
  return frame;
}

}  // namespace cfm_mgr::engine
