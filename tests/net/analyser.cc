// SPDX-License-Identifier: Apache-2.0
#include "analyser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <sstream>
#include <string_view>

#include "wire_fixture.h"

namespace cfm_mgr::net {
namespace {

constexpr std::string_view kMarker = "nothing of interest follows this frame";

// Of a protocol that is nobody's.
Octets MarkerFrame() {
  const std::string addresses(12, '\x02');
  const std::string octets = addresses + "\x88\xb5" + std::string(kMarker);
  return {octets.begin(), octets.end()};
}

std::vector<std::string> Split(const std::string& text, char separator) {
  std::istringstream rest(text);
  std::vector<std::string> parts;
  for (std::string part; std::getline(rest, part, separator);) parts.push_back(part);
  return parts;
}

// Versions of tshark differ in which numbers are hexadecimal, and in how a flag is written.
std::string Normalise(const std::string& value) {
  if (value == "True") return "1";
  if (value == "False") return "0";
  if (value.rfind("0x", 0) == 0) return std::to_string(std::strtoul(value.c_str(), nullptr, 16));
  return value;
}

std::string NormaliseAll(const std::string& values) {
  std::string all;
  for (const std::string& value : Split(values, ',')) {
    if (!all.empty()) all += ',';
    all += Normalise(value);
  }
  return all;
}

}  // namespace

bool Capture::IsPossible() { return Runs("command -v tshark && command -v dumpcap"); }

Capture::Capture(const std::string& interface)
    : interface_(interface),
      dumpcap_({"dumpcap", "-q", "-i", interface, "-w", File("wire.pcap")}, File("out"),
               File("err")) {
  // It says which file it writes when it has begun.
  EXPECT_TRUE(WaitUntil([this] {
    return cfm_test::ReadFile(File("err")).find("File:") != std::string::npos;
  })) << cfm_test::ReadFile(File("err"));
}

void Capture::Finish() {
  RawSender(interface_).Send(MarkerFrame());
  EXPECT_TRUE(WaitUntil(
      [this] { return cfm_test::ReadFile(File("wire.pcap")).find(kMarker) != std::string::npos; }));
  dumpcap_.Signal(SIGINT);
  EXPECT_EQ(dumpcap_.Wait(), 0) << cfm_test::ReadFile(File("err"));
}

std::vector<Fields> Capture::Decode(const std::string& filter,
                                    const std::vector<std::string>& fields) const {
  // A home of its own, because tshark does not always bear one that it may not read.
  std::vector<std::string> command = {"env",    "HOME=" + directory_.path(),
                                      "tshark", "-n",
                                      "-r",     File("wire.pcap"),
                                      "-Y",     filter,
                                      "-T",     "fields"};
  for (const std::string& field : fields) command.insert(command.end(), {"-e", field});
  EXPECT_EQ(cfm_test::ChildProcess(command, File("decoded"), File("err")).Wait(), 0)
      << cfm_test::ReadFile(File("err"));
  std::vector<Fields> frames;
  for (const std::string& line : Split(cfm_test::ReadFile(File("decoded")), '\n')) {
    const std::vector<std::string> values = Split(line, '\t');
    Fields& frame = frames.emplace_back();
    for (std::size_t i = 0; i < std::min(values.size(), fields.size()); ++i) {
      if (!values[i].empty()) frame[fields[i]] = NormaliseAll(values[i]);
    }
  }
  return frames;
}

}  // namespace cfm_mgr::net
