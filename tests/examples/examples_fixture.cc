// SPDX-License-Identifier: Apache-2.0
#include "examples_fixture.h"

#include <sstream>

namespace cfm_test {

const char* const kTreeOfOneEndpoint =
    "1 domain, 1 association, 1 endpoint, 0 probes, 0 sessions\n"
    "domain \"example\": format 4 (character string), level 4, sender id 1 (none), "
    "MHF creation 1 (none)\n"
    "  association \"line-1\": format 2 (character string), VIDs 100, CCM interval 4 (1 s), "
    "MEP ids 1 2, sender id 5 (defer), MHF creation 4 (defer), AIS off, flag D no\n"
    "    mep 1: direction 1 (down), ifindex 1, primary VID 0, inner VID 0, active yes, CCM yes,";

std::size_t ExamplesTest::CountOf(const std::string& name, const std::string& text) const {
  std::istringstream lines(Output(name));
  std::size_t count = 0;
  for (std::string line; std::getline(lines, line);) {
    if (line.find(text) != std::string::npos) {
      ++count;
    }
  }
  return count;
}

bool ExamplesTest::Says(const std::string& name, const std::string& text) const {
  return Eventually([&] { return CountOf(name, text) > 0; });
}

void ExamplesTest::ExpectTree(const std::string& expected) {
  std::string tree;
  EXPECT_TRUE(Eventually([&] {
    return (tree = system.Tree()).compare(0, expected.size(), expected) == 0;
  })) << "the server holds\n"
      << tree << "instead of\n"
      << expected;
}

void ExamplesTest::StartServerInNetwork() {
  system.StartServer({"--network", SOURCE_FOLDER "/mgr/examples/line.yaml"});
}

}  // namespace cfm_test
