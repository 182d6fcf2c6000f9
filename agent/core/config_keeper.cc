// SPDX-License-Identifier: Apache-2.0
#include "core/config_keeper.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "core/text.h"

namespace cfm_agent {
namespace {

// Of new warnings, when a file comes into force.
constexpr std::size_t kMostTold = 10;

}  // namespace

ConfigKeeper::Outcome ConfigKeeper::Offer(FileText offered) {
  if (last_offered_ == offered) {
    return Outcome::Unchanged;
  }
  last_offered_ = std::move(offered);
  return Judge();
}

ConfigKeeper::Outcome ConfigKeeper::OfferAgain(FileText offered) {
  if (complaints_.empty()) {
    return Offer(std::move(offered));
  }
  last_offered_ = std::move(offered);
  return Judge();
}

ConfigKeeper::Outcome ConfigKeeper::Judge() {
  complaints_.clear();
  if (!last_offered_->text) {
    complaints_.push_back(Describe(file_, {{}, "", last_offered_->error}));
    return Outcome::Rejected;
  }
  const std::string& text = *last_offered_->text;
  if (text == text_in_force_) {
    return Outcome::Restored;
  }
  ReadResult result = ReadConfig(text, port_of_name_);
  for (const Mistake& mistake : result.mistakes) {
    complaints_.push_back(Describe(file_, mistake));
  }
  if (!result.config) {
    return Outcome::Rejected;
  }
  config_ = std::move(result.config);
  text_in_force_ = text;
  Note(result.warnings);
  return Outcome::Loaded;
}

void ConfigKeeper::Note(const Warnings& warnings) {
  warnings_.clear();
  new_warnings_.clear();
  std::set<std::string> known;
  for (const Warning& warning : warnings) {
    warnings_.push_back(Describe(file_, warning.found));
    if (known_.count(warning.about) == 0) {
      new_warnings_.push_back(warnings_.back());
    }
    known.insert(warning.about);
  }
  known_ = std::move(known);
}

std::vector<std::string> ConfigKeeper::WarningsToTell() const {
  if (new_warnings_.empty()) {
    return {};
  }
  const std::size_t told = std::min(new_warnings_.size(), kMostTold);
  std::vector<std::string> lines(new_warnings_.begin(),
                                 new_warnings_.begin() + static_cast<std::ptrdiff_t>(told));
  std::string summary = file_ + ": " + Count(warnings_.size(), "warning");
  if (new_warnings_.size() < warnings_.size()) {
    summary += ", " + std::to_string(new_warnings_.size()) + " of them new";
  }
  if (told < new_warnings_.size()) {
    summary += "; these are the first " + std::to_string(told) + ", --check tells all";
  }
  lines.push_back(std::move(summary));
  return lines;
}

}  // namespace cfm_agent
