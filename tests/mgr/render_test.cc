// SPDX-License-Identifier: Apache-2.0
#include "render.h"

#include <gtest/gtest.h>

#include "fields.h"
#include "messages.h"
#include "store.h"

namespace cfm_mgr_test {
namespace {

TEST(Render, SaysThatAnEmptyTreeIsEmpty) {
  EXPECT_EQ(cfm_mgr::Render({}), "0 domains, 0 associations, 0 endpoints, 0 probes, 0 sessions\n");
}

TEST(Render, ShowsEveryEntityOnALineOfItsOwnInOrder) {
  cfm_mgr::Store store;
  store.Apply(CreateMd("D2"));
  store.Apply(CreateMd("D1"));
  auto association = CreateMa("D1", "A1", {1, 2});
  SetAis(*association.mutable_ais());
  store.Apply(association);
  store.Apply(CreateMep("D1", "A1", 1));
  store.Apply(CreateProbe(1));
  store.Apply(CreateSession(1, 3));
  EXPECT_EQ(cfm_mgr::Render(store.tree()),
            R"(2 domains, 1 association, 1 endpoint, 1 probe, 1 session
domain "D1": format 4 (character string), level 3, sender id 1 (none), MHF creation 1 (none)
  association "A1": format 2 (character string), VIDs 100, CCM interval 4 (1 s), MEP ids 1 2, sender id 5 (defer), MHF creation 4 (defer), AIS on, octet A 5, word B 70000, octet C 255, ids 7 4000, flag D yes
    mep 1: direction 1 (down), ifindex 7, primary VID 100, inner VID 0, active yes, CCM yes, CCM priority 7, lowest alarm priority 2 (MAC, remote, error, xcon), alarm time 250, reset time 1000, fault action 0 (none), aux flag no
domain "D2": format 4 (character string), level 3, sender id 1 (none), MHF creation 1 (none)
probe 1: md "D1", ma "A1", local mep 1, remote mep 2, interval 10
  session 3: interval 100, count 50, size 64, pcp 5
)");
}

TEST(Quote, EscapesAllButPrintableAscii) {
  EXPECT_EQ(cfm_mgr::Quote("plain name"), "\"plain name\"");
  EXPECT_EQ(cfm_mgr::Quote(std::string("\0\n\x1b\x7f\xc3\xa9", 6)),
            R"("\x00\x0a\x1b\x7f\xc3\xa9")");
  EXPECT_EQ(cfm_mgr::Quote(R"(a"b\c)"), R"("a\"b\\c")");
}

}  // namespace
}  // namespace cfm_mgr_test
