// SPDX-License-Identifier: Apache-2.0
#include <cfm/linktrace.h>

#include "core/text_buffer.h"

namespace cfm {
namespace {

// How a rendering joins its items: on one line, or as a block with the items of a group indented.
struct Layout {
  explicit Layout(unsigned int spaces)
      : line_end(spaces == 0 ? "; " : "\n"),
        item_separator(spaces == 0 ? ", " : "\n"),
        group_opener(spaces == 0 ? " " : "\n"),
        indent(spaces, ' ') {}

  std::string_view line_end;
  std::string_view item_separator;
  std::string_view group_opener;
  std::string indent;
};

std::string_view TrueFalse(bool value) { return value ? "true" : "false"; }

class Renderer {
 public:
  explicit Renderer(unsigned int indent) : layout_(indent) {}

  template <typename Value>
  void Line(std::string_view label, const Value& value) {
    text_.AddField(label, value);
    text_.Add(layout_.line_end);
  }

  void Group(std::string_view label) {
    text_.Add(label);
    text_.Add(layout_.group_opener);
  }

  template <typename Value>
  void Item(std::string_view label, const Value& value) {
    text_.Add(layout_.indent);
    text_.AddField(label, value);
    text_.Add(layout_.item_separator);
  }

  template <typename Value>
  void LastItem(std::string_view label, const Value& value) {
    text_.Add(layout_.indent);
    Line(label, value);
  }

  void PortId(const LtrReplyPort& port) {
    if (!port.port_id_present) {
      LastItem("Port ID: ", std::string_view("Not present"));
      return;
    }
    text_.Add(layout_.indent);
    text_.AddField("Port ID: Subtype ", port.port_id_subtype);
    Line(", Length ", port.port_id.size());
  }

  std::string Text() && { return std::move(text_).Take(); }

 private:
  Layout layout_;
  core::TextBuffer text_;
};

}  // namespace

LinktraceReplyEntry::LinktraceReplyEntry() : egress_id(std::make_unique<LtrEgressIdentifier>()) {}

// The parts go in the order in which they are declared, not in reverse.
LinktraceReplyEntry::~LinktraceReplyEntry() {
  egress_id.reset();
  reply_ingress.reset();
  reply_egress.reset();
}

std::string LinktraceReplyEntry::Show(const LinktraceReplyEntry& entry, unsigned int indent) {
  Renderer out(indent);
  out.Line("Transaction ID: ", entry.transaction_id);
  out.Line("Destination MAC: ", entry.destination_mac.to_string());
  out.Line("Source MAC: ", entry.source_mac.to_string());
  out.Line("VLAN: ", entry.vlan);
  out.Line("Priority: ", entry.priority);
  if (entry.internal_vlan != 0) {
    out.Line("Internal VLAN: ", entry.internal_vlan);
    out.Line("Internal Priority: ", entry.internal_priority);
  }
  out.Line("Level: ", entry.level);
  out.Group("Flags:");
  out.Item("Terminal MEP: ", TrueFalse(entry.terminal_mep));
  out.Item("Forwarded: ", TrueFalse(entry.forwarded));
  out.LastItem("Use FDB only: ", TrueFalse(entry.use_fdb_only));
  out.Line("TTL: ", entry.ttl);
  out.Line("Relay action:", entry.relay_action);
  out.Group("LTR Egress ID:");
  out.Item("Last: ", entry.egress_id->last_mac.to_string());
  out.LastItem("Next: ", entry.egress_id->next_mac.to_string());
  if (entry.reply_ingress != nullptr) {
    out.Group("Reply Ingress:");
    out.Item("Ingress action: ", entry.reply_ingress->action);
    out.Item("Ingress MAC: ", entry.reply_ingress->mac.to_string());
    out.PortId(*entry.reply_ingress);
  }
  if (entry.reply_egress != nullptr) {
    out.Group("Reply Egress:");
    out.Item("Egress action: ", entry.reply_egress->action);
    out.Item("Egress MAC: ", entry.reply_egress->mac.to_string());
    out.PortId(*entry.reply_egress);
  }
  return std::move(out).Text();
}

}  // namespace cfm
