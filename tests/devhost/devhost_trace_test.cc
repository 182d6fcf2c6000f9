// SPDX-License-Identifier: Apache-2.0
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>
#include <vorx/host.h>
#include <zlog.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>

#include "child_process.h"
#include "private_bus.h"
#include "test_process.h"

namespace cfm_test {
namespace {

using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr int kTrace = 10;
constexpr int kDump = 11;

void Log(zlog_category_t* category, int level, const std::string& text) {
  const std::string file = "client_impl.cc";
  const std::string function = "ServerFound";
  zlog(category, file.c_str(), file.size(), function.c_str(), function.size(), 75, level, "%s",
       text.c_str());
}

/** zlog is set up once per process: every test runs in a process of its own. */
class Tracing : public testing::Test {
 protected:
  void SetUp() override { unsetenv("VORX_LOG_CONFIG"); }

  /** What @p body, which returns whether all went well, writes to standard error. */
  std::string StderrOf(const std::function<bool()>& body) {
    const std::string path = directory_.File("stderr");
    ChildProcess child([&] {
      const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
      dup2(file, STDERR_FILENO);
      return body() ? 0 : 1;
    });
    EXPECT_EQ(child.Wait(), 0);
    return ReadFile(path);
  }

  std::string WriteConfig(const std::string& name, const std::string& content) {
    const std::string path = directory_.File(name);
    std::ofstream(path) << content;
    return path;
  }
  /** A configuration whose lines begin with a mark. */
  std::string WriteMarkedConfig(const std::string& name, const std::string& mark) {
    return WriteConfig(name, "[formats]\nf = \"" + mark + " %m%n\"\n[rules]\n*.* >stderr; f\n");
  }

  TemporaryDirectory directory_;
  PrivateBus bus_;
};

TEST_F(Tracing, ShipsAConfigurationWithNamedLevels) {
  const std::string said = StderrOf([&] {
    const TestProcess process(bus_, "process");
    zlog_category_t* const category = vorx_trace_init(process.get(), "cfm-mgr");
    Log(category, kTrace, "server found");
    Log(category, kDump, "a dump");
    return zlog_level_enabled(category, kDump) != 0;
  });
  EXPECT_THAT(said, ContainsRegex("20[0-9-]+ [0-9:]+\\.[0-9]+ cfm-mgr TRACE client_impl\\.cc:75 "
                                  "ServerFound: server found\n"));
  EXPECT_THAT(said, ContainsRegex(" cfm-mgr DUMP client_impl\\.cc:75 ServerFound: a dump\n"));
}

TEST_F(Tracing, WritesARecordOfSeveralMegabytesWhole) {
  constexpr std::size_t kSize = std::size_t{12} << 20U;
  const std::string said = StderrOf([&] {
    const TestProcess process(bus_, "process");
    zlog_category_t* const category = vorx_trace_init(process.get(), "cfm-mgr");
    Log(category, kTrace, std::string(kSize, 'x') + "the end");
    return true;
  });
  EXPECT_GT(said.size(), kSize);
  EXPECT_THAT(said.substr(said.size() - 10), EndsWith("xthe end\n"));
}

TEST_F(Tracing, TakesTheConfigurationOfTheOptionThenOfTheEnvironment) {
  const std::string option = WriteMarkedConfig("option.conf", "by-option");
  const std::string variable = WriteMarkedConfig("variable.conf", "by-variable");
  const auto log_with = [&](const std::string& config) {
    return StderrOf([&] {
      setenv("VORX_LOG_CONFIG", variable.c_str(), 1);
      const TestProcess process(bus_, "process", {0, 0, config});
      Log(vorx_trace_init(process.get(), "c"), kTrace, "text");
      return true;
    });
  };
  EXPECT_EQ(log_with(option), "by-option text\n");
  EXPECT_EQ(log_with(""), "by-variable text\n");
}

TEST_F(Tracing, GivesEveryHandleOfAProcessItsCategories) {
  const std::string said = StderrOf([&] {
    const TestProcess first(bus_, "first");
    const TestProcess second(bus_, "second");
    zlog_category_t* const a = vorx_trace_init(first.get(), "a");
    zlog_category_t* const b = vorx_trace_init(second.get(), "b");
    return a != nullptr && b != nullptr && a != b && vorx_trace_init(first.get(), "b") == b;
  });
  EXPECT_THAT(said, IsEmpty());
}

TEST_F(Tracing, KeepsTheFirstConfigurationOfAProcess) {
  const std::string first_config = WriteMarkedConfig("first.conf", "first");
  const std::string second_config = WriteMarkedConfig("second.conf", "second");
  const std::string said = StderrOf([&] {
    const TestProcess first(bus_, "one", {0, 0, first_config});
    const TestProcess second(bus_, "two", {0, 0, second_config});
    vorx_trace_init(first.get(), "a");
    Log(vorx_trace_init(second.get(), "b"), kTrace, "text");
    return true;
  });
  EXPECT_THAT(said, HasSubstr("vorx two: logging stays as '" + first_config + "'"));
  EXPECT_THAT(said, EndsWith("first text\n"));
}

TEST_F(Tracing, UsesASetUpThatTheProgramMadeItself) {
  const std::string own = WriteMarkedConfig("own.conf", "own");
  EXPECT_THAT(StderrOf([&] {
                zlog_init(own.c_str());
                const TestProcess process(bus_, "process");
                Log(vorx_trace_init(process.get(), "c"), kTrace, "text");
                return true;
              }),
              EndsWith("own text\n"));
}

TEST_F(Tracing, FailsWithTheNameOfAMissingFile) {
  EXPECT_THAT(StderrOf([&] {
                const TestProcess process(bus_, "process", {0, 0, "/nonexistent/log.conf"});
                return vorx_trace_init(process.get(), "c") == nullptr;
              }),
              HasSubstr("vorx process: cannot set up logging: the configuration file "
                        "'/nonexistent/log.conf': No such file or directory"));
}

TEST_F(Tracing, FailsWithTheNameOfAFileThatMakesNoSense) {
  const std::string bad = WriteConfig("bad.conf", "[rules]\nthis is no rule\n");
  EXPECT_THAT(StderrOf([&] {
                const TestProcess process(bus_, "process", {0, 0, bad});
                return vorx_trace_init(process.get(), "c") == nullptr;
              }),
              HasSubstr("does not accept the configuration file '" + bad + "'"));
}

TEST_F(Tracing, WorksAfterAFailure) {
  const std::string good = WriteMarkedConfig("good.conf", "good");
  EXPECT_THAT(StderrOf([&] {
                const TestProcess broken(bus_, "broken", {0, 0, "/nonexistent/log.conf"});
                const TestProcess working(bus_, "working", {0, 0, good});
                vorx_trace_init(broken.get(), "c");
                Log(vorx_trace_init(working.get(), "c"), kTrace, "text");
                return true;
              }),
              EndsWith("good text\n"));
}

TEST_F(Tracing, FailsWithoutHandleOrName) {
  EXPECT_THAT(StderrOf([&] {
                const TestProcess process(bus_, "process");
                return vorx_trace_init(nullptr, "c") == nullptr &&
                       vorx_trace_init(process.get(), nullptr) == nullptr &&
                       vorx_trace_init(process.get(), "") == nullptr;
              }),
              HasSubstr("a category needs a name"));
}

}  // namespace
}  // namespace cfm_test
