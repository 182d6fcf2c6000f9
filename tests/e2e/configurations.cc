// SPDX-License-Identifier: Apache-2.0
#include "configurations.h"

#include <cstdio>
#include <sstream>

namespace cfm_test {
namespace {

// Far from the local endpoints, so that it never is one of them.
constexpr int kRemoteMep = 8000;

// Padded, so that the order of names is that of numbers.
std::string AssociationName(int number) {
  char name[16];
  std::snprintf(name, sizeof name, "a%04d", number);
  return name;
}

std::string Count(int count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace

std::string ConfigFile(Size size, int ccm_priority, int first_vid) {
  std::ostringstream file;
  file << "domains:\n  - name: net\n    level: 4\n    associations:\n";
  for (int a = 1; a <= size.associations; ++a) {
    file << "      - name: " << AssociationName(a) << "\n        vids: [" << first_vid + a
         << "]\n        ccm-interval: 1s\n        mep-ids: [";
    for (int m = 1; m <= size.endpoints; ++m) {
      file << m << ", ";
    }
    file << kRemoteMep << "]\n        endpoints:\n";
    for (int m = 1; m <= size.endpoints; ++m) {
      file << "          - mep-id: " << m << "\n            direction: down\n"
           << "            port: lo\n            ccm-priority: " << ccm_priority << "\n";
    }
  }
  file << "probes:\n";
  for (int a = 1; a <= size.associations; ++a) {
    file << "  - id: " << a
         << "\n    interval: 60\n    domain: net\n    association: " << AssociationName(a)
         << "\n    mep-id: 1\n    remote-mep-id: " << kRemoteMep
         << "\n    sessions:\n      - id: 1\n        count: 10\n        interval: 100\n"
         << "        size: 64\n        pcp: 7\n";
  }
  return file.str();
}

std::string ExpectedTree(Size size, int ccm_priority, int first_vid) {
  std::ostringstream tree;
  tree << "1 domain, " << Count(size.associations, "association") << ", "
       << Count(size.associations * size.endpoints, "endpoint") << ", "
       << Count(size.associations, "probe") << ", " << Count(size.associations, "session") << "\n"
       << "domain \"net\": format 4 (character string), level 4, sender id 1 (none), "
          "MHF creation 1 (none)\n";
  for (int a = 1; a <= size.associations; ++a) {
    tree << "  association \"" << AssociationName(a) << "\": format 2 (character string), VIDs "
         << first_vid + a << ", CCM interval 4 (1 s), MEP ids ";
    for (int m = 1; m <= size.endpoints; ++m) {
      tree << m << " ";
    }
    tree << kRemoteMep << ", sender id 5 (defer), MHF creation 4 (defer), AIS off, flag D no\n";
    for (int m = 1; m <= size.endpoints; ++m) {
      tree << "    mep " << m
           << ": direction 1 (down), ifindex 1, primary VID 0, inner VID 0, active no, CCM no, "
              "CCM priority "
           << ccm_priority
           << ", lowest alarm priority 2 (MAC, remote, error, xcon), alarm time 250, reset time "
              "1000, fault action 0 (none), aux flag no\n";
    }
  }
  for (int a = 1; a <= size.associations; ++a) {
    tree << "probe " << a << ": md \"net\", ma \"" << AssociationName(a)
         << "\", local mep 1, remote mep " << kRemoteMep
         << ", interval 60\n  session 1: interval 100, count 10, size 64, pcp 7\n";
  }
  return tree.str();
}

}  // namespace cfm_test
