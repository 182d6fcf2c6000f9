// SPDX-License-Identifier: Apache-2.0
// Statistics: request, reply and clear.
#include <cfm/client_server.pb.h>
#include <cfm/identifiers.h>

#include "client_impl.h"
#include "core/numbers.h"
#include "log_points.h"
#include "receive.h"

namespace cfm {

using core::Low16;

// Only needs a server, not one that is in step.
void ClientImpl::RequestStatistics() const {
  if (server_pid == 0) {
    return;
  }
  Send(CFM_MGR_C2S_SIG_STATS_GET);
  Log<log_point::kStatisticsRequested>(log_category);
}

// Sent also while there is no server, and never logged.
void ClientImpl::ClearStatistics(const char* md_name, const char* ma_name,
                                 std::uint16_t mep_id) const {
  client_server::OpStatsClear message;
  if (md_name != nullptr) {
    message.set_md_name(md_name);
  }
  if (ma_name != nullptr) {
    message.set_ma_name(ma_name);
  }
  if (mep_id != 0) {
    message.set_mep_id(mep_id);
  }
  Send(CFM_MGR_C2S_SIG_STATS_CLEAR, message);
}

// Nothing at all without a statistics handler; what does not parse is used as far as it was read;
// the record in the log comes after each call. A handler that goes away meanwhile is not called
// any more, but the rest of the reply is logged.
void ClientImpl::ReqStatsReply(vorx_t* /*handle*/, void* user, const vorx_pid_t* /*sender*/,
                               void* data, unsigned length) {
  auto& self = *static_cast<ClientImpl*>(user);
  if (self.statistics_handler == nullptr) {
    return;
  }
  const auto message = Receive<client_server::OpReplyAllStats>(data, length);
  for (const auto& entry : message.local_mep_stats()) {
    local_mep_stats stats;
    stats.ccm_rx_seq_errors = entry.ccm_rx_seq_errors();
    stats.ccm_tx_total = entry.ccm_tx_total();
    stats.ccm_tx_seq_number = entry.ccm_tx_seq_number();
    if (self.statistics_handler != nullptr) {
      self.statistics_handler->OnStatsReplyLocalMep(entry.md_name(), entry.ma_name(),
                                                    Low16(entry.mep_id()), stats);
    }
    Log<log_point::kLocalMepStats>(
        self.log_category, entry.md_name().c_str(), entry.ma_name().c_str(), entry.mep_id(),
        static_cast<unsigned long long>(entry.ccm_rx_seq_errors()),
        static_cast<unsigned long long>(entry.ccm_tx_total()), entry.ccm_tx_seq_number());
  }
  for (const auto& entry : message.remote_mep_stats()) {
    remote_mep_stats stats;
    stats.last_ccm_seq_number = entry.last_ccm_seq_number();
    if (self.statistics_handler != nullptr) {
      self.statistics_handler->OnStatsReplyRemoteMep(entry.md_name(), entry.ma_name(),
                                                     Low16(entry.mep_id()),
                                                     Low16(entry.remote_mep_id()), stats);
    }
    Log<log_point::kRemoteMepStats>(self.log_category, entry.md_name().c_str(),
                                    entry.ma_name().c_str(), entry.mep_id(), entry.remote_mep_id(),
                                    entry.last_ccm_seq_number());
  }
  if (self.statistics_handler != nullptr) {
    self.statistics_handler->OnStatsReply();
  }
}

}  // namespace cfm
