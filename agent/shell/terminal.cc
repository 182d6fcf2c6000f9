#include "shell/terminal.h"

#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <iostream>
#include <system_error>

namespace cfm_agent {
namespace {

constexpr int kHistorySize = 1000;
constexpr const char* kClearLine = "\r\x1b[K";

// What the editor makes of the key for the end of input.
constexpr const char* kEndOfInput = "\x04";

bool IsGone(int terminal) {
  pollfd fd = {terminal, 0, 0};
  return poll(&fd, 1, 0) > 0 && (fd.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
}

char* Prompt(EditLine* /*editor*/) {
  static std::string prompt = "cfm-agent> ";
  return prompt.data();
}

// The longest beginning that all words share.
std::string CommonBeginning(const std::vector<std::string>& words) {
  std::string common = words.front();
  for (const std::string& word : words) {
    const auto end = std::mismatch(common.begin(), common.end(), word.begin(), word.end()).first;
    common.erase(end, common.end());
  }
  return common;
}

}  // namespace

Terminal::Terminal(Completer completer, std::string history_file)
    : completer_(std::move(completer)),
      history_file_(std::move(history_file)),
      history_(history_init()),
      editor_(el_init("cfm-agent", stdin, stdout, stderr)) {
  if (!history_ || !editor_) {
    throw std::system_error(ENOTTY, std::generic_category(), "terminal");
  }
  SetUpHistory();
  SetUpEditor();
}

Terminal::~Terminal() {
  el_set(editor_.get(), EL_UNBUFFERED, 0);
  std::cout << kClearLine << std::flush;
}

void Terminal::SetUpHistory() {
  HistEvent event = {};
  history(history_.get(), &event, H_SETSIZE, kHistorySize);
  history(history_.get(), &event, H_SETUNIQUE, 1);
  if (!history_file_.empty()) {
    history(history_.get(), &event, H_LOAD, history_file_.c_str());
  }
}

void Terminal::SetUpEditor() {
  EditLine* editor = editor_.get();
  el_set(editor, EL_CLIENTDATA, this);
  el_set(editor, EL_PROMPT, &Prompt);
  el_set(editor, EL_EDITOR, "emacs");
  el_set(editor, EL_SIGNAL, 0);
  el_set(editor, EL_HIST, history, history_.get());
  el_set(editor, EL_ADDFN, "complete-word", "Completes the word before the cursor", &OnTab);
  el_set(editor, EL_BIND, "^I", "complete-word", nullptr);
  el_set(editor, EL_BIND, "^R", "em-inc-search-prev", nullptr);
  el_source(editor, nullptr);
  el_set(editor, EL_UNBUFFERED, 1);
}

int Terminal::fd() const { return STDIN_FILENO; }

// One key at a time, so that the rest of the agent goes on while a line is typed.
std::vector<std::string> Terminal::Read() {
  int count = 0;
  const char* typed = el_gets(editor_.get(), &count);
  // The editor tells an emptied line and a terminal that has gone in the same way.
  const std::string line =
      typed == nullptr || count <= 0 ? "" : std::string(typed, static_cast<std::size_t>(count));
  if (line == kEndOfInput || IsGone(fd())) {
    End();
    return {};
  }
  if (line.empty() || (line.back() != '\n' && line.back() != '\r')) {
    return {};
  }
  // Leaving the mode and entering it again begins a new line.
  el_set(editor_.get(), EL_UNBUFFERED, 0);
  el_set(editor_.get(), EL_UNBUFFERED, 1);
  Remember(line);
  return {line.substr(0, line.size() - 1)};
}

void Terminal::Resize() { el_resize(editor_.get()); }

void Terminal::Write(Stream stream, std::string_view line) {
  std::cout << kClearLine << std::flush;
  Console::Write(stream, line);
  Redraw();
}

void Terminal::Redraw() { el_set(editor_.get(), EL_REFRESH); }

void Terminal::Remember(const std::string& line) {
  if (line.find_first_not_of(" \t\r\n") == std::string::npos) {
    return;
  }
  HistEvent event = {};
  history(history_.get(), &event, H_ENTER, line.c_str());
  if (!history_file_.empty()) {
    const mode_t mask = umask(S_IRWXG | S_IRWXO);
    history(history_.get(), &event, H_SAVE, history_file_.c_str());
    umask(mask);
  }
}

unsigned char Terminal::OnTab(EditLine* editor, int /*key*/) {
  void* self = nullptr;
  el_get(editor, EL_CLIENTDATA, &self);
  return static_cast<Terminal*>(self)->CompleteWord();
}

unsigned char Terminal::CompleteWord() {
  const LineInfo* info = el_line(editor_.get());
  const std::string line(info->buffer, static_cast<std::size_t>(info->cursor - info->buffer));
  const Completions found = completer_(line);
  if (found.words.empty()) {
    return CC_REFRESH_BEEP;
  }
  std::string word = CommonBeginning(found.words);
  if (found.words.size() == 1 && word.back() != '=') {
    word += ' ';
  }
  const std::string typed = line.substr(found.word_begins);
  if (word.size() > typed.size()) {
    el_insertstr(editor_.get(), word.c_str() + typed.size());
    return CC_REFRESH;
  }
  std::string all;
  for (const std::string& candidate : found.words) {
    all += candidate + "  ";
  }
  std::cout << std::endl;
  Console::Write(Stream::Output, all);
  return CC_REDISPLAY;
}

}  // namespace cfm_agent
