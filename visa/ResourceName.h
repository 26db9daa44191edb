// SPDX-License-Identifier: MIT
#pragma once

#include "visa/VisaApi.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace visa {

/// The parts that a resource string can have.
enum class ResourceField : std::uint8_t
{
    Interface,
    Board,
    DevicePath,
    PrimaryAddress,
    SecondaryAddress,
    LogicalAddress,
    Host,
    LanDevice,
    Port,
    ManufacturerId,
    ModelCode,
    SerialNumber,
    UsbInterface,
    /// A part of a PXI, RIO or FireWire string, whose content is not checked.
    Location,
    Class,
};

/// "primary address" and so on, for messages.
const char* fieldName(ResourceField field);

/// Why a text is not a resource string.
enum class ResourceProblem : std::uint8_t
{
    /// It does not begin with the name of an interface.
    UnknownInterface,
    /// White space follows what would otherwise be a resource string.
    TrailingWhiteSpace,
    /// The field is absent; its place is the column. Bare "ASRL" lacks its board number.
    MissingPart,
    /// Nothing between two "::", or after the last one.
    EmptyPart,
    /// More parts than the class has.
    ExtraPart,
    /// The last part is not a class of this interface.
    UnknownClass,
    NotANumber,
    /// A number outside least to most.
    OutOfRange,
    /// Neither a host name, nor an IPv4 address, nor an IPv6 address in brackets.
    BadHost,
    /// An inst or hislip device without a proper number.
    BadLanDevice,
    /// White space, a control character or a colon in a field that cannot hold it.
    BadCharacter,
    /// A byte above 0x7E in what otherwise begins like a resource string.
    NotAscii,
};

/// The first problem of a text: which bytes of the text are wrong, and which field they belong to.
struct ResourceFault
{
    ResourceProblem problem = ResourceProblem::UnknownInterface;
    ResourceField field = ResourceField::Interface;
    /// Byte offset, from 0.
    std::size_t column = 0;
    /// In bytes; 0 where something is missing.
    std::size_t length = 0;
    /// For OutOfRange, the range of the number.
    std::uint32_t least = 0;
    std::uint32_t most = 0;
};

/// What a resource string says. The forms are the published ones, in upper or lower case, and
/// beside them
/// - QVIB::host, an instrument that counts as one on interface TCPIP, board 0;
/// - ASRL/dev/ttyUSB0::INSTR, a serial port named by its device path. It has no number
///   (interfaceNumber is 0); other libraries know ports by number only.
struct ResourceName
{
    ViUInt16 interfaceType = 0;
    ViUInt16 interfaceNumber = 0;
    /// "INSTR", "SOCKET" and so on, in upper case; "INSTR" for QVIB::host.
    std::string resourceClass;
    /// The normal form: everything written out, numbers in decimal without leading zeros, USB
    /// identifiers as 0x and four digits, an IPv6 address in its shortest form. "gpib::05" is
    /// "GPIB0::5::INSTR". Host names, device names and serial numbers are copied.
    std::string fullName;
    /// The text writes the board number (always true for QVIB and a device path) and the class.
    bool isBoardWritten = true;
    bool isClassWritten = true;
    bool isQvib = false;
    bool isDevicePath = false;

    /// The text of a field in fullName; empty where the string has no such field. Interface, Board
    /// and Class have members of their own.
    std::string_view field(ResourceField wanted) const;

    /// The same for all strings that name the same resource: fullName in upper case (but for a
    /// device path) without the parts that equal their default (device inst0, HiSLIP port 4880, USB
    /// interface 0, and GPIB secondary address 0, which some clients write for none).
    std::string key() const;

private:
    friend class ResourceNameParser;

    struct Part
    {
        ResourceField field = ResourceField::Interface;
        std::size_t begin = 0;
        std::size_t length = 0;
    };

    std::array<Part, 4> m_parts;
    std::size_t m_partCount = 0;
};

/// Reads a resource string; any bytes may be in the text, and the time taken is linear in its
/// length. Without a result, *fault (may be null) says why. Any thread.
std::optional<ResourceName> parseResourceName(std::string_view text,
                                              ResourceFault* fault = nullptr);

/// ResourceName::key() of a resource string; any other text is its own key, in upper case.
std::string resourceKey(std::string_view text);

/// The interface type that a name ("ASRL", "TCPIP", in any case) or a number (0 to 65535) means.
std::optional<ViUInt16> interfaceTypeFromText(std::string_view text);

} // namespace visa
