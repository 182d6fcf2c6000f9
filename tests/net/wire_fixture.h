/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * A network namespace with veth pairs, for tests with real frames.
 */
#ifndef CFM_TESTS_NET_WIRE_FIXTURE_H
#define CFM_TESTS_NET_WIRE_FIXTURE_H

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "engine/surroundings.h"
#include "net/packet/file_descriptor.h"
#include "network_namespace.h"

namespace cfm_mgr::net {

using Octets = std::vector<std::uint8_t>;

using cfm_test::EnterNamespace;
using cfm_test::Runs;

/** Runs a command of ip(8): "link set v0 up". Fails the test when that fails. */
void Ip(const std::string& command);

/** Sets an interface up and waits until it carries frames; its other end has to be up. */
void SetUpAndWait(const std::string& interface);

engine::PortId IndexOf(const std::string& interface);
engine::Mac MacOf(const std::string& interface);

/** Waits until a condition holds; false when it does not within some seconds. */
bool WaitUntil(const std::function<bool()>& condition);

/** Sends octets as they are by an interface: the other end of a wire, without the code under test.
 */
class RawSender {
 public:
  explicit RawSender(const std::string& interface);
  void Send(const Octets& octets) const;

 private:
  FileDescriptor socket_;
  int interface_;
};

/**
 * In a namespace of its own, with the interfaces v0 and v1 that are joined and up. Skips its tests
 * where a namespace or veth pairs are not to be had.
 */
class WireTest : public testing::Test {
 protected:
  void SetUp() override;

  /** Adds a pair and sets both ends up. */
  static void AddPair(const std::string& one, const std::string& other);
};

}  // namespace cfm_mgr::net

#endif
