// SPDX-License-Identifier: MIT
#include "resourcemanager/CallRecord.h"

#include "visa/StatusNames.h"

#include <array>
#include <cstdio>

namespace resourcemanager {

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

} // namespace

void CallRecord::argument(std::uint64_t number)
{
    addArgument(std::to_string(number));
}

void CallRecord::hexArgument(ViUInt32 number)
{
    addArgument(formatted("0x%08X", number));
}

void CallRecord::textArgument(std::string_view text)
{
    if (m_isWanted) {
        addArgument(quoted(text));
    }
}

void CallRecord::textArgument(const char* text)
{
    if (text != nullptr) {
        textArgument(std::string_view(text));
    } else {
        nullArgument();
    }
}

void CallRecord::nullArgument()
{
    addArgument("null");
}

void CallRecord::result(std::string_view name, std::uint64_t number)
{
    m_results.append(", ").append(name).append("=").append(std::to_string(number));
}

void CallRecord::result(std::string_view name, std::string_view text)
{
    if (m_isWanted) {
        m_results.append(", ").append(name).append("=").append(quoted(text));
    }
}

std::string CallRecord::line(ViStatus status) const
{
    return std::string(callName(m_call)) + '(' + m_arguments + ") -> " + visa::statusName(status) +
           m_results + '\n';
}

void CallRecord::addArgument(const std::string& text)
{
    if (!m_arguments.empty()) {
        m_arguments += ", ";
    }
    m_arguments += text;
}

} // namespace resourcemanager
