// SPDX-License-Identifier: MIT
#include "visa/ExecutableHeader.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace visa {

namespace {

using Kind = ExecutableHeader::Kind;

constexpr std::size_t s_headerBytes = 4096;

/// Numbers in a file's own byte order. Positions beyond the end give 0.
class Numbers
{
public:
    Numbers(std::string_view bytes, bool isBigEndian) : m_bytes(bytes), m_isBigEndian(isBigEndian)
    {}

    std::uint32_t at(std::size_t position, std::size_t size) const
    {
        std::uint32_t number = 0;
        for (std::size_t index = 0; index < size && position + size <= m_bytes.size(); ++index) {
            const std::size_t place = m_isBigEndian ? index : size - 1 - index;
            number = number << 8U | static_cast<unsigned char>(m_bytes[position + place]);
        }
        return number;
    }

private:
    std::string_view m_bytes;
    bool m_isBigEndian;
};

struct ElfMachine
{
    std::uint32_t number;
    const char* name32;
    const char* name64;
};

// Null: that width does not exist.
constexpr ElfMachine elfMachines[] = {
    {3, "32-bit x86", nullptr},
    {8, "32-bit MIPS", "64-bit MIPS"},
    {20, "32-bit PowerPC", nullptr},
    {21, nullptr, "64-bit PowerPC"},
    {22, "32-bit S/390", "64-bit S/390"},
    {40, "32-bit ARM", nullptr},
    {62, "x86-64 with 32-bit pointers", "x86-64"},
    {183, "64-bit ARM with 32-bit pointers", "64-bit ARM"},
    {243, "32-bit RISC-V", "64-bit RISC-V"},
    {258, "32-bit LoongArch", "64-bit LoongArch"},
};

std::string elfMachine(std::uint32_t number, bool is64Bit, bool isBigEndian)
{
    std::string name = (is64Bit ? "64-bit" : "32-bit") + (" machine " + std::to_string(number));
    for (const ElfMachine& machine : elfMachines) {
        const char* const known = is64Bit ? machine.name64 : machine.name32;
        if (machine.number == number && known != nullptr) {
            name = known;
        }
    }
    return name + (isBigEndian ? ", big-endian" : "");
}

ExecutableHeader parseElf(std::string_view bytes)
{
    constexpr std::size_t identification = 16;
    constexpr std::uint32_t dynamic = 3;
    if (bytes.size() < identification) {
        return {Kind::CutOff, {}};
    }
    const bool is64Bit = bytes[4] == 2;
    const bool isBigEndian = bytes[5] == 2;
    if (bytes.size() < (is64Bit ? 64U : 52U)) {
        return {Kind::CutOff, {}};
    }
    const Numbers numbers(bytes, isBigEndian);
    return {numbers.at(16, 2) == dynamic ? Kind::Library : Kind::OtherExecutable,
            {elfMachine(numbers.at(18, 2), is64Bit, isBigEndian)}};
}

std::string machOMachine(std::uint32_t number)
{
    constexpr std::uint32_t is64Bit = 0x01000000;
    switch (number) {
    case 7:
        return "32-bit x86";
    case 7 | is64Bit:
        return "x86-64";
    case 12:
        return "32-bit ARM";
    case 12 | is64Bit:
        return "64-bit ARM";
    case 18:
        return "32-bit PowerPC";
    case 18 | is64Bit:
        return "64-bit PowerPC";
    default:
        return (number & is64Bit) != 0 ? "64-bit machine " + std::to_string(number - is64Bit)
                                       : "32-bit machine " + std::to_string(number);
    }
}

ExecutableHeader parseMachO(std::string_view bytes, bool isBigEndian)
{
    constexpr std::size_t header = 28;
    constexpr std::uint32_t library = 6;
    constexpr std::uint32_t bundle = 8;
    if (bytes.size() < header) {
        return {Kind::CutOff, {}};
    }
    const Numbers numbers(bytes, isBigEndian);
    const std::uint32_t type = numbers.at(12, 4);
    return {type == library || type == bundle ? Kind::Library : Kind::OtherExecutable,
            {machOMachine(numbers.at(4, 4))}};
}

/// A file for several machines. Its parts are outside of what was read: all count as libraries.
ExecutableHeader parseFatMachO(std::string_view bytes, bool is64Bit)
{
    constexpr std::size_t header = 8;
    const std::size_t entry = is64Bit ? 32 : 20;
    const Numbers numbers(bytes, true);
    const std::size_t count = numbers.at(4, 4);
    // Java classes begin with the same bytes, and a version above 44.
    constexpr std::size_t most = 40;
    if (count == 0 || count > most) {
        return {Kind::Unknown, {}};
    }
    if (bytes.size() < header + count * entry) {
        return {Kind::CutOff, {}};
    }
    ExecutableHeader result{Kind::Library, {}};
    for (std::size_t index = 0; index < count; ++index) {
        result.machines.push_back(machOMachine(numbers.at(header + index * entry, 4)));
    }
    return result;
}

bool isText(std::string_view bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char each) {
        const auto byte = static_cast<unsigned char>(each);
        return byte >= 0x20 || byte == '\n' || byte == '\r' || byte == '\t';
    });
}

