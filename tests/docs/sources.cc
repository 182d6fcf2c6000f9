// SPDX-License-Identifier: Apache-2.0
#include "sources.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <sstream>

namespace docs {
namespace {

// Calls visit(match) for each place where the pattern matches.
template <typename Visit>
void ForEach(const std::string& text, const std::regex& pattern, Visit visit) {
  for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match) {
    visit(*match);
  }
}

// The value of string literals that stand one after the other, without line ends around it.
std::string ValueOf(const std::string& literals) {
  static const std::regex literal(R"re("((?:[^"\\]|\\.)*)")re");
  std::string value;
  ForEach(literals, literal, [&](const std::smatch& match) { value += match[1]; });
  value = std::regex_replace(value, std::regex(R"(\\n)"), "\n");
  return std::regex_replace(value, std::regex(R"(^\n+|\n+$)"), "");
}

const std::string kLiterals = R"re(((?:\s*"(?:[^"\\]|\\.)*")+))re";

}  // namespace

std::string ReadFile(const std::string& path) {
  std::ifstream file(CFM_SOURCE_DIR "/" + path);
  EXPECT_TRUE(file.is_open()) << path;
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

std::set<std::string> LogRecords(const std::string& text) {
  static const std::regex point(R"re(LogPoint k\w+\{"(~?\w+)", (\d+), k(Progress|Dump)Level,)re" +
                                kLiterals + R"(\})");
  std::set<std::string> records;
  ForEach(text, point, [&](const std::smatch& match) {
    const std::string level = match[3] == "Dump" ? "11" : "10";
    records.insert(match.str(1) + " line " + match.str(2) + " level " + level + ": " +
                   ValueOf(match[4]));
  });
  return records;
}

std::set<std::string> Faults(const std::string& text) {
  static const std::regex point(R"re(FaultPoint k\w+\{"(~?\w+)", (\d+),)re" + kLiterals + R"(\})");
  std::set<std::string> faults;
  ForEach(text, point, [&](const std::smatch& match) {
    faults.insert(match.str(1) + " line " + match.str(2) + " fault: " + ValueOf(match[3]));
  });
  return faults;
}

std::set<std::string> Fields(const std::string& text) {
  static const std::regex message(R"(\nmessage (\w+) \{\n([^}]*)\})");
  static const std::regex field(R"((optional|repeated) (\w+) (\w+) = (\d+))");
  std::set<std::string> fields;
  ForEach(text, message, [&](const std::smatch& found) {
    const std::string body = found[2];
    ForEach(body, field, [&](const std::smatch& match) {
      const std::string rule = match[1] == "repeated" ? "repeated " : "";
      fields.insert(found.str(1) + "." + match.str(3) + " = " + match.str(4) + " " + rule +
                    match.str(2));
    });
  });
  return fields;
}

std::set<std::string> Identifiers(const std::string& text) {
  static const std::regex identifier(
      R"(/\*\* (\d+): (?:`(\w+)`|no payload) \*/\nextern CFM_API [^;]*CFM_MGR_(\w+);)");
  std::set<std::string> identifiers;
  ForEach(text, identifier, [&](const std::smatch& match) {
    identifiers.insert(match.str(3) + " = " + match.str(1) + " " +
                       (match[2].matched ? match.str(2) : "nothing"));
  });
  return identifiers;
}

std::set<std::string> Refusals(const std::string& header, const std::string& source) {
  static const std::regex enumerator(R"((\w+) = (\d+),)");
  std::set<std::string> refusals;
  ForEach(header, enumerator, [&](const std::smatch& code) {
    const std::regex text("case TriggerError::" + code.str(1) + ":\\s*return" + kLiterals + ";");
    ForEach(source, text, [&](const std::smatch& match) {
      refusals.insert(code.str(2) + ": " + ValueOf(match[1]));
    });
  });
  return refusals;
}

std::set<std::string> Functions(const std::string& text) {
  static const std::regex function(R"(\n\w[^\n(;]*\b((?:vorx|sepan)_\w+)\()");
  std::set<std::string> functions;
  ForEach(text, function, [&](const std::smatch& match) { functions.insert(match[1]); });
  return functions;
}

}  // namespace docs
