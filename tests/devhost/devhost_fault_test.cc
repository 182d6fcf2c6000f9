// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>
#include <vorx/host.h>

#include <string>

#include "private_bus.h"
#include "test_process.h"

namespace cfm_test {

/** Not in a nameless namespace and never inlined, so that its name and file are known for sure. */
[[gnu::noinline]] int FunctionThatPrintsABacktrace(int depth) {
  vorx_print_backtrace();
  // Something after the call keeps the compiler from jumping to it instead.
  return depth + 1;
}

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

[[gnu::noinline]] int LocalFunctionOnTheWay(int depth) {
  return FunctionThatPrintsABacktrace(depth + 1) + 1;
}

std::string FaultReport(int kind, const char* function, const char* file, int line,
                        const char* text) {
  testing::internal::CaptureStderr();
  vorx_gen_fault(kind, function, file, line, text);
  return testing::internal::GetCapturedStderr();
}

TEST(FaultReport, TellsWhatWhereAndWho) {
  const std::string report = FaultReport(1, "ClientImpl", "client_impl.cc", 25, "invalid token");
  EXPECT_THAT(report, ContainsRegex("^vorx fault report\n"
                                    "  time:        20[0-9-]+T[0-9:]+\\.[0-9][0-9][0-9]Z\n"
                                    "  process:     devhost_fault_test, pid " +
                                    std::to_string(getpid()) +
                                    "\n"
                                    "  kind:        1\n"
                                    "  function:    ClientImpl\n"
                                    "  file:        client_impl\\.cc\n"
                                    "  line:        25\n"
                                    "  text:        invalid token\n$"));
}

TEST(FaultReport, NamesTheProcessAsTheBusKnowsIt) {
  const PrivateBus bus;
  const TestProcess process(bus, "cfm-agent");
  EXPECT_THAT(FaultReport(1, "f", "f.cc", 1, "text"),
              HasSubstr("on the bus as cfm-agent (vorx " + std::to_string(process.pid()) + ")"));
}

TEST(FaultReport, TakesMissingAndEmptyText) {
  const std::string report = FaultReport(-7, nullptr, nullptr, 0, "");
  EXPECT_THAT(report, HasSubstr("kind:        -7\n"));
  EXPECT_THAT(report, HasSubstr("function:    (none)\n"));
  EXPECT_THAT(report, HasSubstr("text:        (none)\n"));
}

TEST(FaultReport, StaysReadableWithControlCharactersInTheText) {
  EXPECT_THAT(FaultReport(1, "f", "f.cc", 1, "two\nlines\x1b[31m"),
              HasSubstr("text:        two\\x0alines\\x1b[31m\n"));
}

TEST(Backtrace, NamesTheFunctionsOfTheProgram) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(LocalFunctionOnTheWay(0), 3);
  const std::string trace = testing::internal::GetCapturedStderr();
  EXPECT_THAT(trace, ContainsRegex("^vorx backtrace\n  #0  0x[0-9a-f]+  "
                                   "cfm_test::FunctionThatPrintsABacktrace\\(int\\)"));
  EXPECT_THAT(trace, HasSubstr("LocalFunctionOnTheWay"));
  EXPECT_THAT(trace, HasSubstr("main"));
}

TEST(Backtrace, NamesFilesAndLines) {
  testing::internal::CaptureStderr();
  FunctionThatPrintsABacktrace(0);
  EXPECT_THAT(testing::internal::GetCapturedStderr(),
              ContainsRegex("FunctionThatPrintsABacktrace.* at .*devhost_fault_test\\.cc:1[0-9]"));
}

}  // namespace
}  // namespace cfm_test
