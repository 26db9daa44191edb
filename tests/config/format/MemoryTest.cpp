// SPDX-License-Identifier: MIT
// Reading large and odd files takes memory in proportion to what is kept of them.

#include "config/ModernConfigurationFile.h"
#include "tests/support/FileContents.h"
#include "tests/support/Files.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <filesystem>
#include <functional>
#include <iostream>
#include <string>

namespace {

constexpr std::size_t s_megabyte = std::size_t{1024} * 1024;

/// The largest amount of memory that this process has used, in bytes.
std::size_t peakMemory()
{
    struct rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
#ifdef __APPLE__
    constexpr std::size_t unit = 1;
#else
    constexpr std::size_t unit = 1024;
#endif
    return static_cast<std::size_t>(usage.ru_maxrss) * unit;
}

class Memory : public testing::Test
{
protected:
    /// Reads a file of these bytes, which may take at most this percentage of its size in memory.
    /// All large data is made in child processes, whose peak starts with that of this process.
    void expectRead(const std::function<std::string()>& bytes,
                    const std::function<FileContents()>& expected, std::size_t mostPercent) const
    {
        const std::string path = m_folder.path() / "visa.conf";
        ASSERT_TRUE(support::inChildProcess([&] {
            support::writeFile(path, bytes());
            return true;
        }));
        const std::size_t size = std::filesystem::file_size(path);
        EXPECT_TRUE(support::inChildProcess([&] {
            QvVisa::ModernConfigurationFile file(path);
            FileContents contents;
            const std::size_t before = peakMemory();
            file.parse(contents.aliases, contents.resources, contents.provider);
            const std::size_t growth = peakMemory() - before;
            contents.gpib = file.getGpibPropertiesMap();
            contents.serial = file.getSerialPropertiesMap();
            std::cout << growth * 100 / size << " % of " << size << " bytes" << std::endl;
            return file.wasRead() && contents == expected() &&
                   (support::isSanitized || growth <= size / 100 * mostPercent);
        })) << "not read, read wrong, or more than "
            << mostPercent << " % of the file's size";
    }

private:
    support::TemporaryFolder m_folder;
};

} // namespace

TEST_F(Memory, LinesThatAreSkippedTakeNone)
{
    const auto expected = [] {
        return FileContents{{{"DMM", "ASRL1::INSTR"}}, {"GPIB0::12::INSTR"}, {}, {}, 42};
    };
    const auto file = [](const std::string& line, std::size_t size) {
        std::string bytes = ":Provider=42\n";
        bytes.reserve(size + line.size() + 64);
        while (bytes.size() < size) {
            bytes += line;
        }
        return bytes + "DMM=ASRL1::INSTR\nGPIB0::12::INSTR";
    };
    expectRead([&] { return file("# " + std::string(1021, 'c') + '\n', 100 * s_megabyte); },
               expected, 2);
    expectRead([&] { return file("\n", 10 * s_megabyte); }, expected, 20);
}

TEST_F(Memory, OneLongLineTakesThreeAndAHalfTimesItsSize)
{
    const auto text = [] { return std::string(25 * s_megabyte, 'a'); };
    for (const char* end : {"", "\nA=B\n"}) {
        expectRead([&] { return text() + end; },
                   [&] {
                       FileContents contents;
                       contents.resources = {text()};
                       if (*end != '\0') {
                           contents.aliases = {{"A", "B"}};
                       }
                       return contents;
                   },
                   350);
    }
    expectRead([&] { return text() + '=' + text() + '\n'; },
               [&] {
                   FileContents contents;
                   contents.aliases[std::string(25 * s_megabyte, 'A')] = text();
                   return contents;
               },
               350);
    for (const char* start : {"#", ":Provider=", "A =B C "}) {
        for (const char byte : {' ', '9', '\0'}) {
            expectRead([&] { return start + std::string(10 * s_megabyte, byte); },
                       [] { return FileContents(); }, 350);
        }
    }
}

TEST_F(Memory, ManyEntriesTakeFiveTimesTheFile)
{
    constexpr int entries = support::isSanitized ? 20'000 : 200'000;
    const auto resource = [](const std::string& number) {
        return "TCPIP0::10.0.0.5::inst" + number + "::INSTR";
    };
    const auto bytes = [&] {
        std::string text;
        for (int i = 0; i < entries; ++i) {
            const std::string number = std::to_string(i);
            text.append(resource(number)).append("\nA").append(number).append(" = ");
            text.append(resource(number)).append("\n");
            text += ":SerialProperty[DeviceNo=" + number + "].Parity=3\n";
            text += ":GPIBProperty[DeviceNo=" + number + "].PrimaryAddress=3\n";
        }
        return text;
    };
    const auto expected = [&] {
        FileContents contents;
        for (int i = 0; i < entries; ++i) {
            const std::string number = std::to_string(i);
            contents.resources.push_back(resource(number));
            contents.aliases["A" + number] = resource(number);
            contents.serial[static_cast<unsigned short>(i)].parity = 3;
            contents.gpib[static_cast<unsigned short>(i)].primaryAddress = 3;
        }
        return contents;
    };
    expectRead(bytes, expected, 500);
}

// Two bytes of the file become two strings, the reader's and the caller's.
TEST_F(Memory, TheShortestLinesTakeFiftyTimesTheFile)
{
    const auto bytes = [] {
        std::string text;
        for (std::size_t i = 0; i < s_megabyte; ++i) {
            text += "R\n";
        }
        return text;
    };
    const auto expected = [] {
        FileContents contents;
        contents.resources.assign(s_megabyte, "R");
        return contents;
    };
    expectRead(bytes, expected, 5000);
}
