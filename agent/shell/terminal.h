/* SPDX-License-Identifier: Apache-2.0 */
// A terminal: a prompt with history and completion, above which lines are printed as they come.
#ifndef CFM_AGENT_SHELL_TERMINAL_H
#define CFM_AGENT_SHELL_TERMINAL_H

#include <histedit.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "core/command.h"
#include "shell/console.h"
#include "shell/input.h"

namespace cfm_agent {

class Terminal : public Console, public Input {
 public:
  using Completer = std::function<Completions(const std::string& line)>;

  // Takes the terminal over from standard input, and gives it back when destroyed. The history is
  // kept in a file, if one is named. Throws std::system_error.
  Terminal(const Renderer& renderer, Progress progress, Completer completer,
           std::string history_file);
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  ~Terminal() override;

  int fd() const override;
  std::vector<std::string> Read() override;
  void Resize() override;

 protected:
  void Write(Stream stream, std::string_view lines) override;
  // As a part of the prompt.
  void DrawProgress() override;

 private:
  struct EndEditor {
    void operator()(EditLine* editor) const { el_end(editor); }
  };
  struct EndHistory {
    void operator()(History* history) const { history_end(history); }
  };

  static Terminal& Self(EditLine* editor);
  static int OnRead(EditLine* editor, wchar_t* character);
  static char* OnPrompt(EditLine* editor);
  static unsigned char OnTab(EditLine* editor, int key);
  static unsigned char OnCancel(EditLine* editor, int key);
  std::vector<std::string> TakeKey();
  void DropEndOfInput(const std::string& line);
  unsigned char CompleteWord();
  void SetUpEditor();
  void SetUpHistory();
  void BeginLine();
  void Remember(const std::string& line);
  void Clear();
  void Redraw();

  Completer completer_;
  std::string history_file_;
  std::string prompt_;
  std::string key_;  // the bytes of the key that is being typed
  std::chrono::steady_clock::time_point key_begins_;
  bool starved_ = false;    // the editor wanted more than the key
  bool cancelled_ = false;  // on an empty line
  std::unique_ptr<History, EndHistory> history_;
  std::unique_ptr<EditLine, EndEditor> editor_;
};

}  // namespace cfm_agent

#endif
