/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * Proactive delay measurement (ITU-T Y.1731 DMM/DMR): probes, each between a local and
 * a remote MEP, and their measurement sessions.
 *
 * Plain values that the application fills and the library copies. The library checks nothing and
 * leaves the units of the intervals and the meaning of `count` and `size` to the server.
 */
#ifndef CFM_PROBE_H
#define CFM_PROBE_H

#include <cstdint>
#include <map>
#include <string>

namespace cfm {

/** One measurement session of a probe. A change of any member sends the session again. */
struct session_cfg {
  std::uint16_t count = 0;     ///< Count parameter; the server's meaning.
  std::uint16_t interval = 0;  ///< Interval between frames; the server's unit.
  std::uint16_t size = 0;      ///< Size parameter; the server's meaning.
  std::uint8_t pcp = 0;        ///< IEEE 802.1Q priority code point of the frames, 0 to 7.
};

/**
 * One probe. A change of any member but `sessions` sends the probe again, without those
 * sessions that stay as they are.
 */
struct probe_cfg {
  /** The probe's own identifier. Compared, but never sent: the key in the map is. */
  std::uint16_t id = 0;
  std::uint16_t interval = 0;  ///< Probe interval; the server's unit.
  std::string md;              ///< Maintenance domain of the local MEP.
  std::string ma;              ///< Maintenance association of the local MEP.
  std::uint16_t lmep = 0;      ///< Local MEP identifier.
  std::uint16_t rmep = 0;      ///< Remote MEP identifier.
  /** The sessions by session identifier, which is unique within its probe only. */
  std::map<std::uint16_t, session_cfg> sessions;
};

/** Two sessions are equal when all their members are. */
inline bool operator==(const session_cfg& a, const session_cfg& b) {
  return a.count == b.count && a.interval == b.interval && a.size == b.size && a.pcp == b.pcp;
}
/** Two sessions differ when any of their members does. */
inline bool operator!=(const session_cfg& a, const session_cfg& b) { return !(a == b); }

/** Two probes are equal when all their members are, the sessions included. */
inline bool operator==(const probe_cfg& a, const probe_cfg& b) {
  return a.id == b.id && a.interval == b.interval && a.md == b.md && a.ma == b.ma &&
         a.lmep == b.lmep && a.rmep == b.rmep && a.sessions == b.sessions;
}
/** Two probes differ when any of their members does, the sessions included. */
inline bool operator!=(const probe_cfg& a, const probe_cfg& b) { return !(a == b); }

/** The whole probe configuration. */
struct probe {
  /** The probes by probe identifier. */
  std::map<std::uint16_t, probe_cfg> probes;
};

}  // namespace cfm

#endif
