// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lint {

enum class Severity : std::uint8_t
{
    Note,    ///< Worth knowing; nothing is wrong.
    Warning, ///< It will cause trouble.
    Error,   ///< Clients do not get what the line says.
};

/// "note", "warning" or "error".
const char* severityName(Severity severity) noexcept;

/// What a finding is about. The number is that of the printed code: 304 is "V304".
enum class FindingCode : std::uint16_t
{
    HeaderMissing = 1,
    ByteOrderMark = 2,
    HeaderNotFirst = 3,
    Utf16 = 4,
    CarriageReturnsAlone = 5,
    EntryInHeader = 6,
    TextInHeader = 7,
    HeaderAgain = 8,
    NoLastLineFeed = 9,
    NulByte = 11,
    ConflictMarker = 12,

    IndentedEntry = 101,
    TextAfterAlias = 102,
    WhiteSpaceInName = 103,
    NoResource = 104,
    NoName = 105,
    KeyCase = 106,
    WhiteSpaceInKey = 107,
    UnknownKey = 108,
    NotDecimal = 109,
    TextAfterNumber = 110,
    NumberTooLarge = 111,
    BadDeviceNumber = 112,
    NoEqualsSign = 113,

    AliasRedefined = 201,
    AliasRepeated = 202,
    LowerCaseAlias = 204,
    PunctuationInName = 205,
    NameLikeResource = 206,
    NameNotAscii = 207,
    AliasForAlias = 208,
    SecondName = 210,
    MissingColon = 211,

    WrongCommentSign = 301,
    CommentAfterResource = 302,
    TrailingWhiteSpace = 303,
    TrailingCarriageReturn = 304,
    NotAResource = 305,
    OutOfRange = 306,
    PartMissing = 307,
    RefusedByPyVisa = 308,
    QvibForm = 309,
    ResourceNotAscii = 310,
    ResourceTooLong = 311,
    ResourceRepeated = 312,
    ResourceAlsoAliased = 313,
    LowerCaseResource = 314,
    SerialDevicePath = 315,
    ShortForm = 316,
    SectionLine = 317,
    CommentSignInResource = 318,

    DeviceNumberCut = 401,
    ValueCut = 402,
    ValueRedefined = 403,
    BaudrateZero = 404,
    UnusualDataBits = 405,
    UnknownSerialCode = 406,
    UnknownFlowControl = 407,
    OneAndAHalfStopBits = 408,
    UnusualGpibValue = 409,

    GpibLinesDropped = 501,
    CommentsDropped = 502,
};

/// What is fixed about a code. The table of all kinds is the only place that lists the codes.
struct FindingKind
{
    FindingCode code;
    /// The usual severity; two codes have findings of a lower one, too.
    Severity severity;
    /// fixed() repairs it.
    bool isFixable;
    /// What to do, as a sentence.
    const char* remedy;
};

/// In ascending order of the codes.
const std::vector<FindingKind>& findingKinds();

const FindingKind& kindOf(FindingCode code);

/// "V304".
std::string codeName(FindingCode code);

/// The code with that name; none for any other text.
std::optional<FindingCode> codeFromName(std::string_view name);

/// One thing to say about one line.
struct Finding
{
    FindingCode code = FindingCode::HeaderMissing;
    Severity severity = Severity::Error;
    /// From 1.
    std::size_t line = 1;
    /// In bytes, from 1; one past the last byte where something is missing at the end.
    std::size_t column = 1;
    /// Latin-1, as the file; control characters of the file are shown as escapes.
    std::string message;

    bool isFixable() const { return kindOf(code).isFixable; }
    const char* remedy() const { return kindOf(code).remedy; }
};

} // namespace lint
