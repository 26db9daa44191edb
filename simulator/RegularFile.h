// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

namespace simulator {

/// A bench file or a call log has at most this many bytes.
constexpr std::size_t largestFile = std::size_t{64} << 20U;

/// Reads a whole file into text. Answers what is wrong, empty for success: a file that cannot be
/// read, is larger than largestFile, or is a folder, FIFO, device or socket, of which a read could
/// block for ever.
std::string readRegularFile(const std::string& path, std::string& text);

/// Appends a text with a single write, so that those of several threads and processes do not mix;
/// creates the file if necessary. Answers what is wrong, as readRegularFile().
std::string appendToRegularFile(const std::string& path, const std::string& text);

/// The current value of an environment variable, empty when it is not set.
std::string environmentValue(const char* name);

} // namespace simulator
