// Lines up text in columns.
#ifndef CFM_AGENT_CORE_COLUMNS_H
#define CFM_AGENT_CORE_COLUMNS_H

#include <cstddef>
#include <string>
#include <vector>

namespace cfm_agent {

// One line for each row, its cells under those of the other rows, two blanks between them.
std::vector<std::string> AlignColumns(const std::vector<std::vector<std::string>>& rows,
                                      std::size_t indent);

}  // namespace cfm_agent

#endif
