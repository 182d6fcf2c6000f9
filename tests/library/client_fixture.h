/* SPDX-License-Identifier: Apache-2.0 */
// A client on a recording host, and short ways to make configurations.
#ifndef CFM_TESTS_LIBRARY_CLIENT_FIXTURE_H
#define CFM_TESTS_LIBRARY_CLIENT_FIXTURE_H

#include <cfm/client.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "recording_host.h"

namespace cfm_test {

using testing::ElementsAre;
using testing::IsEmpty;

class ClientTest : public testing::Test {
 protected:
  // What the library sends to the server it is in step with, while `action` runs.
  template <typename Action>
  std::vector<std::string> Sent(Action action) {
    host.Take();
    action();
    return host.Take("send 77 ");
  }

  RecordingHost host;
  std::optional<cfm::Client> client{std::in_place, host.handle()};
};

/// A client that is in step with an empty server.
class InStepTest : public ClientTest {
 protected:
  InStepTest() { host.GetInStep(); }
};

inline cfm::hierarchy_mep Mep(const std::string& md, const std::string& ma, std::uint16_t id) {
  cfm::hierarchy_mep mep;
  mep.md_name = md;
  mep.ma_name = ma;
  mep.cfg.mep_id = id;
  mep.cfg.port = 1;
  return mep;
}

inline cfm::hierarchy_ma Ma(const std::string& md, const std::string& ma,
                            const std::vector<std::uint16_t>& mep_ids = {}) {
  cfm::hierarchy_ma result;
  result.md_name = md;
  for (const std::uint16_t id : mep_ids) {
    result.meps[id] = Mep(md, ma, id);
  }
  return result;
}

/// One domain "D" with one association "A" with these endpoints.
inline cfm::hierarchy OneMa(const std::vector<std::uint16_t>& mep_ids) {
  cfm::hierarchy config;
  config.mds["D"].mas["A"] = Ma("D", "A", mep_ids);
  return config;
}

/// The signal's name and the words after it that name the entity, as in `MEP_CREATE D A 1`.
std::string Brief(const std::string& sent);
std::vector<std::string> Brief(const std::vector<std::string>& sent);

}  // namespace cfm_test

#endif
