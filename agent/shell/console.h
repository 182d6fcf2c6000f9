/* SPDX-License-Identifier: Apache-2.0 */
// Where the agent says what happens.
#ifndef CFM_AGENT_SHELL_CONSOLE_H
#define CFM_AGENT_SHELL_CONSOLE_H

#include <string>
#include <string_view>

#include "core/renderer.h"

namespace cfm_agent {

class Console {
 public:
  enum class Volume { Normal, Quiet };
  enum class Progress { Hidden, Shown };

  // The renderer outlives the console.
  Console(const Renderer& renderer, Volume volume, Progress progress)
      : renderer_(renderer), volume_(volume), progress_(progress) {}
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;
  virtual ~Console() = default;

  // A quiet console leaves out news.
  void Tell(const Record& record);
  // Mistakes and failures; of a command, if it is named.
  void Complain(std::string text, std::string command = "") {
    Tell(Complaint{std::move(text), std::move(command)});
  }

  bool shows_progress() const { return progress_ == Progress::Shown; }
  // Shows a line that stays below all others until it is replaced. Empty takes it away.
  void ShowProgress(const std::string& line);

  // Whether something that was to go to standard output could not be written.
  bool failed() const { return failed_; }

 protected:
  static constexpr const char* kClearLine = "\r\x1b[K";

  // Writes whole lines at once, so that a reader of a pipe sees them as they happen.
  virtual void Write(Stream stream, std::string_view lines);
  virtual void DrawProgress();
  const std::string& progress_line() const { return progress_line_; }
  void Put(Stream stream, std::string_view text);

 private:
  const Renderer& renderer_;
  Volume volume_;
  Progress progress_;
  std::string progress_line_;
  bool failed_ = false;
};

}  // namespace cfm_agent

#endif
