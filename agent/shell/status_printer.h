// Says what the server reports.
#ifndef CFM_AGENT_SHELL_STATUS_PRINTER_H
#define CFM_AGENT_SHELL_STATUS_PRINTER_H

#include <cfm/handlers.h>

#include "shell/console.h"

namespace cfm_agent {

class StatusPrinter : public cfm::ReceivedStatusHandlerIntf {
 public:
  explicit StatusPrinter(Console& console) : console_(console) {}

  void OnStatusLocalMep(const std::string& md_name, const std::string& ma_name,
                        std::uint16_t mep_id, const cfm::local_mep_status& status) override;
  void OnStatusRemoteMep(const std::string& md_name, const std::string& ma_name,
                         std::uint16_t mep_id, std::uint16_t remote_mep_id,
                         const cfm::remote_mep_status& status) override;
  void OnRemovedLocalMep(const std::string& md_name, const std::string& ma_name,
                         std::uint16_t mep_id) override;
  void OnRemovedRemoteMep(const std::string& md_name, const std::string& ma_name,
                          std::uint16_t mep_id, std::uint16_t remote_mep_id) override;
  void OnMepLinktraceStarted(const std::string& md_name, const std::string& ma_name,
                             std::uint16_t mep_id, std::uint32_t transaction_id,
                             cfm::st_mac target_mac, std::uint16_t remote_mep_id,
                             bool has_started_value, std::uint32_t started_value) override;
  void OnMepLinktraceEnded(const std::string& md_name, const std::string& ma_name,
                           std::uint16_t mep_id, std::uint32_t transaction_id) override;
  void OnMepLinktraceReplyRx(const std::string& md_name, const std::string& ma_name,
                             std::uint16_t mep_id, const cfm::LinktraceReplyEntry& reply) override;
  void OnDelayMeasurementSessionEnded(const cfm::DelayMeasurementSessionResult& result) override;
  void OnServerFound() override;

 private:
  Console& console_;
};

}  // namespace cfm_agent

#endif
