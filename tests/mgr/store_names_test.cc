// SPDX-License-Identifier: Apache-2.0
#include "store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "messages.h"
#include "store_fixture.h"

namespace cfm_mgr_test {
namespace {

using testing::HasSubstr;

TEST_F(StoreTest, NamesMustFitIntoTheMaid) {
  Done(CreateMd(std::string(43, 'd')));
  EXPECT_EQ(ReasonAgainst(CreateMd(std::string(44, 'd'))),
            "md_name is 44 octets long: expected 0 to 43");
  Done(CreateMa(std::string(43, 'd'), "a"));
  EXPECT_EQ(ReasonAgainst(CreateMa(std::string(43, 'd'), "ab")),
            "names of domain and association are 45 octets long together: expected at most 44");
  EXPECT_EQ(ReasonAgainst(CreateMa("D1", "")), "ma_name is 0 octets long: expected 1 to 45");
}

TEST_F(StoreTest, NamesTakeTheRoomThatTheirFormatsHave) {
  const std::string mac_and_number = "02:00:5e:00:00:01/65535";  // 8 octets
  auto md = CreateMd(mac_and_number);
  md.set_format(3);
  Done(md);
  Done(CreateMa(mac_and_number, std::string(36, 'a')));
  EXPECT_THAT(ReasonAgainst(CreateMa(mac_and_number, std::string(37, 'a'))),
              HasSubstr("45 octets long together"));
  Done(CreateMd(std::string(31, 'd')));
  auto icc = CreateMa(std::string(31, 'd'), "ACME");  // 13 octets
  icc.set_format(32);
  Done(icc);
  icc.set_format(33);  // 15 octets
  EXPECT_THAT(ReasonAgainst(icc), HasSubstr("46 octets long together"));
}

TEST_F(StoreTest, SaysThatNamesAreNotAsTheirFormatsAsk) {
  auto vid = CreateMa("D1", "100");
  vid.set_format(1);
  EXPECT_EQ(Done(vid).text, "created");
  vid.set_ma_name("A100");
  EXPECT_EQ(Done(vid).text,
            "created, but the names are not as their formats ask: its endpoints stay inactive");
}

TEST_F(StoreTest, ADomainWithoutAnMdNameLeavesAllRoomToItsAssociations) {
  EXPECT_EQ(ReasonAgainst(CreateMd("")), "md_name is empty: expected a name, or format 1 (none)");
  auto request = CreateMd("");
  request.set_format(1);
  Done(request);
  Done(CreateMa("", std::string(45, 'a')));
  EXPECT_THAT(ReasonAgainst(CreateMa("", std::string(46, 'a'))), HasSubstr("46 octets long"));
}

TEST_F(StoreTest, ANameFormatUnderWhichAnAssociationsNameIsTooLongIsRefused) {
  auto request = CreateMd("D3");
  request.set_format(1);
  Done(request);
  Done(CreateMa("D3", std::string(45, 'a')));
  EXPECT_THAT(ReasonAgainst(CreateMd("D3")), HasSubstr("47 octets long together"));
}

TEST_F(StoreTest, NamesMayHoldAnyBytes) {
  const std::string md("\0\xff\n\"", 4);
  Done(CreateMd(md));
  Done(CreateMa(md, "a"));
  EXPECT_EQ(store_.tree().domains.count(md), 1U);
  EXPECT_EQ(Done(DeleteMd(md)).subject, R"(md "\x00\xff\x0a\"")");
}

}  // namespace
}  // namespace cfm_mgr_test
