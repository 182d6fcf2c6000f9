// SPDX-License-Identifier: Apache-2.0
// What the guides say is complete, and of nothing that is not there.
#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>
#include <regex>

#include "markdown.h"
#include "sources.h"

namespace docs {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

using Lines = std::set<std::string>;

Lines Without(const Lines& some, const Lines& others) {
  Lines rest;
  std::set_difference(some.begin(), some.end(), others.begin(), others.end(),
                      std::inserter(rest, rest.end()));
  return rest;
}

// How often the pattern matches: what is read from a source has to be as many.
std::ptrdiff_t Count(const std::string& text, const std::string& pattern) {
  const std::regex regex(pattern);
  return std::distance(std::sregex_iterator(text.begin(), text.end(), regex),
                       std::sregex_iterator());
}

std::vector<Section> Guide(const std::string& name) {
  return ReadPage(ReadFile("docs/guides/" + name));
}

// The lines "`ServerFound`, line 75, level 10", with the text that the section is about: that of
// the code right below, or the heading.
Lines DescribedRecords(const std::string& kind) {
  static const std::regex place(R"((?:- )?`(~?\w+)`, line (\d+), (level \d+|fault))");
  Lines records;
  for (const Section& section : Guide("troubleshooting.md")) {
    const std::string text = section.blocks.empty() ? section.heading : section.blocks.front().text;
    for (const std::string& line : section.lines) {
      std::smatch match;
      if (std::regex_match(line, match, place) && match.str(3).find(kind) == 0) {
        records.insert(match.str(1) + " line " + match.str(2) + " " + match.str(3) + ": " + text);
      }
    }
  }
  return records;
}

TEST(TroubleshootingGuide, DescribesEveryLogRecordAndNoOther) {
  const std::string source = ReadFile("src/log_points.h");
  const Lines records = LogRecords(source);
  const Lines described = DescribedRecords("level");
  EXPECT_THAT(records, SizeIs(Count(source, " LogPoint ")));
  EXPECT_THAT(Without(records, described), IsEmpty()) << "not in the guide";
  EXPECT_THAT(Without(described, records), IsEmpty()) << "not in the library";
}

TEST(TroubleshootingGuide, DescribesEveryFaultAndNoOther) {
  const std::string source = ReadFile("src/log_points.h");
  Lines faults;
  for (const std::string& fault : Faults(source)) {
    faults.insert(fault.back() == ' ' ? fault + "A fault without text" : fault);
  }
  const Lines described = DescribedRecords("fault");
  EXPECT_THAT(faults, SizeIs(Count(source, " FaultPoint ")));
  EXPECT_THAT(Without(faults, described), IsEmpty()) << "not in the guide";
  EXPECT_THAT(Without(described, faults), IsEmpty()) << "not in the library";
}

TEST(TroubleshootingGuide, SaysOfEachRecordWhenItComesAndWhatToDo) {
  static const std::regex place("(?:- )?`~?\\w+`, line .*");
  for (const Section& section : Guide("troubleshooting.md")) {
    const auto begins = [](const std::string& with) {
      return [with](const std::string& line) { return line.find(with) == 0; };
    };
    const auto& lines = section.lines;
    const bool is_record = std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
      return std::regex_match(line, place);
    });
    if (is_record) {
      EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), begins("**When.** "))) << section.heading;
      EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), begins("**What to do.** ")))
          << section.heading;
    }
  }
}

TEST(WireSchemaGuide, DescribesEveryFieldAndNoOther) {
  const std::string source = ReadFile("proto/cfm/client_server.proto");
  const Lines fields = Fields(source);
  Lines described;
  for (const Section& section : Guide("wire-schema.md")) {
    for (const auto& row : section.rows) {
      const bool is_field = section.depth == 3 && row.size() >= 4 && row[0] != "no." &&
                            row[0].find("--") == std::string::npos;
      if (is_field) {
        EXPECT_FALSE(row[3].empty()) << section.heading << ' ' << row[1];
        described.insert(section.heading + "." + Plain(row[1]) + " = " + row[0] + " " +
                         Plain(row[2]));
      }
    }
  }
  EXPECT_THAT(fields, SizeIs(Count(source, R"( = \d+[ ;])")));
  EXPECT_THAT(Without(fields, described), IsEmpty()) << "not in the guide";
  EXPECT_THAT(Without(described, fields), IsEmpty()) << "not in the schema";
}

