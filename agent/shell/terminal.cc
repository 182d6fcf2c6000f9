// SPDX-License-Identifier: Apache-2.0
#include "shell/terminal.h"

#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cwchar>
#include <system_error>

#include "core/table.h"
#include "shell/keys.h"
#include "shell/tty.h"

namespace cfm_agent {
namespace {

constexpr int kHistorySize = 1000;
constexpr const char* kPrompt = "cfm-agent> ";

// What the editor makes of the key for the end of input.
constexpr const char* kEndOfInput = "\x04";

// How soon a key's other bytes follow its first ones. What comes later is another key: the first
// was Escape alone, or another that only begins a longer one.
constexpr std::chrono::milliseconds kKeyTime{500};

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

Terminal::Terminal(const Renderer& renderer, Progress progress, Completer completer,
                   std::string history_file)
    : Console(renderer, Volume::Normal, progress),
      completer_(std::move(completer)),
      history_file_(std::move(history_file)),
      prompt_(kPrompt),
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
  Clear();
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
  el_set(editor, EL_PROMPT, &OnPrompt);
  el_set(editor, EL_EDITOR, "emacs");
  el_set(editor, EL_SIGNAL, 0);
  el_set(editor, EL_HIST, history, history_.get());
  el_set(editor, EL_ADDFN, "complete-word", "Completes the word before the cursor", &OnTab);
  el_set(editor, EL_BIND, "^I", "complete-word", nullptr);
  el_set(editor, EL_ADDFN, "clear-or-end", "Clears the line, or ends when it is empty", &OnCancel);
  // Their commands read further keys, for which nobody waits.
  for (const char* key : {"^V", "^[x", "^[X"}) {
    el_set(editor, EL_BIND, key, "ed-unassigned", nullptr);
  }
  // Earlier lines with what is typed in them. The search that goes on with every key would read the
  // keys itself, and keep the agent from everything else meanwhile.
  el_set(editor, EL_BIND, "^R", "ed-search-prev-history", nullptr);
  el_source(editor, nullptr);
  el_set(editor, EL_BIND, "^C", "clear-or-end", nullptr);
  el_set(editor, EL_GETCFN, &OnRead);
  BeginLine();
}

void Terminal::BeginLine() {
  el_set(editor_.get(), EL_UNBUFFERED, 1);
  // Ctrl-C is a key like others, and none stops the output, for which the agent would wait.
  termios modes = {};
  if (tcgetattr(STDIN_FILENO, &modes) == 0) {
    modes.c_cc[VINTR] = _POSIX_VDISABLE;
    modes.c_iflag &= ~static_cast<tcflag_t>(IXON);
    tcsetattr(STDIN_FILENO, TCSANOW, &modes);
  }
}

int Terminal::fd() const { return STDIN_FILENO; }

// One byte at a time, and to the editor one key at a time: it would wait for the rest of a key.
std::vector<std::string> Terminal::Read() {
  char byte = 0;
  const ssize_t size = read(fd(), &byte, 1);
  if (size < 0 && (errno == EINTR || errno == EAGAIN)) {
    return {};
  }
  if (size <= 0) {
    End();
    return {};
  }
  const auto now = std::chrono::steady_clock::now();
  if (!key_.empty() && now - key_begins_ > kKeyTime) {
    key_.clear();
  }
  if (key_.empty()) {
    key_begins_ = now;
  }
  key_ += byte;
  return IsWholeKey(key_) ? TakeKey() : std::vector<std::string>();
}

std::vector<std::string> Terminal::TakeKey() {
  int count = 0;
  starved_ = false;
  const char* typed = el_gets(editor_.get(), &count);
  key_.clear();
  const std::string line =
      typed == nullptr || count <= 0 ? "" : std::string(typed, static_cast<std::size_t>(count));
  if (starved_) {
    DropEndOfInput(line);
    return {};
  }
  if (line == kEndOfInput || cancelled_) {
    End();
    return {};
  }
  if (line.empty() || (line.back() != '\n' && line.back() != '\r')) {
    return {};
  }
  // Leaving the mode and entering it again begins a new line.
  el_set(editor_.get(), EL_UNBUFFERED, 0);
  BeginLine();
  Remember(line);
  return {line.substr(0, line.size() - 1)};
}

// A command of the editor that found no further key took that for the end of input.
void Terminal::DropEndOfInput(const std::string& line) {
  if (!line.empty() && line.back() == *kEndOfInput) {
    el_deletestr(editor_.get(), 1);
    Redraw();
  }
}

// What the editor reads: the next character of the key, and then nothing.
int Terminal::OnRead(EditLine* editor, wchar_t* character) {
  Terminal& self = Self(editor);
  std::mbstate_t state = {};
  const std::size_t size = std::mbrtowc(character, self.key_.data(), self.key_.size(), &state);
  if (self.key_.empty() || size > self.key_.size()) {
    self.starved_ = true;
    return 0;
  }
  self.key_.erase(0, std::max<std::size_t>(size, 1));
  return 1;
}

void Terminal::Resize() { el_resize(editor_.get()); }

void Terminal::Write(Stream stream, std::string_view lines) {
  Clear();
  Put(stream, lines);
  Redraw();
}

void Terminal::DrawProgress() {
  const std::string line = progress_line().substr(0, OutputColumns() / 2);
  Clear();
  prompt_ = (line.empty() ? "" : '[' + line + "] ") + kPrompt;
  Redraw();
}

// Takes prompt and line away. Both together may go on over several lines of the terminal.
void Terminal::Clear() {
  const LineInfo* info = el_line(editor_.get());
  const std::string_view typed(info->buffer, static_cast<std::size_t>(info->cursor - info->buffer));
  const std::size_t above = (DisplayWidth(prompt_) + DisplayWidth(typed)) / OutputColumns();
  const std::string up = above == 0 ? "" : "\x1b[" + std::to_string(above) + 'A';
  Put(Stream::Output, up + "\r\x1b[J");
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

Terminal& Terminal::Self(EditLine* editor) {
  void* self = nullptr;
  el_get(editor, EL_CLIENTDATA, &self);
  return *static_cast<Terminal*>(self);
}

char* Terminal::OnPrompt(EditLine* editor) { return Self(editor).prompt_.data(); }

unsigned char Terminal::OnTab(EditLine* editor, int /*key*/) { return Self(editor).CompleteWord(); }

unsigned char Terminal::OnCancel(EditLine* editor, int /*key*/) {
  const LineInfo* info = el_line(editor);
  if (info->lastchar == info->buffer) {
    Self(editor).cancelled_ = true;
    return CC_NORM;
  }
  el_cursor(editor, static_cast<int>(info->lastchar - info->cursor));
  el_deletestr(editor, static_cast<int>(info->lastchar - info->buffer));
  return CC_REFRESH;
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
  Put(Stream::Output, '\n' + all + '\n');
  return CC_REDISPLAY;
}

}  // namespace cfm_agent
