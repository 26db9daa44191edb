// SPDX-License-Identifier: MIT
#include "simulator/CallLog.h"

#include "simulator/Environment.h"
#include "simulator/StatusNames.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace simulator {

namespace {

std::string formatted(const char* format, unsigned number)
{
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), format, number);
    return text.data();
}

std::string quoted(std::string_view text)
{
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            result += '\\';
            result += c;
        } else if (c < ' ' || c > '~') {
            result += formatted("\\x%02X", static_cast<unsigned char>(c));
        } else {
            result += c;
        }
    }
    return result + '"';
}

bool append(const std::string& path, const std::string& line)
{
    const int file = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    if (file < 0) {
        return false;
    }
    // One write, so that the lines of several threads and processes do not mix.
    const ssize_t written = ::write(file, line.data(), line.size());
    const bool closed = ::close(file) == 0;
    return closed && written == static_cast<ssize_t>(line.size());
}

} // namespace

CallLog::CallLog(Call call) : m_path(environmentValue("QVVISA_BENCH_LOG")), m_call(call)
{}

void CallLog::argument(std::uint64_t number)
{
    addArgument(std::to_string(number));
}

void CallLog::hexArgument(ViUInt32 number)
{
    addArgument(formatted("0x%08X", number));
}

void CallLog::textArgument(std::string_view text)
{
    addArgument(quoted(text));
}

void CallLog::textArgument(const char* text)
{
    if (text != nullptr) {
        textArgument(std::string_view(text));
    } else {
        nullArgument();
    }
}

void CallLog::nullArgument()
{
    addArgument("null");
}

void CallLog::result(std::string_view name, std::uint64_t number)
{
    m_results.append(", ").append(name).append("=").append(std::to_string(number));
}

void CallLog::result(std::string_view name, std::string_view text)
{
    m_results.append(", ").append(name).append("=").append(quoted(text));
}

void CallLog::finish(ViStatus status) const
{
    if (m_path.empty()) {
        return;
    }
    const std::string line = std::string(callName(m_call)) + '(' + m_arguments + ") -> " +
                             statusName(status) + m_results + '\n';
    if (!append(m_path, line)) {
        std::fprintf(stderr, "%s: the call log cannot be written: %s\n", m_path.c_str(),
                     std::generic_category().message(errno).c_str());
    }
}

void CallLog::addArgument(const std::string& text)
{
    m_arguments += (m_arguments.empty() ? "" : ", ") + text;
}

} // namespace simulator
