// SPDX-License-Identifier: MIT
#pragma once

#include "command/ExitCode.h"
#include "command/Json.h"

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

namespace QvVisa {

enum class Severity
{
    Error,
    Warning,
    Note,
};

/// "error", "warning", "note".
std::string_view severityWord(Severity severity);

/// When severity words are coloured.
enum class ColorMode
{
    Auto, ///< On a terminal, unless NO_COLOR is set and not empty, or TERM is "dumb" or not set.
    Always,
    Never,
};

/// The streams a command reads and writes, and what they lead to.
struct Streams
{
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    bool isOutTerminal = false;
    bool isErrTerminal = false;
    /// Columns into which text on standard output is wrapped; 0: it is not wrapped.
    std::size_t outWidth = 0;
};

/// The qvvisa-error/1 object.
Json errorToJson(const CommandError& error);

/// What a command prints: data on standard output, messages on standard error. All texts are
/// UTF-8; convert what comes from a file with latin1ToUtf8() first.
class Output
{
public:
    explicit Output(const Streams& streams) : m_streams(streams) {}

    void setJson(bool isJson) { m_isJson = isJson; }
    void setQuiet(bool isQuiet) { m_isQuiet = isQuiet; }
    void setColorMode(ColorMode mode) { m_colorMode = mode; }
    /// After this, progress() and diff() go to standard error: standard output has the new text.
    void keepDataForText() { m_isDataText = true; }

    bool isJson() const { return m_isJson; }
    bool isQuiet() const { return m_isQuiet; }
    std::size_t width() const { return m_streams.outWidth; }

    /// Bytes on standard output as they are.
    void data(std::string_view bytes);

    /// Writes what is buffered for standard output, so that it precedes the messages that follow.
    void flush();

    /// One object on standard output, on one line.
    void json(const Json& object);

    /// A "changed: ..." or "unchanged: ..." line on standard output; nothing with -q or --json.
    void progress(std::string_view line);

    /// A diff on standard output, or where progress() goes; nothing with --json.
    void diff(std::string_view text);

    /// "qvvisa: SEVERITY: TEXT" on standard error. With -q only errors are printed.
    void message(Severity severity, std::string_view text);

    /// The error that ends a command: a message, or with --json a qvvisa-error/1 object.
    void error(const CommandError& error);

    /// The severity's word, coloured where standard output has colours.
    std::string dataWord(Severity severity) const;

    /// Another word in the severity's colour.
    std::string dataWord(Severity severity, std::string_view word) const;

private:
    std::string colored(std::string_view word, Severity severity, bool isTerminal) const;

    Streams m_streams;
    ColorMode m_colorMode = ColorMode::Auto;
    bool m_isJson = false;
    bool m_isQuiet = false;
    bool m_isDataText = false;
};

} // namespace QvVisa
