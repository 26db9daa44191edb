// SPDX-License-Identifier: MIT
#include "tests/doctor/LibraryFixture.h"

#include "doctor/LibraryChecks.h"
#include "tests/support/Files.h"
#include "tests/support/OrdinaryUser.h"
#include "visa/LibraryCandidate.h"

#include <algorithm>

namespace {

using namespace QvVisa;

const std::string simulator = QVVISA_SIMULATOR_LIBRARY;

class LibraryCandidatesCheck : public support::LibraryFixture
{
protected:
    /// A path in the folder of the test, for a name in a folder of it.
    std::string path(const std::string& name) const
    {
        const std::filesystem::path file = m_home.root() / name;
        std::filesystem::create_directories(file.parent_path());
        return file;
    }

    std::string textFile(const std::string& name) const
    {
        support::writeFile(path(name), "This is no library.\n");
        return path(name);
    }

    /// A copy of a library for another machine.
    std::string foreignLibrary(const std::string& name) const
    {
        std::string bytes = support::readFile(simulator);
        constexpr std::size_t machine = 18;
        bytes[machine] = 99;
        support::writeFile(path(name), bytes);
        return path(name);
    }

    std::string copyOfSimulator(const std::string& name) const
    {
        std::filesystem::copy_file(simulator, path(name));
        return path(name);
    }

    /// "mark: TEXT -> REMEDY" of each result, for a search in these folders.
    std::string resultsIn(const std::string& folders) const
    {
        visa::LibrarySearch search;
        for (std::size_t begin = 0; begin < folders.size();) {
            const std::size_t end = std::min(folders.find(':', begin), folders.size());
            search.libraryPath += path(folders.substr(begin, end - begin)) + ':';
            begin = end + 1;
        }
        search.libraryPath.pop_back();
        std::vector<CheckResult> found;
        CheckReport report("library.candidates", found);
        const Machine examined = machine();
        checkCandidates(examined, search, report);
        std::string text;
        for (const CheckResult& each : found) {
            text += std::string(markWord(each.mark)) + ": " + each.text + '\n';
        }
        for (std::size_t at = text.find(m_home.root()); at != std::string::npos;
             at = text.find(m_home.root())) {
            text.replace(at, m_home.root().string().size(), "FOLDER");
        }
        return text;
    }

    /// What the loader says of a name, as the library in use or not.
    void attempt(const std::string& name, const std::string& message)
    {
        if (!m_probe) {
            m_probe.emplace();
            m_probe->end.kind = visa::ProbeEnd::Finished;
        }
        m_probe->attempts.emplace_back();
        m_probe->attempts.back().candidate = name;
        m_probe->attempts.back().message = message;
    }

    void take(const std::string& name, const std::string& file)
    {
        attempt(name, "");
        m_probe->attempts.back().isLoaded = true;
        m_probe->library = name;
        m_probe->libraryFile = file;
    }

