// SPDX-License-Identifier: MIT
#include "finder/DnsMessage.h"

#include <algorithm>
#include <utility>

namespace finder {

namespace {

constexpr std::size_t s_headerSize = 12;
constexpr std::size_t s_longestLabel = 63;
constexpr std::size_t s_longestName = 255;
constexpr unsigned s_classInternet = 1;
constexpr unsigned s_pointerBits = 0xC0;

char toLower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string toLower(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) { return toLower(c); });
    return lower;
}

void append16(std::string& bytes, unsigned value)
{
    bytes += static_cast<char>(value >> 8 & 0xFFU);
    bytes += static_cast<char>(value & 0xFFU);
}

void append32(std::string& bytes, std::uint32_t value)
{
    append16(bytes, value >> 16);
    append16(bytes, value & 0xFFFFU);
}

/// Reads a packet from its front to its end. A read beyond the end fails and changes nothing.
class Reader
{
public:
    explicit Reader(std::string_view packet) : m_packet(packet) {}

    std::size_t position() const { return m_position; }
    bool isAt(std::size_t position) const { return m_position == position; }

    bool skip(std::size_t count)
    {
        if (m_packet.size() - m_position < count) {
            return false;
        }
        m_position += count;
        return true;
    }

    std::optional<unsigned> read8()
    {
        if (m_position == m_packet.size()) {
            return std::nullopt;
        }
        return static_cast<unsigned char>(m_packet[m_position++]);
    }

    std::optional<unsigned> read16()
    {
        if (m_packet.size() - m_position < 2) {
            return std::nullopt;
        }
        const unsigned high = *read8();
        return high << 8 | *read8();
    }

    std::optional<std::uint32_t> read32()
    {
        if (m_packet.size() - m_position < 4) {
            return std::nullopt;
        }
        const std::uint32_t high = *read16();
        return high << 16 | *read16();
    }

    std::optional<std::string_view> readBytes(std::size_t count)
    {
        if (m_packet.size() - m_position < count) {
            return std::nullopt;
        }
        m_position += count;
        return m_packet.substr(m_position - count, count);
    }

    /// Compression pointers may only point before the part of the name that they end, so that
    /// following them always comes to an end.
    std::optional<DnsName> readName()
    {
        DnsName name;
        std::size_t afterName = 0; // where reading goes on once a pointer has been followed
        std::size_t partBegin = m_position;
        while (true) {
            const auto length = read8();
            if (!length) {
                return std::nullopt;
            }
            if (*length == 0) {
                break;
            }
            if ((*length & s_pointerBits) == s_pointerBits) {
                const auto low = read8();
                const std::size_t target = (*length & ~s_pointerBits) << 8 | low.value_or(0);
                if (!low || target >= partBegin) {
                    return std::nullopt;
                }
                afterName = afterName == 0 ? m_position : afterName;
                m_position = partBegin = target;
                continue;
            }
            const auto label = *length <= s_longestLabel ? readBytes(*length) : std::nullopt;
            if (!label || name.size() + label->size() + 2 > s_longestName) {
                return std::nullopt;
            }
            name += static_cast<char>(*length);
            name += toLower(*label);
        }
        m_position = afterName == 0 ? m_position : afterName;
        return name;
    }

private:
    std::string_view m_packet;
    std::size_t m_position = 0;
};

std::map<std::string, std::string> decodeTexts(std::string_view data)
{
    std::map<std::string, std::string> texts;
    Reader reader(data);
    while (const auto length = reader.read8()) {
        const auto entry = reader.readBytes(*length);
        if (!entry) {
            break;
        }
        const std::size_t separator = entry->find('=');
        if (separator != std::string_view::npos && separator != 0) {
            texts.emplace(toLower(entry->substr(0, separator)), entry->substr(separator + 1));
        }
    }
    return texts;
}

/// Fills the record from its data, from the reader's position up to dataEnd. False for malformed
/// data and for a type that is of no use here.
bool decodeData(Reader reader, std::string_view packet, std::size_t dataEnd, unsigned type,
                DnsRecord& record)
{
    record.type = static_cast<DnsType>(type);
    switch (record.type) {
    case DnsType::A: {
        const auto address = reader.read32();
        record.address.value = address.value_or(0);
        return address && reader.isAt(dataEnd);
    }
    case DnsType::Ptr: {
        auto target = reader.readName();
        record.target = std::move(target).value_or(DnsName());
        return !record.target.empty() && reader.isAt(dataEnd);
    }
    case DnsType::Srv: {
        const bool hasPriorityAndWeight = reader.skip(4);
        const auto port = reader.read16();
        auto target = reader.readName();
        record.port = static_cast<std::uint16_t>(port.value_or(0));
        record.target = std::move(target).value_or(DnsName());
        return hasPriorityAndWeight && port && !record.target.empty() && reader.isAt(dataEnd);
    }
    case DnsType::Txt:
        record.texts = decodeTexts(packet.substr(reader.position(), dataEnd - reader.position()));
        return true;
    }
    return false;
}

