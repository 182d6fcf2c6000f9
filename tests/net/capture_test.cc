// SPDX-License-Identifier: Apache-2.0
// What an independent analyser reads in the frames on a wire: every field that it knows of every
// frame, against what the servers are configured for and asked to do.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <utility>

#include "expected_frames.h"

namespace cfm_mgr::net {
namespace {

using testing::IsEmpty;

constexpr const char* kRdi = "cfm.flags.rdi";
constexpr const char* kTxF = "cfm.odm.dmm.dmr.txtimestampf";
constexpr const char* kRxF = "cfm.odm.dmm.dmr.rxtimestampf";
constexpr const char* kTxB = "cfm.dmm.dmr.txtimestampb";

// What the analyser may find in PDUs of the opcodes that servers send.
const std::vector<std::string> kFields = {
    "eth.src", "eth.dst", "ieee8021ad.id", "ieee8021ad.priority", "ieee8021ad.dei", "vlan.id",
    "vlan.priority", "vlan.dei", "cfm.md.level", "cfm.version", "cfm.opcode", "cfm.flags",
    "cfm.first.tlv.offset",
    // CCM
    "cfm.flags.rdi", "cfm.flags.ccm.reserved", "cfm.flags.interval", "cfm.ccm.seq.num",
    "cfm.ccm.ma.ep.id", "cfm.maid.md.name.format", "cfm.maid.md.name.length",
    "cfm.maid.md.name.string", "cfm.maid.md.name.hex", "cfm.maid.md.name.mac",
    "cfm.maid.md.name.mac.id", "cfm.maid.ma.name.format", "cfm.maid.ma.name.length",
    "cfm.maid.ma.name.string", "cfm.maid.ma.name.hex", "cfm.itu.txfcf", "cfm.itu.rxfcb",
    "cfm.itu.txfcb", "cfm.itu.reserved",
    // LBM, LBR, LTM, LTR
    "cfm.lb.transaction.id", "cfm.flags.usefdbonly", "cfm.flags.ltm.reserved",
    "cfm.lt.transaction.id", "cfm.lt.ttl", "cfm.ltm.orig.addr", "cfm.ltm.targ.addr",
    "cfm.flags.fwdyes", "cfm.flags.ltr.terminalmep", "cfm.flags.ltr.reserved",
    "cfm.ltr.relay.action",
    // AIS, DMM, DMR
    "cfm.flags.ais_lck_Reserved", "cfm.flags.ais_lck_Period", "cfm.flags.reserved", kTxF, kRxF,
    kTxB, "cfm.dmm.dmr.rxtimestampb",
    // TLVs
    "cfm.tlv.type", "cfm.tlv.length", "cfm.tlv.chassis.id.length", "cfm.tlv.chassis.id.subtype",
    "cfm.tlv.chassis.id", "cfm.tlv.ma.domain.length", "cfm.tlv.ma.domain",
    "cfm.tlv.management.addr.length", "cfm.tlv.management.addr", "cfm.tlv.port.status.value",
    "cfm.tlv.data.value", "cfm.tlv.port.interface.value", "cfm.tlv.reply.ingress.action",
    "cfm.tlv.reply.ingress.mac.address", "cfm.tlv.reply.ing.egr.portid.length",
    "cfm.tlv.reply.ing.egr.portid.subtype", "cfm.tlv.reply.ing.egr.portid",
    "cfm.tlv.reply.egress.action", "cfm.tlv.reply.egress.mac.address", "cfm.tlv.ltm.egress.id.mac",
    "cfm.tlv.ltm.egress.id.ui", "cfm.tlv.ltr.egress.last.id.mac", "cfm.tlv.ltr.egress.last.id.ui",
    "cfm.tlv.ltr.egress.next.id.mac", "cfm.tlv.ltr.egress.next.id.ui", "cfm.tlv.org.spec.oui"};

class CaptureTest : public WireTest {
 protected:
  void SetUp() override {
    if (!Capture::IsPossible()) {
      GTEST_SKIP() << "there is no tshark(1) and dumpcap(1) to decode frames with: install tshark";
    }
    WireTest::SetUp();
    if (IsSkipped() || HasFatalFailure()) return;
    AddPair("w0", "w1");
    Ip("link add br0 type bridge");
    Ip("link set v1 master br0");
    Ip("link set w0 master br0");
    SetUpAndWait("br0");
  }
};

std::string ValueOf(const Fields& frame, const std::string& field) {
  const auto found = frame.find(field);
  return found == frame.end() ? "-" : found->second;
}

std::vector<std::string> ValuesOf(const Fields& frame, const std::vector<std::string>& fields) {
  std::vector<std::string> values;
  for (const std::string& field : fields) values.push_back(ValueOf(frame, field));
  return values;
}

/** What a sequence of frames has in common, and what tells those frames apart that vary in it. */
std::vector<std::string> StreamOf(const Fields& frame) {
  return ValuesOf(frame, {"cfm.opcode", "eth.src", "vlan.id"});
}
bool IsMeant(const Fields& frame, const Fields& expected) {
  const std::vector<std::string> variants = {kRdi, "cfm.lt.ttl"};
  return StreamOf(frame) == StreamOf(expected) &&
         ValuesOf(frame, variants) == ValuesOf(expected, variants);
}

/** "field: read, not expected" for every field that differs. */
std::vector<std::string> Differences(const Fields& read, const Fields& expected) {
  std::vector<std::string> differences;
  for (const std::string& field : kFields) {
    const std::string is = ValueOf(read, field);
    const std::string should_be = ValueOf(expected, field);
    if (is != should_be) differences.push_back(field + ": " + is + ", not " + should_be);
  }
  return differences;
}

void Compare(const std::vector<Fields>& read, const std::vector<ExpectedFrames>& expected) {
  std::map<std::vector<std::string>, std::size_t> before;
  std::vector<std::size_t> counts(expected.size());
  for (const Fields& frame : read) {
    const std::size_t number = before[StreamOf(frame)]++;
    const auto meant = std::find_if(
        expected.begin(), expected.end(),
        [&](const ExpectedFrames& candidate) { return IsMeant(frame, candidate.frame(number)); });
    if (meant == expected.end()) {
      ADD_FAILURE() << "nobody should send " << testing::PrintToString(frame);
      continue;
    }
    ++counts[static_cast<std::size_t>(meant - expected.begin())];
    EXPECT_THAT(Differences(frame, meant->frame(number)), IsEmpty())
        << "in frame " << number + 1 << " of opcode " << ValueOf(frame, "cfm.opcode");
  }
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const auto [frame, count] = expected[i];
    const bool right = count == 0 ? counts[i] > 0 : counts[i] == count;
    EXPECT_TRUE(right) << counts[i] << " frames like " << testing::PrintToString(frame(0));
  }
}

/** The time stamps of a DMM or DMR; those that it does not have are 0. */
struct Stamps {
  engine::Time tx_f{};
  engine::Time rx_f{};
  engine::Time tx_b{};
};

engine::Time Parse(const std::string& octets) {
  constexpr std::size_t kDigits = 8;
  EXPECT_EQ(octets.size(), 2 * kDigits);
  const auto seconds = std::strtoul(octets.substr(0, kDigits).c_str(), nullptr, 16);
  const auto nanoseconds = std::strtoul(octets.substr(kDigits).c_str(), nullptr, 16);
  EXPECT_LT(nanoseconds, 1'000'000'000U);
  return std::chrono::seconds(seconds) + std::chrono::nanoseconds(nanoseconds);
}

/** Takes the time stamps that are not 0 out of what is compared with other frames. */
Stamps TakeStamps(Fields& frame) {
  const auto take = [&frame](const char* field) {
    const auto found = frame.find(field);
    if (found == frame.end() || Parse(found->second).count() == 0) return engine::Time{};
    return Parse(frame.extract(found).mapped());
  };
  return {take(kTxF), take(kRxF), take(kTxB)};
}

/** By VLAN and opcode. */
using StampsOf = std::map<std::pair<std::string, std::string>, std::vector<Stamps>>;

StampsOf TakeAllStamps(std::vector<Fields>& frames) {
  StampsOf stamps;
  for (Fields& frame : frames) {
    if (frame.count(kTxF) == 0) continue;
    stamps[{ValueOf(frame, "vlan.id"), ValueOf(frame, "cfm.opcode")}].push_back(TakeStamps(frame));
  }
  return stamps;
}

// Both ends of the wire have the same clock.
void CheckOrder(const std::vector<Stamps>& dmms, const std::vector<Stamps>& dmrs,
                const EveryFrame& servers) {
  ASSERT_EQ(dmms.size(), dmrs.size());
  engine::Time least = servers.begin();
  for (std::size_t i = 0; i < dmms.size(); ++i) {
    EXPECT_GE(dmms[i].tx_f, least);
    EXPECT_EQ(dmrs[i].tx_f, dmms[i].tx_f);
    EXPECT_GE(dmrs[i].rx_f, dmrs[i].tx_f);
    EXPECT_GE(dmrs[i].tx_b, dmrs[i].rx_f);
    EXPECT_LE(dmrs[i].tx_b, servers.end());
    least = dmms[i].tx_f + std::chrono::nanoseconds(1);
  }
}

// A remote MEP that was never there is missed once and for all.
void CheckThatRdiStays(const std::vector<Fields>& frames) {
  std::vector<std::string> rdi;
  for (const Fields& frame : frames) {
    if (ValueOf(frame, "cfm.ccm.ma.ep.id") == "8191") rdi.push_back(ValueOf(frame, kRdi));
  }
  EXPECT_TRUE(std::is_sorted(rdi.begin(), rdi.end())) << testing::PrintToString(rdi);
}

TEST_F(CaptureTest, AnAnalyserReadsInEveryFrameWhatItWasToSay) {
  Capture capture("v0");
  EveryFrame servers;
  EXPECT_TRUE(servers.Run());
  ASSERT_NO_FATAL_FAILURE(capture.Finish());

  EXPECT_THAT(capture.Decode("_ws.malformed", {"frame.number", "cfm.opcode"}), IsEmpty());
  std::vector<Fields> frames = capture.Decode("cfm", kFields);
  StampsOf stamps = TakeAllStamps(frames);
  for (const char* vid : {"100", "30"}) {
    CheckOrder(stamps[{vid, "47"}], stamps[{vid, "46"}], servers);
  }
  CheckThatRdiStays(frames);
  Compare(frames, FramesOf(servers));
}

}  // namespace
}  // namespace cfm_mgr::net
