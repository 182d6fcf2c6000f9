// SPDX-License-Identifier: Apache-2.0
#include <vorx/vorx.h>

#include <array>
#include <cstdlib>

#include "log.h"

namespace cfm {

void RaiseFault(const FaultPoint& point) {
  vorx_print_backtrace();
  std::array<char, 350> text{};
  point.text.copy(text.data(), text.size() - 1);
  vorx_gen_fault(1, point.function, kLogFile.data(), point.line, text.data());
  std::exit(EXIT_FAILURE);
}

}  // namespace cfm
