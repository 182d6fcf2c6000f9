// SPDX-License-Identifier: Apache-2.0
#include "core/record.h"

namespace cfm_agent {
namespace {

template <typename... Types>
bool HoldsOneOf(const Record& record) {
  return (std::holds_alternative<Types>(record) || ...);
}

}  // namespace

bool IsNews(const Record& record) {
  return HoldsOneOf<ConfigurationNews, ServerNews, LocalStatusNews, RemoteStatusNews, RemovalNews,
                    SessionNews, WarningNews, InterfaceNews, StopNews>(record);
}

}  // namespace cfm_agent
