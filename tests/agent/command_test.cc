// SPDX-License-Identifier: Apache-2.0
#include "core/command.h"

#include <gmock/gmock.h>

#include "core/mep.h"
#include "read_text.h"

namespace cfm_agent::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

template <typename What>
What Parse(std::string_view line) {
  const ParsedCommand parsed = ParseCommand(line);
  EXPECT_EQ(parsed.mistake, "");
  if (!parsed.command || !std::holds_alternative<What>(*parsed.command)) {
    ADD_FAILURE() << line;
    return {};
  }
  return std::get<What>(*parsed.command);
}

std::string MistakeIn(std::string_view line) {
  const ParsedCommand parsed = ParseCommand(line);
  EXPECT_FALSE(parsed.command.has_value());
  return parsed.mistake;
}

TEST(Command, LinktraceHasTheStandardsTtl) {
  const auto trigger = Parse<cfm::linktrace_trigger>("linktrace metro line-1 1 8191");
  EXPECT_EQ(trigger.md_name, "metro");
  EXPECT_EQ(trigger.ma_name, "line-1");
  EXPECT_EQ(trigger.mep_id, 1);
  EXPECT_EQ(trigger.remote_mep_id, 8191);
  EXPECT_EQ(trigger.ttl, 64);
}

TEST(Command, LinktraceTakesATtlAnywhere) {
  EXPECT_EQ(Parse<cfm::linktrace_trigger>("linktrace d a 1 2 ttl=255").ttl, 255);
  EXPECT_EQ(Parse<cfm::linktrace_trigger>("linktrace ttl=0 d a 1 2").ttl, 0);
}

TEST(Command, LoopbackTakesItsParameters) {
  const auto trigger =
      Parse<cfm::loopback_trigger>("loopback d a 1 2 param-a=4294967295 param-b=65535");
  EXPECT_EQ(trigger.remote_mep_id, 2);
  EXPECT_EQ(trigger.param_a, 4294967295U);
  EXPECT_EQ(trigger.param_b, 65535);
}

TEST(Command, DelayTakesItsParameters) {
  const auto trigger = Parse<cfm::delay_measurement_trigger>(
      "delay d a 3 4 param-d=255 param-c=5 param-b=6 param-a=7");
  EXPECT_EQ(trigger.mep_id, 3);
  EXPECT_EQ(trigger.param_a, 7U);
  EXPECT_EQ(trigger.param_b, 6U);
  EXPECT_EQ(trigger.param_c, 5);
  EXPECT_EQ(trigger.param_d, 255);
}

TEST(Command, ClearTakesWhatItIsLimitedTo) {
  const auto all = Parse<ClearCommand>("clear");
  EXPECT_EQ(all.md, std::nullopt);
  EXPECT_EQ(all.ma, std::nullopt);
  EXPECT_EQ(all.mep_id, 0);
  const auto some = Parse<ClearCommand>("clear association=\"line 1\" mep-id=7 domain=d");
  EXPECT_EQ(some.md, "d");
  EXPECT_EQ(some.ma, "line 1");
  EXPECT_EQ(some.mep_id, 7);
}

TEST(Command, ShowTakesWhatItIsLimitedTo) {
  EXPECT_EQ(Parse<ShowCommand>("show").md, std::nullopt);
  const auto some = Parse<ShowCommand>("show d a 7");
  EXPECT_EQ(some.md, "d");
  EXPECT_EQ(some.ma, "a");
  EXPECT_EQ(some.mep_id, 7);
}

TEST(Command, SimpleOnes) {
  Parse<StatisticsCommand>("  statistics\t");
  Parse<HelpCommand>("help");
  Parse<QuitCommand>("quit # for today");
}

TEST(Command, BlankLinesAndCommentsAreNothing) {
  for (const char* line : {"", "   ", "# comment", "  # comment"}) {
    const ParsedCommand parsed = ParseCommand(line);
    EXPECT_FALSE(parsed.command.has_value());
    EXPECT_EQ(parsed.mistake, "");
  }
}

TEST(Command, NamesAreWrittenAsTheyArePrinted) {
  for (const std::string& name :
       {std::string("plain"), std::string("two words"), std::string("a\"b\\c"), std::string("a=b"),
        std::string("#hash"), std::string("a#b"), std::string("# x"), std::string("ttl=5"),
        std::string("tab\there"), std::string("\x01\xFF\0x", 4), std::string("M\xC3\xBCnchen")}) {
    const auto trigger = Parse<cfm::linktrace_trigger>("linktrace " + AsWord(name) + " a 1 2");
    EXPECT_EQ(trigger.md_name, name) << AsWord(name);
    EXPECT_EQ(Parse<ShowCommand>("show d " + AsWord(name) + " 7").ma, name) << AsWord(name);
    EXPECT_EQ(Parse<ClearCommand>("clear domain=" + AsWord(name)).md, name) << AsWord(name);
  }
}

TEST(Command, AnOptionsKeyIsNeverInQuotes) {
  const auto trigger = Parse<cfm::linktrace_trigger>("linktrace \"ttl=5\" t\"tl\"=6 1 2 ttl=\"7\"");
  EXPECT_EQ(trigger.md_name, "ttl=5");
  EXPECT_EQ(trigger.ma_name, "ttl=6");
  EXPECT_EQ(trigger.ttl, 7);
}

