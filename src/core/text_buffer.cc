// SPDX-License-Identifier: Apache-2.0
#include "core/text_buffer.h"

namespace cfm::core {

void TextBuffer::EndLine(std::size_t lines_to_come) {
  constexpr std::size_t kLinesToJudgeBy = 256;
  Add("\n");
  ++lines_;
  const std::size_t wanted = text_.size() + 2 * room_.size();
  if (wanted <= text_.capacity() || lines_ < kLinesToJudgeBy) {
    return;
  }
  const std::size_t to_come = (text_.size() + used_) / lines_ * lines_to_come;
  // A sixteenth for lines that are longer than those so far. The first lines may be much longer
  // than the others too: if they promise a lot, the text is judged again after a part of it.
  const std::size_t whole = wanted + to_come + to_come / 16;
  const std::size_t part = whole / 16;
  text_.reserve(part <= wanted ? whole : part);
}

}  // namespace cfm::core
