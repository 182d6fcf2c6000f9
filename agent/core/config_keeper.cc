// SPDX-License-Identifier: Apache-2.0
#include "core/config_keeper.h"

#include <utility>

namespace cfm_agent {

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
  return Outcome::Loaded;
}

}  // namespace cfm_agent
