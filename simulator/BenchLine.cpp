// SPDX-License-Identifier: MIT
#include "simulator/BenchLine.h"

#include "visa/Text.h"

#include <utility>

namespace simulator {

namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

} // namespace

BenchLine::BenchLine(std::string_view text) : m_rest(text)
{
    if (!m_rest.empty() && m_rest.back() == '\r') {
        m_rest.remove_suffix(1);
    }
    for (;;) {
        while (!m_rest.empty() && isBlank(m_rest.front())) {
            m_rest.remove_prefix(1);
        }
        if (m_rest.empty() || m_rest.front() == '#') {
            return;
        }
        readWord();
    }
}

void BenchLine::readWord()
{
    Word word;
    bool quoted = false;
    while (!m_rest.empty() && (quoted || !isBlank(m_rest.front()))) {
        char c = m_rest.front();
        m_rest.remove_prefix(1);
        if (c == '"') {
            quoted = !quoted;
            continue;
        }
        if (c == '\0') {
            throw BenchLineError("a bench cannot contain a NUL byte");
        }
        if (c == '=' && !word.hasValue) {
            word.hasValue = true;
            word.name = word.text;
            word.text += c;
            continue;
        }
        if (c == '\\') {
            c = readEscape();
        }
        word.text += c;
        if (word.hasValue) {
            word.value += c;
        }
    }
    if (quoted) {
        throw BenchLineError("a quote is not closed");
    }
    m_words.push_back(std::move(word));
}

char BenchLine::readEscape()
{
    if (!m_rest.empty() && (m_rest.front() == '\\' || m_rest.front() == '"')) {
        const char c = m_rest.front();
        m_rest.remove_prefix(1);
        return c;
    }
    const auto code = m_rest.size() >= 3 && m_rest.front() == 'x'
                          ? visa::parseNumber("0x" + std::string(m_rest.substr(1, 2)), 0xFF)
                          : std::nullopt;
    if (!code) {
        throw BenchLineError("a \\ must be followed by \\, \" or x and two hexadecimal digits");
    }
    if (*code == 0) {
        throw BenchLineError("a bench cannot contain a NUL byte");
    }
    m_rest.remove_prefix(3);
    return static_cast<char>(static_cast<unsigned char>(*code));
}

} // namespace simulator
