// SPDX-License-Identifier: Apache-2.0
#include "failure_sweep.h"

#include <cfm/identifiers.h>

#include <algorithm>
#include <array>
#include <iostream>
#include <new>

#include "failing_allocator.h"
#include "failure_configurations.h"

namespace cfm_test {
namespace {

using Record = std::vector<std::string>;

// What shows the state that a client is in. Each is done to a client of its own.
enum class Exam { SameCall, OtherConfiguration, ServerRestart };
constexpr std::array kExams = {Exam::SameCall, Exam::OtherConfiguration, Exam::ServerRestart};
using ExamRecords = std::array<Record, kExams.size()>;

Record Take(World& world, Exam exam, const Operation& operation) {
  world.host.Take();
  switch (exam) {
    case Exam::SameCall:
      operation.run(world);
      break;
    case Exam::OtherConfiguration:
      world.client->UpdateConfig(OtherConfiguration());
      world.client->UpdateConfigProbe(OtherProbes());
      break;
    case Exam::ServerRestart:
      world.host.ServerLost();
      world.host.ServerFound(78);
      world.host.Signal(CFM_MGR_S2C_SIG_CACHE_REPLY, "");
      break;
  }
  return world.host.Take();
}

// No undisturbed client is in step and has yet to apply something. For an exam that does not see
// the one, its twin does without the other.
ClientState Twin(ClientState state, Exam exam, const Operation& operation) {
  const bool desired_shows =
      exam == Exam::ServerRestart || (exam == Exam::SameCall && !operation.depends_on_step);
  if (state.in_step && desired_shows) {
    state.in_step = false;
  } else if (state.in_step) {
    state.desired = state.applied;
    state.desired_probes = state.applied_probes;
  }
  return state;
}

bool Holds(const Record& record, const std::string& beginning) {
  return std::any_of(record.begin(), record.end(),
                     [&](const auto& entry) { return entry.rfind(beginning, 0) == 0; });
}

bool MayHaveReached(const Stage& stage, const Record& record) {
  return stage.not_before.empty() || Holds(record, stage.not_before);
}

bool MustHaveReached(const Stage& stage, const Record& record) {
  return !stage.by_then.empty() && Holds(record, stage.by_then);
}

// One operation with something in it failing.
struct Attempt {
  bool failed = false;  // there was that to fail
  bool threw = false;
  std::size_t allocations_after = 0;
  Record record;
};

bool Throws(World& world, const Operation& operation) {
  try {
    operation.run(world);
  } catch (const std::bad_alloc&) {
    return true;
  }
  return false;
}

Attempt FailAllocation(World& world, const Operation& operation, std::size_t index) {
  Attempt attempt;
  const FailingAllocation failing(index);
  attempt.threw = Throws(world, operation);
  attempt.failed = failing.happened();
  attempt.allocations_after = failing.allocations_after();
  attempt.record = world.host.Take();
  return attempt;
}

Attempt FailCallOut(World& world, const Operation& operation, std::size_t index) {
  Attempt attempt;
  world.host.on_note = [&attempt, index, calls = std::size_t{0}]() mutable {
    if (calls++ == index) {
      attempt.failed = true;
      throw std::bad_alloc();
    }
  };
  attempt.threw = Throws(world, operation);
  world.host.on_note = [] {};
  attempt.record = world.host.Take();
  return attempt;
}

class Sweep {
 public:
  using Try = Attempt (*)(World&, const Operation&, std::size_t index);

  Sweep(const Operation& operation, Try attempt) : operation_(operation), try_(attempt) {
    stages_.push_back({operation.before, "", ""});
    stages_.insert(stages_.end(), operation.stages.begin(), operation.stages.end());
    for (const Stage& stage : stages_) {
      shown_at_.push_back(ExamsOf(stage.state));
    }
    whole_ = shown_at_.front()[0];
    held_ = HeldByLibrary().blocks;  // what protobuf and the like keep for ever
  }

  std::size_t Run() {
    std::size_t index = 0;
    while (Fail(index) && !testing::Test::HasFailure()) {
      ++index;
    }
    return index;
  }

 private:
  World MakeWorld(const ClientState& state) const {
    return World(state, operation_.with_handlers, operation_.with_dumps);
  }

  ExamRecords ExamsOf(const ClientState& state) const {
    ExamRecords records;
    for (std::size_t i = 0; i < kExams.size(); ++i) {
      World world = MakeWorld(Twin(state, kExams[i], operation_));
      records[i] = Take(world, kExams[i], operation_);
    }
    return records;
  }

