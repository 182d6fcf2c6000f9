// SPDX-License-Identifier: Apache-2.0
#include "private_bus.h"

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

namespace cfm_test {
namespace {

constexpr std::chrono::seconds kStartLimit(20);
constexpr std::chrono::milliseconds kInterval(2);

std::string ConfigWithLimits(const std::string& address,
                             const std::map<std::string, std::int64_t>& limits) {
  std::ostringstream text;
  text << "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
          " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
          "<busconfig>\n  <type>session</type>\n  <listen>"
       << address
       << "</listen>\n  <auth>EXTERNAL</auth>\n  <policy context=\"default\">\n"
          "    <allow send_destination=\"*\"/>\n    <allow receive_sender=\"*\"/>\n"
          "    <allow own=\"*\"/>\n  </policy>\n";
  for (const auto& [name, value] : limits) {
    text << "  <limit name=\"" << name << "\">" << value << "</limit>\n";
  }
  text << "</busconfig>\n";
  return text.str();
}

}  // namespace

TemporaryDirectory::TemporaryDirectory()
    : path_((std::filesystem::temp_directory_path() / "cfm-test-XXXXXX").string()) {
  if (mkdtemp(path_.data()) == nullptr) {
    throw std::runtime_error("no temporary directory could be made from " + path_);
  }
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string ReadFile(const std::string& path) {
  const std::ifstream file(path, std::ios::binary);
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

PrivateBus::PrivateBus() : address_("unix:path=" + directory_.File("bus")) { Start(); }

PrivateBus::PrivateBus(const std::map<std::string, std::int64_t>& limits)
    : address_("unix:path=" + directory_.File("bus")), config_(directory_.File("bus.conf")) {
  std::ofstream(config_) << ConfigWithLimits(address_, limits);
  Start();
}

void PrivateBus::Restart() {
  std::filesystem::remove(directory_.File("bus"));
  std::filesystem::remove(directory_.File("ready"));
  Start();
}

void PrivateBus::Start() {
  std::vector<std::string> command = {"dbus-daemon", "--nofork", "--nopidfile", "--print-address",
                                      "--address=" + address_};
  command.push_back(config_.empty() ? "--session" : "--config-file=" + config_);
  const std::string ready = directory_.File("ready");
  const std::string errors = directory_.File("errors");
  daemon_ = ChildProcess(command, ready, errors);
  // The bus prints its address once it listens there.
  const auto deadline = std::chrono::steady_clock::now() + kStartLimit;
  while (ReadFile(ready).find('\n') == std::string::npos) {
    if (const int status = daemon_.Wait(kInterval); status >= 0) {
      throw std::runtime_error("dbus-daemon ended with status " + std::to_string(status) + ": " +
                               ReadFile(errors));
    }
    if (std::chrono::steady_clock::now() >= deadline) {
      throw std::runtime_error("dbus-daemon does not come up: " + ReadFile(errors));
    }
  }
}

}  // namespace cfm_test
