/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Deadlines within an engine.
 *
 * Many of them are put off again and again and seldom come: those of remote MEPs with each CCM. To
 * put a deadline off costs next to nothing; the heap learns of it when the old one comes up.
 */
#ifndef CFM_MGR_ENGINE_TIMER_QUEUE_H
#define CFM_MGR_ENGINE_TIMER_QUEUE_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "engine/time.h"

namespace cfm_mgr::engine {

class Timer;

/** The armed timers in order of their deadlines; those of one moment in the order of arming. */
class TimerQueue {
 public:
  TimerQueue() = default;
  TimerQueue(const TimerQueue&) = delete;
  TimerQueue& operator=(const TimerQueue&) = delete;
  ~TimerQueue() = default;

  /** The earliest deadline; none when no timer is armed. */
  std::optional<Time> Next();

  /** Runs the actions of all timers that are due. Actions may arm and stop any timer. */
  void RunDue(Time now);

 private:
  friend class Timer;

  struct Entry {
    Time key;             ///< Not after the timer's deadline.
    std::uint64_t order;  ///< Decides between equal keys.
    Timer* timer;
  };

  static bool Before(const Entry& a, const Entry& b);
  static Entry EntryOf(Timer& timer);
  void Insert(Timer& timer);
  void Erase(Timer& timer);
  void Update(std::size_t position, const Entry& entry);
  void Put(std::size_t position, const Entry& entry);
  void SiftUp(std::size_t position, const Entry& entry);
  void SiftDown(std::size_t position, const Entry& entry);

  std::vector<Entry> heap_;
  std::uint64_t next_order_ = 0;
};

/** One deadline at a time. It neither moves nor outlives its queue. */
class Timer {
 public:
  using Action = std::function<void(Time now)>;

  /** @param action Runs in TimerQueue::RunDue(); the timer is not armed any more then. */
  Timer(TimerQueue& queue, Action action) : queue_(queue), action_(std::move(action)) {}
  ~Timer() { Stop(); }
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;

  /** Sets the deadline, whether or not there was one. */
  void Arm(Time due);
  void Stop();
  /** The deadline; none when the timer is not armed. */
  std::optional<Time> due() const;

 private:
  friend class TimerQueue;
  static constexpr std::size_t kNotArmed = static_cast<std::size_t>(-1);

  TimerQueue& queue_;
  Action action_;
  Time due_{};
  std::uint64_t order_ = 0;
  std::size_t position_ = kNotArmed;  ///< In the heap.
};

}  // namespace cfm_mgr::engine

#endif