  // Whether there was something of this index to fail.
  bool Fail(std::size_t index) {
    SCOPED_TRACE("failure " + std::to_string(index));
    std::vector<std::size_t> possible;
    for (std::size_t i = 0; i < kExams.size(); ++i) {
      SCOPED_TRACE("exam " + std::to_string(i));
      {
        World world = MakeWorld(operation_.before);
        const Attempt attempt = try_(world, operation_, index);
        EXPECT_EQ(attempt.threw, attempt.failed);
        if (!attempt.failed) {
          EXPECT_EQ(attempt.record, whole_);
        }
        EXPECT_EQ(attempt.allocations_after, 0U);
        EXPECT_TRUE(Begins(whole_, attempt.record));
        if (!attempt.failed) {
          return false;
        }
        if (i == 0) {
          possible = PossibleStages(attempt.record);
        }
        Narrow(possible, i, Take(world, kExams[i], operation_));
      }
      EXPECT_EQ(HeldByLibrary().blocks, held_) << "not freed";
    }
    reached_ = possible.empty() ? reached_ : possible.front();
    return true;
  }

  // A state once reached is not left for an earlier one.
  std::vector<std::size_t> PossibleStages(const Record& record) const {
    std::vector<std::size_t> possible;
    for (std::size_t i = 0; i < stages_.size(); ++i) {
      if (MustHaveReached(stages_[i], record)) {
        possible.clear();
      }
      if (i >= reached_ && MayHaveReached(stages_[i], record)) {
        possible.push_back(i);
      }
    }
    EXPECT_FALSE(possible.empty());
    return possible;
  }

  void Narrow(std::vector<std::size_t>& possible, std::size_t exam, const Record& shown) const {
    const auto differs = [&](std::size_t stage) { return shown_at_[stage][exam] != shown; };
    const std::size_t nearest = possible.back();
    possible.erase(std::remove_if(possible.begin(), possible.end(), differs), possible.end());
    if (possible.empty()) {
      EXPECT_EQ(shown, shown_at_[nearest][exam]) << "neither this stage nor an earlier one fits";
      possible.push_back(nearest);
    }
  }

  const Operation& operation_;
  const Try try_;
  std::vector<Stage> stages_;
  Record whole_;
  std::vector<ExamRecords> shown_at_;  // by an undisturbed client in the state of each stage
  std::size_t held_ = 0;
  std::size_t reached_ = 0;
};

std::size_t total_injected = 0;

class TotalReport : public testing::Environment {
 public:
  void TearDown() override {
    std::cout << "[ injected ] " << total_injected << " allocation failures in all" << std::endl;
  }
};

const testing::Environment* const total_report =
    testing::AddGlobalTestEnvironment(new TotalReport);  // gtest owns it

}  // namespace

ClientState ClientState::InStep(const cfm::hierarchy& config, const cfm::probe& probes) {
  return {config, config, probes, probes, true, true};
}

World::World(const ClientState& state, bool with_handlers, bool with_dumps) {
  host.on_send = [](auto&, auto&) {};
  host.GetInStep();
  client->UpdateConfig(state.applied);
  client->UpdateConfigProbe(state.applied_probes);
  if (state.in_step && !state.server_present) {
    host.ServerLost();
    host.Signal(CFM_MGR_S2C_SIG_CACHE_REPLY, "");
  }
  if (!state.in_step) {
    host.ServerLost();
    client->UpdateConfig(state.desired);
    client->UpdateConfigProbe(state.desired_probes);
    if (state.server_present) {
      host.ServerFound();
    }
  }
  if (with_handlers) {
    handlers.Register(*client);
  }
  host.dump_level_enabled = with_dumps;
  host.on_send = nullptr;
  host.Take();
}

std::size_t FailEachAllocation(const Operation& operation) {
  const std::size_t count = Sweep(operation, FailAllocation).Run();
  CountInjected(count);
  return count;
}

std::size_t FailEachCallOut(const Operation& operation) {
  return Sweep(operation, FailCallOut).Run();
}

void FailEverything(const Operation& operation) {
  EXPECT_GT(FailEachAllocation(operation), 0U);
  EXPECT_GT(FailEachCallOut(operation), 0U);
}

void CountInjected(std::size_t count) { total_injected += count; }

testing::AssertionResult Begins(const std::vector<std::string>& whole,
                                const std::vector<std::string>& beginning) {
  if (beginning.size() <= whole.size() &&
      std::equal(beginning.begin(), beginning.end(), whole.begin())) {
    return testing::AssertionSuccess();
  }
  return testing::AssertionFailure() << testing::PrintToString(whole) << "\ndoes not begin with\n"
                                     << testing::PrintToString(beginning);
}

}  // namespace cfm_test
