// SPDX-License-Identifier: MIT
#include "command/Output.h"

#include "config/Encoding.h"

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <ostream>

namespace QvVisa {

namespace {

bool isEnvironmentForColors()
{
    // Nothing in the program changes the environment.
    const char* noColor = std::getenv("NO_COLOR"); // NOLINT(concurrency-mt-unsafe)
    const char* terminal = std::getenv("TERM");    // NOLINT(concurrency-mt-unsafe)
    return (noColor == nullptr || *noColor == '\0') && terminal != nullptr &&
           std::string_view(terminal) != "dumb";
}

/// JSON needs no escapes for DEL and for U+0080 to U+009F, which some terminals obey.
std::string withAllControlsEscaped(std::string_view json)
{
    std::string text;
    text.reserve(json.size());
    for (std::size_t i = 0; i < json.size(); ++i) {
        const auto next = static_cast<unsigned char>(i + 1 < json.size() ? json[i + 1] : '\0');
        if (json[i] == '\x7F') {
            text += "\\u007f";
        } else if (json[i] == '\xC2' && next >= 0x80 && next < 0xA0) {
            constexpr std::string_view digits = "0123456789abcdef";
            text.append("\\u00").append(1, digits[next >> 4U]).append(1, digits[next & 0xFU]);
            ++i;
        } else {
            text += json[i];
        }
    }
    return text;
}

} // namespace

std::string_view severityWord(Severity severity)
{
    switch (severity) {
    case Severity::Error:
        return "error";
    case Severity::Warning:
        return "warning";
    case Severity::Note:
        return "note";
    }
    return {};
}

Json errorToJson(const CommandError& error)
{
    Json object;
    object["schema"] = "qvvisa-error/1";
    object["exit"] = static_cast<int>(error.code());
    object["message"] = pathToUtf8(error.what());
    return object;
}

void Output::data(std::string_view bytes)
{
    m_streams.out << bytes;
}

void Output::flush()
{
    m_streams.out.flush();
}

void Output::json(const Json& object)
{
    const std::string text = object.dump(-1, ' ', false, Json::error_handler_t::replace);
    m_streams.out << withAllControlsEscaped(text) << '\n';
}

void Output::progress(std::string_view line)
{
    if (!m_isQuiet && !m_isJson) {
        (m_isDataText ? m_streams.err : m_streams.out) << line << '\n';
    }
}

void Output::diff(std::string_view text)
{
    if (!m_isJson) {
        (m_isDataText ? m_streams.err : m_streams.out) << text;
    }
}

void Output::message(Severity severity, std::string_view text)
{
    if (!m_isQuiet || severity == Severity::Error) {
        m_streams.err << "qvvisa: "
                      << colored(severityWord(severity), severity, m_streams.isErrTerminal) << ": "
                      << printable(text) << '\n';
    }
}

void Output::error(const CommandError& error)
{
    if (m_isJson) {
        json(errorToJson(error));
    } else {
        message(Severity::Error, error.what());
    }
}

std::string Output::dataWord(Severity severity) const
{
    return dataWord(severity, severityWord(severity));
}

std::string Output::dataWord(Severity severity, std::string_view word) const
{
    return colored(word, severity, m_streams.isOutTerminal);
}

std::string Output::colored(std::string_view word, Severity severity, bool isTerminal) const
{
    const bool isColored =
        m_colorMode == ColorMode::Always ||
        (m_colorMode == ColorMode::Auto && isTerminal && isEnvironmentForColors());
    if (!isColored || m_isJson) {
        return std::string(word);
    }
    constexpr std::string_view red = "\x1B[1;31m";
    constexpr std::string_view magenta = "\x1B[1;35m";
    constexpr std::string_view cyan = "\x1B[1;36m";
    const std::string_view color = severity == Severity::Error     ? red
                                   : severity == Severity::Warning ? magenta
                                                                   : cyan;
    return std::string(color).append(word).append("\x1B[0m");
}

} // namespace QvVisa
