// SPDX-License-Identifier: Apache-2.0
#include "every_frame.h"

#include <gtest/gtest.h>

namespace cfm_mgr::net {
namespace {

// Numbers of the MIB.
constexpr std::int32_t kNoName = 1;
constexpr std::int32_t kMacName = 3;
constexpr std::int32_t kTextName = 4;
constexpr std::int32_t kTextMa = 2;
constexpr std::int32_t kNumberMa = 3;
constexpr std::int32_t kIccMa = 32;
constexpr std::int32_t kOneSecond = 4;
constexpr std::int32_t kTenSeconds = 5;
constexpr std::int32_t kOneMinute = 6;
constexpr std::int32_t kNoSenderId = 1;
constexpr std::int32_t kChassis = 2;
constexpr std::int32_t kManagement = 3;
constexpr std::int32_t kNoMhf = 1;
constexpr std::int32_t kDefaultMhf = 2;
constexpr std::uint32_t kOk = 4;

/** An association of one endpoint, or of none. */
struct Service {
  MaKey key;
  DomainSettings domain;
  AssociationSettings settings;

  void ConfigureAt(Node& node) const { SetAt(node, {settings, {}}); }

  void ConfigureAt(Node& node, std::uint32_t mep_id, const std::string& interface, Mep mep) const {
    mep.ifindex = IndexOf(interface);
    mep.admin_state = true;
    mep.lowest_prio_defect = 1;
    SetAt(node, {settings, {{mep_id, mep}}});
  }

