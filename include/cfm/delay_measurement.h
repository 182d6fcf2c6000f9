/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file
 * On-demand delay measurement (ITU-T Y.1731 DMM/DMR), and the results of a probe's
 * session.
 */
#ifndef CFM_DELAY_MEASUREMENT_H
#define CFM_DELAY_MEASUREMENT_H

#include <cstdint>
#include <string>

namespace cfm {

/** A delay measurement to run, filled by the application. */
struct delay_measurement_trigger {
  /** The application's own number for this request; every report brings it back. */
  std::uint32_t request_id = 0;
  std::string md_name;              ///< Maintenance domain of the local MEP.
  std::string ma_name;              ///< Maintenance association of the local MEP.
  std::uint16_t mep_id = 0;         ///< Local MEP that sends the DMMs.
  std::uint16_t remote_mep_id = 0;  ///< Remote MEP measured against.
  std::uint32_t param_a = 0;        ///< Test parameter; the server's meaning.
  std::uint32_t param_b = 0;        ///< Test parameter; the server's meaning.
  std::uint16_t param_c = 0;        ///< Test parameter; the server's meaning.
  std::uint8_t param_d = 0;         ///< Test parameter; the server's meaning.
};

/**
 * What one delay-measurement session of a probe found, filled by the library with the
 * server's numbers as they came; what each of them means is the server's to say. `s_byte`
 * keeps the low eight bits. The order of members is part of the binary interface, and differs
 * from the order on the wire.
 */
struct DelayMeasurementSessionResult {
  std::uint32_t s_word_1 = 0;   ///< The server's meaning.
  std::uint32_t s_word_2 = 0;   ///< The server's meaning.
  std::uint8_t s_byte = 0;      ///< The server's meaning; the low eight bits of the field.
  std::uint32_t s_word_3 = 0;   ///< The server's meaning.
  std::uint64_t s_wide_1 = 0;   ///< The server's meaning.
  std::uint64_t s_wide_2 = 0;   ///< The server's meaning.
  std::uint32_t s_word_4 = 0;   ///< The server's meaning.
  double s_real_1 = 0;          ///< The server's meaning.
  double s_real_2 = 0;          ///< The server's meaning.
  std::uint32_t s_word_5 = 0;   ///< The server's meaning.
  std::uint32_t s_word_6 = 0;   ///< The server's meaning.
  std::uint32_t s_word_7 = 0;   ///< The server's meaning.
  std::uint32_t s_word_8 = 0;   ///< The server's meaning.
  std::uint32_t s_word_9 = 0;   ///< The server's meaning.
  std::uint32_t s_word_10 = 0;  ///< The server's meaning.
  double s_real_3 = 0;          ///< The server's meaning.
  double s_real_4 = 0;          ///< The server's meaning.
};

}  // namespace cfm

#endif
