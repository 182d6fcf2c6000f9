/* SPDX-License-Identifier: Apache-2.0 */
// The one way into the log, and into a fault report.
#ifndef CFM_SRC_LOG_H
#define CFM_SRC_LOG_H

#include <zlog.h>

#include <string_view>

namespace cfm {

/// Lifecycle, requests and progress.
inline constexpr int kProgressLevel = 10;
/// Dumps of received status, statistics and linktrace events.
inline constexpr int kDumpLevel = 11;

/// Source file that every log record and fault report names: operators search for it together
/// with the function and the line, so it stays although the code is spread over several files.
inline constexpr std::string_view kLogFile = "client_impl.cc";

/// One place that writes to the log. Both strings are zero-terminated literals.
struct LogPoint {
  std::string_view function;
  long line;
  int level;
  const char* format;
};

/// Writes one record; nothing while there is no category yet. The point is a template argument so
/// that the compiler checks the arguments against its format.
template <const LogPoint& Point, typename... Args>
void Log(zlog_category_t* category, Args... args) {
  if (category == nullptr) {
    return;
  }
  constexpr const char* format = Point.format;
// All formats are literals; clang does not see that of those without arguments.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
  zlog(category, kLogFile.data(), kLogFile.size(), Point.function.data(), Point.function.size(),
       Point.line, Point.level, format, args...);
#pragma GCC diagnostic pop
}

/// Whether records of a level are written at all, to skip costly renderings. For the callbacks of
/// reports, which are registered once the category is there.
inline bool LogEnabled(zlog_category_t* category, int level) {
  return zlog_level_enabled(category, level) != 0;
}

/// One place that ends the process.
struct FaultPoint {
  const char* function;
  int line;
  std::string_view text;
};

/// Prints a backtrace, raises a middleware fault of kind 1 and exits with status 1.
[[noreturn]] void RaiseFault(const FaultPoint& point);

}  // namespace cfm

#endif
