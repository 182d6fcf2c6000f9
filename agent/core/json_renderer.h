/* SPDX-License-Identifier: Apache-2.0 */
// What the agent has to tell, for programs: JSON Lines, as docs/agent-output.md describes them.
#ifndef CFM_AGENT_CORE_JSON_RENDERER_H
#define CFM_AGENT_CORE_JSON_RENDERER_H

#include <string>
#include <vector>

#include "core/renderer.h"

namespace cfm_agent {

class JsonRenderer : public Renderer {
 public:
  // One line each, of ASCII alone.
  std::vector<std::string> Render(const Record& record, WallTime now) const override;
  // Complaints are in place among the rest.
  Stream StreamOf(const Record& /*record*/) const override { return Stream::Output; }
};

}  // namespace cfm_agent

#endif
