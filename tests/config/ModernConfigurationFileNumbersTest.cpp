// SPDX-License-Identifier: MIT
#include "tests/config/FileContents.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace {

/// One of the eight kinds of line that hold the number of a board or port and a value.
struct Field
{
    std::string head; ///< Up to the number of the board or port.
    std::string tail; ///< From there to the value.
    std::uint64_t mask;
    std::function<std::uint64_t(const FileContents&, unsigned short)> value;
    std::function<std::size_t(const FileContents&)> records;
};

Field gpibField(const std::string& key, std::uint16_t QvVisa::SGpibProperties::*member)
{
    return {":GPIBProperty[DeviceNo=", "]." + key + "=", 0xFFFF,
            [member](const FileContents& contents, unsigned short board) {
                return std::uint64_t{contents.gpib.at(board).*member};
            },
            [](const FileContents& contents) { return contents.gpib.size(); }};
}

template <typename Width>
Field serialField(const std::string& key, std::uint64_t mask,
                  Width QvVisa::SSerialProperties::*member)
{
    return {":SerialProperty[DeviceNo=", "]." + key + "=", mask,
            [member](const FileContents& contents, unsigned short port) {
                return std::uint64_t{contents.serial.at(port).*member};
            },
            [](const FileContents& contents) { return contents.serial.size(); }};
}

std::vector<Field> fields()
{
    using QvVisa::SGpibProperties;
    using QvVisa::SSerialProperties;
    return {
        gpibField("PrimaryAddress", &SGpibProperties::primaryAddress),
        gpibField("SecondaryAddress", &SGpibProperties::secondaryAddress),
        gpibField("SystemController", &SGpibProperties::systemController),
        serialField("Baudrate", 0xFFFFFFFF, &SSerialProperties::baudrate),
        serialField("DataBits", 0xFF, &SSerialProperties::dataBits),
        serialField("StopBits", 0xFF, &SSerialProperties::stopBits),
        serialField("Parity", 0xFF, &SSerialProperties::parity),
        serialField("FlowControl", 0xFF, &SSerialProperties::flowControl),
    };
}

const std::vector<std::uint64_t>& numbersThatFit()
{
    static const std::vector<std::uint64_t> numbers = {
        0,     1,     127,   128,   255,   256,         257,      264,        32767,
        32768, 65534, 65535, 65536, 65537, 65536 + 264, 16777216, 2147483646, 2147483647};
    return numbers;
}

const std::vector<std::string>& numbersTooLarge()
{
    static const std::vector<std::string> numbers = {
        "2147483648",           "4294967295",
        "4294967296",           "4294967297",
        "9999999999",           "9223372036854775807",
        "9223372036854775808",  "18446744073709551616",
        "18446744073709551617", "00000000000000000002147483648",
        std::string(1000, '9'), '1' + std::string(100000, '0'),
    };
    return numbers;
}

class ModernConfigurationFileNumbers : public testing::Test
{
protected:
    FileContents contentsOf(const std::string& lines) const
    {
        const std::string path = m_folder.path() / "visa.conf";
        support::writeFile(path, lines);
        return readWithModernConfigurationFile(path);
    }

private:
    support::TemporaryFolder m_folder;
};

} // namespace

TEST_F(ModernConfigurationFileNumbers, AreCutToTheirField)
{
    EXPECT_EQ(contentsOf(":SerialProperty[DeviceNo=65537].DataBits=264\n").serial.at(1).dataBits,
              8);
    for (const Field& field : fields()) {
        for (const std::uint64_t number : numbersThatFit()) {
            const std::string text = std::to_string(number);
            for (const std::string& zeros : {std::string(), std::string(30, '0')}) {
                const FileContents value =
                    contentsOf(field.head + "7" + field.tail + zeros + text + '\n');
                EXPECT_EQ(field.value(value, 7), number & field.mask) << field.tail << text;
                EXPECT_EQ(field.records(value), 1U) << field.tail << text;

                const FileContents device =
                    contentsOf(field.head + zeros + text + field.tail + "5\n");
                EXPECT_EQ(field.value(device, static_cast<unsigned short>(number & 0xFFFFU)), 5U)
                    << field.head << text;
                EXPECT_EQ(field.records(device), 1U) << field.head << text;
            }
        }
    }
}

TEST_F(ModernConfigurationFileNumbers, OfTheProviderAreCutToSixteenBits)
{
    for (const std::uint64_t number : numbersThatFit()) {
        EXPECT_EQ(contentsOf(":Provider=" + std::to_string(number) + '\n').provider,
                  number & 0xFFFFU);
    }
}

TEST_F(ModernConfigurationFileNumbers, TooLargeSkipTheirWholeLineAndNameNothing)
{
    for (const Field& field : fields()) {
        for (const std::string& number : numbersTooLarge()) {
            const std::string shown = printable(number);
            EXPECT_EQ(contentsOf(field.head + "7" + field.tail + number + '\n'), FileContents())
                << field.tail << shown;
            EXPECT_EQ(contentsOf(field.head + number + field.tail + "5\n"), FileContents())
                << field.head << shown;
            EXPECT_EQ(contentsOf(field.head + number + field.tail + number + '\n'), FileContents())
                << field.head << shown;
        }
    }
}

TEST_F(ModernConfigurationFileNumbers, TooLargeLeaveWhatEarlierLinesSetAndLaterLinesCount)
{
    for (const Field& field : fields()) {
        for (const std::string& number : numbersTooLarge()) {
            const std::string before = field.head + "7" + field.tail + "3\n";
            const std::string bad = field.head + "7" + field.tail + number + '\n';
            EXPECT_EQ(contentsOf(before + bad + "A\n").resources, (std::vector<std::string>{"A"}));
            EXPECT_EQ(field.value(contentsOf(before + bad), 7), 3U) << field.tail;
            EXPECT_EQ(field.value(contentsOf(bad + before), 7), 3U) << field.tail;
        }
    }
}

TEST_F(ModernConfigurationFileNumbers, TooLargeForAProviderKeepTheOneBefore)
{
    for (const std::string& number : numbersTooLarge()) {
        EXPECT_EQ(contentsOf(":Provider=" + number + '\n').provider, 3674);
        EXPECT_EQ(contentsOf(":Provider=42\n:Provider=" + number + '\n').provider, 42);
        EXPECT_EQ(contentsOf(":Provider=" + number + "\n:Provider=42\n").provider, 42);
    }
}
