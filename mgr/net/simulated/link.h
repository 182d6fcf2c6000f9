/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_MGR_NET_SIMULATED_LINK_H
#define CFM_MGR_NET_SIMULATED_LINK_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "engine/time.h"
#include "net/simulated/description.h"
#include "net/simulated/random.h"

namespace cfm_mgr::net {

/** What chance and time do to the frames of one link. */
class Link {
 public:
  explicit Link(const LinkQuality& quality) : quality_(quality) {}

  /** When a frame that leaves end 0 or 1 now arrives at the other; none when it gets lost. */
  std::optional<engine::Time> Carry(engine::Time now, std::size_t from_end, Random& random);

  /** A cut loses what is under way. */
  void SetUp(bool up);
  bool up() const { return up_; }

  void SetQuality(const LinkQuality& quality) { quality_ = quality; }

  /** Cuts so far: a frame that left before the last one does not arrive. */
  std::uint32_t cuts() const { return cuts_; }

 private:
  LinkQuality quality_;
  bool up_ = true;
  std::uint32_t cuts_ = 0;
  std::array<engine::Time, 2> last_arrivals_{};
};

}  // namespace cfm_mgr::net

#endif
