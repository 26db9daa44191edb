// SPDX-License-Identifier: MIT
#include "visa/ResourceName.h"

#include "visa/HostName.h"
#include "visa/ResourceForms.h"
#include "visa/Text.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace visa {

using namespace resourceforms;

namespace {

using Problem = ResourceProblem;

constexpr std::uint32_t noSecondaryAddress = 0xFFFF;

bool isNumber(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

bool isVisible(char c)
{
    return c > ' ' && c <= '~';
}

} // namespace

/// Reads the text from left to right. Each step answers false after it has noted the fault.
class ResourceNameParser
{
public:
    explicit ResourceNameParser(std::string_view text) : m_text(text) {}

    const ResourceFault& fault() const { return m_fault; }

    std::optional<ResourceName> run()
    {
        // A NUL does not count: no editor leaves it at the end of a line.
        const std::size_t end = m_text.find_last_not_of(" \t\r\n\v\f") + 1;
        const std::size_t whole = m_text.size();
        m_text = m_text.substr(0, end);
        if (!readInterface() || !checkAscii() || !split() || !readFields()) {
            return std::nullopt;
        }
        if (end != whole) {
            fail(Problem::TrailingWhiteSpace, Field::Class, end, whole - end);
            return std::nullopt;
        }
        return std::move(m_name);
    }

private:
    struct Piece
    {
        std::size_t begin = 0;
        std::string_view text = {};
    };

    bool fail(Problem problem, Field field, std::size_t column, std::size_t length)
    {
        m_fault = {problem, field, column, length, 0, 0};
        return false;
    }

    bool fail(Problem problem, Field field, const Piece& piece)
    {
        return fail(problem, field, piece.begin, piece.text.size());
    }

    bool failRange(Field field, const Piece& piece, std::uint32_t least, std::uint32_t most)
    {
        m_fault = {Problem::OutOfRange, field, piece.begin, piece.text.size(), least, most};
        return false;
    }

    bool readInterface()
    {
        const std::string_view head = m_text.substr(0, m_text.find("::"));
        m_headLength = head.size();
        if (equalsIgnoringCase(head, "QVIB")) {
            m_name.isQvib = true;
            m_name.interfaceType = VI_INTF_TCPIP;
            m_name.fullName = "QVIB";
            return true;
        }
        for (const InterfaceName& known : interfaces) {
            if (startsWithIgnoringCase(head, known.name)) {
                m_name.interfaceType = known.type;
                m_name.fullName = known.name;
                return readBoard({known.name.size(), head.substr(known.name.size())});
            }
        }
        return fail(Problem::UnknownInterface, Field::Interface, {0, head});
    }

    bool readBoard(const Piece& board)
    {
        if (m_name.interfaceType == VI_INTF_ASRL && !board.text.empty() &&
            board.text.front() == '/') {
            m_name.isDevicePath = true;
            m_name.fullName += board.text;
            return checkVisible(Field::DevicePath, board);
        }
        if (board.text.empty()) {
            if (m_name.interfaceType == VI_INTF_ASRL && m_text.size() == m_headLength) {
                return fail(Problem::MissingPart, Field::Board, board);
            }
            m_name.isBoardWritten = false;
            m_name.fullName += '0';
            return true;
        }
        if (!isNumber(board.text) && m_text.size() == m_headLength) {
            // Without any "::" it is just a word that begins like an interface.
            return fail(Problem::UnknownInterface, Field::Interface, 0, m_headLength);
        }
        const std::optional<std::uint32_t> number = readNumber(Field::Board, board);
        m_name.interfaceNumber = static_cast<ViUInt16>(number.value_or(0));
        m_name.fullName += std::to_string(number.value_or(0));
        return number.has_value();
    }

    bool checkAscii()
    {
        const auto isOther = [](char c) { return static_cast<unsigned char>(c) > '~'; };
        const auto first = std::find_if(m_text.begin(), m_text.end(), isOther);
        const auto last = std::find_if_not(first, m_text.end(), isOther);
        return first == m_text.end() || fail(Problem::NotAscii, Field::Location,
                                             static_cast<std::size_t>(first - m_text.begin()),
                                             static_cast<std::size_t>(last - first));
    }

    /// Cuts what follows the interface at each "::". In TCPIP strings a "::" in brackets belongs to
    /// an IPv6 address or a LAN device. Takes the class off the end.
    bool split()
    {
        const bool hasBrackets = m_name.interfaceType == VI_INTF_TCPIP;
        bool isBracketed = false;
        std::size_t begin = m_text.size() + 1;
        for (std::size_t i = m_headLength; i < m_text.size(); ++i) {
            isBracketed = hasBrackets && (m_text[i] == '[' || (isBracketed && m_text[i] != ']'));
            if (!isBracketed && m_text.compare(i, 2, "::") == 0) {
                addPiece(begin, i);
                ++i;
                begin = i + 1;
            }
        }
        addPiece(begin, m_text.size());
        return takeClass();
    }

