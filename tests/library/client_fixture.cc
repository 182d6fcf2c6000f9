// SPDX-License-Identifier: Apache-2.0
#include "client_fixture.h"

#include <regex>

namespace cfm_test {

std::string Brief(const std::string& sent) {
  static const std::regex field(
      R"((?:^|\s)(md_name|ma_name|mep_id|probe_id|session_id):("?)([^ "]*)\2)");
  std::string out = sent.substr(0, sent.find(' '));
  for (std::sregex_iterator match(sent.begin(), sent.end(), field), end; match != end; ++match) {
    out += ' ' + (*match)[3].str();
  }
  return out;
}

std::vector<std::string> Brief(const std::vector<std::string>& sent) {
  std::vector<std::string> result;
  for (const std::string& entry : sent) {
    result.push_back(Brief(entry));
  }
  return result;
}

}  // namespace cfm_test
