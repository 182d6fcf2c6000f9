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
  // The sixteenth is for lines that are longer than those so far.
  const std::size_t to_come = (text_.size() + used_) / lines_ * lines_to_come;
  text_.reserve(wanted + to_come + to_come / 16);
}

}  // namespace cfm::core
