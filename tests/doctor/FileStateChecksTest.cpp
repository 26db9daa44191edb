// SPDX-License-Identifier: MIT
#include "tests/doctor/DoctorFixture.h"

#include "tests/support/Files.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>

namespace {

using namespace QvVisa;

class FileState : public support::DoctorFixture
{
protected:
    FileState() { ::setenv("TMPDIR", m_home.root().c_str(), 1); }
};

TEST_F(FileState, TimeInTheFutureIsWarnedOf)
{
    m_clock = 0;
    const std::int64_t now = std::time(nullptr);
    support::setModificationTime(writeFile(), now + 262'800);
    EXPECT_EQ(results("file.time"), "warning: The file's modification time is 3 days in the "
                                    "future: programs that compare times may miss changes.\n");
}

TEST_F(FileState, TimeInThisVerySecondIsNoted)
{
    support::setModificationTime(writeFile(), 1'000'000'000);
    Machine examined = machine();
    examined.now = 1'000'000'000;
    EXPECT_EQ(runChecks(checksNamed("file.time"), examined).front().mark, Mark::Note);
    examined.now = 1'000'000'001;
    EXPECT_EQ(runChecks(checksNamed("file.time"), examined).front().mark, Mark::Ok);
    examined.now = 999'999'999;
    EXPECT_EQ(runChecks(checksNamed("file.time"), examined).front().mark, Mark::Warning);
}

TEST_F(FileState, NothingLeftIsOk)
{
    writeFile();
    EXPECT_EQ(results("file.left"), "ok: No interrupted save has left a temporary file.\n");
}

TEST_F(FileState, TemporaryFilesOfDeadProcessesAreWarnedOf)
{
    writeFile();
    const std::string dead = ".qvvisa-4194999-0.tmp";
    // Beside the file, in HOME and in the folder for temporary files.
    for (const std::filesystem::path& folder :
         {file().parent_path(), m_home.home(), m_home.root()}) {
        support::writeFile(folder / dead, "");
    }
    EXPECT_EQ(remedies("file.left"),
              "warning: Interrupted saves have left 3 temporary files: "
              "FOLDER/.qvvisa-4194999-0.tmp, FOLDER/home/.quorvane/.qvvisa-4194999-0.tmp and "
              "FOLDER/home/.qvvisa-4194999-0.tmp. -> Compare, if the configuration lacks something "
              "(qvvisa diff FOLDER/.qvvisa-4194999-0.tmp), then remove: rm "
              "FOLDER/.qvvisa-4194999-0.tmp\n");
}

TEST_F(FileState, TemporaryFileOfALivingProcessIsLeftAlone)
{
    const std::string name = ".qvvisa-" + std::to_string(::getppid()) + "-0.tmp";
    support::writeFile(writeFile().parent_path() / name, "");
    EXPECT_EQ(results("file.left"), "ok: No interrupted save has left a temporary file.\n");
}

TEST_F(FileState, NoWindowIsOk)
{
    writeFile();
    EXPECT_EQ(results("file.window"), "ok: No window of this user is running on the file.\n");
}

#ifndef __APPLE__ // Windows are found through /proc.
TEST_F(FileState, RunningWindowIsNoted)
{
    writeFile();
    const std::string program = (m_home.root() / "QvVisaConfigure").string();
    std::filesystem::copy_file("/bin/cat", program);
    int waiting[2] = {};
    ASSERT_EQ(::pipe(waiting), 0);
    const pid_t window = ::fork();
    if (window == 0) {
        ::dup2(waiting[0], STDIN_FILENO);
        ::close(waiting[1]);
        ::execl(program.c_str(), program.c_str(), static_cast<char*>(nullptr));
        ::_exit(1);
    }
    std::string found;
    // Until the process has the program's name; the test's time limit ends a wait in vain.
    while (found.rfind("note: ", 0) != 0) {
        found = results("file.window");
    }
    ::close(waiting[1]);
    ::waitpid(window, nullptr, 0);
    EXPECT_EQ(found, "note: QvVisaConfigure is running on the file (process " +
                         std::to_string(window) +
                         "): its next Save writes its own table, without what others changed "
                         "meanwhile.\n");
}
#endif

TEST_F(FileState, FileThatASaveKeepsIsOk)
{
    writeFile("DMM=GPIB0::1::INSTR\n");
    EXPECT_EQ(results("file.loses"), "ok: A save in the window drops nothing.\n");
}

TEST_F(FileState, CommentsThatASaveDropsAreNoted)
{
    writeFile("# bench 3\nDMM=GPIB0::1::INSTR\n\n");
    EXPECT_EQ(results("file.loses"),
              "note: A save in the window drops 2 comments or ignored lines.\n");
}

TEST_F(FileState, GpibLinesThatASaveDropsAreWarnedOf)
{
    writeFile("# bench 3\n:GPIBProperty[DeviceNo=0].PrimaryAddress=1\n");
    EXPECT_EQ(results("file.loses"), "warning: A save in the window drops 1 line of GPIB boards "
                                     "and 1 comment or ignored line.\n");
}

} // namespace
