// SPDX-License-Identifier: MIT
#include "config/ModernConfigurationFile.h"

#include "tests/config/FileContents.h"
#include "tests/support/Files.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <iostream>
#include <string>
#include <string_view>

namespace {

constexpr std::size_t s_megabyte = std::size_t{1024} * 1024;

/// In bytes, the most that this process has ever had.
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

/// What a child process answers.
struct Answer
{
    bool isGood = false;
    std::size_t growth = 0;
};

/// A child starts with what its parent has in memory. All that is large is done in children, so
/// that this process stays small and the next child's growth shows.
Answer inChild(const std::function<Answer()>& action)
{
    int ends[2] = {};
    if (::pipe(ends) != 0) {
        return {};
    }
    // Else both would print what is still to be printed.
    std::cout.flush();
    const pid_t child = ::fork();
    if (child == 0) {
        const Answer answer = action();
        std::cout.flush();
        const bool isSent = ::write(ends[1], &answer, sizeof answer) == sizeof answer;
        ::_exit(isSent ? 0 : 1);
    }
    ::close(ends[1]);
    Answer answer;
    if (::read(ends[0], &answer, sizeof answer) != sizeof answer) {
        answer = {};
    }
    ::close(ends[0]);
    ::waitpid(child, nullptr, 0);
    return answer;
}

class ModernConfigurationFileAnyBytes : public testing::Test
{
protected:
    std::string path() const { return m_folder.path() / "visa.conf"; }

    void write(const std::function<std::string()>& bytes) const
    {
        ASSERT_TRUE(inChild([&] {
                        support::writeFile(path(), bytes());
                        return Answer{true, 0};
                    }).isGood);
    }

    /// Reading the file takes at most so many percent of its size in memory.
    void expectRead(const std::function<FileContents()>& expected, std::size_t mostPercent) const
    {
        const Answer answer = inChild([&] {
            QvVisa::ModernConfigurationFile file(path());
            FileContents contents;
            const std::size_t before = peakMemory();
            file.parse(contents.aliases, contents.resources, contents.provider);
            const std::size_t growth = peakMemory() - before;
            contents.gpib = file.getGpibPropertiesMap();
            contents.serial = file.getSerialPropertiesMap();
            return Answer{file.wasRead() && contents == expected(), growth};
        });
        EXPECT_TRUE(answer.isGood) << "not read, or not what was expected";
        if (support::isSanitized) {
            std::cout << "memory is not measured: the sanitizer has its own\n";
            return;
        }
        const std::size_t size = std::filesystem::file_size(path());
        std::cout << "took " << answer.growth * 100 / size << " % of " << size << " bytes\n";
        EXPECT_LE(answer.growth, size / 100 * mostPercent);
    }

private:
    support::TemporaryFolder m_folder;
};

} // namespace

TEST_F(ModernConfigurationFileAnyBytes, AHundredMegabytesOfCommentsTakeNoMemory)
{
    write([] {
        const std::string comment = "# " + std::string(1021, 'c') + '\n';
        std::string bytes = ":Provider=42\n";
        bytes.reserve(101 * s_megabyte);
        while (bytes.size() < 100 * s_megabyte) {
            bytes += comment;
        }
        return bytes + "DMM=ASRL1::INSTR\nGPIB0::12::INSTR";
    });
    const auto expected = [] {
        FileContents contents;
        contents.provider = 42;
        contents.aliases = {{"DMM", "ASRL1::INSTR"}};
        contents.resources = {"GPIB0::12::INSTR"};
        return contents;
    };
    expectRead(expected, 2);
}

TEST_F(ModernConfigurationFileAnyBytes, OneResourceOfFiftyMegabytes)
{
    const auto line = [] { return std::string(50 * s_megabyte, 'R'); };
    for (const std::string_view end : {"", "\n", "\nA=B\n"}) {
        write([&] { return line().append(end); });
        const auto expected = [&] {
            FileContents contents;
            contents.resources = {line()};
            if (end.size() > 1) {
                contents.aliases = {{"A", "B"}};
            }
            return contents;
        };
        expectRead(expected, 350);
    }
}

TEST_F(ModernConfigurationFileAnyBytes, OneAliasOfFiftyMegabytes)
{
    write([] {
        const std::string text(25 * s_megabyte, 'a');
        return text + '=' + text + '\n';
    });
    const auto expected = [] {
        FileContents contents;
        contents.aliases[std::string(25 * s_megabyte, 'A')] = std::string(25 * s_megabyte, 'a');
        return contents;
    };
    expectRead(expected, 350);
}

TEST_F(ModernConfigurationFileAnyBytes, OneSkippedLineOfTenMegabytes)
{
    for (const std::string_view start :
         {"#", " ", ":", "=", ":Provider=", ":SerialProperty[DeviceNo=", "A =B C ",
          ":GPIBProperty[DeviceNo=1].PrimaryAddress="}) {
        for (const char byte : {' ', '9'}) {
            write([&] { return std::string(start) + std::string(10 * s_megabyte, byte); });
            expectRead([] { return FileContents(); }, 350);
        }
    }
}

TEST_F(ModernConfigurationFileAnyBytes, AMillionNuls)
{
    write([] { return std::string(1'000'000, '\0'); });
    const auto expected = [] {
        FileContents contents;
        contents.resources = {std::string(1'000'000, '\0')};
        return contents;
    };
    expectRead(expected, 500);
}

TEST_F(ModernConfigurationFileAnyBytes, TenMillionLineFeedsTakeNoMemory)
{
    write([] { return std::string(10'000'000, '\n'); });
    expectRead([] { return FileContents(); }, 10);
}

TEST_F(ModernConfigurationFileAnyBytes, TwoHundredThousandEntriesOfEachTable)
{
    constexpr int entries = support::isSanitized ? 20'000 : 200'000;
    const auto resource = [](const std::string& number) {
        return "TCPIP0::10.0.0.5::inst" + number + "::INSTR";
    };
    write([&] {
        std::string bytes;
        for (int i = 0; i < entries; ++i) {
            const std::string number = std::to_string(i);
            bytes.append(resource(number)).append("\n");
            bytes.append("A").append(number).append(" = ").append(resource(number)).append("\n");
            bytes.append(":SerialProperty[DeviceNo=").append(number).append("].Parity=3\n");
            bytes.append(":GPIBProperty[DeviceNo=").append(number).append("].PrimaryAddress=3\n");
        }
        return bytes;
    });
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
    expectRead(expected, 500);
}

TEST_F(ModernConfigurationFileAnyBytes, TheShortestLinesTakeTheMostMemory)
{
    // Two bytes in the file are two strings in memory, the reader's and the caller's.
    write([] {
        std::string bytes;
        for (std::size_t i = 0; i < s_megabyte; ++i) {
            bytes += "R\n";
        }
        return bytes;
    });
    const auto expected = [] {
        FileContents contents;
        contents.resources.assign(s_megabyte, "R");
        return contents;
    };
    expectRead(expected, 5000);
}
