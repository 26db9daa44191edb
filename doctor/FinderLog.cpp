// SPDX-License-Identifier: MIT
#include "doctor/FinderLog.h"

#include "config/WholeFile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace QvVisa {

namespace {

constexpr const char* s_variable = "QVFIND_LOG";
constexpr std::string_view s_prefix = "qvfind: ";

/// Appends to the log that the user wants, as the finder would have done: "-" is standard error,
/// and only a regular file is written.
void appendToUsersLog(std::string_view bytes)
{
    const char* const name = std::getenv(s_variable); // NOLINT(concurrency-mt-unsafe)
    const std::string target = name != nullptr ? name : "";
    if (target.empty()) {
        return;
    }
    // A log that cannot be written changes nothing else.
    if (target == "-") {
        [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, bytes.data(), bytes.size());
        return;
    }
    constexpr mode_t ownerOnly = 0600;
    const FileDescriptor file(
        ::open(target.c_str(), // NOLINT(cppcoreguidelines-pro-type-vararg)
               O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, ownerOnly));
    struct stat status = {};
    if (file.isOpen() && ::fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode)) {
        [[maybe_unused]] const ssize_t written = ::write(file.get(), bytes.data(), bytes.size());
    }
}

} // namespace

FinderLog::FinderLog()
{
#ifdef __linux__
    m_memory = FileDescriptor(::memfd_create("finder-log", MFD_CLOEXEC));
#endif
}

std::vector<std::pair<std::string, std::string>> FinderLog::variables() const
{
    if (!m_memory.isOpen()) {
        return {};
    }
    // The child is a fork without an exec: it has the descriptor by the same number.
    return {{s_variable, "/proc/self/fd/" + std::to_string(m_memory.get())}};
}

std::vector<std::string> FinderLog::takeLines() const
{
    const auto text = m_memory.isOpen() ? readWholeFile(m_memory.get()) : std::nullopt;
    std::vector<std::string> lines;
    if (!text || text->empty()) {
        return lines;
    }
    appendToUsersLog(*text);
    std::string_view rest = *text;
    while (!rest.empty()) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(line.size() < rest.size() ? line.size() + 1 : line.size());
        if (line.substr(0, s_prefix.size()) == s_prefix) {
            lines.emplace_back(line.substr(s_prefix.size()));
        }
    }
    return lines;
}

std::vector<std::string> beyondTheList(const std::vector<std::string>& lines)
{
    const auto startsWith = [](const std::string& line, std::string_view begin) {
        return line.compare(0, begin.size(), begin) == 0;
    };
    std::vector<std::string> chosen;
    std::size_t searches = 0;
    for (const std::string& line : lines) {
        if (startsWith(line, "search for ")) {
            ++searches;
        }
        const bool isListed = startsWith(line, "search for ") ||
                              (startsWith(line, "found ") && !startsWith(line, "found but ") &&
                               line.find("; left out: ") == std::string::npos);
        if (!isListed && searches <= 1) {
            chosen.push_back(line);
        }
    }
    return chosen;
}

} // namespace QvVisa
