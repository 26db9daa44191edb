// SPDX-License-Identifier: MIT
#include "lint/KeyLine.h"

#include "lint/LineText.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace lint {

namespace {

constexpr std::string_view s_provider = "Provider";
constexpr std::string_view s_serial = "SerialProperty";
constexpr std::string_view s_gpib = "GPIBProperty";
constexpr std::string_view s_device = "DeviceNo";
constexpr std::array<std::string_view, 5> s_serialKeys{"Baudrate", "DataBits", "StopBits", "Parity",
                                                       "FlowControl"};
constexpr std::array<std::string_view, 3> s_gpibKeys{"PrimaryAddress", "SecondaryAddress",
                                                     "SystemController"};

constexpr bool isWordCharacter(char c)
{
    return isDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '-';
}

/// Reads a line from its front to its end and remembers the first white space that its
/// caller did not allow.
class Cursor
{
public:
    Cursor(std::string_view line, std::size_t at) : m_line(line), m_at(at) {}

    void skipUnexpectedSpaces(std::optional<std::size_t>& whiteSpace)
    {
        const std::size_t next = skipSpaces(m_line, m_at);
        if (next > m_at && !whiteSpace) {
            whiteSpace = m_at;
        }
        m_at = next;
    }

    bool skip(char c)
    {
        const bool isNext = m_at < m_line.size() && m_line[m_at] == c;
        m_at += isNext ? 1 : 0;
        return isNext;
    }

    /// Whether c is the next character but for white space.
    bool isNext(char c) const
    {
        const std::size_t next = skipSpaces(m_line, m_at);
        return next < m_line.size() && m_line[next] == c;
    }

    LinePart takeWord()
    {
        const std::size_t begin = m_at;
        while (m_at < m_line.size() && isWordCharacter(m_line[m_at])) {
            ++m_at;
        }
        return {begin, m_line.substr(begin, m_at - begin)};
    }

    LinePart takeUntil(char end)
    {
        const std::size_t begin = m_at;
        m_at = std::min(m_line.find(end, m_at), m_line.size());
        return trim(begin, m_at);
    }

    LinePart rest() const { return trim(m_at, m_line.size()); }

private:
    LinePart trim(std::size_t begin, std::size_t end) const
    {
        begin = std::min(skipSpaces(m_line, begin), end);
        return {begin, trimmedRight(m_line.substr(begin, end - begin))};
    }

    std::string_view m_line;
    std::size_t m_at;
};

/// The number of single-character changes between two texts, upper and lower case alike; more than
/// the known word has letters if the text is much longer.
std::size_t distance(std::string_view text, std::string_view known)
{
    if (text.size() > 2 * known.size()) {
        return text.size();
    }
    std::array<std::size_t, 20> row{};
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < known.size(); ++j) {
            const std::size_t above = row[j + 1];
            const std::size_t changed = toUpper(text[i]) == toUpper(known[j]) ? 0 : 1;
            row[j + 1] = std::min({above + 1, row[j] + 1, diagonal + changed});
            diagonal = above;
        }
    }
    return row[known.size()];
}

bool isNear(std::string_view text, std::string_view known)
{
    return distance(text, known) <= 2;
}

/// "; is 'Parity' meant?" where a known key is near, else empty.
template <typename Keys>
std::string suggestion(std::string_view text, const Keys& keys)
{
    for (const std::string_view key : keys) {
        if (isNear(text, key)) {
            return std::string("; is '").append(key).append("' meant?");
        }
    }
    return {};
}

/// The known word that equals the text but for upper and lower case, else the text.
std::string_view rightCase(std::string_view text)
{
    constexpr std::array words{s_provider,      s_serial,        s_gpib,          s_device,
                               s_serialKeys[0], s_serialKeys[1], s_serialKeys[2], s_serialKeys[3],
                               s_serialKeys[4], s_gpibKeys[0],   s_gpibKeys[1],   s_gpibKeys[2]};
    for (const std::string_view word : words) {
        if (equalsIgnoringCase(text, word)) {
            return word;
        }
    }
    return text;
}

} // namespace

