// SPDX-License-Identifier: MIT
#include "tests/doctor/DoctorFixture.h"

#include "tests/support/Files.h"

#include <unistd.h>

#include <cstdlib>

namespace {

using namespace QvVisa;

class FileSearch : public support::DoctorFixture
{};

TEST_F(FileSearch, FileInUseIsNamedWithItsPlace)
{
    writeFile();
    EXPECT_EQ(results("file.search"), "ok: FOLDER/home/.quorvane/visa.conf is used (HOME).\n");
}

TEST_F(FileSearch, NoFileIsAProblem)
{
    EXPECT_EQ(remedies("file.search"), "problem: No configuration file was found. -> qvvisa init "
                                       "creates one; qvvisa where lists the places.\n");
}

TEST_F(FileSearch, ShadowedFileIsNoted)
{
    writeFile();
    support::writeFile("visa.conf", "");
    EXPECT_EQ(results("file.search"), "ok: FOLDER/current/visa.conf is used (working folder).\n"
                                      "note: HOME (FOLDER/home/.quorvane/visa.conf) exists as "
                                      "well, but an earlier place has a file.\n");
}

TEST_F(FileSearch, SameFileInAnotherPlaceIsNotNoted)
{
    ::setenv("QVVISACONFFILE", writeFile().c_str(), 1);
    EXPECT_EQ(results("file.search"),
              "ok: FOLDER/home/.quorvane/visa.conf is used (QVVISACONFFILE).\n");
}

TEST_F(FileSearch, VariableThatNamesNoFileIsWarnedOf)
{
    writeFile();
    const std::string used = "ok: FOLDER/home/.quorvane/visa.conf is used (HOME).\n";
    ::setenv("QVVISACONFFILE", "/nowhere/visa.conf", 1);
    EXPECT_EQ(results("file.search"), "warning: QVVISACONFFILE names /nowhere/visa.conf, which "
                                      "does not exist; the search goes on.\n" +
                                          used);
    ::setenv("QVVISACONFFILE", "", 1);
    EXPECT_EQ(results("file.search"),
              "warning: QVVISACONFFILE is set, but empty: it names no file.\n" + used);
}

TEST_F(FileSearch, RelativeVariableIsNoted)
{
    support::writeFile("bench.conf", "");
    ::setenv("QVVISACONFFILE", "bench.conf", 1);
    EXPECT_EQ(results("file.search"), "ok: bench.conf is used (QVVISACONFFILE).\n"
                                      "note: QVVISACONFFILE is a relative path: it names another "
                                      "file in each working folder.\n");
}

TEST_F(FileSearch, LinkToNoFileIsWarnedOf)
{
    writeFile();
    std::filesystem::create_symlink("nowhere", "visa.conf");
    EXPECT_EQ(results("file.search"), "warning: working folder (FOLDER/current/visa.conf) is a "
                                      "symbolic link that leads to no file.\n"
                                      "ok: FOLDER/home/.quorvane/visa.conf is used (HOME).\n");
}

TEST_F(FileSearch, FolderInPlaceOfTheFileIsWarnedOf)
{
    writeFile();
    std::filesystem::create_directory("visa.conf");
    EXPECT_EQ(results("file.search"), "warning: working folder (FOLDER/current/visa.conf) is not a "
                                      "regular file; the search passes it over.\n"
                                      "ok: FOLDER/home/.quorvane/visa.conf is used (HOME).\n");
}

TEST_F(FileSearch, FolderThatMayNotBeSearchedIsWarnedOf)
{
    writeFile();
    std::filesystem::permissions(m_home.home(), std::filesystem::perms::none);
    EXPECT_TRUE(ordinaryUserFinds(
        "file.search",
        "problem: No configuration file was found.\n"
        "warning: HOME (FOLDER/home/.quorvane/visa.conf) cannot be reached: permission denied on "
        "a folder of its path. The search takes it for missing.\n"));
    std::filesystem::permissions(m_home.home(), std::filesystem::perms::owner_all);
}

TEST_F(FileSearch, MissingHomeIsWarnedOf)
{
    ::unsetenv("HOME");
    support::writeFile("visa.conf", "");
    EXPECT_EQ(results("file.search"),
              "ok: FOLDER/current/visa.conf is used (working folder).\n"
              "warning: HOME is not set, so .quorvane/visa.conf is not searched for.\n");
}

TEST_F(FileSearch, RemovedWorkingFolderIsWarnedOf)
{
    writeFile();
    std::filesystem::remove(m_home.workingFolder());
    EXPECT_EQ(results("file.search"),
              "warning: The working folder has no name that can be determined, so visa.conf in it "
              "is not searched for.\n"
              "ok: FOLDER/home/.quorvane/visa.conf is used (HOME).\n");
}

TEST_F(FileSearch, FileOptionWins)
{
    m_fileOption = writeFile().string();
    EXPECT_EQ(results("file.search"), "ok: FOLDER/home/.quorvane/visa.conf is named by -f.\n");
    m_fileOption = m_home.home().string();
    EXPECT_EQ(results("file.search"), "problem: FOLDER/home is a folder, not a file.\n");
    m_fileOption = (m_home.home() / "other.conf").string();
    EXPECT_EQ(results("file.search"), "problem: FOLDER/home/other.conf does not exist.\n");
}

TEST_F(FileSearch, ReadFileIsCounted)
{
    writeFile();
    EXPECT_EQ(results("file.read"), "ok: The file is read; it has no entries.\n");
    writeFile("A=GPIB0::1::INSTR\nB=GPIB0::2::INSTR\nGPIB0::3::INSTR\n"
              ":SerialProperty[DeviceNo=1].Parity=2\n:GPIBProperty[DeviceNo=0].PrimaryAddress=1\n");
    EXPECT_EQ(results("file.read"), "ok: The file is read: 2 aliases, 1 resource without an "
                                    "alias, 1 serial port and 1 GPIB board.\n");
}

TEST_F(FileSearch, FileThatMayNotBeReadIsAProblem)
{
    std::filesystem::permissions(writeFile(), std::filesystem::perms::owner_write);
    EXPECT_TRUE(ordinaryUserFinds(
        "file.read", "problem: FOLDER/home/.quorvane/visa.conf may not be read by this user.\n"));
}

TEST_F(FileSearch, FileThatIsTooLargeIsAProblem)
{
    std::filesystem::resize_file(writeFile(), (std::uintmax_t{1} << 30U) + 1);
    EXPECT_EQ(results("file.read"), "problem: FOLDER/home/.quorvane/visa.conf is larger than 1 "
                                    "GiB and counts as unreadable.\n");
}

TEST_F(FileSearch, FileWithoutTheHeaderIsAProblemWithTheFindingsRemedy)
{
    support::writeFile(writeFile(), "\xEF\xBB\xBF:QvVisaConfigurationFileVersion01\n");
    EXPECT_EQ(remedies("file.read"),
              "problem: Nothing in this file is read: a byte-order mark precedes the version "
              "header. [V002] -> qvvisa lint --fix repairs it.\n");
}

TEST_F(FileSearch, LinesWithoutFaultAreOk)
{
    writeFile("DMM=TCPIP0::10.0.0.5::INSTR\n");
    EXPECT_EQ(results("file.lint"), "ok: No errors and no warnings.\n");
    writeFile("dmm=TCPIP0::10.0.0.5::INSTR\n");
    EXPECT_EQ(results("file.lint"), "ok: No errors and no warnings; 1 note.\n");
}

TEST_F(FileSearch, ErrorsInLinesAreAProblem)
{
    m_fileOption =
        writeFile("A=GPIB0::1::INSTR\nA=GPIB0::1::INSTR\n DMM=GPIB0::2::INSTR\n").string();
    EXPECT_EQ(remedies("file.lint"),
              "problem: 1 error and 1 warning; the first error is on line 4: This line is ignored: "
              "it begins with white space. [V101] -> qvvisa -f "
              "FOLDER/home/.quorvane/visa.conf lint shows them and their remedies; qvvisa -f "
              "FOLDER/home/.quorvane/visa.conf lint --fix repairs 1 of 2.\n");
}

TEST_F(FileSearch, FindingsInLinesHaveTheirMarkAndRemedy)
{
    writeFile("A=GPIB0::1::INSTR\nA=GPIB0::1::INSTR\n");
    EXPECT_EQ(results("file.lint").find("warning: 1 warning; the first warning is on line 3: "),
              0U);
    writeFile(" A=GPIB0::1::INSTR\n");
    EXPECT_NE(remedies("file.lint").find(" -> qvvisa lint --fix repairs it.\n"), std::string::npos);
    writeFile(" A=GPIB0::1::INSTR\n B=GPIB0::2::INSTR\n");
    EXPECT_NE(remedies("file.lint").find(" -> qvvisa lint --fix repairs them.\n"),
              std::string::npos);
    writeFile("A=GPIB0::1::INSTR # old\n");
    EXPECT_NE(remedies("file.lint").find(" -> qvvisa lint shows it and its remedy.\n"),
              std::string::npos);
}

} // namespace
