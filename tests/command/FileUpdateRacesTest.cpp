// SPDX-License-Identifier: MIT
// Several processes write one file. QVVISA_RACE_EDITS sets the number of edits; without it there
// are few, for a run with all other tests.

#include "command/FileUpdate.h"

#include "command/ExitCode.h"
#include "config/AtomicFileWrite.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

pid_t inChild(const std::function<void()>& work)
{
    const pid_t child = ::fork();
    if (child == 0) {
        try {
            work();
            ::_exit(0);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s\n", error.what());
            ::_exit(1);
        }
    }
    return child;
}

bool endedWell(pid_t child)
{
    int status = 0;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// Writers that follow each other without a pause can make an edit give up.
void updateUntilDone(const fs::path& path, const QvVisa::TextUpdate& update)
{
    for (;;) {
        try {
            QvVisa::updateFile(path, update, std::nullopt);
            return;
        } catch (const QvVisa::CommandError& error) {
            if (error.code() != QvVisa::ExitCode::Conflict) {
                throw;
            }
        }
    }
}

std::size_t lineCount(const std::string& text)
{
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

int editsPerProcess(int few)
{
    const char* edits = std::getenv("QVVISA_RACE_EDITS"); // NOLINT(concurrency-mt-unsafe)
    return edits != nullptr ? std::stoi(edits) : few;
}

} // namespace

TEST(FileUpdateRaces, FourProcessesLoseNoneOfTheirEdits)
{
    constexpr int processes = 4;
    const int edits = editsPerProcess(50);
    const support::TemporaryFolder folder;
    const fs::path path = folder.path() / "visa.conf";
    support::writeFile(path, "");
    std::vector<pid_t> children;
    for (int process = 0; process < processes; ++process) {
        children.push_back(inChild([&path, process, edits] {
            for (int edit = 0; edit < edits; ++edit) {
                const std::string line =
                    std::to_string(process) + ' ' + std::to_string(edit) + '\n';
                updateUntilDone(path,
                                [&line](const QvVisa::Document& old) { return old.text() + line; });
            }
        }));
    }
    for (const pid_t child : children) {
        EXPECT_TRUE(endedWell(child));
    }
    EXPECT_EQ(lineCount(support::readFile(path)), static_cast<std::size_t>(processes * edits));
}

TEST(FileUpdateRaces, EditsBesideWholeFileSavesLoseNoSave)
{
    const support::TemporaryFolder folder;
    const fs::path path = folder.path() / "visa.conf";
    support::writeFile(path, "save 0\n");
    const int edits = editsPerProcess(200);
    // Edits replace the second line and keep the first, which says what was saved last.
    const pid_t editor = inChild([&path, edits] {
        for (int edit = 0; edit < edits; ++edit) {
            const std::string line = "edit " + std::to_string(edit) + '\n';
            updateUntilDone(path, [&line](const QvVisa::Document& old) {
                return old.text().substr(0, old.text().find('\n') + 1) + line;
            });
        }
    });
    // The editor puts a save that it met back in a moment; only one that stays away is lost.
    const auto isInFile = [&path](const std::string& saved) {
        constexpr std::chrono::seconds longEnough(10);
        const auto end = std::chrono::steady_clock::now() + longEnough;
        do {
            if (support::readFile(path).compare(0, saved.size(), saved) == 0) {
                return true;
            }
        } while (std::chrono::steady_clock::now() < end);
        return false;
    };
    int saves = 0;
    int status = 0;
    while (::waitpid(editor, &status, WNOHANG) == 0) {
        const std::string saved = "save " + std::to_string(++saves) + '\n';
        ASSERT_TRUE(QvVisa::writeFileAtomically(path, saved));
        ASSERT_TRUE(isInFile(saved)) << "lost: " << saved;
    }
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_GT(saves, 0);
    EXPECT_EQ(support::readFile(path).find("save " + std::to_string(saves) + '\n'), 0U);
    RecordProperty("saves", saves);
}
