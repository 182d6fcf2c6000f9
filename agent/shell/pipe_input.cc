// SPDX-License-Identifier: Apache-2.0
#include "shell/pipe_input.h"

#include <unistd.h>

#include <array>
#include <cerrno>

namespace cfm_agent {
namespace {

// A longer line is no command; it is cut rather than kept.
constexpr std::size_t kLongestLine = std::size_t{1} << 16U;

}  // namespace

std::vector<std::string> PipeInput::Read() {
  std::array<char, 4096> chunk{};
  const ssize_t size = read(fd_, chunk.data(), chunk.size());
  if (size < 0 && (errno == EINTR || errno == EAGAIN)) {
    return {};
  }
  std::vector<std::string> lines;
  for (ssize_t i = 0; i < size; ++i) {
    const char c = chunk[static_cast<std::size_t>(i)];
    if (c == '\n') {
      lines.push_back(std::move(rest_));
      rest_.clear();
    } else if (rest_.size() < kLongestLine) {
      rest_ += c;
    }
  }
  if (size <= 0) {
    End();
    if (!rest_.empty()) {
      lines.push_back(std::move(rest_));
    }
  }
  return lines;
}

}  // namespace cfm_agent
