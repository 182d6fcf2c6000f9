// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <net/if.h>
#include <sepan/host.h>

#include <array>
#include <cerrno>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

TEST(Ports, StayTheSameForAName) {
  const sepan_port_t port = sepan_port_by_name("lo");
  EXPECT_NE(port, 0U);
  EXPECT_NE(sepan_port_by_name("no-such-if"), port);
  EXPECT_EQ(sepan_port_by_name(std::string("lo").c_str()), port);
}

TEST(Ports, MapToTheKernelsInterfaceAndBack) {
  const sepan_port_t port = sepan_port_by_name("lo");
  uint32_t ifindex = 0;
  EXPECT_EQ(sepan_to_ifindex(port, &ifindex), 0);
  EXPECT_EQ(ifindex, if_nametoindex("lo"));
  EXPECT_EQ(sepan_from_ifindex(ifindex).port, port);
}

TEST(Ports, ComeFromInterfacesThatNobodyNamedBefore) {
  const uint32_t ifindex = if_nametoindex("lo");
  ASSERT_NE(ifindex, 0U);
  const sepan_port_t port = sepan_from_ifindex(ifindex).port;
  EXPECT_EQ(port, sepan_port_by_name("lo"));
}

TEST(Ports, ExistForInterfacesThatDoNotExistYet) {
  const sepan_port_t port = sepan_port_by_name("not-there-yet");
  ASSERT_NE(port, 0U);
  uint32_t ifindex = 4711;
  EXPECT_EQ(sepan_to_ifindex(port, &ifindex), -ENODEV);
  EXPECT_EQ(ifindex, 4711U);
  std::array<char, IFNAMSIZ> name{};
  EXPECT_EQ(sepan_to_intfname(port, name.data(), name.size()), 0);
  EXPECT_STREQ(name.data(), "not-there-yet");
}

TEST(Ports, AreUnknownUnlessTheyWereGivenOut) {
  uint32_t ifindex = 4711;
  std::array<char, IFNAMSIZ> name{"before"};
  for (const sepan_port_t port : {0U, 100'000U, 0xffffffffU}) {
    EXPECT_EQ(sepan_to_ifindex(port, &ifindex), -ENODEV);
    EXPECT_EQ(sepan_to_intfname(port, name.data(), name.size()), -ENODEV);
  }
  EXPECT_EQ(ifindex, 4711U);
  EXPECT_STREQ(name.data(), "before");
}

TEST(Ports, AreZeroForAnUnknownInterface) {
  EXPECT_EQ(sepan_from_ifindex(0).port, 0U);
  EXPECT_EQ(sepan_from_ifindex(0x7fffffff).port, 0U);
  EXPECT_EQ(sepan_from_ifindex(0xffffffff).port, 0U);
}

TEST(Ports, RefuseNamesThatNoInterfaceHas) {
  for (const char* const name : {"", ".", "..", "a/b", "a b", "a:b", "a\tb", "a\n"}) {
    EXPECT_EQ(sepan_port_by_name(name), 0U) << name;
    EXPECT_EQ(errno, EINVAL) << name;
  }
  EXPECT_EQ(sepan_port_by_name(nullptr), 0U);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_NE(sepan_port_by_name("exactly15bytes_"), 0U);
  EXPECT_EQ(sepan_port_by_name("exactly_16bytes_"), 0U);
  EXPECT_EQ(errno, ENAMETOOLONG);
}

TEST(Ports, WriteNoNameThatDoesNotFit) {
  const sepan_port_t port = sepan_port_by_name("eth0.100");
  std::array<char, 9> name{"before"};
  EXPECT_EQ(sepan_to_intfname(port, name.data(), 8), -ERANGE);
  EXPECT_STREQ(name.data(), "before");
  EXPECT_EQ(sepan_to_intfname(port, nullptr, 100), -ERANGE);
  EXPECT_EQ(sepan_to_intfname(port, name.data(), 9), 0);
  EXPECT_STREQ(name.data(), "eth0.100");
}

TEST(Ports, MayBeAskedForByManyThreads) {
  constexpr int kThreads = 4;
  constexpr int kNames = 500;
  std::array<std::vector<sepan_port_t>, kThreads> ports;
  std::vector<std::thread> threads;
  for (auto& mine : ports) {
    threads.emplace_back([&mine] {
      for (int i = 0; i < kNames; ++i) {
        mine.push_back(sepan_port_by_name(("thread" + std::to_string(i)).c_str()));
      }
    });
  }
  for (auto& thread : threads) {
    thread.join();
  }
  for (const auto& mine : ports) {
    EXPECT_EQ(mine, ports[0]);
  }
  EXPECT_EQ(std::set<sepan_port_t>(ports[0].begin(), ports[0].end()).size(), std::size_t{kNames});
}

}  // namespace