KeyLine KeyLine::parse(std::string_view line)
{
    KeyLine result;
    result.m_line = line;
    Cursor cursor(line, 1);
    cursor.skipUnexpectedSpaces(result.whiteSpace);
    result.word = cursor.takeWord();
    if (cursor.isNext('[')) {
        cursor.skipUnexpectedSpaces(result.whiteSpace);
        result.hasBracket = cursor.skip('[');
        cursor.skipUnexpectedSpaces(result.whiteSpace);
        result.deviceKey = cursor.takeWord();
        if (cursor.isNext('=')) {
            cursor.skipUnexpectedSpaces(result.whiteSpace);
            result.hasDeviceEquals = cursor.skip('=');
        }
        result.device = cursor.takeUntil(']');
        result.isBracketClosed = cursor.skip(']');
        if (cursor.isNext('.')) {
            cursor.skipUnexpectedSpaces(result.whiteSpace);
            result.hasDot = cursor.skip('.');
            cursor.skipUnexpectedSpaces(result.whiteSpace);
        }
        result.key = cursor.takeWord();
        if (cursor.isNext('=')) {
            cursor.skipUnexpectedSpaces(result.whiteSpace);
            result.hasEquals = cursor.skip('=');
        }
    } else if (cursor.isNext('=')) {
        std::optional<std::size_t> allowed;
        cursor.skipUnexpectedSpaces(allowed);
        result.hasEquals = cursor.skip('=');
    }
    result.value = cursor.rest();
    return result;
}

bool KeyLine::isProvider() const
{
    return equalsIgnoringCase(word.text, s_provider) && !hasBracket;
}

bool KeyLine::isSerial() const
{
    return equalsIgnoringCase(word.text, s_serial);
}

bool KeyLine::isGpib() const
{
    return equalsIgnoringCase(word.text, s_gpib);
}

bool KeyLine::looksLikeSetting() const
{
    const bool beginsWithDigit = !value.text.empty() && isDigit(value.text.front());
    if (isProvider() || isSerial() || isGpib()) {
        // A sentence may begin with one of these words.
        const bool isSentence = !hasEquals && !hasBracket && !beginsWithDigit &&
                                value.text.find('=') == std::string_view::npos &&
                                std::any_of(value.text.begin(), value.text.end(), isSpace);
        return !isSentence;
    }
    if (hasBracket) {
        return hasEquals || isNear(deviceKey.text, s_device) || isNear(word.text, s_serial) ||
               isNear(word.text, s_gpib);
    }
    const bool isNearWord =
        isNear(word.text, s_provider) || isNear(word.text, s_serial) || isNear(word.text, s_gpib);
    return (isNearWord && (hasEquals || beginsWithDigit)) ||
           (!word.text.empty() && hasEquals && beginsWithDigit);
}

void KeyLine::judge(LineFindings& findings, std::size_t offset) const
{
    if (!looksLikeSetting()) {
        return;
    }
    if (whiteSpace) {
        findings.add(FindingCode::WhiteSpaceInKey, offset + *whiteSpace,
                     "This setting is ignored: there is white space inside the key.");
    }
    if (isProvider()) {
        judgeProvider(findings, offset);
    } else if (isSerial() || isGpib()) {
        judgeProperty(findings, offset);
    } else {
        findings.add(FindingCode::UnknownKey, offset + word.offset,
                     "This line is ignored: there is no key " + quoted(word.text) +
                         suggestion(word.text, std::array{s_provider, s_serial, s_gpib}) + ".");
    }
}

void KeyLine::judgeProvider(LineFindings& findings, std::size_t offset) const
{
    if (!hasEquals) {
        findings.add(FindingCode::NoEqualsSign, offset + word.end(),
                     "This setting is ignored: there is no '=' after the key.");
        return;
    }
    judgeValue(findings, offset);
}

void KeyLine::judgeProperty(LineFindings& findings, std::size_t offset) const
{
    for (const LinePart& part : {word, deviceKey, key}) {
        const std::string_view right = rightCase(part.text);
        if (right != part.text) {
            findings.add(FindingCode::KeyCase, offset + part.offset,
                         "This setting is ignored: the key has to be " + quoted(right) +
                             ", in exactly these letters.");
            break;
        }
    }
    if (judgeDevice(findings, offset) && judgeKey(findings, offset)) {
        judgeValue(findings, offset);
    }
}

