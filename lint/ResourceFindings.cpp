// SPDX-License-Identifier: MIT
#include "lint/ResourceFindings.h"

#include "lint/LineText.h"
#include "visa/PyVisaResourceName.h"
#include "visa/ResourceName.h"

#include <algorithm>
#include <array>
#include <string>

namespace lint {

namespace {

using visa::ResourceFault;
using visa::ResourceName;
using visa::ResourceProblem;

constexpr std::array<std::string_view, 10> s_interfaces{
    "GPIB-VXI", "GPIB", "VXI", "ASRL", "PXI", "TCPIP", "USB", "RIO", "FIREWIRE", "QVIB"};
/// VISA lists hold 256 bytes an entry, the terminating NUL included.
constexpr std::size_t s_longestResource = 255;

/// The interface's name at the beginning of the text, spelled as there; empty if there is none.
std::string_view interfaceAt(std::string_view text)
{
    for (const std::string_view name : s_interfaces) {
        if (beginsWithIgnoringCase(text, name)) {
            return text.substr(0, name.size());
        }
    }
    return {};
}

bool isLowerCase(std::string_view text)
{
    return std::any_of(text.begin(), text.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

bool isAddress(std::string_view text)
{
    return text.find('.') != std::string_view::npos &&
           text.find_first_not_of("0123456789.") == std::string_view::npos;
}

/// "COM3", the name of a serial port on another system.
bool isComPort(std::string_view text)
{
    return beginsWithIgnoringCase(text, "COM") && isDecimal(text.substr(3));
}

/// What the text was probably meant to be, as the rest of a sentence; empty if that cannot be seen.
std::string guessMeaning(std::string_view text)
{
    if (text.find_first_of("\"'") != std::string_view::npos) {
        return "quotation marks belong to the text";
    }
    // Only what can be printed as it is, and is short, is repeated in a guess.
    const bool isPlain = text.size() <= 40 && std::all_of(text.begin(), text.end(), [](char c) {
                             return c > ' ' && c <= '~';
                         });
    const std::size_t nameEnd = text.find_first_of(" \t\v\f\r:");
    if (nameEnd != std::string_view::npos) {
        const std::size_t next = skipSpaces(text, nameEnd + 1);
        if (looksLikeResource(text.substr(next))) {
            return "for an alias there has to be a '=' between the name and the resource string";
        }
    }
    if (isPlain && isComPort(text)) {
        return "a serial port is written 'ASRL" + std::string(text.substr(3)) + "::INSTR'";
    }
    if (isPlain && beginsWithIgnoringCase(text, "/dev/tty")) {
        return "a serial port is written 'ASRL" + std::string(text) + "::INSTR'";
    }
    if (isPlain && isAddress(text)) {
        return "an instrument in the network is written 'TCPIP0::" + std::string(text) +
               "::inst0::INSTR'";
    }
    if (text.find("://") != std::string_view::npos) {
        return "an instrument in the network is written 'TCPIP0::HOST::inst0::INSTR'";
    }
    return {};
}

std::string explainUnknown(std::string_view text)
{
    const std::string guess = guessMeaning(text);
    return quoted(text) + " is no resource string: " +
           (guess.empty() ? "it begins with none of the interfaces GPIB, TCPIP, USB, ASRL, QVIB, "
                            "VXI and PXI"
                          : guess) +
           ".";
}

/// "meter:5025".
bool isHostWithPort(std::string_view text)
{
    const std::size_t colon = text.find(':');
    return colon != std::string_view::npos && colon > 0 && isDecimal(text.substr(colon + 1));
}

void judgeRange(const ResourceFault& fault, std::string_view part, std::size_t column,
                LineFindings& findings)
{
    findings.add(FindingCode::OutOfRange, column,
                 "The " + std::string(visa::fieldName(fault.field)) + " " + quoted(part) +
                     " is not in the range from " + std::to_string(fault.least) + " to " +
                     std::to_string(fault.most) + ".");
}

void judgeHost(std::string_view host, const std::string& intro, std::size_t column,
               LineFindings& findings)
{
    if (host.find_first_not_of("0123456789.") == std::string_view::npos) {
        findings.add(FindingCode::OutOfRange, column,
                     quoted(host) + " is no IPv4 address: it has four numbers from 0 to 255.");
    } else {
        findings.add(FindingCode::NotAResource, column,
                     intro + quoted(host) +
                         (isHostWithPort(host)
                              ? " has a port, which is written 'TCPIP0::HOST::PORT::SOCKET'."
                              : " is neither a host name nor an IP address."));
    }
}

void judgeFault(const ResourceFault& fault, std::string_view text, std::size_t offset,
                LineFindings& findings)
{
    const std::string_view part = text.substr(std::min(fault.column, text.size()), fault.length);
    const std::size_t column = offset + fault.column;
    const std::string field = visa::fieldName(fault.field);
    const std::string intro = quoted(text) + " is no resource string: ";
    switch (fault.problem) {
    case ResourceProblem::NotAscii:
        // All but DEL have a finding of their own.
        if (part.find('\x7F') != std::string_view::npos) {
            findings.add(FindingCode::NotAResource, column,
                         intro + "it holds the control character DEL.");
        }
        break;
    case ResourceProblem::UnknownInterface:
    case ResourceProblem::TrailingWhiteSpace:
        findings.add(FindingCode::NotAResource, offset, explainUnknown(text));
        break;
    case ResourceProblem::MissingPart:
        findings.add(FindingCode::PartMissing, column,
                     "The " + field + " is missing in " + quoted(text) + ".");
        break;
    case ResourceProblem::EmptyPart:
        findings.add(FindingCode::PartMissing, column,
                     "The " + field + " is empty in " + quoted(text) + ".");
        break;
    case ResourceProblem::OutOfRange:
        judgeRange(fault, part, column, findings);
        break;
    case ResourceProblem::BadHost:
        judgeHost(part, intro, column, findings);
        break;
    case ResourceProblem::ExtraPart:
        findings.add(FindingCode::NotAResource, column,
                     intro + quoted(part) + " is one part too many.");
        break;
    case ResourceProblem::UnknownClass:
        findings.add(FindingCode::NotAResource, column,
                     intro + quoted(part) + " is no resource class of this interface.");
        break;
    case ResourceProblem::NotANumber:
        findings.add(FindingCode::NotAResource, column,
                     intro + "the " + field + " " + quoted(part) + " is no number.");
        break;
    case ResourceProblem::BadLanDevice:
        findings.add(FindingCode::NotAResource, column,
                     intro + "the LAN device " + quoted(part) +
                         " needs a number, as in inst0 or hislip0.");
        break;
    case ResourceProblem::BadCharacter:
        findings.add(FindingCode::NotAResource, column,
                     intro + "the " + field + " holds " + quoted(part) + ".");
        break;
    }
}

/// The class as the text spells it; empty if the text names none.
std::string_view writtenClass(const ResourceName& name, std::string_view text)
{
    return name.isClassWritten && !name.isQvib ? text.substr(text.rfind("::") + 2)
                                               : std::string_view();
}

/// Lower case, and PyVISA's grammar where lower case is not the reason for what it says.
void judgeForPyVisa(const ResourceName& name, std::string_view text, std::size_t offset,
                    LineFindings& findings)
{
    using visa::PyVisaResourceName;
    const std::string_view resourceClass = writtenClass(name, text);
    const std::string_view interface = interfaceAt(text);
    const PyVisaResourceName reading = PyVisaResourceName::parse(text);
    if (isLowerCase(resourceClass)) {
        findings.add(FindingCode::LowerCaseResource, offset + text.size() - resourceClass.size(),
                     "PyVISA does not take " + quoted(resourceClass) + " for the class: it " +
                         (reading.isAccepted() ? "reads " + quoted(reading.canonicalName()) + "."
                                               : std::string("refuses the resource.")));
    } else if (isLowerCase(interface)) {
        findings.add(FindingCode::LowerCaseResource, Severity::Note, offset,
                     "VISA lists show " + quoted(interface) + " in upper case.");
    }
    if (!reading.isAccepted() && !isLowerCase(resourceClass)) {
        findings.add(FindingCode::RefusedByPyVisa, offset,
                     "PyVISA refuses " + quoted(text) + ": " +
                         visa::describeRefusal(reading.refusal) + ".");
    }
}

void judgeForm(const ResourceName& name, std::string_view text, std::size_t offset,
               LineFindings& findings)
{
    if (name.isQvib) {
        findings.add(FindingCode::QvibForm, offset,
                     "QVIB::HOST is a form of the maker's own: only its library and the window "
                     "know it.");
        return;
    }
    judgeForPyVisa(name, text, offset, findings);
    if (name.isDevicePath) {
        findings.add(FindingCode::SerialDevicePath, offset,
                     "Other VISA libraries number the serial ports and do not know device paths.");
    }
    if (!name.isBoardWritten || !name.isClassWritten) {
        findings.add(FindingCode::ShortForm, offset,
                     "VISA lists show this resource in its full form, " + quoted(name.fullName) +
                         ".");
    }
}

} // namespace

bool looksLikeResource(std::string_view text)
{
    const std::string_view interface = interfaceAt(text);
    if (interface.empty()) {
        return false;
    }
    std::size_t end = interface.size();
    while (end < text.size() && isDigit(text[end])) {
        ++end;
    }
    const bool isPort = equalsIgnoringCase(interface, "ASRL");
    const bool isPath = isPort && end < text.size() && text[end] == '/';
    const bool isBarePort = isPort && end > interface.size() && end == text.size();
    return isPath || isBarePort || text.substr(end, 2) == "::";
}

void judgeResource(std::string_view text, std::size_t offset, LineFindings& findings)
{
    if (const std::size_t nul = text.find('\0'); nul != std::string_view::npos) {
        findings.add(FindingCode::NulByte, offset + nul,
                     "The resource string holds a NUL byte: clients see " +
                         quoted(text.substr(0, nul)) + " only.");
        return;
    }
    if (text.size() > s_longestResource) {
        findings.add(FindingCode::ResourceTooLong, offset + s_longestResource,
                     "The resource string has " + std::to_string(text.size()) +
                         " bytes; VISA lists take 255.");
    }
    const auto other = std::find_if(text.begin(), text.end(),
                                    [](char c) { return static_cast<unsigned char>(c) > 0x7F; });
    if (other != text.end()) {
        findings.add(FindingCode::ResourceNotAscii,
                     offset + static_cast<std::size_t>(other - text.begin()),
                     "The resource string has a character outside ASCII: PyVISA then lists no "
                     "resource at all.");
    }
    if (const std::size_t sign = text.find_first_of("#;"); sign != std::string_view::npos) {
        findings.add(FindingCode::CommentSignInResource, offset + sign,
                     "The window deletes " + quoted(text.substr(sign, 1)) +
                         " when the resource string is edited there.");
    }
    ResourceFault fault;
    if (const auto name = visa::parseResourceName(text, &fault)) {
        judgeForm(*name, text, offset, findings);
    } else {
        judgeFault(fault, text, offset, findings);
    }
}

} // namespace lint
