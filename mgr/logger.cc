// SPDX-License-Identifier: Apache-2.0
#include "logger.h"

#include <zlog.h>

#include <array>
#include <chrono>
#include <ctime>
#include <iostream>
#include <string_view>

namespace cfm_mgr {
namespace {

constexpr int kTraceLevel = 10;

/** Local time as `2024-05-31 10:00:00.123`. */
std::string Now() {
  using std::chrono::milliseconds;
  using std::chrono::system_clock;
  constexpr std::size_t kMaxSize = 64;
  const auto now = system_clock::now();
  const std::time_t seconds = system_clock::to_time_t(now);
  const auto since = std::chrono::duration_cast<milliseconds>(now.time_since_epoch());
  std::tm time{};
  localtime_r(&seconds, &time);
  std::array<char, kMaxSize> text{};
  const std::size_t size = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &time);
  constexpr int kThousand = 1000;
  const auto fraction = static_cast<int>(since.count() % kThousand);
  return std::string(text.data(), size) + '.' + std::to_string(kThousand + fraction).substr(1);
}

}  // namespace

void Logger::Write(const std::string& line) const {
  if (category_ == nullptr) {
    // In one piece, so that lines of other writers do not come in between.
    std::cerr << Now() + " " + line + "\n";
    return;
  }
  constexpr std::string_view kFile = "logger.cc";
  constexpr std::string_view kFunction = "Write";
  zlog(category_, kFile.data(), kFile.size(), kFunction.data(), kFunction.size(), __LINE__,
       kTraceLevel, "%s", line.c_str());
}

}  // namespace cfm_mgr
