/* SPDX-License-Identifier: Apache-2.0 */
// What a client does to its host, in order: the requests it sends and the lines it logs.
#ifndef CFM_TESTS_LIBRARY_DIFFERENTIAL_TRACE_H
#define CFM_TESTS_LIBRARY_DIFFERENTIAL_TRACE_H

#include <vorx/vorx.h>

#include <string>
#include <string_view>
#include <vector>

namespace cfm_test {

struct TraceEntry {
  const vorx_sig_descriptor* signal = nullptr;  // null: a log line
  vorx_pid_t destination = 0;
  bool has_payload = false;
  std::string content;  // the payload, or the text of the log line
};

inline bool operator==(const TraceEntry& a, const TraceEntry& b) {
  return a.signal == b.signal && a.destination == b.destination && a.has_payload == b.has_payload &&
         a.content == b.content;
}
inline bool operator!=(const TraceEntry& a, const TraceEntry& b) { return !(a == b); }

using Trace = std::vector<TraceEntry>;

/// Octets other than the printable ones as two hexadecimal digits.
std::string Printable(std::string_view octets);

/// `send PID SIGNAL FIELDS` or `log TEXT`, further lines of the text indented.
std::string Text(const TraceEntry& entry);

/// Both traces, one line per entry and side where they differ: `=` in both, `-` expected only,
/// `+` in the actual one only.
std::string Diff(const Trace& expected, const Trace& actual);

}  // namespace cfm_test

#endif
