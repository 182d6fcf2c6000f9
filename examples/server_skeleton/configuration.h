/* SPDX-License-Identifier: Apache-2.0 */
// What clients have configured: the messages that created it, brought up to date by later ones.
#ifndef CFM_EXAMPLES_SERVER_SKELETON_CONFIGURATION_H
#define CFM_EXAMPLES_SERVER_SKELETON_CONFIGURATION_H

#include <cfm/client_server.pb.h>

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace examples {

// What became of a request.
struct Outcome {
  bool refused = false;  // it names something that is not there; nothing has changed
  std::vector<client_server::OpCreateMaintenanceEndpoint> created;
  std::vector<client_server::OpCreateMaintenanceEndpoint> removed;  // also with their parents
};

// The rules that clients count on:
// - a create of something that is there replaces its settings and leaves what lies beneath it;
// - a delete takes along what lies beneath;
// - an update keeps the fields that its message does not have.
// No reply tells a client that it was refused. A server that has limits, or that finds a value out
// of range, refuses at the same place, and its log is where one learns of it.
class Configuration {
 public:
  Outcome Apply(const client_server::OpCreateMaintenanceDomain& request);
  Outcome Apply(const client_server::OpUpdateMaintenanceDomain& request);
  Outcome Apply(const client_server::OpDeleteMaintenanceDomain& request);
  Outcome Apply(const client_server::OpCreateMaintenanceAssociation& request);
  Outcome Apply(const client_server::OpUpdateMaintenanceAssociation& request);
  Outcome Apply(const client_server::OpDeleteMaintenanceAssociation& request);
  Outcome Apply(const client_server::OpCreateMaintenanceEndpoint& request);
  Outcome Apply(const client_server::OpUpdateMaintenanceEndpoint& request);
  Outcome Apply(const client_server::OpDeleteMaintenanceEndpoint& request);
  Outcome Apply(const client_server::OpCreateDelayMeasurementProbe& request);
  Outcome Apply(const client_server::OpDeleteDelayMeasurementProbe& request);
  Outcome Apply(const client_server::OpCreateDelayMeasurementSession& request);
  Outcome Apply(const client_server::OpDeleteDelayMeasurementSession& request);

  // All of it, as a client asks for it: the cache.
  client_server::OpCacheSync Whole() const;

 private:
  using MaKey = std::pair<std::string, std::string>;
  using MepKey = std::tuple<std::string, std::string, std::uint32_t>;

  // Removes the endpoints that the condition holds for.
  template <class Condition>
  Outcome RemoveMeps(Condition condition);

  std::map<std::string, client_server::OpCreateMaintenanceDomain> mds_;
  std::map<MaKey, client_server::OpCreateMaintenanceAssociation> mas_;
  std::map<MepKey, client_server::OpCreateMaintenanceEndpoint> meps_;
  std::map<std::uint32_t, client_server::OpCreateDelayMeasurementProbe> probes_;
  std::map<std::pair<std::uint32_t, std::uint32_t>, client_server::OpCreateDelayMeasurementSession>
      sessions_;
};

}  // namespace examples

#endif
