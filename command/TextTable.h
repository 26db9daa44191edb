// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace QvVisa {

/// The number of characters in a UTF-8 text.
std::size_t characterCount(std::string_view utf8);

/// Rows of equally many cells as lines. width: the columns of the terminal, 0 for no limit. Where
/// every row fits, cells are below each other in columns; else each cell has a line of its own,
/// those after a row's first one indented, so that the terminal breaks single cells only. Nothing
/// is cut.
std::string textTable(const std::vector<std::vector<std::string>>& rows, std::size_t width);

} // namespace QvVisa
