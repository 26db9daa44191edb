// SPDX-License-Identifier: MIT
#include "lint/FindingCode.h"

#include <algorithm>
#include <array>

namespace lint {

const char* severityName(Severity severity) noexcept
{
    switch (severity) {
    case Severity::Note:
        return "note";
    case Severity::Warning:
        return "warning";
    case Severity::Error:
        break;
    }
    return "error";
}

const std::vector<FindingKind>& findingKinds()
{
    using Code = FindingCode;
    constexpr Severity note = Severity::Note;
    constexpr Severity warning = Severity::Warning;
    constexpr Severity error = Severity::Error;
    static const std::vector<FindingKind> s_kinds{
        {Code::HeaderMissing, error, false,
         "Make ':QvVisaConfigurationFileVersion01' the first line, in exactly these letters."},
        {Code::ByteOrderMark, error, true,
         "Save the file without a byte-order mark ('UTF-8', not 'UTF-8 with BOM')."},
        {Code::HeaderNotFirst, error, false, "Move this line to the top of the file."},
        {Code::Utf16, error, false,
         "Save the file as plain text in Latin-1 or ASCII ('ANSI' in some editors)."},
        {Code::CarriageReturnsAlone, error, true,
         "Save the file with line feeds (Unix line endings)."},
        {Code::EntryInHeader, warning, false, "Put this text on a line of its own."},
        {Code::TextInHeader, note, false, "Put it into a comment line that begins with '#'."},
        {Code::HeaderAgain, warning, false,
         "Check that the file is not two files joined together, then delete this line."},
        {Code::NoLastLineFeed, note, true, "End the last line with a line feed."},
        {Code::NulByte, error, false, "Delete the NUL byte."},
        {Code::ConflictMarker, error, false,
         "Decide which lines are to stay, then delete the marker lines."},

        {Code::IndentedEntry, error, true,
         "Delete the white space at the beginning of the line, or write '#' before a comment."},
        {Code::TextAfterAlias, error, false,
         "Delete the text, or move a comment to a line of its own that begins with '#'."},
        {Code::WhiteSpaceInName, error, false,
         "Replace the white space in the name, for example by '_'; begin a comment with '#'."},
        {Code::NoResource, error, false,
         "Write a resource string after the '=', or delete the line."},
        {Code::NoName, error, false, "Write a name before the '=', or delete the line."},
        {Code::KeyCase, error, true, "Write the key in exactly these letters."},
        {Code::WhiteSpaceInKey, error, true,
         "Delete the white space; it may only be next to the numbers."},
        {Code::UnknownKey, error, false,
         "Correct the key; begin the line with '#' if it is a comment."},
        {Code::NotDecimal, error, false,
         "Write a whole number in decimal digits, without sign or unit."},
        {Code::TextAfterNumber, error, false,
         "Delete the text, or move a comment to a line of its own that begins with '#'."},
        {Code::NumberTooLarge, error, false, "Write a number in the range of this setting."},
        {Code::BadDeviceNumber, error, false,
         "Write the number of the port or board in decimal digits, as in 'DeviceNo=1'."},
        {Code::NoEqualsSign, error, false, "Write '=' between the key and the number."},

        {Code::AliasRedefined, error, false,
         "Delete the wrong line, or give the instruments different names."},
        {Code::AliasRepeated, warning, false, "Delete one of the lines."},
        {Code::LowerCaseAlias, note, false, "Write the name in upper case."},
        {Code::PunctuationInName, warning, false,
         "Use letters, digits, '_', '-' and '.' for names."},
        {Code::NameLikeResource, error, false, "Choose a name that is not an address."},
        {Code::NameNotAscii, error, false, "Write the name in ASCII letters and digits."},
        {Code::AliasForAlias, error, false,
         "Write the resource string of the instrument after the '='."},
        {Code::SecondName, note, false,
         "Keep one name, if programs ask for the name of a resource."},
        {Code::MissingColon, error, true, "Write ':' at the beginning of the line."},

        {Code::WrongCommentSign, error, true, "Begin a comment with '#'."},
        {Code::CommentAfterResource, error, true,
         "Move the comment to a line of its own that begins with '#'."},
        {Code::TrailingWhiteSpace, error, true, "Delete the white space at the end."},
        {Code::TrailingCarriageReturn, error, true,
         "End the line with a line feed alone (Unix line ending)."},
        {Code::NotAResource, error, false,
         "Correct the resource string. An alias is written NAME=RESOURCE, and a comment begins "
         "with '#'."},
        {Code::OutOfRange, error, false, "Correct the number."},
        {Code::PartMissing, error, false, "Add the part that is missing."},
        {Code::RefusedByPyVisa, warning, false,
         "Choose another form of the address if Python programs are to open it."},
        {Code::QvibForm, note, false,
         "Use a published form, such as TCPIP0::HOST::inst0::INSTR, for programs on other VISA "
         "libraries."},
        {Code::ResourceNotAscii, warning, false, "Write the resource string in ASCII."},
        {Code::ResourceTooLong, error, false, "Shorten the resource string to 255 bytes."},
        {Code::ResourceRepeated, warning, false, "Delete one of the lines."},
        {Code::ResourceAlsoAliased, note, false,
         "Delete the line without the alias, if one entry is enough."},
        {Code::LowerCaseResource, warning, false,
         "Write the interface and the class in upper case."},
        {Code::SerialDevicePath, note, false,
         "Use the number of the port, such as ASRL1::INSTR, for programs on other VISA "
         "libraries."},
        {Code::ShortForm, note, false,
         "Write the full form, if programs compare it with what they find."},
        {Code::SectionLine, error, true, "Delete the line, or make it a comment with '#'."},
        {Code::CommentSignInResource, warning, false,
         "Move a comment to a line of its own; other addresses need neither '#' nor ';'."},

        {Code::DeviceNumberCut, error, false, "Write a number from 0 to 65535."},
        {Code::ValueCut, error, false, "Write a number in the range of this setting."},
        {Code::ValueRedefined, error, false, "Delete the wrong line."},
        {Code::BaudrateZero, warning, false,
         "Write the baud rate of the instrument, such as 9600."},
        {Code::UnusualDataBits, warning, false, "Write 5, 6, 7 or 8."},
        {Code::UnknownSerialCode, warning, false,
         "Write StopBits 0 (one), 1 (one and a half) or 2 (two); Parity 0 (none), 1 (odd), "
         "2 (even), 3 (mark) or 4 (space)."},
        {Code::UnknownFlowControl, warning, false,
         "Write 0 (none), 1 (XON/XOFF), 2 (RTS/CTS) or 6 (RTS/CTS with DTR/DSR)."},
        {Code::OneAndAHalfStopBits, warning, false,
         "Write 0 for one stop bit, or 2 for two; keep 1 for one and a half."},
        {Code::UnusualGpibValue, warning, false,
         "Write an address from 0 to 30 (secondary: 65535 for none), SystemController 0 or 1."},

        {Code::GpibLinesDropped, note, false,
         "Edit this file with qvvisa or a text editor, which keep the GPIB lines."},
        {Code::CommentsDropped, note, false,
         "Edit this file with qvvisa or a text editor, which keep comments."},
    };
    return s_kinds;
}

const FindingKind& kindOf(FindingCode code)
{
    const std::vector<FindingKind>& kinds = findingKinds();
    return *std::lower_bound(
        kinds.begin(), kinds.end(), code,
        [](const FindingKind& kind, FindingCode wanted) { return kind.code < wanted; });
}

std::string codeName(FindingCode code)
{
    const auto number = static_cast<unsigned>(code);
    std::string name = "V";
    for (const unsigned digit :
         std::array<unsigned, 3>{number / 100, number / 10 % 10, number % 10}) {
        name += static_cast<char>('0' + digit);
    }
    return name;
}

std::optional<FindingCode> codeFromName(std::string_view name)
{
    for (const FindingKind& kind : findingKinds()) {
        if (codeName(kind.code) == name) {
            return kind.code;
        }
    }
    return std::nullopt;
}

} // namespace lint
