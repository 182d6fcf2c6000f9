// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>

#include "private_bus.h"

namespace cfm_test {
namespace {

// The first listing of C++ in a Markdown text.
std::string FirstListing(const std::string& markdown) {
  const std::string fence = "```cpp\n";
  const std::size_t begin = markdown.find(fence);
  if (begin == std::string::npos) {
    return "";
  }
  const std::size_t text = begin + fence.size();
  return markdown.substr(text, markdown.find("```", text) - text);
}

// The file without the line that names its licence.
std::string WithoutLicenceLine(const std::string& source) {
  return source.rfind("// SPDX-", 0) == 0 ? source.substr(source.find('\n') + 1) : source;
}

TEST(Readme, ShowsTheProvisioningExampleAsItIs) {
  const std::string listing = FirstListing(ReadFile(SOURCE_FOLDER "/README.md"));
  ASSERT_NE(listing, "");
  EXPECT_EQ(listing,
            WithoutLicenceLine(ReadFile(SOURCE_FOLDER "/examples/provision/provision.cc")));
}

}  // namespace
}  // namespace cfm_test
