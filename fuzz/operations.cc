// SPDX-License-Identifier: Apache-2.0
// Sequences of what applications, servers and hosts do, against a model of the server.
#include "byte_reader.h"
#include "configuration_edits.h"
#include "world.h"

namespace cfm_fuzz {
namespace {

class Run {
 public:
  explicit Run(ByteReader input) : input_(input) {}

  void Go() {
    for (int steps = 0; steps < 400 && !input_.AtEnd(); ++steps) {
      Step();
    }
  }

 private:
  void Step() {
    switch (input_.Next() % 16) {
      case 0:
      case 1:
      case 2:
        EditHierarchy(input_, hierarchy_);
        break;
      case 3:
        EditProbes(input_, probes_);
        break;
      case 4:
        SpoilOrRepair();
        break;
      case 5:
        world_.HandIn(hierarchy_);
        break;
      case 6:
        world_.HandIn(probes_);
        break;
      case 7:
        world_.LoseServer();
        break;
      case 8:
        world_.FindServer();
        break;
      case 9:
        world_.ReplyWithCache();
        break;
      case 10:
        RestartServer();
        break;
      case 11:
        RestartApplication();
        break;
      case 12:
        ReplyLate();
        break;
      case 13:
        Report();
        break;
      case 14:
        ActInHandlers();
        break;
      default:
        world_.RunTests();
        break;
    }
  }

  void SpoilOrRepair() {
    if (input_.Next() % 2 == 0) {
      Spoil(input_, hierarchy_);
    } else {
      Repair(hierarchy_);
    }
  }

  // The host may notice both, or only that the process is another one, and the server may have
  // kept its configuration.
  void RestartServer() {
    const unsigned how = input_.Next();
    if ((how & 1U) == 0) {
      world_.LoseServer();
    }
    if ((how & 2U) == 0) {
      world_.ClearServer();
    }
    world_.FindServer();
    if ((how & 4U) == 0) {
      world_.ReplyWithCache();
    }
  }

  void RestartApplication() {
    const unsigned how = input_.Next();
    world_.RestartApplication();
    if ((how & 1U) == 0) {
      world_.HandIn(hierarchy_);
    }
    if ((how & 2U) == 0) {
      world_.HandIn(probes_);
    }
    world_.FindServer();
    world_.ReplyWithCache();
  }

  // A reply that was on its way while things changed.
  void ReplyLate() {
    if (input_.Next() % 2 == 0) {
      late_cache_ = world_.Cache();
    } else {
      world_.ReplyWith(late_cache_);
    }
  }

  void Report() {
    const Callback& callback = Callbacks()[input_.Next() % Callbacks().size()];
    const std::string payload(input_.Take(input_.Next() % 64));
    if (&callback == &Callbacks().front()) {
      world_.ReplyWith(payload);
    } else {
      world_.Report(callback, payload);
    }
  }

  // Until the next change of this kind, every call to the status handler hands in what there is.
  void ActInHandlers() {
    auto& then = world_.handlers().status.then;
    if (input_.Next() % 2 == 0) {
      then = [this] {
        world_.HandIn(hierarchy_);
        world_.HandIn(probes_);
      };
    } else {
      then = nullptr;
    }
  }

  ByteReader input_;
  World world_;
  cfm::hierarchy hierarchy_;
  cfm::probe probes_;
  std::string late_cache_;
};

}  // namespace
}  // namespace cfm_fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cfm_fuzz::Run(cfm_fuzz::ByteReader(data, size)).Go();
  return 0;
}
