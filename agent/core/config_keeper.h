/* SPDX-License-Identifier: Apache-2.0 */
// Keeps the configuration in force while its file changes.
#ifndef CFM_AGENT_CORE_CONFIG_KEEPER_H
#define CFM_AGENT_CORE_CONFIG_KEEPER_H

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/config.h"

namespace cfm_agent {

// What reading a file gave: its text, or why there is none.
struct FileText {
  std::optional<std::string> text;
  std::string error;
};

inline bool operator==(const FileText& a, const FileText& b) {
  return a.text == b.text && a.error == b.error;
}

class ConfigKeeper {
 public:
  enum class Outcome {
    Unchanged,  // as when it was last offered
    Restored,   // a rejected file is again as the configuration in force
    Loaded,     // a new configuration is in force
    Rejected,   // the file is bad: whatever was in force still is
  };

  // `file` is the file's name as messages give it.
  ConfigKeeper(std::string file, PortOfName port_of_name)
      : file_(std::move(file)), port_of_name_(std::move(port_of_name)) {}

  Outcome Offer(FileText offered);
  // As Offer(), but a file that is as bad as before is Rejected again.
  Outcome OfferAgain(FileText offered);

  // The configuration in force. None until a first one was loaded.
  const std::optional<Config>& config() const { return config_; }
  // What is wrong with a Rejected file, one line each.
  const std::vector<std::string>& complaints() const { return complaints_; }
  // What is hardly meant in the file in force, one line each.
  const std::vector<std::string>& warnings() const { return warnings_; }
  // The lines to tell of them when the file comes into force: those that the last one in force did
  // not have, of many the first ones, and how many there are. None if there is nothing new.
  std::vector<std::string> WarningsToTell() const;

 private:
  Outcome Judge();
  void Note(const Warnings& warnings);

  std::string file_;
  PortOfName port_of_name_;
  std::optional<FileText> last_offered_;
  std::optional<std::string> text_in_force_;
  std::optional<Config> config_;
  std::vector<std::string> complaints_;
  std::vector<std::string> warnings_;
  std::vector<std::string> new_warnings_;
  std::set<std::string> known_;  // what the warnings are about
};

}  // namespace cfm_agent

#endif
