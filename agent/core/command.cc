// SPDX-License-Identifier: Apache-2.0
#include "core/command.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "core/mep.h"
#include "core/text.h"
#include "core/words_of_line.h"

namespace cfm_agent {
namespace {

constexpr std::uint64_t kMaxMepId = 8191;
constexpr std::uint8_t kDefaultTtl = 64;

// The words of a command taken one by one. The first mistake is kept; what is read after it does
// not matter.
class Arguments {
 public:
  explicit Arguments(std::vector<LineWord> words) : words_(std::move(words)) {}

  std::string Name(const std::string& what) {
    if (next_ == words_.size()) {
      Fail("the " + what + " is missing");
      return "";
    }
    return words_[next_++].text;
  }

  std::uint16_t MepId(const std::string& what) {
    const std::string word = Name(what);
    return static_cast<std::uint16_t>(Number(what, word, 1, kMaxMepId));
  }

  // The value of an option written key=value, which may stand anywhere behind the command. A key
  // in quotes is none: so a name that looks like an option can be given.
  std::optional<std::string> Option(std::string_view key) {
    std::optional<std::string> value;
    for (auto word = words_.begin() + 1; word != words_.end();) {
      const std::size_t equals = word->text.find('=');
      if (equals == std::string::npos || word->quoted_from <= equals ||
          word->text.substr(0, equals) != key) {
        ++word;
        continue;
      }
      if (value) {
        Fail(std::string(key) + " is given twice");
      }
      value = word->text.substr(equals + 1);
      word = words_.erase(word);
    }
    return value;
  }

  template <typename Integer>
  void Option(std::string_view key, std::uint64_t min, Integer& number) {
    if (const auto word = Option(key)) {
      number = static_cast<Integer>(
          Number(std::string(key), *word, min, std::numeric_limits<Integer>::max()));
    }
  }

  bool AtEnd() const { return next_ == words_.size(); }

  // Notes what is left over, and gives the first mistake, if any.
  std::string Finish() {
    if (mistake_.empty() && !AtEnd()) {
      Fail(Quoted(words_[next_].text) + " is one word too many");
    }
    return mistake_;
  }

 private:
  std::uint64_t Number(const std::string& what, const std::string& word, std::uint64_t min,
                       std::uint64_t max) {
    std::uint64_t number = 0;
    bool good = !word.empty() && word.size() <= 10;
    for (const char c : word) {
      good = good && c >= '0' && c <= '9';
      number = good ? number * 10 + static_cast<std::uint64_t>(c - '0') : 0;
    }
    if (!good || number < min || number > max) {
      Fail("the " + what + " is " + Quoted(word) + "; use a whole number from " +
           std::to_string(min) + " to " + std::to_string(max));
    }
    return number;
  }

  void Fail(std::string mistake) {
    if (mistake_.empty()) {
      mistake_ = std::move(mistake);
    }
  }

