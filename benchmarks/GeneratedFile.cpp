// SPDX-License-Identifier: MIT
#include "benchmarks/GeneratedFile.h"

#include "tests/support/Files.h"

namespace benchmarks {

namespace {

std::string address(std::size_t number)
{
    return "10." + std::to_string(number / 65536 % 256) + '.' + std::to_string(number / 256 % 256) +
           '.' + std::to_string(number % 256);
}

std::string line(std::size_t number)
{
    switch (number % 10) {
    case 0:
        return ":SerialProperty[DeviceNo=" + std::to_string(number % 256) + "].Baudrate=115200";
    case 1:
        return "TCPIP0::" + address(number) + "::5025::SOCKET";
    case 2:
        return "USB0::0x1234::0x5678::SN" + std::to_string(number) + "::INSTR";
    default:
        return "DEVICE" + std::to_string(number) + "=TCPIP0::" + address(number) + "::inst0::INSTR";
    }
}

} // namespace

std::string generateConfiguration(std::size_t lines)
{
    std::string text = ":QvVisaConfigurationFileVersion01\n:Provider=3674\n";
    for (std::size_t number = 0; number < lines; ++number) {
        text += line(number);
        text += '\n';
    }
    return text;
}

GeneratedFile::GeneratedFile(std::size_t lines)
{
    support::writeFile(path(), generateConfiguration(lines));
}

std::filesystem::path GeneratedFile::path() const
{
    return m_folder.path() / "visa.conf";
}

std::uintmax_t GeneratedFile::size() const
{
    return std::filesystem::file_size(path());
}

} // namespace benchmarks
