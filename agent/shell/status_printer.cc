#include "shell/status_printer.h"

namespace cfm_agent {

void StatusPrinter::OnStatusLocalMep(const std::string& /*md_name*/, const std::string& /*ma_name*/,
                                     std::uint16_t /*mep_id*/,
                                     const cfm::local_mep_status& /*status*/) {}

void StatusPrinter::OnStatusRemoteMep(const std::string& /*md_name*/,
                                      const std::string& /*ma_name*/, std::uint16_t /*mep_id*/,
                                      std::uint16_t /*remote_mep_id*/,
                                      const cfm::remote_mep_status& /*status*/) {}

void StatusPrinter::OnRemovedLocalMep(const std::string& /*md_name*/,
                                      const std::string& /*ma_name*/, std::uint16_t /*mep_id*/) {}

void StatusPrinter::OnRemovedRemoteMep(const std::string& /*md_name*/,
                                       const std::string& /*ma_name*/, std::uint16_t /*mep_id*/,
                                       std::uint16_t /*remote_mep_id*/) {}

void StatusPrinter::OnMepLinktraceStarted(
    const std::string& /*md_name*/, const std::string& /*ma_name*/, std::uint16_t /*mep_id*/,
    std::uint32_t /*transaction_id*/, cfm::st_mac /*target_mac*/, std::uint16_t /*remote_mep_id*/,
    bool /*has_started_value*/, std::uint32_t /*started_value*/) {}

void StatusPrinter::OnMepLinktraceEnded(const std::string& /*md_name*/,
                                        const std::string& /*ma_name*/, std::uint16_t /*mep_id*/,
                                        std::uint32_t /*transaction_id*/) {}

void StatusPrinter::OnMepLinktraceReplyRx(const std::string& /*md_name*/,
                                          const std::string& /*ma_name*/, std::uint16_t /*mep_id*/,
                                          const cfm::LinktraceReplyEntry& /*reply*/) {}

void StatusPrinter::OnDelayMeasurementSessionEnded(
    const cfm::DelayMeasurementSessionResult& /*result*/) {}

void StatusPrinter::OnServerFound() {
  console_.Print("server found; asking what it holds, then sending the difference");
}

}  // namespace cfm_agent
