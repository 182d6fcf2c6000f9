// SPDX-License-Identifier: Apache-2.0
#include "engine/mep_index.h"

#include <algorithm>
#include <tuple>

namespace cfm_mgr::engine {
namespace {

constexpr unsigned kVidBits = 12;
constexpr unsigned kVidMask = 0xfff;

std::uint64_t Key(PortId port, ServiceTags service) {
  const std::uint64_t outer = service.vid & kVidMask;
  const std::uint64_t inner = service.inner_vid & kVidMask;
  return (static_cast<std::uint64_t>(port) << (2 * kVidBits)) | (outer << kVidBits) | inner;
}

std::vector<LocalMep*>& Facing(MepStack& stack, Side side) {
  return side == Side::Wire ? stack.wire : stack.relay;
}

/** MEPs of one level should not meet; the first by name has the precedence when they do. */
bool IsBefore(const LocalMep* a, const LocalMep* b) {
  return std::tie(a->settings().level, a->settings().key) <
         std::tie(b->settings().level, b->settings().key);
}

}  // namespace

void MepIndex::Insert(LocalMep& mep) {
  const MepSettings& settings = mep.settings();
  for (const std::uint16_t vid : settings.vids) {
    MepStack& stack = stacks_[Key(settings.port, {vid, settings.service.inner_vid})];
    std::vector<LocalMep*>& meps = Facing(stack, settings.side);
    meps.insert(std::upper_bound(meps.begin(), meps.end(), &mep, IsBefore), &mep);
  }
}

void MepIndex::Erase(const LocalMep& mep) {
  const MepSettings& settings = mep.settings();
  for (const std::uint16_t vid : settings.vids) {
    const auto found = stacks_.find(Key(settings.port, {vid, settings.service.inner_vid}));
    if (found == stacks_.end()) continue;
    std::vector<LocalMep*>& meps = Facing(found->second, settings.side);
    meps.erase(std::remove(meps.begin(), meps.end(), &mep), meps.end());
    if (found->second.wire.empty() && found->second.relay.empty()) stacks_.erase(found);
  }
}

const MepStack* MepIndex::Find(PortId port, ServiceTags service) const {
  const auto found = stacks_.find(Key(port, service));
  return found == stacks_.end() ? nullptr : &found->second;
}

}  // namespace cfm_mgr::engine