  std::vector<LineWord> words_;
  std::size_t next_ = 1;
  std::string mistake_;
};

template <typename Trigger>
void ReadEnds(Arguments& arguments, Trigger& trigger) {
  trigger.md_name = arguments.Name("domain");
  trigger.ma_name = arguments.Name("association");
  trigger.mep_id = arguments.MepId("mep-id");
  trigger.remote_mep_id = arguments.MepId("remote-mep-id");
}

Command ReadLinktrace(Arguments& arguments) {
  cfm::linktrace_trigger trigger;
  trigger.ttl = kDefaultTtl;
  arguments.Option("ttl", 0, trigger.ttl);
  ReadEnds(arguments, trigger);
  return trigger;
}

Command ReadLoopback(Arguments& arguments) {
  cfm::loopback_trigger trigger;
  arguments.Option("param-a", 0, trigger.param_a);
  arguments.Option("param-b", 0, trigger.param_b);
  ReadEnds(arguments, trigger);
  return trigger;
}

Command ReadDelay(Arguments& arguments) {
  cfm::delay_measurement_trigger trigger;
  arguments.Option("param-a", 0, trigger.param_a);
  arguments.Option("param-b", 0, trigger.param_b);
  arguments.Option("param-c", 0, trigger.param_c);
  arguments.Option("param-d", 0, trigger.param_d);
  ReadEnds(arguments, trigger);
  return trigger;
}

Command ReadStatistics(Arguments& /*arguments*/) { return StatisticsCommand{}; }

Command ReadClear(Arguments& arguments) {
  ClearCommand command;
  command.md = arguments.Option("domain");
  command.ma = arguments.Option("association");
  arguments.Option("mep-id", 1, command.mep_id);
  return command;
}

Command ReadShow(Arguments& arguments) {
  ShowCommand command;
  if (!arguments.AtEnd()) {
    command.md = arguments.Name("domain");
  }
  if (!arguments.AtEnd()) {
    command.ma = arguments.Name("association");
  }
  if (!arguments.AtEnd()) {
    command.mep_id = arguments.MepId("mep-id");
  }
  return command;
}

Command ReadHelp(Arguments& /*arguments*/) { return HelpCommand{}; }
Command ReadQuit(Arguments& /*arguments*/) { return QuitCommand{}; }

struct CommandRule {
  std::string_view name;
  std::string_view arguments;
  std::string_view purpose;
  Command (*read)(Arguments&);
  std::size_t places;  // how many words are the domain, association, MEP and remote MEP
  std::array<std::string_view, 4> options;
};

constexpr std::array kCommands = {
    CommandRule{"clear",
                "[domain=NAME] [association=NAME] [mep-id=N]",
                "clears the server's statistics",
                ReadClear,
                0,
                {"domain=", "association=", "mep-id="}},
    CommandRule{"delay",
                "DOMAIN ASSOCIATION MEP-ID REMOTE-MEP-ID [param-a=N] [param-b=N] [param-c=N] "
                "[param-d=N]",
                "measures the delay of frames",
                ReadDelay,
                4,
                {"param-a=", "param-b=", "param-c=", "param-d="}},
    CommandRule{"help", "", "tells the commands", ReadHelp, 0, {}},
    CommandRule{"linktrace",
                "DOMAIN ASSOCIATION MEP-ID REMOTE-MEP-ID [ttl=N]",
                "traces the way to a remote MEP",
                ReadLinktrace,
                4,
                {"ttl="}},
    CommandRule{"loopback",
                "DOMAIN ASSOCIATION MEP-ID REMOTE-MEP-ID [param-a=N] [param-b=N]",
                "asks a remote MEP for answers",
                ReadLoopback,
                4,
                {"param-a=", "param-b="}},
    CommandRule{"quit", "", "ends the agent; the server keeps its configuration", ReadQuit, 0, {}},
    CommandRule{"show",
                "[DOMAIN [ASSOCIATION [MEP-ID]]]",
                "shows what is configured beside what the server reports",
                ReadShow,
                3,
                {}},
    CommandRule{"statistics", "", "asks for the statistics of all MEPs", ReadStatistics, 0, {}},
};

const CommandRule* FindCommand(std::string_view name) {
  const auto found = std::find_if(kCommands.begin(), kCommands.end(),
                                  [name](const CommandRule& rule) { return rule.name == name; });
  return found == kCommands.end() ? nullptr : &*found;
}

std::vector<std::string_view> CommandNames() {
  std::vector<std::string_view> names;
  names.reserve(kCommands.size());
  for (const CommandRule& rule : kCommands) {
    names.push_back(rule.name);
  }
  return names;
}

std::string NoSuchCommand(const std::string& word) {
  const auto names = CommandNames();
  const auto guess = ClosestWord(word, names);
  return Quoted(word) + " is not a command; " +
         (guess ? "did you mean " + std::string(*guess) + "?" : "use " + JoinAlternatives(names));
}

template <typename Map>
void AddNames(const Map& map, std::vector<std::string>& words) {
  for (const auto& entry : map) {
    words.push_back(AsWord(entry.first));
  }
}

template <typename Numbers>
void AddNumbers(const Numbers& numbers, std::vector<std::string>& words) {
  for (const std::uint16_t number : numbers) {
    words.push_back(std::to_string(number));
  }
}

// What may be the word at a place: domain, association, MEP or remote MEP.
std::vector<std::string> PlaceWords(const std::vector<LineWord>& words, std::size_t place,
                                    const cfm::hierarchy& hierarchy) {
  std::vector<std::string> result;
  if (place == 0) {
    AddNames(hierarchy.mds, result);
    return result;
  }
  const auto md = hierarchy.mds.find(words[1].text);
  if (md == hierarchy.mds.end()) {
    return result;
  }
  if (place == 1) {
    AddNames(md->second.mas, result);
    return result;
  }
  const auto ma = md->second.mas.find(words[2].text);
  if (ma == md->second.mas.end()) {
    return result;
  }
  if (place == 3) {
    AddNumbers(ma->second.cfg.mep_ids, result);
    result.erase(std::remove(result.begin(), result.end(), words[3].text), result.end());
    return result;
  }
  for (const auto& entry : ma->second.meps) {
    result.push_back(std::to_string(entry.first));
  }
  return result;
}

bool BeginsWith(std::string_view text, std::string_view beginning) {
  return text.substr(0, beginning.size()) == beginning;
}

}  // namespace

ParsedCommand ParseCommand(std::string_view line) {
  const LineWords split = SplitLine(line);
  if (!split.mistake.empty()) {
    return {std::nullopt, split.mistake};
  }
  if (split.words.empty()) {
    return {};
  }
  const std::string& name = split.words.front().text;
  const CommandRule* rule = FindCommand(name);
  if (rule == nullptr) {
    return {std::nullopt, NoSuchCommand(name)};
  }
  Arguments arguments(split.words);
  Command command = rule->read(arguments);
  const std::string mistake = arguments.Finish();
  if (mistake.empty()) {
    return {std::move(command), ""};
  }
  std::string usage = mistake + "; use: " + name;
  if (!rule->arguments.empty()) {
    usage += ' ' + std::string(rule->arguments);
  }
  return {std::nullopt, std::move(usage)};
}

std::vector<CommandUsage> CommandUsages() {
  std::vector<CommandUsage> usages;
  usages.reserve(kCommands.size());
  for (const CommandRule& rule : kCommands) {
    usages.push_back(
        {std::string(rule.name), std::string(rule.arguments), std::string(rule.purpose)});
  }
  return usages;
}

std::vector<std::string> TextOf(const std::vector<CommandUsage>& usages) {
  std::vector<std::string> lines;
  lines.reserve(2 * usages.size());
  for (const CommandUsage& usage : usages) {
    lines.push_back(usage.name + (usage.arguments.empty() ? "" : ' ' + usage.arguments));
    lines.push_back("    " + usage.purpose);
  }
  return lines;
}

Completions Complete(std::string_view line, const Config& config) {
  const LineWords split = SplitLine(line);
  const std::size_t count = split.words.size();
  const std::size_t index = split.last_is_open ? count - 1 : count;
  Completions result;
  result.word_begins = split.last_is_open ? split.words.back().begin : line.size();
  const std::string_view typed = line.substr(result.word_begins);

  std::vector<std::string> candidates;
  if (index == 0) {
    for (const CommandRule& rule : kCommands) {
      candidates.emplace_back(rule.name);
    }
  } else if (const CommandRule* rule = FindCommand(split.words.front().text)) {
    if (index <= rule->places) {
      candidates = PlaceWords(split.words, index - 1, config.hierarchy);
    } else {
      for (const std::string_view option : rule->options) {
        candidates.emplace_back(option);
      }
    }
  }
  for (std::string& candidate : candidates) {
    if (!candidate.empty() && BeginsWith(candidate, typed)) {
      result.words.push_back(std::move(candidate));
    }
  }
  return result;
}

}  // namespace cfm_agent
