/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_TESTS_MGR_STORE_FIXTURE_H
#define CFM_TESTS_MGR_STORE_FIXTURE_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "messages.h"
#include "render.h"
#include "store.h"

namespace cfm_mgr_test {

/** A store with D1/A1 (MEP list 1 2 3; MEPs 1 and 2), D1/A2, D2 and probe 1 with two sessions. */
class StoreTest : public testing::Test {
 protected:
  StoreTest() {
    Done(CreateMd("D1"));
    Done(CreateMd("D2"));
    Done(CreateMa("D1", "A1", {1, 2, 3}));
    Done(CreateMa("D1", "A2"));
    Done(CreateMep("D1", "A1", 1));
    Done(CreateMep("D1", "A1", 2));
    Done(CreateProbe(1));
    Done(CreateSession(1, 1));
    Done(CreateSession(1, 2));
  }

  /** Applies a request that must be accepted. */
  template <class Message>
  cfm_mgr::Outcome Done(const Message& message) {
    cfm_mgr::Outcome outcome = store_.Apply(message);
    EXPECT_FALSE(outcome.refused) << outcome.subject << ": " << outcome.text;
    return outcome;
  }

  /** Applies a request that must be refused without a trace; gives the reason. */
  template <class Message>
  std::string ReasonAgainst(const Message& message) {
    const std::string before = Text();
    const cfm_mgr::Outcome outcome = store_.Apply(message);
    EXPECT_TRUE(outcome.refused) << outcome.subject << ": " << outcome.text;
    EXPECT_FALSE(outcome.changed);
    EXPECT_THAT(outcome.removed, testing::IsEmpty());
    EXPECT_EQ(Text(), before);
    return outcome.text;
  }

  std::string Text() const { return cfm_mgr::Render(store_.tree()); }
  const cfm_mgr::Domain& Md(const std::string& md) const { return store_.tree().domains.at(md); }
  const cfm_mgr::Association& Ma(const std::string& ma) const {
    return Md("D1").associations.at(ma);
  }
  const cfm_mgr::Mep& MepOf(std::uint32_t id) const { return Ma("A1").meps.at(id); }

  cfm_mgr::Store store_;
};

}  // namespace cfm_mgr_test

#endif
