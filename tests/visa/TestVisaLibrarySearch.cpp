// SPDX-License-Identifier: MIT
#include "tests/support/Files.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/TemporaryFolder.h"
#include "visa/VisaLibrary.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>

namespace {

#ifdef __APPLE__
constexpr const char* searchVariable = "DYLD_LIBRARY_PATH";
#else
constexpr const char* searchVariable = "LD_LIBRARY_PATH";
#endif

const std::string lacking = QVVISA_STUB_FOLDER "/lacking_viParseRsrc/" QVVISA_STUB_FILE;
const std::string complete = QVVISA_STUB_FOLDER "/complete/" QVVISA_STUB_FILE;

/// Each search runs in a new process, since a process searches once.
class VisaLibrarySearch : public testing::Test
{
protected:
    VisaLibrarySearch()
    {
        ::setenv(searchVariable, folder("one").c_str(), 1);
        ::setenv("QVVISA_STUB_LOADS", loads().c_str(), 1);
        support::writeFile(loads(), "");
    }

    std::filesystem::path folder(const std::string& name) const
    {
        std::filesystem::create_directory(m_folder.path() / name);
        return m_folder.path() / name;
    }
    std::filesystem::path loads() const { return m_folder.path() / "loads"; }

    /// Copies a library to a folder of the search path.
    void install(const std::string& library, const std::string& name,
                 const std::string& where = "one") const
    {
        std::filesystem::copy_file(library, folder(where) / name);
    }

    /// The lines that the probe prints, by their first words.
    static std::map<std::string, std::string> probe(const std::string& arguments = "",
                                                    const std::string& program = QVVISA_PROBE)
    {
        FILE* output = ::popen((program + ' ' + arguments).c_str(), "r");
        std::string text;
        for (int byte = std::fgetc(output); byte != EOF; byte = std::fgetc(output)) {
            text.push_back(static_cast<char>(byte));
        }
        EXPECT_EQ(::pclose(output), 0);
        std::map<std::string, std::string> said;
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            const std::size_t blank = line.find(' ');
            said[line.substr(0, blank)] = line.substr(blank + 1);
        }
        return said;
    }

    static std::string sixTimes(ViStatus status)
    {
        std::string all = std::to_string(status);
        for (int call = 1; call < 6; ++call) {
            all += ' ' + std::to_string(status);
        }
        return all;
    }

    support::TemporaryFolder m_folder;
};

TEST_F(VisaLibrarySearch, FindsOurLibraryOnTheSearchPath)
{
    const std::string name = visa::VisaLibrary::candidates().front();
    install(complete, name);
    auto said = probe();
    EXPECT_EQ(said["name"], name);
    EXPECT_EQ(said["file"], folder("one") / name);
    EXPECT_EQ(said["statuses"], "0 0 0 0 0 0");
}

#ifndef __APPLE__
TEST_F(VisaLibrarySearch, SearchesTheWholePathForEachName)
{
    ::setenv(searchVariable, (folder("one").string() + ":" + folder("two").string()).c_str(), 1);
    install(complete, "libvisa.so.0", "one");
    install(complete, "libqvvisa.so", "two");
    EXPECT_EQ(probe()["file"], folder("two") / "libqvvisa.so");
}
#endif

TEST_F(VisaLibrarySearch, EveryCallFailsWithoutALibrary)
{
    auto said = probe();
    if (!said["name"].empty()) {
        GTEST_SKIP() << "this machine has a VISA library of its own: " << said["file"];
    }
    EXPECT_EQ(said["statuses"], sixTimes(VI_ERROR_LIBRARY_NFOUND));
    EXPECT_EQ(said["outputs"], "11 12 13 14 15 untouched");
}

TEST_F(VisaLibrarySearch, AnExceptionInACallBecomesAStatus)
{
    const std::string name = visa::VisaLibrary::candidates().front();
    install(complete, name);
    ::setenv("QVVISA_STUB_THROWS_AT", "call", 1);
    auto said = probe();
    EXPECT_EQ(said["name"], name);
    EXPECT_EQ(said["statuses"], sixTimes(VI_ERROR_SYSTEM_ERROR));
    EXPECT_EQ(said["outputs"], "11 12 13 14 15 untouched");
}

TEST_F(VisaLibrarySearch, AnExceptionWhileLoadingBecomesAStatus)
{
    if (support::hasThreadSanitizer) {
        GTEST_SKIP()
            << "the thread sanitizer has not seen the loader take the lock that is released";
    }
    install(complete, visa::VisaLibrary::candidates().front());
    ::setenv("QVVISA_STUB_THROWS_AT", "load", 1);
    for (const char* threads : {"", "threads"}) {
        auto said = probe(threads);
        if (!said["name"].empty()) {
            GTEST_SKIP() << "this machine has a VISA library of its own: " << said["file"];
        }
        EXPECT_EQ(said["statuses"], sixTimes(VI_ERROR_SYSTEM_ERROR));
    }
}

TEST_F(VisaLibrarySearch, TriesTheFinderLast)
{
    if (support::isSanitized) {
        GTEST_SKIP() << "a sanitizer calls dlopen(): $ORIGIN is the folder of its own library";
    }
    // The finder is found from the program's folder, so a copy of the program finds this one.
    const std::string& last = visa::VisaLibrary::candidates().back();
    const std::filesystem::path finder = folder("bin") / last.substr(last.find('/') + 1);
    const std::string program = folder("bin") / "probe";
    std::filesystem::copy_file(QVVISA_PROBE, program);
    std::filesystem::create_directories(finder.parent_path());
    std::filesystem::copy_file(complete, finder);
    EXPECT_TRUE(std::filesystem::equivalent(probe("", program)["file"], finder));

    const std::string lastOther = visa::VisaLibrary::candidates().end()[-2];
    install(complete, lastOther);
    EXPECT_EQ(probe("", program)["file"], folder("one") / lastOther);
}

TEST_F(VisaLibrarySearch, SearchesOnceForAllThreads)
{
    const std::string name = visa::VisaLibrary::candidates().front();
    // Each search would load the one that lacks a call again, since it is unloaded at once.
    for (const std::string& library : {lacking, complete}) {
        std::filesystem::remove(folder("one") / name);
        install(library, name);
        support::writeFile(loads(), "");
        EXPECT_EQ(probe("threads")["name"] == name, library == complete);
        EXPECT_EQ(support::readFile(loads()), "x");
    }
}

} // namespace
