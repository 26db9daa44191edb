// SPDX-License-Identifier: MIT
#pragma once

#include "config/FileDescriptor.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace QvVisa {

/// Reads a regular file of at most maxFileSize bytes line by line. Lines end at line feeds, which
/// do not belong to them; a last line without one counts too. Memory: 256 KiB, or up to twice the
/// longest line (three times while the buffer grows).
class LineReader
{
public:
    explicit LineReader(const std::string& path);

    /// Stores the next line; it is valid until the next call. False when there is none left, and
    /// after a failure.
    bool next(std::string_view& line);

    /// True when the file could not be opened or a read failed: lines are missing.
    bool hasFailed() const { return m_hasFailed; }

private:
    bool readMore();

    FileDescriptor m_file;
    std::vector<char> m_buffer;
    off_t m_size = 0;        ///< Bytes read in all.
    std::size_t m_begin = 0; ///< First byte not yet handed out.
    std::size_t m_end = 0;   ///< One past the last byte read.
    bool m_hasFailed = false;
};

} // namespace QvVisa