/// Reads one record; false at the end of what can be read. Keeps it if it is of use.
bool readRecord(Reader& reader, std::string_view packet, std::vector<DnsRecord>& records)
{
    DnsRecord record;
    auto name = reader.readName();
    const auto type = name ? reader.read16() : std::nullopt;
    const auto recordClass = type ? reader.read16() : std::nullopt;
    const auto ttl = recordClass ? reader.read32() : std::nullopt;
    const auto length = ttl ? reader.read16() : std::nullopt;
    const Reader data = reader;
    if (!length || !reader.skip(*length)) {
        return false;
    }
    constexpr unsigned cacheFlushBit = 0x8000;
    record.name = std::move(*name);
    record.ttl = *ttl;
    if ((*recordClass & ~cacheFlushBit) == s_classInternet &&
        decodeData(data, packet, reader.position(), *type, record)) {
        records.push_back(std::move(record));
    }
    return true;
}

/// True when the name is the domain with further labels before it.
bool isBelow(const DnsName& name, const DnsName& domain)
{
    std::size_t position = 0;
    while (name.size() - position > domain.size()) {
        position += static_cast<unsigned char>(name[position]) + std::size_t{1};
    }
    return position != 0 && name.compare(position, DnsName::npos, domain) == 0;
}

bool skipQuestion(Reader& reader)
{
    return reader.readName().has_value() && reader.skip(4);
}

} // namespace

DnsName dnsName(std::string_view text)
{
    DnsName name;
    while (!text.empty()) {
        const std::string_view label = text.substr(0, text.find('.'));
        name += static_cast<char>(label.size());
        name += toLower(label);
        text.remove_prefix(std::min(text.size(), label.size() + 1));
    }
    return name;
}

std::string toText(const DnsName& name)
{
    std::string text;
    std::size_t position = 0;
    while (position < name.size()) {
        const std::size_t length = static_cast<unsigned char>(name[position]);
        text += text.empty() ? "" : ".";
        text += name.substr(position + 1, length);
        position += length + 1;
    }
    return text;
}

std::optional<std::vector<DnsRecord>> decodeDnsResponse(std::string_view packet)
{
    constexpr unsigned responseBit = 0x8000;
    constexpr unsigned operationAndErrorBits = 0x780F;
    packet = packet.substr(0, dnsMostBytes);
    Reader reader(packet);
    reader.skip(std::min<std::size_t>(packet.size(), 2)); // the query's number
    const unsigned flags = reader.read16().value_or(0);
    const unsigned questions = reader.read16().value_or(0);
    const unsigned answers = reader.read16().value_or(0);
    const unsigned authorities = reader.read16().value_or(0);
    const auto additional = reader.read16();
    if (!additional || (flags & responseBit) == 0 || (flags & operationAndErrorBits) != 0) {
        return std::nullopt;
    }
    std::vector<DnsRecord> records;
    if (questions > dnsMostQuestions) {
        return records;
    }
    for (unsigned i = 0; i < questions; ++i) {
        if (!skipQuestion(reader)) {
            return records;
        }
    }
    const std::size_t count =
        std::min<std::size_t>(answers + authorities + *additional, dnsMostRecords);
    for (std::size_t i = 0; i < count && readRecord(reader, packet, records); ++i) {
    }
    return records;
}

void DnsQuery::addQuestion(const DnsName& name, DnsType type, bool unicastResponse)
{
    constexpr unsigned unicastBit = 0x8000;
    m_questions.emplace(name, s_headerSize + m_questionBytes.size());
    m_questionBytes += name;
    m_questionBytes += '\0';
    append16(m_questionBytes, static_cast<unsigned>(type));
    append16(m_questionBytes, s_classInternet | (unicastResponse ? unicastBit : 0U));
    ++m_questionCount;
}

bool DnsQuery::addKnownAnswer(const DnsName& service, const DnsName& instance, std::uint32_t ttl,
                              std::size_t mostBytes)
{
    const auto question = m_questions.find(service);
    if (question == m_questions.end()) {
        return false;
    }
    const unsigned pointer = s_pointerBits << 8 | static_cast<unsigned>(question->second);
    std::string target = instance;
    if (isBelow(instance, service)) {
        target.resize(instance.size() - service.size());
        append16(target, pointer);
    } else {
        target += '\0';
    }
    std::string answer;
    append16(answer, pointer);
    append16(answer, static_cast<unsigned>(DnsType::Ptr));
    append16(answer, s_classInternet);
    append32(answer, ttl);
    append16(answer, static_cast<unsigned>(target.size()));
    answer += target;
    if (s_headerSize + m_questionBytes.size() + m_answerBytes.size() + answer.size() > mostBytes) {
        return false;
    }
    m_answerBytes += answer;
    ++m_answerCount;
    return true;
}

std::string DnsQuery::encoded() const
{
    std::string packet;
    append16(packet, 0);
    append16(packet, 0);
    append16(packet, m_questionCount);
    append16(packet, m_answerCount);
    append32(packet, 0);
    return packet + m_questionBytes + m_answerBytes;
}

} // namespace finder
