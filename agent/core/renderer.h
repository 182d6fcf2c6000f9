/* SPDX-License-Identifier: Apache-2.0 */
// Puts what the agent has to tell into lines, for people or for programs.
#ifndef CFM_AGENT_CORE_RENDERER_H
#define CFM_AGENT_CORE_RENDERER_H

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "core/record.h"

namespace cfm_agent {

using WallTime = std::chrono::system_clock::time_point;

// Where a record goes.
enum class Stream : std::uint8_t { Output, Error };

class Renderer {
 public:
  Renderer() = default;
  Renderer(const Renderer&) = delete;
  Renderer& operator=(const Renderer&) = delete;
  virtual ~Renderer() = default;

  // Lines without their ends; none for a record that is not told. `now` is when it happened.
  virtual std::vector<std::string> Render(const Record& record, WallTime now) const = 0;
  virtual Stream StreamOf(const Record& record) const = 0;
};

}  // namespace cfm_agent

#endif
