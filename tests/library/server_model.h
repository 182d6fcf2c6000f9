/* SPDX-License-Identifier: Apache-2.0 */
// A small model of the server: the configuration it holds after each request. It takes requests
// only in an order in which a server can carry them out.
#ifndef CFM_TESTS_LIBRARY_SERVER_MODEL_H
#define CFM_TESTS_LIBRARY_SERVER_MODEL_H

#include <cfm/client_server.pb.h>

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace cfm_test {

class ServerModel {
 public:
  using MaKey = std::pair<std::string, std::string>;
  using MepKey = std::tuple<std::string, std::string, std::uint32_t>;
  using SessionKey = std::pair<std::uint32_t, std::uint32_t>;

  /// Carries out one request, or adds to `complaints` why a server could not.
  void Take(const std::string& signal, const std::string& payload);

  /// All that the server holds, as its answer to a cache request.
  client_server::OpCacheSync Cache() const;

  std::map<std::string, client_server::OpCreateMaintenanceDomain> mds;
  std::map<MaKey, client_server::OpCreateMaintenanceAssociation> mas;
  std::map<MepKey, client_server::OpCreateMaintenanceEndpoint> meps;
  std::map<std::uint32_t, client_server::OpCreateDelayMeasurementProbe> probes;
  std::map<SessionKey, client_server::OpCreateDelayMeasurementSession> sessions;

  std::vector<std::string> complaints;

 private:
  void Complain(const std::string& signal, const std::string& what);
  bool TakeMd(const std::string& signal, const std::string& payload);
  bool TakeMa(const std::string& signal, const std::string& payload);
  bool TakeMep(const std::string& signal, const std::string& payload);
  bool TakeProbe(const std::string& signal, const std::string& payload);
};

}  // namespace cfm_test

#endif