TEST(WireSchemaGuide, DescribesEverySignalAndEventAndNoOther) {
  static const std::regex prefix(R"(identifier CFM_MGR_(\w+_)\.\.\.)");
  const std::string source = ReadFile("include/cfm/identifiers.h");
  const Lines identifiers = Identifiers(source);
  Lines described;
  std::string family;
  for (const Section& section : Guide("wire-schema.md")) {
    for (const auto& row : section.rows) {
      std::smatch match;
      const std::string second = row.size() > 2 ? Plain(row[1]) : "";
      if (std::regex_match(second, match, prefix)) {
        family = match[1];
      } else if (section.heading == "Signals and events" && second.find("--") != 0) {
        described.insert(family + second + " = " + row[0] + " " + Plain(row[2]));
      }
    }
  }
  // All but the server's own.
  EXPECT_THAT(identifiers, SizeIs(Count(source, "extern CFM_API const vorx_") - 1));
  EXPECT_THAT(Without(identifiers, described), IsEmpty()) << "not in the guide";
  EXPECT_THAT(Without(described, identifiers), IsEmpty()) << "not in the header";
}

TEST(HostGuide, DescribesEveryFunctionOfTheHostAndNoOther) {
  const std::string source =
      ReadFile("platform/include/vorx/vorx.h") + ReadFile("platform/include/sepan/sepan.h");
  const Lines functions = Functions(source);
  Lines described;
  for (const Section& section : Guide("host-integration.md")) {
    if (section.depth == 3) {
      described.insert(Plain(section.heading));
    }
  }
  const auto types = Count(source, R"(\ntypedef [^(;]*\()");
  EXPECT_THAT(functions, SizeIs(Count(source, R"(\n\w[^;}/]*\);)") - types));
  EXPECT_THAT(Without(functions, described), IsEmpty()) << "not in the guide";
  EXPECT_THAT(Without(described, functions), IsEmpty()) << "not in the headers";
}

TEST(HostGuide, SaysOfEachFunctionWhatItMustDoItsThreadItsOwnershipAndItsFailure) {
  for (const Section& section : Guide("host-integration.md")) {
    Lines said;
    for (const auto& row : section.rows) {
      if (row.size() == 2 && !row[1].empty()) {
        said.insert(row[0]);
      }
    }
    const Lines wanted = {"called", "must do", "thread", "ownership", "on failure"};
    if (section.depth == 3) {
      EXPECT_THAT(Without(wanted, said), IsEmpty()) << section.heading;
    }
  }
}

TEST(ReferenceServerPage, ExplainsEveryRefusalCodeAndNoOther) {
  const std::string header = ReadFile("mgr/trigger_error.h");
  const Lines refusals = Refusals(header, ReadFile("mgr/server.cc"));
  Lines described;
  for (const Section& section : ReadPage(ReadFile("docs/reference-server.md"))) {
    for (const auto& row : section.rows) {
      const bool is_code = section.heading == "Refusal codes" && row.size() == 3 &&
                           row[0].find_first_not_of("0123456789") == std::string::npos;
      if (is_code) {
        EXPECT_FALSE(row[2].empty()) << row[0];
        described.insert(row[0] + ": " + Plain(row[1]));
      }
    }
  }
  EXPECT_THAT(refusals, SizeIs(Count(header, R"(\w = \d+,)")));
  EXPECT_THAT(Without(refusals, described), IsEmpty()) << "not on the page";
  EXPECT_THAT(Without(described, refusals), IsEmpty()) << "not in the server";
}

}  // namespace
}  // namespace docs