TEST(Command, TellsWhatIsWrong) {
  constexpr auto kUsage = "; use: linktrace DOMAIN ASSOCIATION MEP-ID REMOTE-MEP-ID [ttl=N]";
  EXPECT_EQ(MistakeIn("linktrase d a 1 2"),
            "\"linktrase\" is not a command; did you mean linktrace?");
  EXPECT_EQ(MistakeIn("ping"),
            "\"ping\" is not a command; use clear, delay, help, linktrace, loopback, quit, show or "
            "statistics");
  EXPECT_EQ(MistakeIn("linktrace"), std::string("the domain is missing") + kUsage);
  EXPECT_EQ(MistakeIn("linktrace d a"), std::string("the mep-id is missing") + kUsage);
  EXPECT_EQ(MistakeIn("linktrace d a 1"), std::string("the remote-mep-id is missing") + kUsage);
  EXPECT_EQ(MistakeIn("linktrace d a 0 2"),
            std::string("the mep-id is \"0\"; use a whole number from 1 to 8191") + kUsage);
  EXPECT_EQ(
      MistakeIn("linktrace d a 1 8192"),
      std::string("the remote-mep-id is \"8192\"; use a whole number from 1 to 8191") + kUsage);
  EXPECT_EQ(MistakeIn("linktrace d a 1 2 ttl=256"),
            std::string("the ttl is \"256\"; use a whole number from 0 to 255") + kUsage);
  EXPECT_EQ(MistakeIn("linktrace d a 1 2 ttl="),
            std::string("the ttl is \"\"; use a whole number from 0 to 255") + kUsage);
  EXPECT_EQ(MistakeIn("linktrace d a 1 2 ttl=1 ttl=2"), std::string("ttl is given twice") + kUsage);
  EXPECT_EQ(MistakeIn("linktrace d a 1 2 3"), std::string("\"3\" is one word too many") + kUsage);
  EXPECT_EQ(MistakeIn("linktrace d a 1 2 speed=3"),
            std::string("\"speed=3\" is one word too many") + kUsage);
  EXPECT_EQ(MistakeIn("delay d a 1 2 param-a=99999999999999999999"),
            "the param-a is \"99999999999999999999\"; use a whole number from 0 to 4294967295; "
            "use: delay DOMAIN ASSOCIATION MEP-ID REMOTE-MEP-ID [param-a=N] [param-b=N] "
            "[param-c=N] [param-d=N]");
  EXPECT_EQ(MistakeIn("statistics now"), "\"now\" is one word too many; use: statistics");
  EXPECT_EQ(MistakeIn("show \"open"), "a quote is not closed");
  EXPECT_EQ(MistakeIn("show \"a\\n\""), "a backslash in quotes is followed by \", \\ or xNN");
}

TEST(Command, HelpNamesEveryCommand) {
  const auto lines = TextOf(CommandUsages());
  for (const char* name :
       {"linktrace", "loopback", "delay", "statistics", "clear", "show", "help", "quit"}) {
    EXPECT_THAT(lines, ::testing::Contains(StartsWith(name)));
  }
}

class Completion : public ::testing::Test {
 protected:
  Completion()
      : config_(*Read("domains:\n"
                      "- name: metro\n"
                      "  level: 1\n"
                      "  associations:\n"
                      "  - name: line 1\n"
                      "    mep-ids: [1, 2, 30, 31]\n"
                      "    endpoints:\n"
                      "    - {mep-id: 1, direction: up, port: lo}\n"
                      "    - {mep-id: 30, direction: up, port: lo}\n"
                      "  - {name: other}\n"
                      "- {name: metropolis, level: 1}\n")
                     .config) {}

  std::vector<std::string> WordsFor(std::string_view line) const {
    return Complete(line, config_).words;
  }

  Config config_;
};

TEST_F(Completion, OffersCommands) {
  EXPECT_THAT(WordsFor("l"), ElementsAre("linktrace", "loopback"));
  EXPECT_THAT(WordsFor("  sh"), ElementsAre("show"));
  EXPECT_EQ(WordsFor("").size(), 8U);
  EXPECT_THAT(WordsFor("x"), IsEmpty());
}

TEST_F(Completion, OffersNamesFromTheConfiguration) {
  EXPECT_THAT(WordsFor("linktrace "), ElementsAre("metro", "metropolis"));
  EXPECT_THAT(WordsFor("linktrace metrop"), ElementsAre("metropolis"));
  EXPECT_THAT(WordsFor("show metro "), ElementsAre("\"line 1\"", "other"));
  EXPECT_THAT(WordsFor("show metro \"line"), ElementsAre("\"line 1\""));
  EXPECT_THAT(WordsFor("show metropolis "), IsEmpty());
  EXPECT_THAT(WordsFor("show nowhere "), IsEmpty());
}

TEST_F(Completion, OffersLocalAndThenRemoteMeps) {
  EXPECT_THAT(WordsFor("delay metro \"line 1\" "), ElementsAre("1", "30"));
  EXPECT_THAT(WordsFor("delay metro \"line 1\" 1 3"), ElementsAre("30", "31"));
  EXPECT_THAT(WordsFor("delay metro \"line 1\" 30 3"), ElementsAre("31"));
}

TEST_F(Completion, OffersOptionsBehindThePlaces) {
  EXPECT_THAT(WordsFor("linktrace metro \"line 1\" 1 2 "), ElementsAre("ttl="));
  EXPECT_THAT(WordsFor("clear "), ElementsAre("domain=", "association=", "mep-id="));
  EXPECT_THAT(WordsFor("clear m"), ElementsAre("mep-id="));
  EXPECT_THAT(WordsFor("statistics "), IsEmpty());
}

TEST_F(Completion, TellsWhereTheWordBegins) {
  EXPECT_EQ(Complete("show met", config_).word_begins, 5U);
  EXPECT_EQ(Complete("show metro ", config_).word_begins, 11U);
  EXPECT_EQ(Complete("show metro \"line 1", config_).word_begins, 11U);
}

}  // namespace
}  // namespace cfm_agent::testing
