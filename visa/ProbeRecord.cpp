// SPDX-License-Identifier: MIT
#include "visa/ProbeRecord.h"

#include <cstring>

namespace visa {

namespace {

/// What precedes the text.
struct Header
{
    std::int64_t first;
    std::int64_t second;
    std::uint32_t textSize;
    std::uint32_t kind;
};

} // namespace

std::string encodeProbeRecord(ProbeRecordKind kind, std::string_view text, std::int64_t first,
                              std::int64_t second)
{
    text = text.substr(0, ProbeRecord::mostText);
    const Header header{first, second, static_cast<std::uint32_t>(text.size()),
                        static_cast<std::uint32_t>(kind)};
    std::string bytes(sizeof header, '\0');
    std::memcpy(bytes.data(), &header, sizeof header);
    bytes.append(text);
    return bytes;
}

std::optional<ProbeRecord> ProbeRecordReader::next()
{
    Header header{};
    const std::size_t available = m_bytes.size() - m_begin;
    if (!m_isGarbled && available >= sizeof header) {
        std::memcpy(&header, m_bytes.data() + m_begin, sizeof header);
        m_isGarbled = header.textSize > ProbeRecord::mostText || header.kind == 0 ||
                      header.kind > static_cast<std::uint32_t>(ProbeRecordKind::Finished);
    }
    if (m_isGarbled || available < sizeof header || available - sizeof header < header.textSize) {
        m_bytes.erase(0, m_begin);
        m_begin = 0;
        return std::nullopt;
    }
    ProbeRecord record{static_cast<ProbeRecordKind>(header.kind), header.first, header.second,
                       m_bytes.substr(m_begin + sizeof header, header.textSize)};
    m_begin += sizeof header + header.textSize;
    return record;
}

} // namespace visa
