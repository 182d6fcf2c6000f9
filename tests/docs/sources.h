/* SPDX-License-Identifier: Apache-2.0 */
// What the guides describe, read from the sources: each as one line of text, so that a set of them
// compares with that of a guide.
#ifndef CFM_TESTS_DOCS_SOURCES_H
#define CFM_TESTS_DOCS_SOURCES_H

#include <set>
#include <string>

namespace docs {

// The text of a file of the project; the test fails if there is none.
std::string ReadFile(const std::string& path);

// "ServerFound line 75 level 10: CFM manager server found", of src/log_points.h.
std::set<std::string> LogRecords(const std::string& text);
// "ClientImpl line 25 fault: CFM manager client: invalid vorx token", of the same.
std::set<std::string> Faults(const std::string& text);

// "OpStatsClear.mep_id = 3 uint32", of the schema.
std::set<std::string> Fields(const std::string& text);

// "C2S_SIG_MD_CREATE = 1 OpCreateMaintenanceDomain", of the identifiers' header.
std::set<std::string> Identifiers(const std::string& text);

// "4: the endpoint is busy", of the server's header of refusals and the source that explains them.
std::set<std::string> Refusals(const std::string& header, const std::string& source);

// "vorx_sig_send", of a header of the host.
std::set<std::string> Functions(const std::string& text);

}  // namespace docs

#endif
