// SPDX-License-Identifier: Apache-2.0
#include "engine/mip_table.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace cfm_mgr::engine {

const Mip* MipTable::Find(PortId port, std::uint16_t vid) {
  if (!valid_) Rebuild();
  const auto mips = mips_.find(port);
  if (mips == mips_.end()) return nullptr;
  const auto mip = mips->second.find(vid);
  return mip == mips->second.end() ? nullptr : &mip->second;
}

void MipTable::Rebuild() {
  valid_ = true;
  mips_.clear();
  std::vector<MipAssociation> associations;
  for (const auto& entry : meps_.associations()) {
    associations.push_back(DescribeForMips(entry.second.domain, entry.second.association));
  }
  const bool wanted = std::any_of(
      associations.begin(), associations.end(),
      [](const MipAssociation& association) { return association.creation != MhfCreation::None; });
  if (!wanted) return;
  for (const auto& entry : meps_.ports()) {
    Mips mips = FindMips(entry.first, associations);
    if (!mips.empty()) mips_[entry.first] = std::move(mips);
  }
}

}  // namespace cfm_mgr::engine
