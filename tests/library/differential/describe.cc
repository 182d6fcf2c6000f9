// SPDX-License-Identifier: Apache-2.0
// Scripts as text.
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include "record_fields.h"
#include "script.h"
#include "wire_text.h"

namespace cfm_test {
namespace {

std::string ValueText(const std::string& value) { return '"' + Printable(value) + '"'; }

template <typename Numbers>
std::string ListText(const Numbers& numbers) {
  std::string text = "[";
  for (const std::uint16_t number : numbers) {
    text += (text.size() > 1 ? " " : "") + std::to_string(number);
  }
  return text + "]";
}

std::string ValueText(const std::vector<std::uint16_t>& values) { return ListText(values); }
std::string ValueText(const std::set<std::uint16_t>& values) { return ListText(values); }

template <typename Value, typename = std::enable_if_t<!std::is_class_v<Value>>>
std::string ValueText(Value value) {
  return std::to_string(static_cast<std::int64_t>(value));
}

template <typename Record>
std::string FieldsText(Record record) {
  std::string text;
  ForEachField(record, [&](const char* name, const auto& field) {
    if (field != std::decay_t<decltype(field)>{}) {
      text += std::string(" ") + name + ":" + ValueText(field);
    }
  });
  return text + "\n";
}

struct StepText {
  std::string operator()(const ServerFound& step) const {
    return "server found, pid " + std::to_string(step.pid) + "\n";
  }

  std::string operator()(const ServerLost& /*step*/) const { return "server lost\n"; }

  std::string operator()(const CacheReply& step) const {
    const std::string fields = Schema::Get().Text("OpCacheSync", step.cache.SerializeAsString());
    const std::string cut =
        step.cut == 0 ? "" : ", without its last " + std::to_string(step.cut) + " octets";
    return "cache reply" + cut + "\n    " + fields + "\n";
  }

  std::string operator()(const cfm::hierarchy& step) const {
    std::string text = "UpdateConfig\n";
    for (const auto& [md_name, md] : step.mds) {
      text += "    MD " + ValueText(md_name) + FieldsText(md);
      for (const auto& [ma_name, ma] : md.mas) {
        text += "      MA " + ValueText(ma_name) + FieldsText(ma);
        for (const auto& [key, mep] : ma.meps) {
          text += "        MEP " + ValueText(key) + FieldsText(mep);
        }
      }
    }
    return text;
  }

  std::string operator()(const cfm::probe& step) const {
    std::string text = "UpdateConfigProbe\n";
    for (const auto& [probe_id, probe] : step.probes) {
      text += "    probe " + ValueText(probe_id) + FieldsText(probe);
      for (const auto& [session_id, session] : probe.sessions) {
        text += "      session " + ValueText(session_id) + FieldsText(session);
      }
    }
    return text;
  }
};

}  // namespace

std::string Describe(const Script& script) {
  std::string text;
  for (std::size_t i = 0; i < script.size(); ++i) {
    text += "  step " + std::to_string(i) + ": " + std::visit(StepText(), script[i]);
  }
  return text;
}

}  // namespace cfm_test
