// SPDX-License-Identifier: Apache-2.0
#include "net/packet/link_message.h"

#include <gtest/gtest.h>
#include <linux/if.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <cstring>
#include <vector>

#include "net/packet/attributes.h"

namespace cfm_mgr::net {
namespace {

constexpr std::uint16_t kEthernet = 1;

// A message about interface 7 with an operational state, as the kernel would send it.
std::vector<std::uint8_t> Message(std::uint16_t type, std::uint8_t family, unsigned int flags,
                                  std::uint8_t operational_state) {
  NetlinkRequest message(type, 0);
  ifinfomsg header{};
  header.ifi_family = family;
  header.ifi_type = kEthernet;
  header.ifi_index = 7;
  header.ifi_flags = flags;
  message.Append(header);
  message.AppendAttribute(IFLA_OPERSTATE, operational_state);
  message.AppendAttribute(IFLA_IFNAME, std::array<char, 5>{'e', 't', 'h', '0', 0});
  message.AppendAttribute(IFLA_ADDRESS, engine::Mac{2, 0, 0, 0, 0, 9});
  return message.Finish(1);
}

std::optional<LinkMessage> Decoded(const std::vector<std::uint8_t>& octets) {
  // The header is read where it stands: it has to be aligned.
  std::vector<std::uint32_t> words((octets.size() + 3) / 4);
  std::memcpy(words.data(), octets.data(), octets.size());
  return DecodeLinkMessage(*reinterpret_cast<const nlmsghdr*>(words.data()));
}

std::uint8_t StatusOf(unsigned int flags, std::uint8_t operational_state) {
  const auto decoded = Decoded(Message(RTM_NEWLINK, AF_UNSPEC, flags, operational_state));
  return decoded ? std::get<LinkState>(*decoded).interface_status : 0;
}

TEST(LinkMessage, TellsNameAddressAndKindOfAnInterface) {
  const auto decoded = Decoded(Message(RTM_NEWLINK, AF_UNSPEC, IFF_UP, IF_OPER_UP));
  ASSERT_TRUE(decoded);
  const auto& link = std::get<LinkState>(*decoded);
  EXPECT_EQ(link.index, 7U);
  EXPECT_EQ(link.name, "eth0");
  EXPECT_EQ(link.mac, (engine::Mac{2, 0, 0, 0, 0, 9}));
  EXPECT_TRUE(link.is_ethernet);
  EXPECT_EQ(link.bridge, 0U);
}

TEST(LinkMessage, GivesTheKernelsOperationalStatesTheNumbersOfTheMib) {
  EXPECT_EQ(StatusOf(IFF_UP, IF_OPER_UP), 1);
  EXPECT_EQ(StatusOf(IFF_UP, IF_OPER_DOWN), 2);
  EXPECT_EQ(StatusOf(IFF_UP, IF_OPER_TESTING), 3);
  EXPECT_EQ(StatusOf(IFF_UP, IF_OPER_DORMANT), 5);
  EXPECT_EQ(StatusOf(IFF_UP, IF_OPER_NOTPRESENT), 6);
  EXPECT_EQ(StatusOf(IFF_UP, IF_OPER_LOWERLAYERDOWN), 7);
}

TEST(LinkMessage, TakesTheFlagsForAnUnknownOperationalState) {
  EXPECT_EQ(StatusOf(IFF_UP | IFF_RUNNING, IF_OPER_UNKNOWN), 1);
  EXPECT_EQ(StatusOf(IFF_UP, IF_OPER_UNKNOWN), 2);
}

TEST(LinkMessage, AnInterfaceThatIsSetDownIsDownWhateverItsState) {
  EXPECT_EQ(StatusOf(IFF_RUNNING, IF_OPER_UP), 2);
  EXPECT_EQ(StatusOf(0, IF_OPER_LOWERLAYERDOWN), 2);
}

TEST(LinkMessage, AnInterfaceIsGoneOnlyWhenNotJustItsBridgeSaysSo) {
  const auto gone = Decoded(Message(RTM_DELLINK, AF_UNSPEC, 0, 0));
  ASSERT_TRUE(gone);
  EXPECT_EQ(std::get<LinkGone>(*gone).index, 7U);
  EXPECT_FALSE(Decoded(Message(RTM_DELLINK, AF_BRIDGE, 0, 0)));
}

TEST(LinkMessage, LeavesOtherMessagesAlone) {
  EXPECT_FALSE(Decoded(Message(RTM_NEWADDR, AF_UNSPEC, IFF_UP, IF_OPER_UP)));
  EXPECT_FALSE(Decoded(Message(RTM_NEWLINK, AF_BRIDGE, IFF_UP, IF_OPER_UP)));
}

TEST(LinkMessage, StaysInsideOfAMessageThatIsCutAnywhere) {
  const auto whole = Message(RTM_NEWLINK, AF_UNSPEC, IFF_UP, IF_OPER_UP);
  for (std::size_t size = sizeof(nlmsghdr); size < whole.size(); ++size) {
    std::vector<std::uint8_t> part(whole.begin(),
                                   whole.begin() + static_cast<std::ptrdiff_t>(size));
    const auto length = static_cast<std::uint32_t>(size);
    std::memcpy(part.data(), &length, sizeof length);
    const auto decoded = Decoded(part);
    EXPECT_EQ(decoded.has_value(), size >= sizeof(nlmsghdr) + sizeof(ifinfomsg)) << size;
  }
}

TEST(Attributes, EndWhereALengthIsWrong) {
  const std::vector<std::vector<std::uint8_t>> wrong = {
      {3, 0, 1, 0}, {9, 0, 1, 0, 5, 0, 0, 0}, {0xff, 0xff, 1, 0}, {4, 0}};
  for (const auto& octets : wrong) {
    EXPECT_EQ(Attributes(octets.data(), octets.size()).Find<std::uint8_t>(1), std::nullopt);
  }
  const std::vector<std::uint8_t> right = {5, 0, 1, 0, 42, 0, 0, 0, 8, 0, 2, 0x80, 1, 0, 0, 0};
  const Attributes attributes(right.data(), right.size());
  EXPECT_EQ(attributes.Find<std::uint8_t>(1), 42);
  EXPECT_EQ(attributes.Find<std::uint32_t>(1), std::nullopt);
  EXPECT_EQ(attributes.Find<std::uint32_t>(2), 1U);
}

}  // namespace
}  // namespace cfm_mgr::net