    const std::string m_machine = visa::machineOfThisProgram();
    const std::string m_foreign = "is for 64-bit machine 99, but this program is for " + m_machine;
};

TEST_F(LibraryCandidatesCheck, LibraryInUseIsOk)
{
    probe({copyOfSimulator("libvisa.so")});
    EXPECT_EQ(results("library.candidates"),
              "ok: FOLDER/libvisa.so (" + m_machine + ") is in use, the first usable library.\n");
}

TEST_F(LibraryCandidatesCheck, MachineWithoutALibraryIsAProblem)
{
    probe({path("a.so"), path("qvvisa-finder/libqvvisa.so")});
    EXPECT_EQ(remedies("library.candidates"),
              "problem: There is no VISA library on this machine: the loader finds none of "
              "FOLDER/a.so and the package qvvisa-finder. -> Install the VISA library of the "
              "instruments' maker, "
              "or the package qvvisa-finder.\n");
}

TEST_F(LibraryCandidatesCheck, LibraryOfAnotherMachineIsNamed)
{
    // The real loader is asked.
    const std::string foreign = foreignLibrary("foreign.so");
    probe({foreign});
    EXPECT_NE(m_probe->attempts[0].message.find("No such file"), std::string::npos);
    EXPECT_EQ(remedies("library.candidates"),
              "problem: FOLDER/foreign.so " + m_foreign +
                  "; the loader says \"FOLDER/foreign.so: cannot open shared object file: No such "
                  "file or directory\". -> Install the build of this library for " +
                  m_machine + ".\n");
    probe({foreign, simulator});
    EXPECT_EQ(results("library.candidates").find("warning: FOLDER/foreign.so is for"), 0U);
}

TEST_F(LibraryCandidatesCheck, TextThatEndsTheLoadersSearchIsNamed)
{
    textFile("a/libvisa.so");
    copyOfSimulator("b/libvisa.so");
    attempt("libvisa.so", "FOLDER/a/libvisa.so: file too short");
    EXPECT_EQ(resultsIn("a:b"),
              "problem: FOLDER/a/libvisa.so is a text, no library; the loader says "
              "\"FOLDER/a/libvisa.so: file too short\". The search ends there, "
              "before FOLDER/b/libvisa.so.\n");
}

TEST_F(LibraryCandidatesCheck, FilesThatTheLoaderPassesOverAreNoted)
{
    foreignLibrary("a/libvisa.so");
    take("libvisa.so", copyOfSimulator("b/libvisa.so"));
    EXPECT_EQ(resultsIn("a:b").find("note: FOLDER/a/libvisa.so " + m_foreign +
                                    "; the loader passes over it.\nok: "),
              0U);
}

TEST_F(LibraryCandidatesCheck, LibraryBehindTheOneInUseIsNoted)
{
    take("libqvvisa.so", copyOfSimulator("a/libqvvisa.so"));
    copyOfSimulator("a/libvisa.so.0");
    EXPECT_NE(resultsIn("a").find(
                  "note: FOLDER/a/libvisa.so.0 is not used, since libqvvisa.so comes first.\n"),
              std::string::npos);
    std::filesystem::remove(path("a/libvisa.so.0"));
    std::filesystem::create_symlink("libqvvisa.so", path("a/libvisa.so.0"));
    EXPECT_EQ(resultsIn("a").find("note"), std::string::npos);
}

TEST_F(LibraryCandidatesCheck, EveryUnusableFileIsNamed)
{
    struct Case
    {
        const char* bytes;
        const char* fault;
    };
    for (const Case& each :
         {Case{"", "is empty"}, Case{"text\n", "is a text, no library"},
          Case{"/* GNU ld script */", "is a text for the linker, which programs cannot load"},
          Case{"\x7F"
               "ELF",
               "is cut off: it ends within its header"},
          Case{"\x01\x02", "is no library"}}) {
        support::writeFile(path("libvisa.so"), each.bytes);
        probe({path("libvisa.so")});
        EXPECT_EQ(results("library.candidates")
                      .find(std::string("problem: FOLDER/libvisa.so ") + each.fault +
                            "; the loader says \""),
                  0U)
            << results("library.candidates");
    }
    std::filesystem::remove(path("libvisa.so"));
    std::filesystem::create_symlink("gone", path("libvisa.so"));
    probe({path("libvisa.so")});
    EXPECT_EQ(results("library.candidates")
                  .find("problem: FOLDER/libvisa.so is a link to a file that does not exist;"),
              0U);
}

TEST_F(LibraryCandidatesCheck, MissingDependencyIsQuoted)
{
    const std::string file = copyOfSimulator("libvisa.so");
    attempt(file, "libother.so.1: cannot open shared object file: No such file or directory");
    EXPECT_EQ(results("library.candidates"),
              "problem: FOLDER/libvisa.so is a library for " + m_machine +
                  ", but the loader says \"libother.so.1: cannot open shared object file: No such "
                  "file or directory\".\n");
}

TEST_F(LibraryCandidatesCheck, MissingCallsAreNamed)
{
    probe({QVVISA_LACKING_LIBRARY, simulator});
    const std::string lacking =
        ": " QVVISA_LACKING_LIBRARY " is not used, since it lacks viParseRsrc.\n";
    EXPECT_EQ(results("library.candidates").find("warning" + lacking), 0U);
    probe({QVVISA_LACKING_LIBRARY});
    EXPECT_EQ(results("library.candidates"), "problem" + lacking);
}

TEST_F(LibraryCandidatesCheck, ExceptionAndHangWhileLoadingAreNamed)
{
    probeMisbehaving("load throw");
    EXPECT_EQ(results("library.candidates"),
              "problem: " QVVISA_MISBEHAVING_LIBRARY
              " is not used, since an exception ended its initialisation.\n");
    probeMisbehaving("load crash");
    EXPECT_EQ(results("library.candidates"),
              "note: " QVVISA_MISBEHAVING_LIBRARY
              " was not loaded to the end; library.calls says why.\n");
}

TEST_F(LibraryCandidatesCheck, WhatPyVisaMissesIsNoted)
{
    struct Case
    {
        std::vector<std::string> missing;
        const char* note;
    };
    const std::vector<Case> cases{
        {{"viParseRsrcEx"},
         "viParseRsrcEx, so PyVISA can list resources with it, but opens none; the window does not "
         "need it."},
        {{"viParseRsrcEx", "viOpen"},
         "viParseRsrcEx and viOpen, so PyVISA cannot use it at all; the window does not need "
         "them."},
        {{"viWrite", "viRead"},
         "viWrite and viRead, so PyVISA can list resources with it, but talks to none; the window "
         "does not need them."},
        {{"viDisableEvent"},
         "viDisableEvent, so PyVISA ends with an AttributeError where it needs it; the window does "
         "not need it."},
    };
    probe({simulator});
    EXPECT_EQ(faults("library.candidates"), "");
    for (const Case& each : cases) {
        m_probe->missingOptionalCalls = each.missing;
        EXPECT_EQ(faults("library.candidates"),
                  std::string("note: The library lacks ") + each.note + '\n');
    }
}

TEST_F(LibraryCandidatesCheck, FileThatMayNotBeReadIsNamed)
{
    const std::string file = copyOfSimulator("libvisa.so");
    std::filesystem::permissions(file, std::filesystem::perms::none);
    std::filesystem::permissions(m_home.root(), std::filesystem::perms::all);
    attempt(file, "Permission denied");
    EXPECT_TRUE(ordinaryUserFinds(
        "library.candidates",
        "problem: FOLDER/libvisa.so may not be read by this user; the loader says \"Permission "
        "denied\".\n"));
}

} // namespace
