// SPDX-License-Identifier: MIT
#pragma once

#include <mutex>
#include <string>
#include <string_view>

namespace finder {

/// The log of what searches sent, what answered and what was left out. Lines are appended to a
/// file, one write each, so that several processes can share it. May be used from any thread.
class SearchLog
{
public:
    /// target: a file's path, "-" for standard error, empty for no log. A missing file is created
    /// for its user alone (mode 0600); a file that cannot be opened, and anything but a regular
    /// file, means no log.
    explicit SearchLog(const std::string& target);
    ~SearchLog();

    SearchLog(const SearchLog&) = delete;
    SearchLog& operator=(const SearchLog&) = delete;

    bool isOpen() const { return m_descriptor >= 0; }

    /// Appends one line. Bytes outside printable ASCII become \xNN, a backslash is doubled, so that
    /// no name from the network can write terminal commands or lines of its own.
    void line(std::string_view text);

private:
    std::mutex m_mutex; ///< Guards the order of writes.
    int m_descriptor = -1;
    bool m_isOwned = false;
};

/// The text as SearchLog writes it.
std::string escaped(std::string_view text);

} // namespace finder
