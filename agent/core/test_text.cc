// SPDX-License-Identifier: Apache-2.0
#include "core/test_text.h"

#include <algorithm>
#include <cmath>

#include "core/chart.h"
#include "core/path_text.h"
#include "core/status_text.h"
#include "core/table.h"
#include "core/text.h"

namespace cfm_agent {
namespace {

using Side = Column::Side;
using Lines = std::vector<std::string>;
using std::chrono::microseconds;

constexpr std::size_t kFewestGaps = 2;  // that make a histogram

std::string Numbered(std::uint64_t number, std::string_view what) {
  return std::to_string(number) + std::string(what);
}

std::vector<Span> SpreadRow(const char* name, const DelayResult::Spread& spread, bool known) {
  const auto cell = [known](double number) { return Span{known ? Fixed(number, 3) : "-"}; };
  return {{name}, cell(spread.least), cell(spread.mean), cell(spread.greatest)};
}

// Microseconds as milliseconds, with the decimals that a step of this size needs.
std::string Milliseconds(microseconds time, microseconds step) {
  constexpr double kThousand = 1000;
  const int decimals = step.count() % 1000 == 0 ? 0 : step.count() % 100 == 0 ? 1 : 3;
  return Fixed(static_cast<double>(time.count()) / kThousand, decimals);
}

// The server tells no single delay: what can be drawn is how the replies followed each other.
Lines GapLines(const std::vector<Duration>& replies, const Style& style) {
  std::vector<microseconds> gaps;
  for (std::size_t i = 1; i < replies.size(); ++i) {
    gaps.push_back(std::chrono::duration_cast<microseconds>(replies[i] - replies[i - 1]));
  }
  if (gaps.size() < kFewestGaps) {
    return {};
  }
  const std::vector<Bin> bins = Histogram(gaps);
  const auto most = std::max_element(bins.begin(), bins.end(), [](const Bin& a, const Bin& b) {
                      return a.count < b.count;
                    })->count;
  Table table({{"BETWEEN REPLIES", Side::Right}, {"COUNT", Side::Right}, {""}});
  for (const Bin& bin : bins) {
    const microseconds step = bin.to - bin.from;
    table.Add({{Milliseconds(bin.from, step) + " - " + Milliseconds(bin.to, step) + " ms"},
               {std::to_string(bin.count)},
               {Bar(bin.count, most, style)}});
  }
  return table.Lines(2, style);
}

Lines DelayLines(const Findings& findings, const Style& style) {
  if (!findings.delay) {
    return {};
  }
  const DelayResult& result = *findings.delay;
  Table table({{"MICROSECONDS"},
               {"LEAST", Side::Right},
               {"MEAN", Side::Right},
               {"GREATEST", Side::Right},
               {""}});
  const auto add = [&](const char* name, const DelayResult::Spread& spread, bool known) {
    auto row = SpreadRow(name, spread, known);
    row.push_back({known ? RangeBar(spread.least, spread.mean, spread.greatest, style) : ""});
    table.Add(std::move(row));
  };
  add("delay", result.delay, HasDelay(result));
  add("variation", result.variation, HasVariation(result));
  Lines lines = table.Lines(2, style);
  Append(lines, GapLines(findings.replies, style));
  return lines;
}

Lines StatisticsLines(const Findings& findings, const Style& style) {
  Table local({{"DOMAIN"},
               {"ASSOCIATION"},
               {"MEP", Side::Right},
               {"CCMS SENT", Side::Right},
               {"LAST NUMBER SENT", Side::Right},
               {"OUT OF SEQUENCE", Side::Right}});
  for (const auto& [mep, stats] : findings.local) {
    local.Add({{AsWord(mep.md)},
               {AsWord(mep.ma)},
               {std::to_string(mep.id)},
               {std::to_string(stats.ccm_tx_total)},
               {std::to_string(stats.ccm_tx_seq_number)},
               {std::to_string(stats.ccm_rx_seq_errors),
                stats.ccm_rx_seq_errors == 0 ? Tone::Plain : Tone::Bad}});
  }
  Table remote({{"DOMAIN"},
                {"ASSOCIATION"},
                {"MEP", Side::Right},
                {"REMOTE MEP", Side::Right},
                {"LAST NUMBER RECEIVED", Side::Right}});
  for (const auto& [mep, id, stats] : findings.remote) {
    remote.Add({{AsWord(mep.md)},
                {AsWord(mep.ma)},
                {std::to_string(mep.id)},
                {std::to_string(id)},
                {std::to_string(stats.last_ccm_seq_number)}});
  }
  Lines lines;
  for (const Table& table : {local, remote}) {
    if (!table.empty()) {
      Append(lines, table.Lines(2, style));
    }
  }
  return lines;
}

std::string LoopbackText(const LoopbackResult& result, const Style& style) {
  const auto tone = [](bool good, Tone otherwise) { return good ? Tone::Good : otherwise; };
  return Join({{std::to_string(result.in_order) + " of " +
                    Count(result.expected, "expected reply", "expected replies") + " in order",
                tone(result.in_order >= result.expected, Tone::Bad)},
               {Numbered(result.out_of_order, " out of order"),
                result.out_of_order == 0 ? Tone::Plain : Tone::Doubtful},
               {Numbered(result.wrong_payload, " with a wrong payload"),
                result.wrong_payload == 0 ? Tone::Plain : Tone::Bad}},
              style);
}

std::string DelayText(const DelayResult& result, const Style& style) {
  const bool all = result.received >= result.sent;
  std::vector<Span> spans = {
      {Numbered(result.sent, " sent")},
      {Numbered(result.received, " received"), all ? Tone::Good : Tone::Bad}};
  if (!all) {
    spans.push_back({Numbered(result.sent - result.received, " lost"), Tone::Bad});
  }
  spans.push_back({Numbered(result.not_counted, " not counted")});
  return Join(spans, style);
}

// What the end of a test says beyond its reason.
std::string EndText(const TestResult& result, const Style& style) {
  const Findings& findings = result.findings;
  if (findings.loopback) {
    return ", " + LoopbackText(*findings.loopback, style);
  }
  if (findings.delay) {
    return ", " + DelayText(*findings.delay, style);
  }
  const bool linktrace = result.end.test.kind == TestKind::Linktrace;
  if ((linktrace && result.end.reason == EndReason::Complete) || result.end.test.replies > 0) {
    return ", " + Count(result.end.test.replies, "reply", "replies");
  }
  return "";
}

std::string ReasonText(const TestResult& result) {
  return result.stopped ? "the agent stopped before its end" : Describe(result.end);
}

}  // namespace

Lines TextOf(const TestStarted& started) {
  return {Describe(started.test) + ": started towards " + started.target.to_string() +
          (started.value ? ", value " + std::to_string(*started.value) : "")};
}

Lines TextOf(const TestResult& result, const Style& style) {
  const Test& test = result.end.test;
  const Findings& findings = result.findings;
  Lines lines = DrawPath(test, PathOf(findings.hops, findings.plan.ttl), style);
  Append(lines, DelayLines(findings, style));
  Append(lines, StatisticsLines(findings, style));
  const bool complete = result.end.reason == EndReason::Complete;
  lines.push_back(Describe(test) + ": " +
                  Paint(ReasonText(result), complete ? Tone::Good : Tone::Bad, style) +
                  EndText(result, style));
  return lines;
}

}  // namespace cfm_agent
