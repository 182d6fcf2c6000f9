// SPDX-License-Identifier: Apache-2.0
#include "net/packet/packet_filter.h"

#include "engine/frame.h"
#include "net/frame_codec.h"

namespace cfm_mgr::net {
namespace {

constexpr std::uint32_t kEtherTypeAt = 12;
constexpr std::uint32_t kTagSize = 4;
constexpr std::uint32_t kWholeFrame = 0xffffffff;

// Instructions for one EtherType: load it; CFM's is accepted; behind a tag the next one is looked
// at; all else is refused.
constexpr std::size_t kStepSize = 4;

}  // namespace

std::vector<sock_filter> CfmFilter() {
  const auto load = static_cast<std::uint16_t>(BPF_LD | BPF_H | BPF_ABS);
  const auto jump_if_equal = static_cast<std::uint16_t>(BPF_JMP | BPF_JEQ | BPF_K);
  const auto give_back = static_cast<std::uint16_t>(BPF_RET | BPF_K);
  constexpr std::size_t kRefuseAt = (kMaxTags + 1) * kStepSize;
  std::vector<sock_filter> program;
  for (std::uint32_t tags = 0; tags <= kMaxTags; ++tags) {
    const auto at = program.size();
    const auto to_refuse = static_cast<std::uint8_t>(kRefuseAt - (at + kStepSize));
    const auto to_accept = static_cast<std::uint8_t>(kRefuseAt + 1 - (at + 2));
    // Behind the last tag that may be there, a further one is as wrong as anything else.
    const bool may_go_on = tags < kMaxTags;
    const auto past_next = static_cast<std::uint8_t>(may_go_on ? 1 : to_refuse + 1);
    const auto to_next = static_cast<std::uint8_t>(may_go_on ? 0 : to_refuse);
    program.push_back({load, 0, 0, kEtherTypeAt + tags * kTagSize});
    program.push_back({jump_if_equal, to_accept, 0, engine::kCfmEtherType});
    program.push_back({jump_if_equal, past_next, 0, kCustomerTag});
    program.push_back({jump_if_equal, to_next, to_refuse, kServiceTag});
  }
  program.push_back({give_back, 0, 0, 0});
  program.push_back({give_back, 0, 0, kWholeFrame});
  return program;
}

}  // namespace cfm_mgr::net
