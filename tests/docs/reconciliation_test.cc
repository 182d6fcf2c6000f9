// SPDX-License-Identifier: Apache-2.0
// The worked examples of the guide to the reconciliation, each held against what the library plans.
#include <gmock/gmock.h>

#include <initializer_list>
#include <sstream>

#include "core/hierarchy_plan.h"
#include "core/probe_plan.h"
#include "markdown.h"
#include "sources.h"

namespace docs {
namespace {

// The column "requests" of the table in the section of that heading.
std::vector<std::string> RequestsInGuide(const std::string& heading) {
  std::vector<std::string> requests;
  for (const Section& section : ReadPage(ReadFile("docs/guides/reconciliation.md"))) {
    bool in_table = false;
    for (const auto& row : section.rows) {
      if (section.heading != heading || row.size() != 3) {
        continue;
      }
      if (in_table && row[2] != "---") {
        requests.push_back(row[2]);
      }
      in_table = in_table || row[2] == "requests";
    }
  }
  return requests;
}

// A configuration in the guide's notation: "D", "D/A" and "D/A/1".
cfm::hierarchy Configuration(std::initializer_list<const char*> entities) {
  cfm::hierarchy config;
  for (const char* const entity : entities) {
    std::istringstream path(entity);
    std::string md_name;
    std::string ma_name;
    std::string mep_id;
    std::getline(path, md_name, '/');
    auto& md = config.mds[md_name];
    if (std::getline(path, ma_name, '/')) {
      auto& ma = md.mas[ma_name];
      ma.md_name = md_name;
      if (std::getline(path, mep_id, '/')) {
        cfm::hierarchy_mep& mep = ma.meps[static_cast<std::uint16_t>(std::stoi(mep_id))];
        mep.md_name = md_name;
        mep.ma_name = ma_name;
        mep.cfg.mep_id = static_cast<std::uint16_t>(std::stoi(mep_id));
      }
    }
  }
  return config;
}

std::string Name(const cfm::core::KeptMd& md) { return md.name; }
std::string Name(const cfm::core::KeptMa& ma) { return ma.md_name + '/' + ma.name; }
std::string Name(const cfm::core::KeptMep& mep) {
  return *mep.md_name + '/' + *mep.ma_name + '/' + std::to_string(mep.cfg.mep_id);
}

class Requests {
 public:
  template <typename List>
  Requests& Add(const std::string& verb, const List& list) {
    for (const auto* const entity : list) {
      Add(verb + Name(*entity));
    }
    return *this;
  }
  void Add(const std::string& request) { text_ += (text_.empty() ? "" : "; ") + request; }
  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

std::string Planned(const cfm::hierarchy& before, const cfm::hierarchy& after) {
  const cfm::core::KeptHierarchy applied(before);
  const cfm::core::KeptHierarchy desired(after);
  const auto plan = cfm::core::PlanHierarchy(applied, desired);
  return Requests()
      .Add("delete ", plan.deletes.meps)
      .Add("delete ", plan.deletes.mas)
      .Add("delete ", plan.deletes.mds)
      .Add("create ", plan.creates.mds)
      .Add("create ", plan.creates.mas)
      .Add("create ", plan.creates.meps)
      .Add("update ", plan.updates.mds)
      .Add("update ", plan.updates.mas)
      .Add("update ", plan.updates.meps)
      .text();
}

std::string Planned(const cfm::probe& before, const cfm::probe& after) {
  using Kind = cfm::core::ProbeStep::Kind;
  Requests requests;
  cfm::core::PlanProbes(before, after, [&](const cfm::core::ProbeStep& step) {
    const bool creates = step.kind == Kind::CreateProbe || step.kind == Kind::CreateSession;
    const bool is_probe = step.kind == Kind::CreateProbe || step.kind == Kind::DeleteProbe;
    const std::string probe = std::to_string(step.probe_id);
    requests.Add(
        (creates ? "create " : "delete ") +
        (is_probe ? "probe " + probe : "session " + probe + '/' + std::to_string(step.session_id)));
  });
  return requests.text().empty() ? "none" : requests.text();
}

void ExpectAsInGuide(const std::string& heading, const cfm::hierarchy& before,
                     const cfm::hierarchy& after) {
  EXPECT_THAT(RequestsInGuide(heading), testing::ElementsAre(Planned(before, after))) << heading;
}

TEST(ReconciliationGuide, IsRightAboutCreatesAndUpdates) {
  const auto two = Configuration({"D", "D/A", "D/A/1", "D/A/2"});
  auto priority = two;
  priority.mds["D"].mas["A"].meps[2].cfg.ccm_priority = 3;
  ExpectAsInGuide("The first configuration", {}, two);
  ExpectAsInGuide("The same again", two, two);
  ExpectAsInGuide("A priority changes", two, priority);
  ExpectAsInGuide("An endpoint more", Configuration({"D", "D/A", "D/A/1"}), two);
}

TEST(ReconciliationGuide, IsRightAboutReCreation) {
  auto before = Configuration({"D", "D/A", "D/A/1", "D/A/2"});
  before.mds["D"].mas["A"].cfg.vids = {10, 20};
  auto after = Configuration({"D", "D/A", "D/A/1", "D/A/3"});
  after.mds["D"].mas["A"].cfg.vids = {20, 10};
  ExpectAsInGuide("The VIDs in another order", before, after);

  auto level_4 = Configuration({"D", "D/A", "D/A/1", "D/B"});
  level_4.mds["D"].cfg.level = 4;
  auto level_5 = Configuration({"D", "D/A", "D/A/1"});
  level_5.mds["D"].cfg.level = 5;
  ExpectAsInGuide("Another level", level_4, level_5);
}

TEST(ReconciliationGuide, IsRightAboutWhatGoes) {
  ExpectAsInGuide("A domain less", Configuration({"D", "D/A", "D/A/1", "E"}), Configuration({"E"}));
  ExpectAsInGuide("An endpoint moves to another association",
                  Configuration({"D", "D/A", "D/A/1", "D/B"}),
                  Configuration({"D", "D/A", "D/B", "D/B/1"}));
}

TEST(ReconciliationGuide, IsRightAboutProbes) {
  cfm::probe two;
  two.probes[1].sessions = {{1, {}}, {2, {}}};
  auto other_remote = two;
  other_remote.probes[1].rmep = 7;
  auto other_count = two;
  other_count.probes[1].sessions.erase(1);
  other_count.probes[1].sessions[2].count = 9;
  cfm::probe first;
  first.probes[1].sessions = {{1, {}}};
  cfm::probe second;
  second.probes[2].sessions = {{1, {}}};

  const auto in_guide = RequestsInGuide("Probes");
  EXPECT_THAT(in_guide, testing::ElementsAre(Planned(two, two), Planned(two, other_remote),
                                             Planned(two, other_count), Planned(first, second)));
}

}  // namespace
}  // namespace docs
