/* SPDX-License-Identifier: Apache-2.0 */
// Text and sending for the floor.
#ifndef CFM_BENCH_LIBRARY_FLOOR_TEXT_H
#define CFM_BENCH_LIBRARY_FLOOR_TEXT_H

#include <cfm/identifiers.h>
#include <google/protobuf/message_lite.h>
#include <vorx/vorx.h>
#include <zlog.h>

#include <charconv>
#include <string>

#include "counting_host.h"

namespace cfm_bench {

inline void Add(std::string& out, const char* label, const std::string& text) {
  out += label;
  out += text;
}

inline void Add(std::string& out, const char* label, unsigned number) {
  char digits[16];
  out += label;
  out.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

inline void Send(const vorx_sig_descriptor* signal, const google::protobuf::MessageLite& message) {
  const vorx_pid_t server = 77;
  std::string bytes;
  message.SerializeToString(&bytes);
  vorx_sig_send(CountingHost::Instance().handle(), &server, signal, bytes.data(),
                static_cast<unsigned>(bytes.size()));
}

inline void LogText(const std::string& text) {
  zlog(CountingHost::Instance().category(), "client_impl.cc", 14, "Apply", 5, 1, 10, "%s",
       text.c_str());
}

}  // namespace cfm_bench

#endif
