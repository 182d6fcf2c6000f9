// SPDX-License-Identifier: Apache-2.0
// What happens to an engine one after the other: ports, associations and probes come, change and
// go; time passes; frames arrive, right ones and any octets; tests are started.
#include <cstdint>

#include "engine_world.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cfm_fuzz::ByteReader input(data, size);
  cfm_fuzz::EngineWorld world;
  while (!input.AtEnd()) world.Step(input);
  return 0;
}
