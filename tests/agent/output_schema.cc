// SPDX-License-Identifier: Apache-2.0
#include "output_schema.h"

#include <gtest/gtest.h>

#include <fstream>

#include "child_process.h"
#include "private_bus.h"

namespace cfm_agent::testing {

std::string JudgeLines(const std::string& lines) {
  const cfm_test::TemporaryDirectory directory;
  std::ofstream(directory.File("lines"), std::ios::binary) << lines;
  cfm_test::ChildProcess judge({PYTHON, JUDGE_LINES, OUTPUT_SCHEMA, directory.File("lines")},
                               directory.File("out"), directory.File("err"));
  const int status = judge.Wait(std::chrono::seconds(60));
  std::string said = cfm_test::ReadFile(directory.File("err"));
  EXPECT_EQ(status == 0, said.empty()) << status;
  return said;
}

}  // namespace cfm_agent::testing