bool KeyLine::judgeDevice(LineFindings& findings, std::size_t offset) const
{
    if (!hasBracket || !hasDeviceEquals || !equalsIgnoringCase(deviceKey.text, s_device)) {
        findings.add(FindingCode::UnknownKey, offset + (hasBracket ? deviceKey.offset : word.end()),
                     "This setting is ignored: '[DeviceNo=NUMBER]' has to follow " +
                         quoted(rightCase(word.text)) + ".");
        return false;
    }
    if (!isDecimal(device.text)) {
        findings.add(FindingCode::BadDeviceNumber, offset + device.offset,
                     "This setting is ignored: the device number " + quoted(device.text) +
                         " is no decimal number.");
        return false;
    }
    if (!isBracketClosed || !hasDot) {
        findings.add(FindingCode::UnknownKey, offset + device.end(),
                     "This setting is ignored: it is cut off, '].KEY=NUMBER' is missing.");
        return false;
    }
    if (!numberOf(device.text)) {
        findings.add(FindingCode::NumberTooLarge, offset + device.offset,
                     "This setting is ignored: the device number is above 2147483647.");
        return false;
    }
    return true;
}

bool KeyLine::judgeKey(LineFindings& findings, std::size_t offset) const
{
    const auto isThis = [this](std::string_view known) {
        return equalsIgnoringCase(key.text, known);
    };
    const bool isKnown = isSerial() ? std::any_of(s_serialKeys.begin(), s_serialKeys.end(), isThis)
                                    : std::any_of(s_gpibKeys.begin(), s_gpibKeys.end(), isThis);
    if (!isKnown) {
        const std::string meant =
            isSerial() ? suggestion(key.text, s_serialKeys) : suggestion(key.text, s_gpibKeys);
        findings.add(FindingCode::UnknownKey, offset + key.offset,
                     "This setting is ignored: " +
                         std::string(isSerial() ? "a serial port" : "a GPIB board") +
                         (key.text.empty() ? " needs a key after the '.'"
                                           : " has no key " + quoted(key.text)) +
                         meant + ".");
        return false;
    }
    if (!hasEquals) {
        findings.add(FindingCode::NoEqualsSign, offset + key.end(),
                     "This setting is ignored: there is no '=' after the key.");
    }
    return hasEquals;
}

void KeyLine::judgeValue(LineFindings& findings, std::size_t offset) const
{
    const std::string_view text = value.text;
    const auto* const digitsEnd = std::find_if_not(text.begin(), text.end(), isDigit);
    const auto digits = static_cast<std::size_t>(digitsEnd - text.begin());
    if (text.empty()) {
        findings.add(FindingCode::NotDecimal, offset + value.offset,
                     "This setting is ignored: there is no number after the '='.");
    } else if (digits == text.size()) {
        if (!numberOf(text)) {
            findings.add(FindingCode::NumberTooLarge, offset + value.offset,
                         "This setting is ignored: the number is above 2147483647.");
        }
    } else if (digits > 0 && isSpace(text[digits])) {
        const std::size_t extra = skipSpaces(text, digits);
        findings.add(FindingCode::TextAfterNumber, offset + value.offset + extra,
                     "This setting is ignored: " + quoted(text.substr(extra)) +
                         " follows the number.");
    } else {
        findings.add(FindingCode::NotDecimal, offset + value.offset,
                     "This setting is ignored: " + quoted(text) + " is no decimal number.");
    }
}

std::string KeyLine::repaired() const
{
    std::string text = ":";
    text += rightCase(word.text);
    if (!hasBracket) {
        return text.append(m_line.substr(word.end()));
    }
    text.append("[").append(rightCase(deviceKey.text));
    // The white space around the number is the reader's to skip.
    const std::size_t open = hasDeviceEquals ? m_line.find('=', deviceKey.end()) : deviceKey.end();
    const std::size_t close = std::min(m_line.find(']', open), m_line.size());
    text.append(m_line.substr(open, close - open));
    if (!isBracketClosed) {
        return text;
    }
    text.append("]").append(hasDot ? "." : "").append(rightCase(key.text));
    const std::size_t rest = hasEquals ? m_line.find('=', key.end()) : key.end();
    return text.append(m_line.substr(rest));
}

} // namespace lint