    /// Pieces beyond the longest form are not kept: the last one is always the last of the text.
    void addPiece(std::size_t begin, std::size_t end)
    {
        if (begin <= end) {
            const std::size_t index = std::min(m_pieceCount, m_pieces.size() - 1);
            m_pieces[index] = {begin, m_text.substr(begin, end - begin)};
            ++m_pieceCount;
        }
    }

    bool takeClass()
    {
        m_form = m_name.isQvib ? &qvibForm : &defaultForm(m_name.interfaceType);
        const Piece last = m_pieceCount == 0
                               ? Piece{m_text.size(), {}}
                               : m_pieces[std::min(m_pieceCount, m_pieces.size()) - 1];
        const Form* const named = m_name.isQvib ? nullptr : formOf(m_name.interfaceType, last.text);
        m_name.isClassWritten = named != nullptr || m_name.isQvib;
        m_end = m_text.size();
        if (named != nullptr) {
            m_form = named;
            m_end = last.begin;
            --m_pieceCount;
        }
        m_name.resourceClass = m_form->resourceClass;
        if (named == nullptr && m_pieceCount == m_form->most + 1 && !last.text.empty() &&
            !m_name.isQvib) {
            return fail(Problem::UnknownClass, Field::Class, last);
        }
        return true;
    }

    bool readFields()
    {
        for (std::size_t i = 0; i < m_form->most; ++i) {
            const Field field = m_form->fields[i];
            if (i >= m_pieceCount) {
                if (i < m_form->fewest) {
                    return fail(Problem::MissingPart, field, m_end, 0);
                }
                break;
            }
            if (m_pieces[i].text.empty()) {
                return fail(Problem::EmptyPart, field, m_pieces[i]);
            }
            if (!readField(field, m_pieces[i])) {
                return false;
            }
        }
        if (m_pieceCount > m_form->most) {
            const Piece& extra = m_pieces[m_form->most];
            return fail(extra.text.empty() ? Problem::EmptyPart : Problem::ExtraPart, Field::Class,
                        extra);
        }
        if (!m_name.isQvib) {
            m_name.fullName.append("::").append(m_form->resourceClass);
        }
        return true;
    }

    bool readField(Field field, const Piece& piece)
    {
        switch (field) {
        case Field::ManufacturerId:
        case Field::ModelCode:
            return readIdentifier(field, piece);
        case Field::Host:
            return readHost(piece);
        case Field::LanDevice:
            return readLanDevice(piece);
        case Field::SerialNumber:
        case Field::Location:
            return checkVisible(field, piece) && add(field, piece.text);
        default:
            return isNoAddress(field, piece) || addNumber(field, piece);
        }
    }

    /// 65535 as secondary address means none.
    static bool isNoAddress(Field field, const Piece& piece)
    {
        return field == Field::SecondaryAddress && isNumber(piece.text) &&
               parseNumber(piece.text, noSecondaryAddress) == noSecondaryAddress;
    }

    bool addNumber(Field field, const Piece& piece)
    {
        const std::optional<std::uint32_t> number = readNumber(field, piece);
        return number && add(field, std::to_string(*number));
    }

    bool add(Field field, std::string_view text)
    {
        m_name.fullName += "::";
        m_name.m_parts[m_name.m_partCount++] = {field, m_name.fullName.size(), text.size()};
        m_name.fullName += text;
        return true;
    }

    /// Decimal digits; leading zeros do not count.
    std::optional<std::uint32_t> readNumber(Field field, const Piece& piece)
    {
        if (!isNumber(piece.text)) {
            fail(Problem::NotANumber, field, piece);
            return std::nullopt;
        }
        const auto range =
            std::find_if(std::begin(numericFields), std::end(numericFields),
                         [field](const NumericField& known) { return known.field == field; });
        const auto value = parseNumber(piece.text, range->most);
        if (!value || *value < range->least) {
            failRange(field, piece, range->least, range->most);
            return std::nullopt;
        }
        return static_cast<std::uint32_t>(*value);
    }

    /// 16 bits, decimal or with 0x hexadecimal.
    bool readIdentifier(Field field, const Piece& piece)
    {
        const auto value = parseNumber(piece.text, 0xFFFF);
        if (!value) {
            const bool isHexadecimal =
                startsWithIgnoringCase(piece.text, "0X") && piece.text.size() > 2 &&
                piece.text.find_first_not_of("0123456789abcdefABCDEF", 2) == std::string_view::npos;
            return isHexadecimal || isNumber(piece.text) ? failRange(field, piece, 0, 0xFFFF)
                                                         : fail(Problem::NotANumber, field, piece);
        }
        std::array<char, 8> text{};
        std::snprintf(text.data(), text.size(), "0x%04X", static_cast<unsigned>(*value));
        return add(field, text.data());
    }

    bool readHost(const Piece& host)
    {
        if (host.text.front() == '[') {
            return readIpv6(host);
        }
        if (host.text.find('.') != std::string_view::npos &&
            host.text.find_first_not_of("0123456789.") == std::string_view::npos) {
            return checkIpv4(host) && add(Field::Host, host.text);
        }
        return isHostName(host.text) ? add(Field::Host, host.text)
                                     : fail(Problem::BadHost, Field::Host, host);
    }

