// SPDX-License-Identifier: Apache-2.0
// A linktrace reply as text.
#include <cfm/linktrace.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <locale>

namespace cfm_test {
namespace {

cfm::st_mac Mac(std::uint8_t last) { return {{0x02, 0, 0, 0, 0xab, last}}; }

class LinktraceReplyShow : public testing::Test {
 protected:
  LinktraceReplyShow() {
    entry.transaction_id = 7;
    entry.destination_mac = Mac(1);
    entry.source_mac = Mac(2);
    entry.vlan = 100;
    entry.priority = 5;
    entry.level = 3;
    entry.forwarded = true;
    entry.ttl = 62;
    entry.relay_action = 2;
    entry.egress_id->last_mac = Mac(3);
    entry.egress_id->last_id = 12345;
    entry.egress_id->next_mac = Mac(4);
    entry.egress_id->next_id = 23456;
  }

  static std::unique_ptr<cfm::LtrReplyPort> Port() {
    auto port = std::make_unique<cfm::LtrReplyPort>();
    port->action = 1;
    port->mac = Mac(5);
    port->port_id_present = true;
    port->port_id_subtype = 5;
    port->port_id = "ge-1";
    return port;
  }

  std::string Show(unsigned int indent) const {
    return cfm::LinktraceReplyEntry::Show(entry, indent);
  }

