// Where the agent says what happens.
#ifndef CFM_AGENT_SHELL_CONSOLE_H
#define CFM_AGENT_SHELL_CONSOLE_H

#include <string_view>

namespace cfm_agent {

class Console {
 public:
  enum class Volume { Normal, Quiet };

  explicit Console(Volume volume = Volume::Normal) : volume_(volume) {}
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;
  virtual ~Console() = default;

  // Results that were asked for.
  void Print(std::string_view line) { Write(Stream::Output, line); }
  // News, which a quiet console leaves out.
  void Report(std::string_view line) {
    if (volume_ == Volume::Normal) {
      Write(Stream::Output, line);
    }
  }
  // Mistakes and failures.
  void Complain(std::string_view line) { Write(Stream::Error, line); }

 protected:
  enum class Stream { Output, Error };

  // Writes a whole line at once, so that a reader of a pipe sees it as it happens.
  virtual void Write(Stream stream, std::string_view line);

 private:
  Volume volume_;
};

}  // namespace cfm_agent

#endif
