// SPDX-License-Identifier: Apache-2.0
#include "engine/timer_queue.h"

#include <tuple>

namespace cfm_mgr::engine {

bool TimerQueue::Before(const Entry& a, const Entry& b) {
  return std::tie(a.key, a.order) < std::tie(b.key, b.order);
}

TimerQueue::Entry TimerQueue::EntryOf(Timer& timer) { return {timer.due_, timer.order_, &timer}; }

std::optional<Time> TimerQueue::Next() {
  // Timers that were put off find their new places as they come up.
  while (!heap_.empty() && heap_.front().order != heap_.front().timer->order_) {
    SiftDown(0, EntryOf(*heap_.front().timer));
  }
  if (heap_.empty()) return std::nullopt;
  return heap_.front().key;
}

void TimerQueue::RunDue(Time now) {
  for (std::optional<Time> next = Next(); next && *next <= now; next = Next()) {
    Timer& timer = *heap_.front().timer;
    Erase(timer);
    timer.action_(now);
  }
}

void TimerQueue::Insert(Timer& timer) {
  heap_.emplace_back();
  SiftUp(heap_.size() - 1, EntryOf(timer));
}

void TimerQueue::Erase(Timer& timer) {
  const std::size_t position = timer.position_;
  const Entry last = heap_.back();
  heap_.pop_back();
  timer.position_ = Timer::kNotArmed;
  if (position < heap_.size()) Update(position, last);
}

void TimerQueue::Update(std::size_t position, const Entry& entry) {
  if (position > 0 && Before(entry, heap_[(position - 1) / 2])) {
    SiftUp(position, entry);
  } else {
    SiftDown(position, entry);
  }
}

void TimerQueue::Put(std::size_t position, const Entry& entry) {
  heap_[position] = entry;
  entry.timer->position_ = position;
}

void TimerQueue::SiftUp(std::size_t position, const Entry& entry) {
  while (position > 0) {
    const std::size_t parent = (position - 1) / 2;
    if (!Before(entry, heap_[parent])) break;
    Put(position, heap_[parent]);
    position = parent;
  }
  Put(position, entry);
}

void TimerQueue::SiftDown(std::size_t position, const Entry& entry) {
  for (std::size_t child = 2 * position + 1; child < heap_.size(); child = 2 * position + 1) {
    if (child + 1 < heap_.size() && Before(heap_[child + 1], heap_[child])) ++child;
    if (!Before(heap_[child], entry)) break;
    Put(position, heap_[child]);
    position = child;
  }
  Put(position, entry);
}

void Timer::Arm(Time due) {
  const bool armed = position_ != kNotArmed;
  due_ = due;
  order_ = ++queue_.next_order_;
  if (!armed) {
    queue_.Insert(*this);
  } else if (due < queue_.heap_[position_].key) {
    queue_.Update(position_, TimerQueue::EntryOf(*this));
  }
}

void Timer::Stop() {
  if (position_ != kNotArmed) queue_.Erase(*this);
}

std::optional<Time> Timer::due() const {
  if (position_ == kNotArmed) return std::nullopt;
  return due_;
}

}  // namespace cfm_mgr::engine