  cfm::LinktraceReplyEntry entry;
};

// Up to where the reply's ports would stand.
constexpr char kLine[] =
    "Transaction ID: 7; Destination MAC: 02:00:00:00:ab:01; Source MAC: 02:00:00:00:ab:02; VLAN: "
    "100; Priority: 5; Level: 3; Flags: Terminal MEP: false, Forwarded: true, Use FDB only: false; "
    "TTL: 62; Relay action:2; LTR Egress ID: Last: 02:00:00:00:ab:03, Next: 02:00:00:00:ab:04; ";

TEST_F(LinktraceReplyShow, IsOneLineWithoutIndent) {
  entry.reply_ingress = Port();
  EXPECT_EQ(Show(0), std::string(kLine) +
                         "Reply Ingress: Ingress action: 1, Ingress MAC: 02:00:00:00:ab:05, Port "
                         "ID: Subtype 5, Length 4; ");
}

TEST_F(LinktraceReplyShow, IsABlockWithIndent) {
  entry.internal_vlan = 4094;
  entry.internal_priority = 7;
  entry.reply_ingress = Port();
  entry.reply_egress = Port();
  entry.reply_egress->port_id_present = false;
  EXPECT_EQ(Show(3),
            "Transaction ID: 7\n"
            "Destination MAC: 02:00:00:00:ab:01\n"
            "Source MAC: 02:00:00:00:ab:02\n"
            "VLAN: 100\n"
            "Priority: 5\n"
            "Internal VLAN: 4094\n"
            "Internal Priority: 7\n"
            "Level: 3\n"
            "Flags:\n"
            "   Terminal MEP: false\n"
            "   Forwarded: true\n"
            "   Use FDB only: false\n"
            "TTL: 62\n"
            "Relay action:2\n"
            "LTR Egress ID:\n"
            "   Last: 02:00:00:00:ab:03\n"
            "   Next: 02:00:00:00:ab:04\n"
            "Reply Ingress:\n"
            "   Ingress action: 1\n"
            "   Ingress MAC: 02:00:00:00:ab:05\n"
            "   Port ID: Subtype 5, Length 4\n"
            "Reply Egress:\n"
            "   Egress action: 1\n"
            "   Egress MAC: 02:00:00:00:ab:05\n"
            "   Port ID: Not present\n");
}

TEST_F(LinktraceReplyShow, IndentsByAsManySpacesAsAsked) {
  EXPECT_THAT(Show(1), testing::HasSubstr("\nLTR Egress ID:\n Last: "));
  EXPECT_THAT(Show(20), testing::HasSubstr("\nFlags:\n" + std::string(20, ' ') + "Terminal MEP: "));
}

TEST_F(LinktraceReplyShow, EndsAfterTheEgressIdentifierWithoutPorts) { EXPECT_EQ(Show(0), kLine); }

TEST_F(LinktraceReplyShow, ShowsEitherPortAlone) {
  entry.reply_egress = Port();
  entry.reply_egress->action = 255;
  EXPECT_EQ(Show(0), std::string(kLine) +
                         "Reply Egress: Egress action: 255, Egress MAC: 02:00:00:00:ab:05, Port "
                         "ID: Subtype 5, Length 4; ");
}

TEST_F(LinktraceReplyShow, ShowsInternalFieldsOnlyWithAnInternalVlan) {
  entry.internal_priority = 6;
  EXPECT_EQ(Show(0), kLine);
  entry.internal_vlan = 65535;
  EXPECT_THAT(Show(0), testing::HasSubstr("; Priority: 5; Internal VLAN: 65535; Internal "
                                          "Priority: 6; Level: 3; "));
}

TEST_F(LinktraceReplyShow, NeverShowsThePortIdentifierItself) {
  entry.reply_ingress = Port();
  entry.reply_ingress->port_id = std::string("secret\0\n\xff", 9);
  EXPECT_THAT(Show(0), testing::EndsWith(", Port ID: Subtype 5, Length 9; "));
  entry.reply_ingress->port_id.clear();
  EXPECT_THAT(Show(0), testing::EndsWith(", Port ID: Subtype 5, Length 0; "));
  entry.reply_ingress->port_id = "secret";
  entry.reply_ingress->port_id_present = false;
  EXPECT_THAT(Show(0), testing::EndsWith(", Port ID: Not present; "));
}

TEST_F(LinktraceReplyShow, ShowsExtremesAsNumbers) {
  entry.transaction_id = 4294967295;
  entry.vlan = 65535;
  entry.priority = 255;
  entry.level = 65;
  entry.ttl = 10;
  entry.relay_action = -2147483647 - 1;
  entry.terminal_mep = true;
  entry.use_fdb_only = true;
  entry.reply_ingress = Port();
  entry.reply_ingress->port_id_subtype = 255;
  entry.reply_ingress->port_id = std::string(1000, 'x');
  const std::string text = Show(0);
  EXPECT_THAT(text, testing::StartsWith("Transaction ID: 4294967295; "));
  EXPECT_THAT(text, testing::HasSubstr("; VLAN: 65535; Priority: 255; Level: 65; Flags: Terminal "
                                       "MEP: true, Forwarded: true, Use FDB only: true; TTL: 10; "
                                       "Relay action:-2147483648; "));
  EXPECT_THAT(text, testing::EndsWith("Port ID: Subtype 255, Length 1000; "));
}

TEST_F(LinktraceReplyShow, ADefaultEntryHasAnEgressIdentifierOfZeros) {
  EXPECT_EQ(cfm::LinktraceReplyEntry::Show(cfm::LinktraceReplyEntry(), 0),
            "Transaction ID: 0; Destination MAC: 00:00:00:00:00:00; Source MAC: "
            "00:00:00:00:00:00; VLAN: 0; Priority: 0; Level: 0; Flags: Terminal MEP: false, "
            "Forwarded: false, Use FDB only: false; TTL: 0; Relay action:0; LTR Egress ID: Last: "
            "00:00:00:00:00:00, Next: 00:00:00:00:00:00; ");
}

// Groups every digit, and has words of its own for booleans.
struct OddNumbers : std::numpunct<char> {
  std::string do_grouping() const override { return "\1"; }
  std::string do_truename() const override { return "yes"; }
  std::string do_falsename() const override { return "no"; }
};

TEST_F(LinktraceReplyShow, IsTheSameInEveryLocale) {
  entry.reply_ingress = Port();
  entry.reply_ingress->port_id = std::string(1000, 'x');
  entry.transaction_id = 1234567;
  const std::string line = Show(0);
  const std::string block = Show(2);
  const std::locale before = std::locale::global(std::locale(std::locale(), new OddNumbers));
  const std::string odd_line = Show(0);
  const std::string odd_block = Show(2);
  std::locale::global(before);
  EXPECT_EQ(odd_line, line);
  EXPECT_EQ(odd_block, block);
}

}  // namespace
}  // namespace cfm_test