bool contains(std::string_view text, std::string_view part)
{
    return text.find(part) != std::string_view::npos;
}

Kind kindOfText(std::string_view text)
{
    return contains(text, "GNU ld script") || contains(text, "GROUP") || contains(text, "INPUT")
               ? Kind::LinkerScript
               : Kind::Text;
}

Kind kindOfFailure(const std::string& path, int error)
{
    struct stat status = {};
    switch (error) {
    case 0:
        return Kind::NoFile;
    case ENOENT:
    case ENOTDIR:
        return ::lstat(path.c_str(), &status) == 0 ? Kind::DanglingLink : Kind::Missing;
    case EACCES:
        return Kind::Denied;
    default:
        return Kind::Unreadable;
    }
}

} // namespace

std::optional<std::string> readFileBeginning(const std::string& path, std::size_t most, int* error)
{
    int ignored = 0;
    int& failure = error != nullptr ? *error : ignored;
    failure = 0;
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file < 0) {
        // A socket cannot be opened at all.
        failure = errno == ENXIO ? 0 : errno;
        return std::nullopt;
    }
    struct stat status = {};
    const bool isRegular = ::fstat(file, &status) == 0 && S_ISREG(status.st_mode);
    std::string bytes(isRegular ? most : 0, '\0');
    std::size_t length = 0;
    while (length < bytes.size()) {
        const ssize_t size = ::read(file, bytes.data() + length, bytes.size() - length);
        if (size > 0) {
            length += static_cast<std::size_t>(size);
        } else if (size == 0 || errno != EINTR) {
            failure = size == 0 ? 0 : errno;
            break;
        }
    }
    ::close(file);
    if (!isRegular || failure != 0) {
        return std::nullopt;
    }
    bytes.resize(length);
    return bytes;
}

ExecutableHeader ExecutableHeader::read(const std::string& path)
{
    int error = 0;
    const auto bytes = readFileBeginning(path, s_headerBytes, &error);
    return bytes ? parse(*bytes) : ExecutableHeader{kindOfFailure(path, error), {}};
}

ExecutableHeader ExecutableHeader::parse(std::string_view bytes)
{
    if (bytes.empty()) {
        return {Kind::Empty, {}};
    }
    const std::string_view magic = bytes.substr(0, 4);
    if (magic == "\x7F"
                 "ELF") {
        return parseElf(bytes);
    }
    switch (Numbers(bytes, true).at(0, 4)) {
    case 0xFEEDFACE:
    case 0xFEEDFACF:
        return parseMachO(bytes, true);
    case 0xCEFAEDFE:
    case 0xCFFAEDFE:
        return parseMachO(bytes, false);
    case 0xCAFEBABE:
        return parseFatMachO(bytes, false);
    case 0xCAFEBABF:
        return parseFatMachO(bytes, true);
    default:
        return {isText(bytes) ? kindOfText(bytes) : Kind::Unknown, {}};
    }
}

std::string machineOfThisProgram()
{
#ifdef __APPLE__
#ifdef __x86_64__
    return "x86-64";
#else
    return "64-bit ARM";
#endif
#else
    const ExecutableHeader header = ExecutableHeader::read("/proc/self/exe");
    return header.machines.empty() ? "" : header.machines.front();
#endif
}

} // namespace visa
