// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace visa {

/// What a record of the child's report says, with the meaning of its numbers and its text.
enum class ProbeRecordKind : std::uint8_t
{
    CallBegins = 1,  ///< text: the call.
    CallReturns,     ///< first: the status, second: nanoseconds.
    CallThrows,      ///< As CallReturns.
    Tries,           ///< text: the candidate that is loaded next.
    LoadFails,       ///< text: the loader's message; first: 1 if an exception was thrown.
    LibraryLacks,    ///< text: one of the six calls.
    LibraryTaken,    ///< text: the file.
    LibraryLacksToo, ///< text: an optional call.
    Searched,        ///< first: the status, second: the count.
    Found,           ///< text: the resource; first: the status, second: FoundFlag values.
    EntryDropped,
    ListCut,
    MoreFound,
    PortsSearched, ///< first: the status.
    PortFound,     ///< text: the resource; first: the status of viParseRsrc, second: the number.
    Identified,    ///< text: the answer; first: the status, second: the index of the resource.
    NotIdentified, ///< As Identified.
    Exits,         ///< first: the exit code.
    Finished,
};

/// What was wrong with the buffer of a description.
enum FoundFlag : std::int64_t
{
    Unterminated = 1, ///< No terminating zero in VI_FIND_BUFLEN characters.
    Overrun = 2,      ///< Something was written after them.
};

/// One record of the pipe between the probe's two processes.
struct ProbeRecord
{
    /// Longer texts are cut by the writer and garbled to the reader.
    static constexpr std::size_t mostText = 4096;

    ProbeRecordKind kind = ProbeRecordKind::Finished;
    std::int64_t first = 0;
    std::int64_t second = 0;
    std::string text;
};

/// The bytes of a record, in this machine's byte order.
std::string encodeProbeRecord(ProbeRecordKind kind, std::string_view text = {},
                              std::int64_t first = 0, std::int64_t second = 0);

/// Takes records out of a stream of bytes. Any bytes may be in it.
class ProbeRecordReader
{
public:
    void append(std::string_view bytes) { m_bytes.append(bytes); }

    /// The next complete record. Nothing when more bytes are needed, and for ever after bytes that
    /// are no record.
    std::optional<ProbeRecord> next();

    bool isGarbled() const { return m_isGarbled; }

private:
    std::string m_bytes;
    /// Bytes before this have been read.
    std::size_t m_begin = 0;
    bool m_isGarbled = false;
};

} // namespace visa
