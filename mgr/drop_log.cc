// SPDX-License-Identifier: Apache-2.0
#include "drop_log.h"

#include "fields.h"

namespace cfm_mgr {
namespace {

std::string Describe(const net::DropCount& count, std::uint64_t told) {
  std::string line =
      "interface " + count.interface + ": " + Plural(count.frames, "frame") + " dropped";
  if (told != 0)
    line += ", " + std::to_string(count.frames - told) + " of them since the last record";
  return line + ": " + count.reason;
}

}  // namespace

bool DropLog::ShouldLook(Clock::time_point now) {
  if (last_look_ && now < *last_look_ + kPause) {
    due_ = *last_look_ + kPause;
    return false;
  }
  last_look_ = now;
  due_.reset();
  return true;
}

std::vector<std::string> DropLog::TakeNews(Clock::time_point now,
                                           const std::vector<net::DropCount>& counts) {
  std::vector<std::string> lines;
  for (const net::DropCount& count : counts) {
    Told& told = told_[{count.interface, count.reason}];
    // The counters of an interface that was away begin anew.
    if (count.frames < told.frames) told = {};
    const bool is_first = told.frames == 0;
    if (count.frames == told.frames || (!is_first && now < told.when + kRepeat)) continue;
    lines.push_back(Describe(count, told.frames));
    told = {now, count.frames};
  }
  return lines;
}

std::vector<std::string> DescribeDrops(const std::vector<net::DropCount>& counts) {
  if (counts.empty()) return {"no frames dropped"};
  std::vector<std::string> lines;
  lines.reserve(counts.size());
  for (const net::DropCount& count : counts) lines.push_back(Describe(count, 0));
  return lines;
}

}  // namespace cfm_mgr
