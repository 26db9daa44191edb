// SPDX-License-Identifier: MIT
#include "config/ConfigurationFile.h"
#include "tests/config/SearchSandbox.h"
#include "tests/support/Files.h"
#include "tests/support/TestHome.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <optional>

namespace {

namespace fs = std::filesystem;

std::string found(bool forWriting = false)
{
    return QvVisa::ConfigurationFile::searchConfigFile(forWriting);
}

class Search : public testing::Test
{
protected:
    Search()
    {
        fs::create_directory(m_home.home() / ".quorvane");
        ::setenv("QVVISACONFFILE", named().c_str(), 1);
    }
    ~Search() override { ::unsetenv("QVVISACONFFILE"); }

    fs::path named() const { return m_home.root() / "named.conf"; }
    fs::path inWorkingFolder() const { return m_home.workingFolder() / "visa.conf"; }
    fs::path inHome() const { return m_home.home() / ".quorvane/visa.conf"; }

    support::TestHome m_home;
    SearchSandbox m_sandbox{m_home.root()};
};

using Paths = std::vector<std::string>;

TEST_F(Search, AsksTheFourPlacesInTheirOrder)
{
    const Paths places = {named(), inWorkingFolder(), inHome(), SearchSandbox::systemWidePath};
    for (const bool forWriting : {false, true}) {
        EXPECT_EQ(found(forWriting), "");
        EXPECT_EQ(SearchSandbox::takeQueries(), places);
    }
}

enum class Place
{
    Missing,
    Folder,
    File
};

void arrange(const fs::path& path, Place place)
{
    fs::remove_all(path);
    if (place == Place::Folder) {
        fs::create_directory(path);
    } else if (place == Place::File) {
        support::writeFile(path, "");
    }
}

/// The n-th of all ways in which the four places can be missing, a folder or a file.
std::array<Place, 4> combination(int number)
{
    std::array<Place, 4> places{};
    for (Place& place : places) {
        place = static_cast<Place>(number % 3);
        number /= 3;
    }
    return places;
}

TEST_F(Search, FindsTheFirstRegularFileForReadingAndForWriting)
{
    const std::array<fs::path, 4> paths = {named(), inWorkingFolder(), inHome(),
                                           m_sandbox.systemWideFile()};
    const std::array<std::string, 4> answers = {named(), inWorkingFolder(), inHome(),
                                                SearchSandbox::systemWidePath};
    for (int number = 0; number < 3 * 3 * 3 * 3; ++number) {
        const std::array<Place, 4> places = combination(number);
        std::string expected;
        for (std::size_t i = paths.size(); i-- > 0;) {
            arrange(paths[i], places[i]);
            expected = places[i] == Place::File ? answers[i] : expected;
        }
        EXPECT_EQ(found(false), expected) << "combination " << number;
        // No step before the first regular file leaves one in the shared status: for writing, too,
        // a file that does not exist is never found.
        EXPECT_EQ(found(true), expected) << "combination " << number;
    }
}

TEST_F(Search, AsksNoFurtherThanTheFirstFile)
{
    support::writeFile(inWorkingFolder(), "");
    EXPECT_EQ(found(), inWorkingFolder());
    EXPECT_EQ(SearchSandbox::takeQueries(), (Paths{named(), inWorkingFolder()}));
}

TEST_F(Search, TakesTheNamedPathAsItIsWritten)
{
    const fs::path odd = m_home.root() / "M\xe4\xdf ger\xe4te = #1.conf";
    support::writeFile(odd, "");
    ::setenv("QVVISACONFFILE", odd.c_str(), 1);
    EXPECT_EQ(found(), odd);

    support::writeFile(m_home.workingFolder() / "relative.conf", "");
    const std::string relative =
        "./../" + m_home.workingFolder().filename().string() + "/relative.conf";
    ::setenv("QVVISACONFFILE", relative.c_str(), 1);
    EXPECT_EQ(found(), relative);
}

TEST_F(Search, FollowsSymbolicLinksToFiles)
{
    fs::create_symlink(inHome(), named());
    EXPECT_EQ(found(), "") << "the link dangles";
    EXPECT_EQ(found(true), "") << "the link dangles";
    support::writeFile(inHome(), "");
    EXPECT_EQ(found(), named());
}

TEST_F(Search, PassesByPipesAndDevicesWithoutOpeningThem)
{
    ASSERT_EQ(::mkfifo(named().c_str(), 0600), 0);
    fs::create_symlink("/dev/null", inWorkingFolder());
    support::writeFile(inHome(), "");
    EXPECT_EQ(found(), inHome());
    EXPECT_EQ(found(true), inHome());
}

TEST_F(Search, TakesAnEmptyVariableForAMissingFile)
{
    ::setenv("QVVISACONFFILE", "", 1);
    support::writeFile(inHome(), "");
    EXPECT_EQ(found(), inHome());
    EXPECT_EQ(SearchSandbox::takeQueries(), (Paths{"", inWorkingFolder(), inHome()}));
}

TEST_F(Search, SkipsUnsetVariables)
{
    ::unsetenv("QVVISACONFFILE");
    ::unsetenv("HOME");
    EXPECT_EQ(found(), "");
    EXPECT_EQ(SearchSandbox::takeQueries(),
              (Paths{inWorkingFolder(), SearchSandbox::systemWidePath}));
}

TEST_F(Search, LooksAtTheRootForAnEmptyHome)
{
    ::setenv("HOME", "", 1);
    found();
    EXPECT_EQ(SearchSandbox::takeQueries().at(2), "/.quorvane/visa.conf");
}

TEST_F(Search, SkipsADeletedWorkingFolder)
{
    const fs::path gone = m_home.root() / "gone";
    fs::create_directory(gone);
    fs::current_path(gone);
    fs::remove(gone);
    support::writeFile(inHome(), "");
    EXPECT_EQ(found(), inHome());
    EXPECT_EQ(SearchSandbox::takeQueries(), (Paths{named(), inHome()}));
}

/// Makes a working folder whose path has this many bytes, with a visa.conf in it.
void enterFolderOfLength(const fs::path& start, std::size_t length)
{
    fs::current_path(start);
    std::size_t missing = length - start.string().size();
    while (missing > 0) {
        // Not more than a file name may have, and never leaving room for a lone slash.
        const std::size_t part = missing > 200 ? 100 : missing;
        const std::string name(part - 1, 'd');
        fs::create_directories(name);
        fs::current_path(name);
        missing -= part;
    }
    support::writeFile("visa.conf", "");
}

TEST_F(Search, SkipsAWorkingFolderWhosePathNeedsMoreThan1024Bytes)
{
    support::writeFile(inHome(), "");

    // With the ending zero byte these are 1024 bytes.
    enterFolderOfLength(m_home.workingFolder(), 1023);
    EXPECT_EQ(found().size(), 1023 + std::string("/visa.conf").size());

    enterFolderOfLength(m_home.workingFolder(), 1024);
    EXPECT_EQ(found(), inHome());
}

TEST_F(Search, ForgetsTheStatusOfAnEarlierSearch)
{
    support::writeFile(named(), "");
    ASSERT_EQ(found(true), named());
    fs::remove(named());
    EXPECT_EQ(found(true), "");
}

} // namespace
