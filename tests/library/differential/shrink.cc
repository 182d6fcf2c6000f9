// SPDX-License-Identifier: Apache-2.0
#include "shrink.h"

#include <iterator>
#include <optional>
#include <type_traits>

#include "record_fields.h"

namespace cfm_test {
namespace {

// Goes over a script and makes, of all the reductions that there are, the one of the given number.
class Reduction {
 public:
  explicit Reduction(std::size_t number) : left_(number) {}

  /// Whether there was one of that number.
  bool In(Script& script) {
    EraseOne(script);
    for (Step& step : script) {
      std::visit([&](auto& content) { InStep(content); }, step);
    }
    return done_;
  }

 private:
  bool Now() {
    if (done_ || left_-- != 0) {
      return false;
    }
    done_ = true;
    return true;
  }

  template <typename Container>
  void EraseOne(Container& container) {
    for (auto element = container.begin(); element != container.end(); ++element) {
      if (Now()) {
        container.erase(element);
        return;
      }
    }
  }

  template <typename Value>
  void InField(Value& value) {
    if (value != Value{} && Now()) {
      value = Value{};
    }
  }
  void InField(std::vector<std::uint16_t>& values) { EraseOne(values); }
  void InField(std::set<std::uint16_t>& values) { EraseOne(values); }

  template <typename Record>
  void InRecord(Record& record) {
    ForEachField(record, [&](const char*, auto& field) { InField(field); });
  }

  void InStep(ServerFound& /*step*/) {}
  void InStep(ServerLost& /*step*/) {}

  void InStep(CacheReply& step) {
    if (step.cut != 0 && Now()) {
      step.cut = 0;
    }
    EraseOne(*step.cache.mutable_mds());
    EraseOne(*step.cache.mutable_mas());
    EraseOne(*step.cache.mutable_meps());
    EraseOne(*step.cache.mutable_probes());
    EraseOne(*step.cache.mutable_sessions());
  }

  void InStep(cfm::hierarchy& step) {
    EraseOne(step.mds);
    for (auto& [md_name, md] : step.mds) {
      EraseOne(md.mas);
      for (auto& [ma_name, ma] : md.mas) {
        EraseOne(ma.meps);
        for (auto& [key, mep] : ma.meps) {
          InRecord(mep);
        }
        InRecord(ma);
      }
      InRecord(md);
    }
  }

  void InStep(cfm::probe& step) {
    EraseOne(step.probes);
    for (auto& [probe_id, probe] : step.probes) {
      EraseOne(probe.sessions);
      for (auto& [session_id, session] : probe.sessions) {
        InRecord(session);
      }
      InRecord(probe);
    }
  }

  std::size_t left_;
  bool done_ = false;
};

}  // namespace

Script Shrink(Script script, const std::function<bool(const Script&)>& fails) {
  for (bool shrunk = true; shrunk;) {
    shrunk = false;
    for (std::size_t number = 0;;) {
      Script smaller = script;
      if (!Reduction(number).In(smaller)) {
        break;
      }
      if (fails(smaller)) {
        script = smaller;
        shrunk = true;
      } else {
        ++number;
      }
    }
  }
  return script;
}

}  // namespace cfm_test
