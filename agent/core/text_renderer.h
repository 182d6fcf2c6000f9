/* SPDX-License-Identifier: Apache-2.0 */
// What the agent has to tell, for people.
#ifndef CFM_AGENT_CORE_TEXT_RENDERER_H
#define CFM_AGENT_CORE_TEXT_RENDERER_H

#include <string>
#include <vector>

#include "core/renderer.h"
#include "core/style.h"

namespace cfm_agent {

class TextRenderer : public Renderer {
 public:
  explicit TextRenderer(const Style& style) : style_(style) {}

  std::vector<std::string> Render(const Record& record, WallTime now) const override;
  // Complaints are apart from everything else, and without colour.
  Stream StreamOf(const Record& record) const override;

 private:
  Style style_;
};

}  // namespace cfm_agent

#endif
