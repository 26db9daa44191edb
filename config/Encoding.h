// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace QvVisa {

/// The file's bytes are Latin-1, the terminal's and JSON's are UTF-8.
std::string latin1ToUtf8(std::string_view latin1);

/// None when the text is not valid UTF-8 or has a character beyond U+00FF.
std::optional<std::string> utf8ToLatin1(std::string_view utf8);

/// Whether the bytes are well-formed UTF-8: no overlong forms, no surrogates.
bool isUtf8(std::string_view bytes);

/// A path for people and JSON: as it is when it is valid UTF-8, else read as Latin-1.
std::string pathToUtf8(std::string_view path);

/// UTF-8 in which control characters are written as \xNN, so that bytes of a file cannot act on
/// a terminal. Each byte that is not UTF-8 becomes a question mark.
std::string printable(std::string_view utf8);

} // namespace QvVisa
