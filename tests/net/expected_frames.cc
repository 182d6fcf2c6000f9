// SPDX-License-Identifier: Apache-2.0
#include "expected_frames.h"

#include <cstdint>
#include <utility>

#include "wire_fixture.h"

namespace cfm_mgr::net {
namespace {

std::string Text(std::size_t number) { return std::to_string(number); }

std::string Hex(std::uint8_t octet) {
  constexpr const char* kDigits = "0123456789abcdef";
  return {kDigits[octet >> 4U], kDigits[octet & 0xfU]};
}

std::string Text(const engine::Mac& mac, const char* separator) {
  std::string text;
  for (const std::uint8_t octet : mac) text += (text.empty() ? "" : separator) + Hex(octet);
  return text;
}

std::string AddressOf(const std::string& interface) { return Text(MacOf(interface), ":"); }

Fields Join(std::initializer_list<Fields> parts) {
  Fields joined;
  for (const Fields& part : parts) joined.insert(part.begin(), part.end());
  return joined;
}

Fields Addresses(const std::string& source, const std::string& destination) {
  return {{"eth.src", source}, {"eth.dst", destination}};
}

Fields CTag(const char* vid, const char* priority) {
  return {{"vlan.id", vid}, {"vlan.priority", priority}, {"vlan.dei", "0"}};
}

Fields STag(const char* vid, const char* priority) {
  return {{"ieee8021ad.id", vid}, {"ieee8021ad.priority", priority}, {"ieee8021ad.dei", "0"}};
}

/** C-VLAN 30 in S-VLAN 200. */
Fields BothTags(const char* priority) {
  return Join({STag("200", priority), CTag("30", priority)});
}

/** Types and lengths of the TLVs as they follow each other; the End TLV has no length. */
Fields Pdu(unsigned opcode, unsigned level, unsigned flags, unsigned first_tlv_offset,
           const char* tlv_types, const char* tlv_lengths) {
  Fields fields = {{"cfm.opcode", Text(opcode)},
                   {"cfm.md.level", Text(level)},
                   {"cfm.version", "0"},
                   {"cfm.flags", Text(flags)},
                   {"cfm.first.tlv.offset", Text(first_tlv_offset)},
                   {"cfm.tlv.type", tlv_types}};
  if (*tlv_lengths != '\0') fields["cfm.tlv.length"] = tlv_lengths;
  return fields;
}

/** The chassis ID of a Sender ID TLV: a MAC address, subtype 4. */
Fields Chassis(const std::string& interface) {
  return {{"cfm.tlv.chassis.id.length", "6"},
          {"cfm.tlv.chassis.id.subtype", "4"},
          {"cfm.tlv.chassis.id", Text(MacOf(interface), "")}};
}

const Fields kNoChassis = {{"cfm.tlv.chassis.id.length", "0"}};

/** Ports that are up. */
Fields CcmFields(const char* rdi, const char* interval, const char* mep_id) {
  return {{"cfm.flags.rdi", rdi},
          {"cfm.flags.interval", interval},
          {"cfm.flags.ccm.reserved", "0"},
          {"cfm.ccm.ma.ep.id", mep_id},
          {"cfm.itu.txfcf", "00000000"},
          {"cfm.itu.rxfcb", "00000000"},
          {"cfm.itu.txfcb", "00000000"},
          {"cfm.itu.reserved", "00000000"},
          {"cfm.tlv.port.status.value", "2"},
          {"cfm.tlv.port.interface.value", "1"}};
}

const Fields kTextNames = {
    {"cfm.maid.md.name.format", "4"},       {"cfm.maid.md.name.length", "7"},
    {"cfm.maid.md.name.string", "example"}, {"cfm.maid.ma.name.format", "2"},
    {"cfm.maid.ma.name.length", "4"},       {"cfm.maid.ma.name.string", "line"}};

// 4660 and 513 in hexadecimal digits.
const Fields kNumberNames = {{"cfm.maid.md.name.format", "3"},
                             {"cfm.maid.md.name.length", "8"},
                             {"cfm.maid.md.name.mac", "02:00:00:00:00:fe"},
                             {"cfm.maid.md.name.mac.id", "1234"},
                             {"cfm.maid.ma.name.format", "3"},
                             {"cfm.maid.ma.name.length", "2"},
                             {"cfm.maid.ma.name.hex", "0201"}};

const Fields kIccName = {{"cfm.maid.md.name.format", "1"},
                         {"cfm.maid.ma.name.format", "32"},
                         {"cfm.maid.ma.name.length", "13"},
                         {"cfm.maid.ma.name.string", "ICC123UMC0001"}};

/** The addresses at the captured wire and behind it. */
struct Ends {
  std::string near = AddressOf("v0");
  std::string bridge = AddressOf("v1");
  std::string egress = AddressOf("w0");
  std::string far = AddressOf("w1");
};

using Frames = std::vector<ExpectedFrames>;
using Parts = std::initializer_list<Fields>;

void Add(Frames& frames, std::size_t count, Parts parts) {
  frames.push_back({[all = Join(parts)](std::size_t) { return all; }, count});
}

/** They are numbered from 1. */
void AddCcms(Frames& frames, Parts parts) {
  frames.push_back({[all = Join(parts)](std::size_t before) {
    return Join({all, {{"cfm.ccm.seq.num", Text(before + 1)}}});
  }});
}

/** Their data count up from the transaction identifier. */
void AddLoopbacks(Frames& frames, std::size_t count, Parts parts, std::uint32_t first,
                  std::size_t data_size) {
  const auto frame = [all = Join(parts), first, data_size](std::size_t before) {
    const std::size_t id = first + before;
    Fields fields = Join({all, {{"cfm.lb.transaction.id", Text(id)}}});
    for (std::size_t i = 0; i < data_size; ++i) {
      fields["cfm.tlv.data.value"] += Hex(static_cast<std::uint8_t>(id + i));
    }
    return fields;
  };
  frames.push_back({frame, count});
}

void AddAllCcms(Frames& frames, const Ends& ends) {
  const Fields line = Join({CTag("100", "7"), Pdu(1, 4, 5, 70, "2,4,1,0", "1,1,8"), kTextNames});
  const char* group = "01:80:c2:00:00:34";
  AddCcms(frames, {Addresses(ends.near, group), line, Chassis("v0"), CcmFields("0", "5", "1")});
  AddCcms(frames, {Addresses(ends.far, group), line, Chassis("w1"), CcmFields("0", "5", "2")});

  const Fields pair =
      Join({BothTags("3"), Pdu(1, 6, 6, 70, "2,4,1,0", "1,1,1"), kNumberNames, kNoChassis});
  group = "01:80:c2:00:00:36";
  AddCcms(frames, {Addresses(ends.near, group), pair, CcmFields("0", "6", "1")});
  AddCcms(frames, {Addresses(ends.bridge, group), pair, CcmFields("0", "6", "2")});

  // With RDI once the remote MEP is missed.
  const Fields lonely = Join({Addresses(ends.near, "01:80:c2:00:00:31"), kIccName});
  AddCcms(frames, {lonely, Pdu(1, 1, 0x03, 70, "2,4,0", "1,1"), CcmFields("0", "3", "8191")});
  AddCcms(frames, {lonely, Pdu(1, 1, 0x83, 70, "2,4,0", "1,1"), CcmFields("1", "3", "8191")});
}

void AddAllLoopbacks(Frames& frames, const Ends& ends, const EveryFrame& servers) {
  const Fields tag = CTag("100", "7");
  const std::uint32_t line = servers.single_tagged().loopback;
  AddLoopbacks(frames, 3, {Addresses(ends.near, ends.far), tag, Pdu(3, 4, 0, 4, "3,0", "1000")},
               line, 1000);
  AddLoopbacks(frames, 3, {Addresses(ends.far, ends.near), tag, Pdu(2, 4, 0, 4, "3,0", "1000")},
               line, 1000);
  const Fields tags = BothTags("3");
  const std::uint32_t pair = servers.double_tagged().loopback;
  AddLoopbacks(frames, 1, {Addresses(ends.near, ends.bridge), tags, Pdu(3, 6, 0, 4, "0", "")}, pair,
               0);
  AddLoopbacks(frames, 1, {Addresses(ends.bridge, ends.near), tags, Pdu(2, 6, 0, 4, "0", "")}, pair,
               0);
}

Fields LtmFields(std::uint32_t transaction, const char* ttl, const char* use_fdb_only,
                 const std::string& original, const std::string& target) {
  return {{"cfm.lt.transaction.id", Text(transaction)},
          {"cfm.lt.ttl", ttl},
          {"cfm.flags.usefdbonly", use_fdb_only},
          {"cfm.flags.ltm.reserved", "0"},
          {"cfm.ltm.orig.addr", original},
          {"cfm.ltm.targ.addr", target},
          {"cfm.tlv.ltm.egress.id.ui", "0000"},
          {"cfm.tlv.ltm.egress.id.mac", original}};
}

void AddLtms(Frames& frames, const Ends& ends, const EveryFrame& servers) {
  Add(frames, 1,
      {Addresses(ends.near, "01:80:c2:00:00:3c"), CTag("100", "7"),
       Pdu(5, 4, 0x80, 17, "7,1,0", "8,8"), Chassis("v0"),
       LtmFields(servers.single_tagged().linktrace, "64", "1", ends.near, ends.far)});
  Add(frames, 1,
      {Addresses(ends.near, "01:80:c2:00:00:3e"), BothTags("3"), Pdu(5, 6, 0, 17, "7,1,0", "8,1"),
       kNoChassis,
       LtmFields(servers.double_tagged().linktrace, "255", "0", ends.near, ends.bridge)});
}

/** The flags are those of the PDU, taken apart. */
Fields LtrFields(std::uint32_t transaction, const char* ttl, unsigned flags,
                 const char* relay_action) {
  const auto flag = [flags](unsigned mask) { return Text((flags & mask) == 0 ? 0U : 1U); };
  return {{"cfm.lt.transaction.id", Text(transaction)}, {"cfm.lt.ttl", ttl},
          {"cfm.flags.usefdbonly", flag(0x80)},         {"cfm.flags.fwdyes", flag(0x40)},
          {"cfm.flags.ltr.terminalmep", flag(0x20)},    {"cfm.flags.ltr.reserved", "0"},
          {"cfm.ltr.relay.action", relay_action}};
}

Fields LtrEgress(const std::string& last, const std::string& next) {
  return {{"cfm.tlv.ltr.egress.last.id.ui", "0000"},
          {"cfm.tlv.ltr.egress.last.id.mac", last},
          {"cfm.tlv.ltr.egress.next.id.ui", "0000"},
          {"cfm.tlv.ltr.egress.next.id.mac", next}};
}

/** Reply Ingress TLV of a port that lets frames pass, whose name is the port ID (subtype 5). */
Fields Ingress(const std::string& port, const char* name_in_hex) {
  return {{"cfm.tlv.reply.ingress.action", "1"},
          {"cfm.tlv.reply.ingress.mac.address", port},
          {"cfm.tlv.reply.ing.egr.portid.length", "2"},
          {"cfm.tlv.reply.ing.egr.portid.subtype", "5"},
          {"cfm.tlv.reply.ing.egr.portid", name_in_hex}};
}

/** In by v1 and out by w0. */
Fields IngressAndEgress(const Ends& ends) {
  return {{"cfm.tlv.reply.ingress.action", "1"},
          {"cfm.tlv.reply.ingress.mac.address", ends.bridge},
          {"cfm.tlv.reply.egress.action", "1"},
          {"cfm.tlv.reply.egress.mac.address", ends.egress},
          {"cfm.tlv.reply.ing.egr.portid.length", "2,2"},
          {"cfm.tlv.reply.ing.egr.portid.subtype", "5,5"},
          {"cfm.tlv.reply.ing.egr.portid", "7631,7730"}};
}

void AddLtrs(Frames& frames, const Ends& ends, const EveryFrame& servers) {
  constexpr const char* kNobody = "00:00:00:00:00:00";
  const std::uint32_t line = servers.single_tagged().linktrace;
  // The MIP forwards the LTM, whose TTL is 63 from there.
  Add(frames, 1,
      {Addresses(ends.bridge, ends.near), CTag("100", "7"),
       Pdu(4, 4, 0xc0, 6, "8,5,6,1,0", "16,11,11,8"), Chassis("v1"),
       LtrFields(line, "63", 0xc0, "2"), LtrEgress(ends.near, ends.egress),
       IngressAndEgress(ends)});
  // The MEP answers the forwarded LTM, and the one that the kernel's bridge takes past the MIP.
  const Fields end =
      Join({Addresses(ends.far, ends.near), CTag("100", "7"),
            Pdu(4, 4, 0xa0, 6, "8,5,1,0", "16,11,8"), Chassis("w1"), Ingress(ends.far, "7731")});
  Add(frames, 1, {end, LtrFields(line, "62", 0xa0, "1"), LtrEgress(ends.egress, kNobody)});
  Add(frames, 1, {end, LtrFields(line, "63", 0xa0, "1"), LtrEgress(ends.near, kNobody)});
  Add(frames, 1,
      {Addresses(ends.bridge, ends.near), BothTags("3"), Pdu(4, 6, 0x20, 6, "8,5,1,0", "16,11,1"),
       kNoChassis, LtrFields(servers.double_tagged().linktrace, "254", 0x20, "1"),
       LtrEgress(ends.near, kNobody), Ingress(ends.bridge, "7631")});
}

/** Without the time stamps that they have; the data are zeros. */
void AddDelays(Frames& frames, const Ends& ends) {
  constexpr const char* kNoTime = "0000000000000000";
  const Fields all = {{"cfm.flags.reserved", "0"}, {"cfm.dmm.dmr.rxtimestampb", kNoTime}};
  const Fields unanswered = {{"cfm.odm.dmm.dmr.rxtimestampf", kNoTime},
                             {"cfm.dmm.dmr.txtimestampb", kNoTime}};
  const auto zeros = [](std::size_t size) {
    return Fields{{"cfm.tlv.data.value", std::string(2 * size, '0')}};
  };
  // A frame has 14 octets before the PDU; this one 4 + 32 fixed ones, 3 + 1 of TLVs, and the data.
  const Fields line = Join({all, CTag("100", "5"), zeros(64 - 54)});
  const Fields pair = Join({all, BothTags("0"), zeros(1000 - 54)});
  Add(frames, 3,
      {Addresses(ends.near, ends.far), line, Pdu(47, 4, 0, 32, "3,0", "10"), unanswered});
  Add(frames, 3, {Addresses(ends.far, ends.near), line, Pdu(46, 4, 0, 32, "3,0", "10")});
  Add(frames, 1,
      {Addresses(ends.near, ends.bridge), pair, Pdu(47, 6, 0, 32, "3,0", "946"), unanswered});
  Add(frames, 1, {Addresses(ends.bridge, ends.near), pair, Pdu(46, 6, 0, 32, "3,0", "946")});
}

void AddAis(Frames& frames, const Ends& ends) {
  const Fields flags = {{"cfm.flags.ais_lck_Period", "6"}, {"cfm.flags.ais_lck_Reserved", "0"}};
  for (const char* vid : {"300", "301"}) {
    Add(frames, 1,
        {Addresses(ends.bridge, "01:80:c2:00:00:35"), CTag(vid, "6"), Pdu(33, 5, 6, 0, "0", ""),
         flags});
  }
}

}  // namespace

std::vector<ExpectedFrames> FramesOf(const EveryFrame& servers) {
  const Ends ends;
  Frames frames;
  AddAllCcms(frames, ends);
  AddAllLoopbacks(frames, ends, servers);
  AddLtms(frames, ends, servers);
  AddLtrs(frames, ends, servers);
  AddDelays(frames, ends);
  AddAis(frames, ends);
  return frames;
}

}  // namespace cfm_mgr::net
