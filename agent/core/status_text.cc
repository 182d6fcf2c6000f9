#include "core/status_text.h"

#include <array>
#include <charconv>
#include <type_traits>
#include <vector>

#include "core/text.h"
#include "core/words.h"

namespace cfm_agent {
namespace {

const WordList kRemoteMepStates = {"a remote MEP's state",
                                   {{"idle", 1}, {"start", 2}, {"failed", 3}, {"ok", 4}}};

const WordList kDefectPriorities = {"a highest defect priority",
                                    {{"none", 0},
                                     {"RDI", 1},
                                     {"MAC status", 2},
                                     {"missing CCMs", 3},
                                     {"erroneous CCMs", 4},
                                     {"cross-connected CCMs", 5}}};

const WordList kPortStatuses = {"a port status", {{"unknown", 0}, {"blocked", 1}, {"up", 2}}};

const WordList kInterfaceStatuses = {"an interface status",
                                     {{"unknown", 0},
                                      {"up", 1},
                                      {"down", 2},
                                      {"testing", 3},
                                      {"unknown", 4},
                                      {"dormant", 5},
                                      {"not present", 6},
                                      {"lower layer down", 7}}};

const WordList kRelayActions = {"a relay action", {{"hit", 1}, {"FDB", 2}, {"MPDB", 3}}};

const WordList kPortActions = {"a port action",
                               {{"none", 0}, {"OK", 1}, {"down", 2}, {"blocked", 3}, {"VID", 4}}};

std::string Join(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) {
    text += (text.empty() ? "" : ", ") + part;
  }
  return text;
}

template <typename Status>
void AddPort(const Status& status, std::vector<std::string>& parts) {
  parts.push_back("port " + WordFor(kPortStatuses, status.port_state));
  parts.push_back("interface " + WordFor(kInterfaceStatuses, status.intf_status));
}

// In the standard's order of priority, the highest first.
std::string Defects(const cfm::local_mep_status& status) {
  std::vector<std::string> defects;
  const auto add = [&defects](bool present, const char* name) {
    if (present) {
      defects.emplace_back(name);
    }
  };
  add(status.defect_xcon_ccm, "cross-connected CCMs");
  add(status.defect_error_ccm, "erroneous CCMs");
  add(status.defect_remote_ccm, "missing CCMs");
  add(status.defect_mac_status, "MAC status");
  add(status.defect_rdi, "RDI");
  add(status.defect_ais, "AIS");
  if (defects.empty() && status.highest_defect_priority == 0) {
    return "no defect";
  }
  return "defects: " + (defects.empty() ? "none" : Join(defects)) +
         " (highest: " + WordFor(kDefectPriorities, status.highest_defect_priority) + ')';
}

std::string DescribePort(const cfm::LtrReplyPort& port) {
  std::string text = WordFor(kPortActions, port.action) + " at " + port.mac.to_string();
  if (port.port_id_present) {
    text += " port " + Quoted(port.port_id);
  }
  return text;
}

template <typename Number>
std::string Named(const char* name, Number number) {
  if constexpr (std::is_floating_point_v<Number>) {
    return std::string(name) + ' ' + Decimal(number);
  } else {
    return std::string(name) + ' ' + std::to_string(number);
  }
}

}  // namespace

std::string Decimal(double number) {
  std::array<char, 32> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr;
  return {buffer.data(), end};
}

std::string DescribeState(const cfm::local_mep_status& status) {
  std::vector<std::string> parts;
  AddPort(status, parts);
  if (status.block_state != 0) {
    parts.push_back(Named("block state", status.block_state));
  }
  if (status.shutdown_state != 0) {
    parts.push_back(Named("shutdown state", status.shutdown_state));
  }
  if (status.rdi) {
    parts.emplace_back("sends RDI");
  }
  parts.push_back(Defects(status));
  return Join(parts);
}

std::string DescribeState(const cfm::remote_mep_status& status) {
  std::vector<std::string> parts = {WordFor(kRemoteMepStates, status.fsm_state)};
  AddPort(status, parts);
  if (status.rdi) {
    parts.emplace_back("sends RDI");
  }
  return Join(parts);
}

std::string Describe(const cfm::local_mep_status& status) {
  return status.mac.to_string() + ", " + DescribeState(status);
}

std::string Describe(const cfm::remote_mep_status& status) {
  std::string text = status.mac.to_string() + ", " + DescribeState(status);
  if (!status.sender_id.empty()) {
    text += ", sender id " + Quoted(status.sender_id);
  }
  return text + ", since uptime " + std::to_string(status.last_change_uptime);
}

std::string Describe(const cfm::local_mep_stats& stats) {
  return Join({Named("CCMs sent", stats.ccm_tx_total),
               Named("last sequence number sent", stats.ccm_tx_seq_number),
               Named("received out of sequence", stats.ccm_rx_seq_errors)});
}

std::string Describe(const cfm::remote_mep_stats& stats) {
  return Named("last sequence number received", stats.last_ccm_seq_number);
}

std::string Describe(const cfm::LinktraceReplyEntry& reply) {
  std::vector<std::string> parts = {"from " + reply.source_mac.to_string(),
                                    Named("TTL", static_cast<unsigned>(reply.ttl)),
                                    "relay action " + WordFor(kRelayActions, reply.relay_action)};
  if (reply.terminal_mep) {
    parts.emplace_back("terminal MEP");
  }
  if (reply.forwarded) {
    parts.emplace_back("forwarded");
  }
  if (reply.reply_ingress) {
    parts.push_back("ingress " + DescribePort(*reply.reply_ingress));
  }
  if (reply.reply_egress) {
    parts.push_back("egress " + DescribePort(*reply.reply_egress));
  }
  return Join(parts);
}

std::string Describe(const cfm::DelayMeasurementSessionResult& r) {
  return Join(
      {Named("word 1:", r.s_word_1), Named("word 2:", r.s_word_2),
       Named("byte:", static_cast<unsigned>(r.s_byte)), Named("word 3:", r.s_word_3),
       Named("wide 1:", r.s_wide_1), Named("wide 2:", r.s_wide_2), Named("word 4:", r.s_word_4),
       Named("real 1:", r.s_real_1), Named("real 2:", r.s_real_2), Named("word 5:", r.s_word_5),
       Named("word 6:", r.s_word_6), Named("word 7:", r.s_word_7), Named("word 8:", r.s_word_8),
       Named("word 9:", r.s_word_9), Named("word 10:", r.s_word_10), Named("real 3:", r.s_real_3),
       Named("real 4:", r.s_real_4)});
}

}  // namespace cfm_agent
