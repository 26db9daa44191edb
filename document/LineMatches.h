// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace QvVisa {

/// For a line that no line of the other text matches.
constexpr std::size_t noMatch = static_cast<std::size_t>(-1);

/// For each line of the one text the index of the equal line of the other text that it matches, in
/// a longest common sequence of both: indexes ascend. Texts that differ in thousands of lines are
/// not compared to the end; what remains has no match.
std::vector<std::size_t> matchLines(const std::vector<std::string_view>& lines,
                                    const std::vector<std::string_view>& others);

} // namespace QvVisa
