// SPDX-License-Identifier: MIT
#include "tests/support/FileContents.h"

#include "config/ModernConfigurationFile.h"

#include <map>
#include <ostream>
#include <stdexcept>

bool operator==(const FileContents& left, const FileContents& right)
{
    return left.aliases == right.aliases && left.resources == right.resources &&
           left.gpib == right.gpib && left.serial == right.serial &&
           left.provider == right.provider;
}

std::ostream& operator<<(std::ostream& out, const FileContents& contents)
{
    out << "provider " << contents.provider << '\n';
    for (const auto& [board, properties] : contents.gpib) {
        out << "board " << board << ": " << properties.primaryAddress << ' '
            << properties.secondaryAddress << ' ' << properties.systemController << '\n';
    }
    for (const auto& [port, properties] : contents.serial) {
        out << "port " << port << ": " << properties.baudrate << ' ' << +properties.dataBits << ' '
            << +properties.stopBits << ' ' << +properties.parity << ' ' << +properties.flowControl
            << '\n';
    }
    for (const std::string& resource : contents.resources) {
        out << "resource \"" << printable(resource) << "\"\n";
    }
    const std::map<std::string, std::string> sorted(contents.aliases.begin(),
                                                    contents.aliases.end());
    for (const auto& [alias, resource] : sorted) {
        out << "alias \"" << printable(alias) << "\" = \"" << printable(resource) << "\"\n";
    }
    return out;
}

std::string printable(const std::string& bytes)
{
    constexpr std::size_t longest = 400;
    if (bytes.size() > longest) {
        const std::size_t half = longest / 2;
        return printable(bytes.substr(0, half)) + " ... (" + std::to_string(bytes.size()) +
               " bytes) ... " + printable(bytes.substr(bytes.size() - half));
    }
    static const char digits[] = "0123456789ABCDEF";
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte < 0x7F && c != '\\') {
            text += c;
        } else {
            text += {'\\', 'x', digits[byte >> 4U], digits[byte & 0xFU]};
        }
    }
    return text;
}

FileContents readWithModernConfigurationFile(const std::string& path)
{
    QvVisa::ModernConfigurationFile file(path);
    FileContents contents;
    contents.provider = 0;
    file.parse(contents.aliases, contents.resources, contents.provider);
    if (!file.wasRead()) {
        throw std::runtime_error("cannot read " + path);
    }
    if (contents.provider != file.getProviderId()) {
        throw std::runtime_error("two provider IDs from " + path);
    }
    contents.gpib = file.getGpibPropertiesMap();
    contents.serial = file.getSerialPropertiesMap();
    return contents;
}