    /// Four octets. A leading zero is refused: some resolvers take the octet for octal.
    bool checkIpv4(const Piece& host)
    {
        std::size_t begin = 0;
        std::size_t octets = 0;
        bool isLast = false;
        for (; !isLast && octets < 4; ++octets) {
            const std::size_t dot = std::min(host.text.find('.', begin), host.text.size());
            const Piece octet{host.begin + begin, host.text.substr(begin, dot - begin)};
            if (octet.text.empty() || (octet.text.size() > 1 && octet.text.front() == '0')) {
                return fail(Problem::BadHost, Field::Host, host);
            }
            if (!readNumber(Field::Host, octet)) {
                return false;
            }
            isLast = dot == host.text.size();
            begin = dot + 1;
        }
        return (isLast && octets == 4) || fail(Problem::BadHost, Field::Host, host);
    }

    bool readIpv6(const Piece& host)
    {
        const std::optional<std::string> normal = normalIpv6(host.text);
        return normal ? checkVisible(Field::Host, host) && add(Field::Host, *normal)
                      : fail(Problem::BadHost, Field::Host, host);
    }

    /// inst and hislip take a number, hislip a port too; other names are for the gateway to judge.
    bool readLanDevice(const Piece& device)
    {
        if (!checkVisible(Field::LanDevice, device)) {
            return false;
        }
        if (const std::size_t colon = device.text.find(':');
            colon < std::min(device.text.find('['), device.text.size())) {
            return fail(Problem::BadCharacter, Field::LanDevice, device.begin + colon, 1);
        }
        if (const std::size_t bracket = device.text.rfind('[');
            bracket != std::string_view::npos &&
            device.text.find(']', bracket) == std::string_view::npos) {
            return fail(Problem::BadCharacter, Field::LanDevice, device.begin + bracket, 1);
        }
        const bool isHislip = startsWithIgnoringCase(device.text, "HISLIP");
        const std::size_t prefix = isHislip                                      ? 6
                                   : startsWithIgnoringCase(device.text, "INST") ? 4
                                                                                 : 0;
        const std::string_view rest = device.text.substr(prefix);
        if (prefix == 0 || (!rest.empty() && !isDigit(rest.front()))) {
            return add(Field::LanDevice, device.text);
        }
        const std::size_t comma = isHislip ? std::min(rest.find(','), rest.size()) : rest.size();
        const auto number = parseNumber(rest.substr(0, comma), 0xFFFF);
        if (!number || !isNumber(rest.substr(0, comma))) {
            return fail(Problem::BadLanDevice, Field::LanDevice, device);
        }
        std::string normal(device.text.substr(0, prefix));
        normal += std::to_string(*number);
        if (comma < rest.size()) {
            const Piece port{device.begin + prefix + comma + 1, rest.substr(comma + 1)};
            const std::optional<std::uint32_t> portNumber = readNumber(Field::Port, port);
            if (!portNumber) {
                return false;
            }
            normal += ',' + std::to_string(*portNumber);
        }
        return add(Field::LanDevice, normal);
    }

    /// A colon at the end would join the "::" next to it.
    bool checkVisible(Field field, const Piece& piece)
    {
        const auto bad = std::find_if_not(piece.text.begin(), piece.text.end(), isVisible);
        // A byte that is not ASCII has a problem of its own.
        if (bad != piece.text.end() && static_cast<unsigned char>(*bad) <= '~') {
            return fail(Problem::BadCharacter, field,
                        piece.begin + static_cast<std::size_t>(bad - piece.text.begin()), 1);
        }
        if (piece.text.front() == ':') {
            return fail(Problem::BadCharacter, field, piece.begin, 1);
        }
        return piece.text.back() != ':' ||
               fail(Problem::BadCharacter, field, piece.begin + piece.text.size() - 1, 1);
    }

    std::string_view m_text;
    ResourceName m_name;
    ResourceFault m_fault;
    std::size_t m_headLength = 0;
    // The most fields, a class and one piece too many.
    std::array<Piece, 6> m_pieces;
    std::size_t m_pieceCount = 0;
    const Form* m_form = nullptr;
    /// Where the fields end.
    std::size_t m_end = 0;
};

std::optional<ResourceName> parseResourceName(std::string_view text, ResourceFault* fault)
{
    ResourceNameParser parser(text);
    std::optional<ResourceName> name = parser.run();
    if (!name && fault != nullptr) {
        *fault = parser.fault();
    }
    return name;
}

std::optional<ViUInt16> interfaceTypeFromText(std::string_view text)
{
    for (const InterfaceName& known : interfaces) {
        if (equalsIgnoringCase(text, known.name)) {
            return known.type;
        }
    }
    const auto number = parseNumber(text, 0xFFFF);
    return number ? std::optional(static_cast<ViUInt16>(*number)) : std::nullopt;
}

} // namespace visa
