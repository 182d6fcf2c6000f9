// SPDX-License-Identifier: Apache-2.0
#include "core/warnings.h"

#include <map>
#include <tuple>
#include <utility>

#include "core/mep.h"
#include "core/text.h"

namespace cfm_agent {
namespace {

// Frames that come in are told apart by these: two endpoints that have all in common get each
// other's.
struct Place {
  sepan_port_t port = 0;
  int level = 0;
  cfm::MepDirection direction{};
  std::uint16_t vid = 0;
  std::uint16_t inner_vid = 0;
};

bool operator<(const Place& a, const Place& b) {
  const auto all = [](const Place& p) {
    return std::tie(p.port, p.level, p.direction, p.vid, p.inner_vid);
  };
  return all(a) < all(b);
}

struct Settler {
  MepKey mep;
  FileMark mark;
};

struct Association {
  const Value& value;
  const MepKey names;  // without an endpoint
  const cfm::st_maintenance_domain_cfg& domain;
  const cfm::hierarchy_ma& ma;
};

std::uint16_t VidOf(const cfm::st_maintenance_endpoint_cfg& mep,
                    const cfm::st_maintenance_association_cfg& ma) {
  return mep.primary_vid != 0 || ma.vids.empty() ? mep.primary_vid : ma.vids.front();
}

const std::string& NameIn(const Value& record) { return record.Member("name")->node().text; }

std::uint16_t NumberIn(const Value& record, std::string_view key) {
  return static_cast<std::uint16_t>(std::stoul(record.Member(key)->node().text));
}

class Finder {
 public:
  explicit Finder(const Config& config) : config_(config) {}

  void LookAt(const Value& file) {
    EachIn(file, "domains", [this](const Value& domain) { LookAtDomain(domain); });
    EachIn(file, "probes", [this](const Value& probe) { LookAtProbe(probe); });
  }
  Warnings Take() { return std::move(found_); }

 private:
  template <typename Look>
  static void EachIn(const Value& record, std::string_view list, Look look) {
    const auto items = record.Member(list);
    for (std::size_t i = 0; items && i < items->Size(); ++i) {
      look(items->Item(i));
    }
  }

  // `subject` tells the warning from others of its kind, wherever it stands in the file.
  void Warn(const Value& at, const std::string& subject, std::string_view kind, std::string text) {
    found_.push_back({{at.mark(), at.Path(), std::move(text), Severity::Warning},
                      std::string(kind) + ' ' + subject});
  }

  void LookAtDomain(const Value& domain) {
    const std::string& name = NameIn(domain);
    const cfm::hierarchy_md& md = config_.hierarchy.mds.at(name);
    EachIn(domain, "associations", [&](const Value& value) {
      LookAtAssociation({value, {name, NameIn(value), 0}, md.cfg, md.mas.at(NameIn(value))});
    });
  }

  void LookAtAssociation(const Association& association) {
    const auto& [value, names, domain, ma] = association;
    const auto& vids = ma.cfg.vids;
    if (ma.cfg.format == cfm::MaNameFormat::PrimaryVid && !vids.empty() &&
        names.ma != std::to_string(vids.front())) {
      Warn(*value.Member("name"), Describe(names), "name",
           names.ma + " is not the first of the vids, as the name format primary-vid has it; use " +
               std::to_string(vids.front()) + " as name, or " + names.ma + " as first VID");
    }
    EachIn(value, "endpoints",
           [&](const Value& endpoint) { LookAtEndpoint(endpoint, association); });
  }

  void LookAtEndpoint(const Value& value, const Association& association) {
    const auto& ma = association.ma;
    MepKey key = association.names;
    key.id = NumberIn(value, "mep-id");
    const auto& mep = ma.meps.at(key.id).cfg;
    const std::uint16_t vid = VidOf(mep, ma.cfg);
    if (mep.admin_state && mep.ccm_enabled && ma.cfg.mep_ids.size() == 1) {
      Warn(*value.Member("mep-id"), Describe(key), "alone",
           std::to_string(key.id) + " is alone in the association's mep-ids and watches nobody; " +
               "list the endpoints at the other ends there, too");
    }
    if (mep.fault_action != cfm::FaultAction::None &&
        mep.lowest_prio_defect == cfm::Defects::None) {
      Warn(*value.Member("fault-action"), Describe(key), "fault-action",
           value.Member("fault-action")->Shown() +
               " never happens, because lowest-alarm-priority none raises no alarm; use another "
               "one, or no fault-action");
    }
    if (mep.inner_vid != 0 && vid == 0) {
      Warn(*value.Member("inner-vid"), Describe(key), "inner-vid",
           std::to_string(mep.inner_vid) +
               " has no VID before it; give the association vids, or leave it out");
    }
    Settle(value, key, {mep.port, association.domain.level, mep.direction, vid, mep.inner_vid});
  }

  void Settle(const Value& value, const MepKey& key, const Place& place) {
    const auto [settled, first] = settled_.try_emplace(place, Settler{key, value.mark()});
    if (first) {
      return;
    }
    const auto& [other, mark] = settled->second;
    Warn(value, Describe(key) + ' ' + Describe(other), "place",
         "has the port, level, direction and VID of " + Describe(other) + " on line " +
             std::to_string(mark.line) +
             ", so that each gets the other's frames; use another port, level, direction or "
             "primary-vid");
  }

  void LookAtProbe(const Value& value) {
    const cfm::probe_cfg& probe = config_.probes.probes.at(NumberIn(value, "id"));
    const std::string subject = std::to_string(probe.id);
    const auto& ma = config_.hierarchy.mds.at(probe.md).mas.at(probe.ma);
    if (!ma.meps.at(probe.lmep).cfg.admin_state) {
      Warn(*value.Member("mep-id"), subject, "inactive",
           std::to_string(probe.lmep) +
               " is an endpoint that is not active, and measures nothing; use one with "
               "admin-state: true");
    }
    if (probe.sessions.empty()) {
      Warn(value, subject, "sessions",
           "has no sessions and measures nothing; give it one, such as {id: 1, count: 10}");
    }
  }

  const Config& config_;
  std::map<Place, Settler> settled_;
  Warnings found_;
};

}  // namespace

Warnings FindWarnings(const Value& file, const Config& config) {
  Finder finder(config);
  finder.LookAt(file);
  Warnings warnings = finder.Take();
  SortByPlace(warnings);
  return warnings;
}

}  // namespace cfm_agent
