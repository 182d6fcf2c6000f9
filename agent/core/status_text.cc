// SPDX-License-Identifier: Apache-2.0
#include "core/status_text.h"

#include <array>
#include <charconv>
#include <cmath>

#include "core/status_words.h"
#include "core/text.h"

namespace cfm_agent {
namespace {

std::string Counted(std::uint64_t number, std::string_view what) {
  return std::to_string(number) + ' ' + std::string(what);
}

Span Prefixed(std::string_view prefix, Span span) {
  span.text = std::string(prefix) + span.text;
  return span;
}

// "10462 / 10636.9 / 10905 us"
std::string Spread(std::uint64_t least, double mean, std::uint64_t greatest) {
  return std::to_string(least) + " / " + Fixed(mean, 1) + " / " + std::to_string(greatest) + " us";
}

}  // namespace

std::string Decimal(double number) {
  std::array<char, 32> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr;
  return {buffer.data(), end};
}

std::string Fixed(double number, int decimals) {
  constexpr double kGreatest = 1e15;  // beyond it, the digits would be of no use
  if (!(std::abs(number) < kGreatest)) {
    return Decimal(number);
  }
  std::array<char, 64> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                 std::chars_format::fixed, decimals)
                       .ptr;
  return {buffer.data(), end};
}

std::string DefectNames(const cfm::local_mep_status& status) {
  std::string names;
  for (const std::string_view defect : DefectsOf(status)) {
    names += (names.empty() ? "" : ", ") + std::string(defect);
  }
  return names;
}

Span DefectsSpan(const cfm::local_mep_status& status) {
  const std::string defects = DefectNames(status);
  if (defects.empty() && status.highest_defect_priority == 0) {
    return {"no defect", Tone::Good};
  }
  return {"defects: " + (defects.empty() ? "none" : defects) +
              " (highest: " + WordFor(kDefectPriorities, status.highest_defect_priority) + ')',
          Tone::Bad};
}

Span StateSpan(const cfm::remote_mep_status& status) {
  constexpr std::uint32_t kFailed = 3;
  constexpr std::uint32_t kOk = 4;
  return {WordFor(kRemoteMepStates, status.fsm_state), status.fsm_state == kOk       ? Tone::Good
                                                       : status.fsm_state == kFailed ? Tone::Bad
                                                                                     : Tone::Plain};
}

Span PortSpan(std::uint32_t port_status) {
  constexpr std::uint32_t kBlocked = 1;
  return {WordFor(kPortStatuses, port_status),
          port_status == kBlocked ? Tone::Doubtful : Tone::Plain};
}

Span InterfaceSpan(std::uint32_t interface_status) {
  constexpr std::uint32_t kUnknown = 0;
  constexpr std::uint32_t kUp = 1;
  const bool usual = interface_status == kUnknown || interface_status == kUp;
  return {WordFor(kInterfaceStatuses, interface_status), usual ? Tone::Plain : Tone::Doubtful};
}

std::vector<Span> RemarksOn(const cfm::local_mep_status& status) {
  std::vector<Span> remarks;
  if (status.block_state != 0) {
    remarks.push_back({"block state " + std::to_string(status.block_state), Tone::Doubtful});
  }
  if (status.shutdown_state != 0) {
    remarks.push_back({"shutdown state " + std::to_string(status.shutdown_state), Tone::Doubtful});
  }
  if (status.rdi) {
    remarks.push_back({"sends RDI", Tone::Doubtful});
  }
  return remarks;
}

std::string Describe(const cfm::local_mep_status& status, const Style& style) {
  std::vector<Span> spans = {{status.mac.to_string()},
                             Prefixed("port ", PortSpan(status.port_state)),
                             Prefixed("interface ", InterfaceSpan(status.intf_status))};
  for (Span& remark : RemarksOn(status)) {
    spans.push_back(std::move(remark));
  }
  spans.push_back(DefectsSpan(status));
  return Join(spans, style);
}

std::string Describe(const cfm::remote_mep_status& status, const Style& style) {
  std::vector<Span> spans = {{status.mac.to_string()},
                             StateSpan(status),
                             Prefixed("port ", PortSpan(status.port_state)),
                             Prefixed("interface ", InterfaceSpan(status.intf_status))};
  if (status.rdi) {
    spans.push_back({"sends RDI", Tone::Doubtful});
  }
  if (!status.sender_id.empty()) {
    spans.push_back({"sender id " + Quoted(status.sender_id)});
  }
  spans.push_back({"since uptime " + std::to_string(status.last_change_uptime) + " ms"});
  return Join(spans, style);
}

std::string Describe(const cfm::DelayMeasurementSessionResult& r, const Style& style) {
  constexpr double kPercent = 100;
  const auto lost = r.s_real_4 > 0 ? Tone::Bad : Tone::Plain;
  std::vector<Span> spans = {
      {WordFor(kSessionEnds, r.s_byte), r.s_byte == 0 ? Tone::Good : Tone::Bad},
      {Counted(r.s_word_4, "sent")},
      {Counted(r.s_word_5, "received")},
      {Fixed(r.s_real_4 * kPercent, 1) + " % lost", lost},
      {Counted(r.s_word_10, "not counted")}};
  if (r.s_word_5 > 0) {
    spans.push_back({"delay " + Spread(r.s_word_6, r.s_real_1, r.s_word_7)});
    spans.push_back({"deviation " + Fixed(r.s_real_2, 1) + " us"});
  }
  if (r.s_word_5 > 1) {
    spans.push_back({"variation " + Spread(r.s_word_8, r.s_real_3, r.s_word_9)});
  }
  spans.push_back(
      {"uptime " + std::to_string(r.s_wide_1) + " to " + std::to_string(r.s_wide_2) + " ms"});
  return "probe " + std::to_string(r.s_word_1) + " session " + std::to_string(r.s_word_2) +
         " run " + std::to_string(r.s_word_3) + ": " + Join(spans, style);
}

}  // namespace cfm_agent
