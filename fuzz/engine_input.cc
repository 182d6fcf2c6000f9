// SPDX-License-Identifier: Apache-2.0
#include "engine_input.h"

#include <iterator>

#include "engine/addresses.h"
#include "net/frame_codec.h"
#include "pdu/ais.h"
#include "pdu/ccm.h"
#include "pdu/delay.h"
#include "pdu/linktrace.h"
#include "pdu/loopback.h"

namespace cfm_fuzz {
namespace {

using namespace cfm_mgr;
using engine::Frame;
using engine::Mac;

// One of a few values that matter.
template <class Values>
auto Pick(ByteReader& input, const Values& values) {
  return values[input.Next() % std::size(values)];
}

bool Bit(std::uint8_t bits, unsigned number) { return ((bits >> number) & 1U) != 0; }

std::uint32_t NextFour(ByteReader& input) {
  const std::uint32_t low = input.NextTwo();
  return low | std::uint32_t{input.NextTwo()} << 16U;
}

// A small number, or any.
std::uint32_t Number(ByteReader& input) {
  const std::uint8_t small = input.Next();
  return small == 0xff ? NextFour(input) : small;
}

std::uint32_t MakeVid(ByteReader& input) {
  constexpr std::uint32_t kVids[] = {100, 0, 200, 4094};
  return Pick(input, kVids);
}

Mac MakeMac(ByteReader& input) {
  const Mac macs[] = {MacOfPort(1), MacOfPort(2), {2, 0, 0, 0, 9, 9}, {2, 0, 0, 0, 9, 8}, Mac{}};
  return Pick(input, macs);
}

Ais MakeAis(ByteReader& input) {
  Ais ais;
  const std::uint8_t bits = input.Next();
  ais.enabled = Bit(bits, 0);
  ais.flag_d = Bit(bits, 1);
  if (!ais.enabled) return ais;
  ais.octet_a = (bits >> 2U) & 15U;
  ais.word_b = Bit(bits, 6) ? 6 : 4;
  ais.octet_c = Number(input);
  if (Bit(bits, 7)) ais.id_set = {MakeVid(input), MakeVid(input)};
  return ais;
}

Mep MakeMep(ByteReader& input) {
  const std::uint8_t bits = input.Next();
  Mep mep;
  mep.direction = Bit(bits, 0) ? 2 : 1;
  mep.ifindex = Bit(bits, 1) ? 2 : 1;
  mep.admin_state = !Bit(bits, 2);
  mep.ccm_enabled = !Bit(bits, 3);
  mep.fault_action = (bits >> 4U) & 3;
  mep.aux_flag = Bit(bits, 6);
  if (!Bit(bits, 7)) return mep;
  mep.primary_vid = MakeVid(input);
  mep.inner_vid = MakeVid(input);
  mep.ccm_priority = Number(input);
  mep.lowest_prio_defect = static_cast<std::int32_t>(Number(input));
  mep.fng_alarm_time = Number(input);
  mep.fng_reset_time = Number(input);
  return mep;
}

pdu::SenderId MakeSenderId(ByteReader& input) {
  static const std::uint8_t kOctets[] = {1, 192, 0, 2, 1, 'n', 'o', 'd', 'e', 0};
  const std::uint8_t bits = input.Next();
  pdu::SenderId sender;
  sender.chassis_subtype = bits & 7U;
  sender.chassis_id = {kOctets, std::size_t{bits} % std::size(kOctets)};
  if (Bit(bits, 6)) sender.management_domain = {kOctets, 3};
  if (Bit(bits, 6) && Bit(bits, 7)) sender.management_address = {kOctets, 4};
  return sender;
}

std::optional<pdu::SenderId> MaybeSenderId(ByteReader& input) {
  if (input.Next() % 2 == 0) return std::nullopt;
  return MakeSenderId(input);
}

std::vector<std::uint8_t> MakeCcm(ByteReader& input, std::uint8_t level) {
  const std::uint8_t bits = input.Next();
  pdu::Ccm ccm;
  ccm.level = level;
  ccm.rdi = Bit(bits, 0);
  ccm.interval = (bits >> 1U) & 7U;
  ccm.sequence = Number(input);
  ccm.mep_id = static_cast<std::uint16_t>(MakeMepId(input));
  const MaKey key = MakeKey(input);
  ccm.maid = *pdu::EncodeMaid(4, key.md_name, 2, key.ma_name);
  if (Bit(bits, 4)) ccm.port_status = static_cast<std::uint8_t>(1 + input.Next() % 2);
  if (Bit(bits, 5)) ccm.interface_status = static_cast<std::uint8_t>(1 + input.Next() % 7);
  if (Bit(bits, 6)) ccm.sender_id = MakeSenderId(input);
  return pdu::Encode(ccm);
}

std::vector<std::uint8_t> MakeLoopback(ByteReader& input, std::uint8_t level, bool reply) {
  const std::string_view data = input.Take(input.Next() % 32);
  pdu::Loopback lbm;
  lbm.level = level;
  lbm.transaction_id = Number(input);
  lbm.sender_id = MaybeSenderId(input);
  if (!data.empty()) lbm.data = pdu::OctetsOf(data);
  const auto octets = pdu::EncodeLbm(lbm);
  return reply ? pdu::LbrTo(octets) : octets;
}

std::vector<std::uint8_t> MakeLtm(ByteReader& input, std::uint8_t level) {
  pdu::Ltm ltm;
  ltm.level = level;
  ltm.use_fdb_only = input.Next() % 2 == 0;
  ltm.transaction_id = Number(input);
  ltm.ttl = static_cast<std::uint8_t>(Number(input));
  ltm.original = MakeMac(input);
  ltm.target = MakeMac(input);
  ltm.sender_id = MaybeSenderId(input);
  return pdu::Encode(ltm);
}

std::vector<std::uint8_t> MakeLtr(ByteReader& input, std::uint8_t level) {
  const std::uint8_t bits = input.Next();
  pdu::Ltr ltr;
  ltr.level = level;
  ltr.forwarded = Bit(bits, 0);
  ltr.terminal_mep = Bit(bits, 1);
  ltr.transaction_id = Number(input);
  ltr.ttl = input.Next();
  ltr.relay_action = (bits >> 2U) & 3U;
  if (Bit(bits, 4)) ltr.ingress = pdu::ReplyPortTlv{1, MakeMac(input), 5, pdu::OctetsOf("p1")};
  if (Bit(bits, 5)) ltr.egress = pdu::ReplyPortTlv{2, MakeMac(input), {}, {}};
  ltr.sender_id = MaybeSenderId(input);
  return pdu::Encode(ltr);
}

std::vector<std::uint8_t> MakeDelay(ByteReader& input, std::uint8_t level, bool reply) {
  const pdu::Timestamp sent{Number(input), NextFour(input)};
  const auto dmm = pdu::EncodeDmm(level, sent, pdu::kMinDelayPduSize + input.Next());
  if (!reply) return dmm;
  const pdu::Timestamp received{Number(input), NextFour(input)};
  return pdu::DmrTo(dmm, received, {Number(input), NextFour(input)});
}

std::vector<std::uint8_t> MakePdu(ByteReader& input, std::uint8_t level) {
  switch (input.Next() % 8) {
    case 0:
      return MakeCcm(input, level);
    case 1:
      return MakeLoopback(input, level, false);
    case 2:
      return MakeLoopback(input, level, true);
    case 3:
      return MakeLtm(input, level);
    case 4:
      return MakeLtr(input, level);
    case 5:
      return MakeDelay(input, level, false);
    case 6:
      return MakeDelay(input, level, true);
    default:
      return pdu::Encode(pdu::Ais{level, static_cast<std::uint8_t>(input.Next() & 7U)});
  }
}

Mac MakeDestination(ByteReader& input, std::uint8_t level) {
  switch (input.Next() % 4) {
    case 0:
      return engine::CcmGroupAddress(level);
    case 1:
      return engine::LtmGroupAddress(level);
    default:
      return MakeMac(input);
  }
}

std::optional<Frame> Envelope(ByteReader& input, std::uint8_t level,
                              std::vector<std::uint8_t> octets) {
  const std::uint8_t bits = input.Next();
  Frame frame;
  frame.destination = MakeDestination(input, level);
  frame.source = MakeMac(input);
  for (unsigned i = 0; i < bits % 4U; ++i) {
    engine::VlanTag tag;
    tag.tpid = Bit(bits, 2) ? net::kServiceTag : net::kCustomerTag;
    tag.pcp = static_cast<std::uint8_t>(bits >> 5U);
    tag.vid = static_cast<std::uint16_t>(MakeVid(input));
    frame.tags.push_back(tag);
  }
  frame.pdu = std::move(octets);
  return OverTheWire(frame);
}

}  // namespace

Mac MacOfPort(engine::PortId port) { return {2, 0, 0, 0, 0, static_cast<std::uint8_t>(port)}; }

MaKey MakeKey(ByteReader& input) {
  const MaKey keys[] = {FirstKey(), {"D1", "A2"}, {"D2", "A1"}};
  return Pick(input, keys);
}

std::uint32_t MakeMepId(ByteReader& input) {
  constexpr std::uint32_t kIds[] = {1, 2, 3, 4, 8191, 0, 8192, 70000};
  return Pick(input, kIds);
}

MepKey MakeMepKey(ByteReader& input) {
  const MaKey ma = MakeKey(input);
  return {ma, MakeMepId(input)};
}

DomainSettings MakeDomain(ByteReader& input) {
  const std::uint8_t bits = input.Next();
  DomainSettings domain = FirstDomain();
  domain.level = bits & 7U;
  domain.mhf_creation = (bits >> 3U) & 3;
  domain.sender_id = (bits >> 5U) & 7;
  if (input.Next() == 0xff) domain.format = input.Next();
  return domain;
}

Association MakeAssociation(ByteReader& input) {
  const std::uint8_t bits = input.Next();
  Association association = FirstAssociation();
  association.meps.clear();
  AssociationSettings& settings = association.settings;
  settings.ccm_interval = bits & 7;
  settings.mhf_creation = (bits >> 3U) & 7;
  settings.sender_id = (bits >> 6U) & 3;
  settings.vids.clear();
  for (unsigned i = input.Next() % 3U; i > 0; --i) settings.vids.push_back(MakeVid(input));
  settings.ais = MakeAis(input);
  for (unsigned i = input.Next() % 5U; i > 0; --i) {
    // The server takes no others.
    const std::uint32_t mep_id = Pick(input, FirstAssociation().settings.mep_ids);
    association.meps[mep_id] = MakeMep(input);
  }
  if (input.Next() == 0xff) settings.format = input.Next();
  return association;
}

Probe MakeProbe(ByteReader& input) {
  Probe probe;
  const MepKey mep = MakeMepKey(input);
  probe.settings = {mep.ma.md_name, mep.ma.ma_name, Number(input), mep.mep_id, MakeMepId(input)};
  for (unsigned i = input.Next() % 3U; i > 0; --i) {
    const std::uint32_t interval = Number(input);
    const std::uint32_t count = Number(input);
    const std::uint32_t size = Number(input);
    probe.sessions[i] = {interval, count, size, Number(input)};
  }
  return probe;
}

MaKey FirstKey() { return {"D1", "A1"}; }

DomainSettings FirstDomain() { return {4, 3, 1, 1}; }

Association FirstAssociation() {
  Association association;
  association.settings.format = 2;
  association.settings.vids = {100};
  association.settings.ccm_interval = 4;
  association.settings.mep_ids = {1, 2, 3, 4, 8191};
  association.settings.sender_id = 2;
  association.settings.mhf_creation = 1;
  for (const std::uint32_t number : kPorts) {
    Mep& mep = association.meps[number];
    mep.direction = 1;
    mep.ifindex = number;
    mep.admin_state = true;
    mep.ccm_enabled = true;
  }
  return association;
}

std::optional<Frame> MakeFrame(ByteReader& input) {
  const std::uint8_t level = input.Next() & 7U;
  return Envelope(input, level, MakePdu(input, level));
}

std::optional<Frame> MakeRawFrame(ByteReader& input) {
  const pdu::OctetView octets = pdu::OctetsOf(input.Take(input.Next()));
  const std::uint8_t level = octets.empty() ? std::uint8_t{0} : std::uint8_t(octets[0] >> 5U);
  return Envelope(input, level, {octets.begin(), octets.end()});
}

std::optional<Frame> OverTheWire(const Frame& frame) {
  std::vector<std::uint8_t> octets;
  if (net::EncodeFrame(frame, octets) == 0) return std::nullopt;
  return net::DecodeFrame(octets.data(), octets.size());
}

}  // namespace cfm_fuzz