 private:
  void SetAt(Node& node, const Association& association) const {
    const engine::Time now = MonotonicNow();
    node.network.Advance(now);
    node.network.engine().SetAssociation(now, key, domain, association);
  }
};

Mep DownMep(bool sends_ccms, std::uint32_t priority = 0, std::uint32_t inner_vid = 0) {
  Mep mep;
  mep.direction = kDown;
  mep.ccm_enabled = sends_ccms;
  mep.ccm_priority = priority;
  mep.inner_vid = inner_vid;
  return mep;
}

Mep UpMep() {
  Mep mep = DownMep(false);
  mep.direction = kUp;
  return mep;
}

const MaKey kSingleTagged = {"example", "line"};
const MaKey kDoubleTagged = {"02:00:00:00:00:fe/4660", "513"};
const MepKey kLonely = {{"", "ICC123UMC0001"}, 8191};
const MepKey kAlarmed = {{"alarm", "client"}, 1};

void ConfigureAll(Node& near, Node& bridge, Node& far) {
  const Service line = {kSingleTagged,
                        {kTextName, 4, kChassis, kDefaultMhf},
                        {kTextMa, {100}, kTenSeconds, {1, 2}, kChassis, kDefaultMhf, {}}};
  line.ConfigureAt(near, 1, "v0", DownMep(true, 7));
  line.ConfigureAt(bridge);
  line.ConfigureAt(far, 2, "w1", DownMep(true, 7));

  const Service pair = {kDoubleTagged,
                        {kMacName, 6, kManagement, kNoMhf},
                        {kNumberMa, {200}, kOneMinute, {1, 2}, kManagement, kNoMhf, {}}};
  pair.ConfigureAt(near, 1, "v0", DownMep(true, 3, 30));
  pair.ConfigureAt(bridge, 2, "v1", DownMep(true, 3, 30));

  const Service lonely = {
      kLonely.ma,
      {kNoName, 1, kNoSenderId, kNoMhf},
      {kIccMa, {}, kHundredMilliseconds, {1, kLonely.mep_id}, kNoSenderId, kNoMhf, {}}};
  lonely.ConfigureAt(near, kLonely.mep_id, "v0", DownMep(true));

  const Ais ais = {true, 5, static_cast<std::uint32_t>(kOneMinute), 6, {300, 301}, false};
  const Service alarming = {
      {"alarm", "server"},
      {kTextName, 2, kNoSenderId, kNoMhf},
      {kTextMa, {300}, kHundredMilliseconds, {1, 2}, kNoSenderId, kNoMhf, ais}};
  alarming.ConfigureAt(bridge, 1, "v1", UpMep());

  const Service alarmed = {kAlarmed.ma,
                           {kTextName, 5, kNoSenderId, kNoMhf},
                           {kTextMa, {300}, kOneSecond, {1}, kNoSenderId, kNoMhf, {}}};
  alarmed.ConfigureAt(near, kAlarmed.mep_id, "v0", DownMep(false));
}

bool Sees(Node& node, const MaKey& ma) {
  const auto status = node.network.engine().RemoteStatus({ma, 1}, 2);
  return status && status->state == kOk;
}

}  // namespace

EveryFrame::EveryFrame() : near_({"v0"}), bridge_({"v1", "w0"}), far_({"w1"}) {
  ConfigureAll(near_, bridge_, far_);
}

struct EveryFrame::Parameters {
  std::uint32_t lbms = 0;
  std::uint32_t lbm_data = 0;
  std::uint32_t ttl = 0;
  bool use_fdb_only = false;
  std::uint32_t dmms = 0;
  std::uint32_t dmm_size = 0;
  std::uint8_t dmm_priority = 0;
};

bool EveryFrame::Run() {
  const std::vector<Node*> all = {&near_, &bridge_, &far_};
  const auto both_are_seen = [this] {
    return Sees(near_, kSingleTagged) && Sees(near_, kDoubleTagged);
  };
  if (!RunUntil(all, both_are_seen)) return false;
  begin_ = MonotonicNow();
  near_.network.Advance(begin_);
  single_tagged_ = Start(kSingleTagged, {3, 1000, 64, true, 3, 64, 5});
  double_tagged_ = Start(kDoubleTagged, {1, 0, 255, false, 1, 1000, 0});
  const bool done = RunUntil(all, [this] { return HasEverything(); });
  end_ = MonotonicNow();
  return done;
}

EveryFrame::Tests EveryFrame::Start(const MaKey& ma, const Parameters& parameters) {
  constexpr std::uint32_t kRequest = 1;
  constexpr std::uint32_t kDelayInterval = 10;
  auto& engine = near_.network.engine();
  const MepKey mep{ma, 1};
  const auto loopback =
      engine.StartLoopback(begin_, {kRequest, mep, 2, parameters.lbms, parameters.lbm_data});
  const auto linktrace =
      engine.StartLinktrace(begin_, {kRequest, mep, 2, parameters.ttl, parameters.use_fdb_only});
  const auto delay =
      engine.StartDelayMeasurement(begin_, {kRequest, mep, 2, parameters.dmms, kDelayInterval,
                                            parameters.dmm_size, parameters.dmm_priority});
  EXPECT_FALSE(loopback.error || linktrace.error || delay.error);
  return {loopback.transaction_id, linktrace.transaction_id};
}

bool EveryFrame::HasEverything() {
  // The MIP answers the single-tagged linktrace, and MEP 2 twice: the LTM that the MIP passes on,
  // and the one that the kernel's bridge takes past it.
  constexpr std::size_t kLinktraceReplies = 4;
  constexpr int kLoopbackReplies = 4;
  constexpr int kDelayReplies = 4;
  // The last of them comes long after the first 3.5 intervals.
  constexpr std::uint64_t kLonelyCcms = 8;
  const RecordingNotifications& notified = near_.notifications;
  const engine::Engine& engine = near_.network.engine();
  return notified.linktrace_replies.size() >= kLinktraceReplies &&
         notified.loopback_replies >= kLoopbackReplies && notified.delay_replies >= kDelayReplies &&
         engine.Counters(kLonely)->ccms_sent >= kLonelyCcms &&
         engine.LocalStatus(kAlarmed)->defect_ais;
}

}  // namespace cfm_mgr::net
