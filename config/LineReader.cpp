// SPDX-License-Identifier: MIT
#include "config/LineReader.h"

#include <unistd.h>

#include <cstring>

namespace QvVisa {

namespace {
constexpr std::size_t s_firstBufferSize = std::size_t{256} * 1024;
}

LineReader::LineReader(const std::string& path)
    : m_file(FileDescriptor::openForReading(path)),
      m_hasFailed(!m_file.isOpen())
{}

bool LineReader::next(std::string_view& line)
{
    std::size_t searched = 0;
    for (;;) {
        const std::size_t available = m_end - m_begin;
        if (available > searched) {
            const char* start = m_buffer.data() + m_begin;
            const void* found = std::memchr(start + searched, '\n', available - searched);
            if (found != nullptr) {
                const auto length =
                    static_cast<std::size_t>(static_cast<const char*>(found) - start);
                line = std::string_view(start, length);
                m_begin += length + 1;
                return true;
            }
        }
        // Bytes searched once are not searched again: a long line takes linear time.
        searched = available;
        if (!readMore()) {
            break;
        }
    }
    if (m_hasFailed || m_begin == m_end) {
        return false;
    }
    line = std::string_view(m_buffer.data() + m_begin, m_end - m_begin);
    m_begin = m_end;
    return true;
}

bool LineReader::readMore()
{
    if (m_hasFailed) {
        return false;
    }
    if (m_begin > 0) {
        std::memmove(m_buffer.data(), m_buffer.data() + m_begin, m_end - m_begin);
        m_end -= m_begin;
        m_begin = 0;
    }
    if (m_end == m_buffer.size()) {
        m_buffer.resize(m_buffer.empty() ? s_firstBufferSize : m_buffer.size() * 2);
    }
    const ssize_t count = uninterrupted(
        [this] { return ::read(m_file.get(), m_buffer.data() + m_end, m_buffer.size() - m_end); });
    m_size += count;
    // The file may have grown since it was opened.
    if (count < 0 || m_size > maxFileSize) {
        m_hasFailed = true;
        return false;
    }
    m_end += static_cast<std::size_t>(count);
    return count > 0;
}

} // namespace QvVisa
