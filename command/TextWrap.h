// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace QvVisa {

/// The columns of a terminal on standard output: those of the terminal, or of COLUMNS where it does
/// not know them; 0 when standard output is no terminal.
std::size_t terminalWidth();

/// UTF-8 text, broken between words into lines of at most width columns, all but the first indented
/// by so many blanks. A longer word has a line of its own. Width 0: the text as it is. A character
/// counts as one column.
std::string wrapped(std::string_view utf8, std::size_t width, std::size_t indent);

} // namespace QvVisa
