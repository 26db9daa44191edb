// SPDX-License-Identifier: MIT
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"
#include "visa/LibraryCandidate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

using visa::CandidateFile;
using visa::LibraryCandidate;
using visa::LibrarySearch;
using Kind = visa::ExecutableHeader::Kind;
using Origin = CandidateFile::Origin;

namespace {

class Candidate : public testing::Test
{
protected:
    /// A file with this text in a folder of the test.
    std::string file(const std::string& name, const std::string& text = "text\n") const
    {
        const std::filesystem::path path = m_folder.path() / name;
        std::filesystem::create_directories(path.parent_path());
        support::writeFile(path, text);
        return path;
    }
    std::string folder(const std::string& name) const { return m_folder.path() / name; }

    std::vector<std::string> pathsFound() const
    {
        std::vector<std::string> paths;
        for (const CandidateFile& each : LibraryCandidate::find("libvisa.so", m_search).files) {
            paths.push_back(each.path);
        }
        return paths;
    }

    LibrarySearch m_search;

private:
    support::TemporaryFolder m_folder;
};

TEST_F(Candidate, ANameIsSearchedInTheLibraryPathAndInTheSystemFolders)
{
    const std::vector<std::string> expected{file("a/libvisa.so"), file("c/libvisa.so"),
                                            file("s/libvisa.so")};
    m_search.libraryPath = folder("a") + ':' + folder("b") + ';' + folder("c");
    m_search.systemFolders = {folder("s"), folder("t")};
    const LibraryCandidate candidate = LibraryCandidate::find("libvisa.so", m_search);
    EXPECT_EQ(candidate.name, "libvisa.so");
    EXPECT_EQ(pathsFound(), expected);
    EXPECT_EQ(candidate.files[0].origin, Origin::LibraryPath);
    EXPECT_EQ(candidate.files[2].origin, Origin::SystemFolder);
    EXPECT_EQ(candidate.files[0].header.kind, Kind::Text);
}

TEST_F(Candidate, AnEmptyPartOfTheLibraryPathIsTheWorkingFolder)
{
    file("libvisa.so");
    std::filesystem::current_path(folder(""));
    for (const char* path : {":/nowhere", "/nowhere::/nowhere", ";"}) {
        m_search.libraryPath = path;
        EXPECT_EQ(pathsFound(), std::vector<std::string>{"./libvisa.so"}) << path;
    }
}

TEST_F(Candidate, APathIsTheOnlyFile)
{
    const std::string path = file("program/lib/libqvvisa.so");
    file("a/libqvvisa.so");
    m_search.libraryPath = folder("a");
    m_search.programFolder = folder("program/bin");
    std::filesystem::create_directory(folder("program/bin"));
    for (const std::string& name : {path, std::string("$ORIGIN/../lib/libqvvisa.so"),
                                    std::string("${ORIGIN}/../lib/libqvvisa.so"),
                                    std::string("@executable_path/../lib/libqvvisa.so")}) {
        const LibraryCandidate candidate = LibraryCandidate::find(name, m_search);
        ASSERT_EQ(candidate.files.size(), 1U) << name;
        EXPECT_TRUE(std::filesystem::equivalent(candidate.files[0].path, path));
        EXPECT_EQ(candidate.files[0].origin, Origin::Path);
    }
}

TEST_F(Candidate, AFileThatIsFoundTwiceIsListedOnce)
{
    const std::string path = file("a/libvisa.so");
    std::filesystem::create_directory_symlink(folder("a"), folder("link"));
    m_search.libraryPath = folder("a");
    m_search.systemFolders = {folder("link"), folder("a")};
    EXPECT_EQ(pathsFound(), std::vector<std::string>{path});
}

TEST_F(Candidate, ADanglingLinkIsListed)
{
    std::filesystem::create_directory(folder("a"));
    std::filesystem::create_symlink("gone", folder("a/libvisa.so"));
    m_search.libraryPath = folder("a");
    const LibraryCandidate candidate = LibraryCandidate::find("libvisa.so", m_search);
    ASSERT_EQ(candidate.files.size(), 1U);
    EXPECT_EQ(candidate.files[0].header.kind, Kind::DanglingLink);
}

TEST_F(Candidate, NothingIsFoundNowhere)
{
    EXPECT_TRUE(LibraryCandidate::find("libvisa.so", m_search).files.empty());
    EXPECT_TRUE(LibraryCandidate::find("/nowhere/libvisa.so", m_search).files.empty());
}

#ifdef __GLIBC__
TEST_F(Candidate, TheSearchOfThisProgramFindsWhatTheLoaderFinds)
{
    ::setenv("LD_LIBRARY_PATH", folder("a").c_str(), 1); // NOLINT(concurrency-mt-unsafe)
    const LibrarySearch search = LibrarySearch::ofThisProgram();
    EXPECT_EQ(search.libraryPath, folder("a"));
    EXPECT_EQ(search.programFolder, std::filesystem::read_symlink("/proc/self/exe").parent_path());
    const auto foundFrom = [&search](Origin origin) {
        LibrarySearch part = search;
        (origin == Origin::Cache ? part.systemFolders.clear() : part.cache.clear());
        const std::vector<CandidateFile> files = LibraryCandidate::find("libc.so.6", part).files;
        return std::any_of(files.begin(), files.end(), [origin](const CandidateFile& each) {
            return each.origin == origin && each.header.kind == Kind::Library &&
                   each.header.machines.front() == visa::machineOfThisProgram();
        });
    };
    EXPECT_TRUE(foundFrom(Origin::SystemFolder));
    EXPECT_EQ(foundFrom(Origin::Cache), std::filesystem::exists("/etc/ld.so.cache"));
}
#endif

} // namespace
