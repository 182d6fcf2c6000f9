// SPDX-License-Identifier: Apache-2.0
#include "shell/tty.h"

#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace cfm_agent {
namespace {

std::string_view Environment(const char* name) {
  const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe)
  return value == nullptr ? "" : value;
}

bool HasColour(ColourChoice choice) {
  switch (choice) {
    case ColourChoice::Always:
      return true;
    case ColourChoice::Never:
      return false;
    case ColourChoice::Auto:
      break;
  }
  return OutputIsUpdatable() && Environment("NO_COLOR").empty();
}

}  // namespace

bool OutputIsUpdatable() {
  const std::string_view terminal = Environment("TERM");
  return isatty(STDOUT_FILENO) != 0 && !terminal.empty() && terminal != "dumb";
}

std::size_t OutputColumns() {
  constexpr std::size_t kUsual = 80;
  winsize size = {};
  return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsual;
}

Style OutputStyle(ColourChoice choice) {
  return {HasColour(choice), std::string_view(nl_langinfo(CODESET)) == "UTF-8"};
}

}  // namespace cfm_agent
