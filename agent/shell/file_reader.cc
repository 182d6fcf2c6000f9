// SPDX-License-Identifier: Apache-2.0
#include "shell/file_reader.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

#include "core/yaml_tree.h"
#include "shell/unique_fd.h"

namespace cfm_agent {
namespace {

FileText Failure(const std::string& what, int error) {
  return {std::nullopt, what + ": " + std::generic_category().message(error)};
}

}  // namespace

FileText ReadFile(const std::string& path) {
  // Without waiting for the other end, should the path name a pipe.
  const UniqueFd fd(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (fd.get() < 0) {
    return Failure("cannot be opened", errno);
  }
  struct stat status = {};
  if (fstat(fd.get(), &status) != 0) {
    return Failure("cannot be read", errno);
  }
  if (!S_ISREG(status.st_mode)) {
    return {std::nullopt, "is not a regular file"};
  }
  constexpr std::size_t kEnough = YamlLimits{}.text_size + 1;
  std::string text;
  std::array<char, std::size_t{1} << 16U> chunk{};
  while (text.size() < kEnough) {
    const ssize_t count = read(fd.get(), chunk.data(), chunk.size());
    if (count < 0 && errno == EINTR) {
      continue;
    }
    if (count < 0) {
      return Failure("cannot be read", errno);
    }
    if (count == 0) {
      break;
    }
    text.append(chunk.data(), static_cast<std::size_t>(count));
  }
  return {std::move(text), ""};
}

}  // namespace cfm_agent
