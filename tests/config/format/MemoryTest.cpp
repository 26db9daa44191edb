// SPDX-License-Identifier: MIT
// Reading large and odd files takes memory in proportion to what is kept of them.

#include "config/ModernConfigurationFile.h"
#include "tests/support/FileContents.h"
#include "tests/support/Files.h"
#include "tests/support/OracleReader.h"
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
    /// Reads a file of these contents, after lines that are skipped, which may take at most this
    /// percentage of its size in memory. All large data is made in child processes, whose peak
    /// starts with that of this process.
    void expectRead(
        std::size_t mostPercent, const std::function<FileContents()>& contents,
        const std::function<std::string()>& skippedLines = [] { return std::string(); }) const
    {
        const std::string path = m_folder.path() / "visa.conf";
        ASSERT_TRUE(support::inChildProcess([&] {
            const FileContents written = contents();
            std::string text = skippedLines();
            for (const auto& [number, board] : written.gpib) {
                text += ":GPIBProperty[DeviceNo=" + std::to_string(number) +
                        "].PrimaryAddress=" + std::to_string(board.primaryAddress) + '\n';
            }
            support::writeFile(path, text + expectedStart(written) + expectedAliases(written));
            return true;
        }));
        const std::size_t size = std::filesystem::file_size(path);
        EXPECT_TRUE(support::inChildProcess([&] {
            QvVisa::ModernConfigurationFile file(path);
            FileContents read;
            const std::size_t before = peakMemory();
            file.parse(read.aliases, read.resources, read.provider);
            const std::size_t growth = peakMemory() - before;
            read.gpib = file.getGpibPropertiesMap();
            read.serial = file.getSerialPropertiesMap();
            std::cout << growth * 100 / size << " % of " << size << " bytes" << std::endl;
            return file.wasRead() && read == contents() &&
                   (support::isSanitized || growth <= size / 100 * mostPercent);
        })) << "not read, read wrong, or more than "
            << mostPercent << " % of the file's size";
    }

private:
    support::TemporaryFolder m_folder;
};

std::string repeated(const std::string& line, std::size_t size)
{
    std::string lines;
    lines.reserve(size + line.size());
    while (lines.size() < size) {
        lines += line;
    }
    return lines;
}

} // namespace

TEST_F(Memory, LinesThatAreSkippedTakeNone)
{
    const auto contents = [] {
        return FileContents{{{"DMM", "ASRL1::INSTR"}}, {"GPIB0::12::INSTR"}, {}, {}, 42};
    };
    expectRead(2, contents,
               [] { return repeated("# " + std::string(1021, 'c') + '\n', 100 * s_megabyte); });
    expectRead(20, contents, [] { return repeated("\n", 10 * s_megabyte); });
}

TEST_F(Memory, OneLongLineTakesThreeAndAHalfTimesItsSize)
{
    const auto text = [](char byte) { return std::string(25 * s_megabyte, byte); };
    expectRead(350, [&] { return FileContents{{}, {text('a')}, {}, {}, 1}; });
    expectRead(350, [&] { return FileContents{{{text('A'), text('a')}}, {}, {}, {}, 1}; });
    for (const char* start : {"#", ":Provider=", "A =B C "}) {
        for (const char byte : {' ', '9', '\0'}) {
            expectRead(
                350, [] { return FileContents(); },
                [&] { return start + std::string(10 * s_megabyte, byte) + '\n'; });
        }
    }
}

TEST_F(Memory, ManyEntriesTakeFourTimesTheFile)
{
    expectRead(400, [] {
        constexpr int entries = support::isSanitized ? 20'000 : 200'000;
        FileContents contents;
        for (int i = 0; i < entries; ++i) {
            const std::string number = std::to_string(i);
            const std::string resource = "TCPIP0::10.0.0.5::inst" + number + "::INSTR";
            contents.resources.push_back(resource);
            contents.aliases["A" + number] = resource;
            contents.serial[static_cast<unsigned short>(i)].parity = 3;
            contents.gpib[static_cast<unsigned short>(i)].primaryAddress = 3;
        }
        return contents;
    });
}

// Two bytes of the file become two strings, the reader's and the caller's.
TEST_F(Memory, TheShortestLinesTakeFiftyTimesTheFile)
{
    expectRead(5000, [] {
        return FileContents{{}, std::vector<std::string>(s_megabyte, "R"), {}, {}, 1};
    });
}
