/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * What each setting is called, which values the standard allows for it, and how it is shown.
 *
 * One table per kind of entity serves the check of requests, the account of what a request
 * changed, and the rendering of the tree.
 */
#ifndef CFM_MGR_FIELDS_H
#define CFM_MGR_FIELDS_H

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "model.h"

namespace cfm_mgr {

/** One value of an enumeration and its name. */
struct Choice {
  std::int32_t value;
  const char* name;
};

/** The values that an enumerated setting may take. */
class Choices {
 public:
  template <std::size_t Size>
  constexpr explicit Choices(const Choice (&choices)[Size]) : first_(choices), count_(Size) {}
  constexpr Choices(const Choice* first, std::size_t count) : first_(first), count_(count) {}

  constexpr const Choice* begin() const { return first_; }
  constexpr const Choice* end() const { return first_ + count_; }

 private:
  const Choice* first_;
  std::size_t count_;
};

extern const Choices kMdNameFormats;
extern const Choices kMaNameFormats;
extern const Choices kCcmIntervals;
extern const Choices kMdSenderIds;
extern const Choices kMaSenderIds;
extern const Choices kMdMhfCreations;
extern const Choices kMaMhfCreations;
extern const Choices kDirections;
extern const Choices kAlarmPriorities;
extern const Choices kFaultActions;

/** MD name format "none": the MD name takes no room in the MAID. */
inline constexpr std::int32_t kMdNameFormatNone = 1;

inline constexpr std::uint32_t kMinMepId = 1;
inline constexpr std::uint32_t kMaxMepId = 8191;
inline constexpr std::uint32_t kMaxVid = 4094;

/** The name of a setting and the values it may take. */
struct Field {
  const char* name = "";
  std::uint32_t min = 0;
  std::uint32_t max = std::numeric_limits<std::uint32_t>::max();
  const Choices* choices = nullptr;  ///< Set for enumerated settings, which have no range.
};

/** An enumerated setting. */
inline Field OneOf(const char* name, const Choices& choices) { return {name, 0, 0, &choices}; }

/** A number that the client keeps in 16 bits. */
inline Field Word(const char* name) { return {name, 0, 0xffff}; }

/**
 * @name Settings
 * Each calls visit(field, value of each argument...) for every setting, in one order.
 * @{
 */
template <class Visit, class... More>
void VisitFields(Visit&& visit, const DomainSettings& md, const More&... more) {
  visit(OneOf("format", kMdNameFormats), md.format, more.format...);
  visit(Field{"level", 0, 7}, md.level, more.level...);
  visit(OneOf("sender id", kMdSenderIds), md.sender_id, more.sender_id...);
  visit(OneOf("MHF creation", kMdMhfCreations), md.mhf_creation, more.mhf_creation...);
}

template <class Visit, class... More>
void VisitFields(Visit&& visit, const AssociationSettings& ma, const More&... more) {
  visit(OneOf("format", kMaNameFormats), ma.format, more.format...);
  visit(Field{"VIDs", 1, kMaxVid}, ma.vids, more.vids...);
  visit(OneOf("CCM interval", kCcmIntervals), ma.ccm_interval, more.ccm_interval...);
  visit(Field{"MEP ids", kMinMepId, kMaxMepId}, ma.mep_ids, more.mep_ids...);
  visit(OneOf("sender id", kMaSenderIds), ma.sender_id, more.sender_id...);
  visit(OneOf("MHF creation", kMaMhfCreations), ma.mhf_creation, more.mhf_creation...);
  visit(Field{"AIS"}, ma.ais, more.ais...);
}

template <class Visit, class... More>
void VisitFields(Visit&& visit, const Mep& mep, const More&... more) {
  visit(OneOf("direction", kDirections), mep.direction, more.direction...);
  visit(Field{"ifindex"}, mep.ifindex, more.ifindex...);
  visit(Field{"primary VID", 0, kMaxVid}, mep.primary_vid, more.primary_vid...);
  visit(Field{"inner VID", 0, kMaxVid}, mep.inner_vid, more.inner_vid...);
  visit(Field{"active"}, mep.admin_state, more.admin_state...);
  visit(Field{"CCM"}, mep.ccm_enabled, more.ccm_enabled...);
  visit(Field{"CCM priority", 0, 7}, mep.ccm_priority, more.ccm_priority...);
  visit(OneOf("lowest alarm priority", kAlarmPriorities), mep.lowest_prio_defect,
        more.lowest_prio_defect...);
  visit(Field{"alarm time", 250, 1000}, mep.fng_alarm_time, more.fng_alarm_time...);
  visit(Field{"reset time", 250, 1000}, mep.fng_reset_time, more.fng_reset_time...);
  visit(OneOf("fault action", kFaultActions), mep.fault_action, more.fault_action...);
  visit(Field{"aux flag"}, mep.aux_flag, more.aux_flag...);
}

template <class Visit, class... More>
void VisitFields(Visit&& visit, const ProbeSettings& probe, const More&... more) {
  visit(Field{"md"}, probe.md_name, more.md_name...);
  visit(Field{"ma"}, probe.ma_name, more.ma_name...);
  visit(Field{"local mep", kMinMepId, kMaxMepId}, probe.lmep_id, more.lmep_id...);
  visit(Field{"remote mep", kMinMepId, kMaxMepId}, probe.rmep_id, more.rmep_id...);
  visit(Word("interval"), probe.interval, more.interval...);
}

template <class Visit, class... More>
void VisitFields(Visit&& visit, const Session& session, const More&... more) {
  visit(Word("interval"), session.interval, more.interval...);
  visit(Word("count"), session.count, more.count...);
  visit(Word("size"), session.size, more.size...);
  visit(Field{"pcp", 0, 7}, session.pcp, more.pcp...);
}
/** @} */

/** @name One value as text
 * @{ */
std::string Show(const Field& field, bool value);
std::string Show(const Field& field, std::uint32_t value);
std::string Show(const Field& field, std::int32_t value);
std::string Show(const Field& field, const std::string& value);
std::string Show(const Field& field, const std::vector<std::uint32_t>& values);
std::string Show(const Field& field, const Ais& ais);
/** @} */

/** Name between double quotes, on one line: other than printable ASCII becomes \xNN. */
std::string Quote(const std::string& name);

/** A count and what is counted: `1 probe`, `2 probes`. */
std::string Plural(std::size_t count, const char* noun);

/** All settings in one line: `level 3, sender id 1 (none)`. */
template <class Entity>
std::string ShowFields(const Entity& entity) {
  std::string text;
  VisitFields(
      [&text](const Field& field, const auto& value) {
        if (!text.empty()) text += ", ";
        text += field.name;
        text += ' ';
        text += Show(field, value);
      },
      entity);
  return text;
}

/** The settings that differ: `level 3 -> 4; ...`. Empty when none does. */
template <class Entity>
std::string ShowChanges(const Entity& before, const Entity& after) {
  std::string text;
  VisitFields(
      [&text](const Field& field, const auto& was, const auto& is) {
        const std::string from = Show(field, was);
        const std::string to = Show(field, is);
        if (from == to) return;
        if (!text.empty()) text += "; ";
        text.append(field.name).append(" ").append(from).append(" -> ").append(to);
      },
      before, after);
  return text;
}

/** @name Whether a value is allowed
 * Each gives the reason against the value, or nothing.
 * @{ */
std::string FaultOf(const Field& field, std::uint32_t value);
std::string FaultOf(const Field& field, std::int32_t value);
std::string FaultOf(const Field& field, const std::vector<std::uint32_t>& values);
inline std::string FaultOf(const Field&, bool) { return {}; }
inline std::string FaultOf(const Field&, const std::string&) { return {}; }
inline std::string FaultOf(const Field&, const Ais&) { return {}; }
/** @} */

/** The reasons against all settings that are not allowed, or nothing. */
template <class Entity>
std::string FaultsOf(const Entity& entity) {
  std::string faults;
  VisitFields(
      [&faults](const Field& field, const auto& value) {
        const std::string fault = FaultOf(field, value);
        if (!faults.empty() && !fault.empty()) faults += "; ";
        faults += fault;
      },
      entity);
  return faults;
}

}  // namespace cfm_mgr

#endif
