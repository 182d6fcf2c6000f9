// SPDX-License-Identifier: Apache-2.0
#include "render.h"

#include "fields.h"

namespace cfm_mgr {
namespace {

void AddLine(std::string& text, const char* label, const std::string& name,
             const std::string& settings) {
  text.append(label).append(" ").append(name).append(": ").append(settings).append("\n");
}

void AddAssociation(std::string& text, const std::string& name, const Association& association) {
  AddLine(text, "  association", Quote(name), ShowFields(association.settings));
  for (const auto& [mep_id, mep] : association.meps) {
    AddLine(text, "    mep", std::to_string(mep_id), ShowFields(mep));
  }
}

}  // namespace

std::string RenderSize(const Tree& tree) {
  const TreeSize size = SizeOf(tree);
  return Plural(size.domains, "domain") + ", " + Plural(size.associations, "association") + ", " +
         Plural(size.meps, "endpoint") + ", " + Plural(size.probes, "probe") + ", " +
         Plural(size.sessions, "session");
}

std::string Render(const Tree& tree) {
  std::string text = RenderSize(tree) + "\n";
  for (const auto& [md_name, domain] : tree.domains) {
    AddLine(text, "domain", Quote(md_name), ShowFields(domain.settings));
    for (const auto& [ma_name, association] : domain.associations) {
      AddAssociation(text, ma_name, association);
    }
  }
  for (const auto& [probe_id, probe] : tree.probes) {
    AddLine(text, "probe", std::to_string(probe_id), ShowFields(probe.settings));
    for (const auto& [session_id, session] : probe.sessions) {
      AddLine(text, "  session", std::to_string(session_id), ShowFields(session));
    }
  }
  return text;
}

}  // namespace cfm_mgr
