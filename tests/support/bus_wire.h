/* SPDX-License-Identifier: Apache-2.0 */
#ifndef CFM_TESTS_SUPPORT_BUS_WIRE_H
#define CFM_TESTS_SUPPORT_BUS_WIRE_H

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "private_bus.h"
#include "unique_fd.h"

namespace cfm_test {

/**
 * A wire to a message bus that a test can hold after any message, cut, and slow down. Processes
 * that connect to its address reach the bus through it.
 *
 * Bytes pass in order and unchanged. All connections of one wire share its state. Cut() loses what
 * a process has written and the wire has not passed on yet, as if the process had not come to write
 * it. Of a process or bus that hangs up by itself, all that it wrote is passed on first.
 */
class BusWire {
 public:
  enum class Direction : std::size_t { kToBus, kFromBus };

  /** Of each direction of a connection this many bytes pass at a time, with a pause in between. */
  struct Pace {
    std::size_t bytes;
    std::chrono::microseconds pause;
  };

  /** @param bus  the address to pass on to, "unix:path=..." */
  explicit BusWire(const std::string& bus);
  ~BusWire();
  BusWire(const BusWire&) = delete;
  BusWire& operator=(const BusWire&) = delete;

  const std::string& address() const { return address_; }

  /** How many whole messages have passed this way, on all connections. */
  std::uint64_t Passed(Direction direction) const;

  /**
   * Holds all connections, in both directions, as soon as this many messages have passed this way
   * since the wire was made.
   */
  void HoldAfter(Direction direction, std::uint64_t messages);
  /** Whether it holds, and everything that passed has been read. */
  bool IsHeld() const;

  /** Hangs up all connections on both sides, and holds the ones that follow no longer. */
  void Cut();

  void Slow(Pace pace);

 private:
  using Clock = std::chrono::steady_clock;

  /** The bytes of one connection that go one way. */
  struct Flow {
    Direction direction;
    std::string buffer;         // read, not passed on yet
    std::size_t unit_left = 0;  // bytes that still have to pass of what has begun to pass
    bool is_message = false;    // that this is a message
    bool ended = false;         // the source has hung up
    std::size_t budget = 0;     // bytes that may pass before the next pause
    Clock::time_point not_before;
  };

  struct Connection {
    UniqueFd process;
    UniqueFd bus;
    Flow to_bus;
    Flow from_bus;
  };

  struct Hold {
    Direction direction;
    std::uint64_t messages;
  };

  void Run();
  void Wait();
  void Accept();
  void Serve(Connection& connection);
  void Read(const UniqueFd& source, Flow& flow) const;
  void Write(const UniqueFd& destination, Flow& flow);
  void NotePassed(Flow& flow, std::size_t bytes);
  bool IsPassable(const Flow& flow) const;
  bool Holds() const;
  bool IsAllRead() const;
  void Wake() const;

  TemporaryDirectory directory_;
  std::string address_;
  std::string bus_path_;
  UniqueFd listener_;
  UniqueFd wake_up_;

  mutable std::mutex mutex_;
  bool is_stopping_ = false;
  std::list<Connection> connections_;
  std::array<std::uint64_t, 2> passed_{};
  std::optional<Hold> hold_;
  std::optional<Pace> pace_;

  std::thread thread_;
};

}  // namespace cfm_test

#endif
