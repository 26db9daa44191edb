// SPDX-License-Identifier: MIT
#include "tests/support/Files.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryFolder.h"
#include "visa/ExecutableHeader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include <sys/stat.h>

using visa::ExecutableHeader;
using Kind = ExecutableHeader::Kind;

namespace {

/// A header that begins with these bytes, zeros after them.
std::string header(const std::string& begin, std::size_t size = 64)
{
    std::string bytes = begin;
    bytes.resize(size);
    return bytes;
}

/// width and order are those of the ELF identification: 1 for 32 bits and little-endian, 2 for 64
/// bits and big-endian.
std::string elf(char width, char order, char machine, char type = 3)
{
    const auto number = [order](char value) {
        return order == 2 ? std::string{'\0', value} : std::string{value, '\0'};
    };
    const std::string identification = header(std::string("\177ELF") + width + order, 16);
    return header(identification + number(type) + number(machine));
}

std::string machO(char type, char machine = 12)
{
    return header(std::string("\xCF\xFA\xED\xFE", 4) + machine +
                  std::string("\0\0\x01\0\0\0\0", 7) + type + std::string("\0\0\0\x0F", 4));
}

std::string fat(int count)
{
    std::string bytes("\xCA\xFE\xBA\xBE\0\0\0", 7);
    bytes += static_cast<char>(count);
    for (const char* machine : {"\x01\0\0\x07", "\x01\0\0\x0C"}) {
        bytes += header(std::string(machine, 4), 20);
    }
    return bytes;
}

struct Case
{
    const char* name;
    std::string bytes;
    Kind kind;
    std::vector<std::string> machines;
};

// NOLINTNEXTLINE(cert-err58-cpp,bugprone-throwing-static-initialization)
const std::vector<Case> cases{
    {"X86_64", elf(2, 1, 62), Kind::Library, {"x86-64"}},
    {"X86", elf(1, 1, 3), Kind::Library, {"32-bit x86"}},
    {"X86_64WithShortPointers", elf(1, 1, 62), Kind::Library, {"x86-64 with 32-bit pointers"}},
    {"Arm64", elf(2, 1, '\xB7'), Kind::Library, {"64-bit ARM"}},
    {"Arm64BigEndian", elf(2, 2, '\xB7'), Kind::Library, {"64-bit ARM, big-endian"}},
    {"UnknownMachine", elf(2, 1, 99), Kind::Library, {"64-bit machine 99"}},
    {"Program", elf(2, 1, 62, 2), Kind::OtherExecutable, {"x86-64"}},
    {"ObjectFile", elf(2, 1, 62, 1), Kind::OtherExecutable, {"x86-64"}},
    {"ElfCutOff", elf(2, 1, 62).substr(0, 63), Kind::CutOff, {}},
    {"ElfMagicAlone", elf(2, 1, 62).substr(0, 4), Kind::CutOff, {}},
    {"MachO", machO(6), Kind::Library, {"64-bit ARM"}},
    {"MachOBundle", machO(8), Kind::Library, {"64-bit ARM"}},
    {"MachOOfAnUnknownMachine", machO(6, 99), Kind::Library, {"64-bit machine 99"}},
    {"MachOProgram", machO(2), Kind::OtherExecutable, {"64-bit ARM"}},
    {"MachOCutOff", machO(6).substr(0, 27), Kind::CutOff, {}},
    {"Fat", fat(2), Kind::Library, {"x86-64", "64-bit ARM"}},
    {"FatCutOff", fat(2).substr(0, 47), Kind::CutOff, {}},
    {"JavaClass", fat(52), Kind::Unknown, {}},
    {"Empty", "", Kind::Empty, {}},
    {"Text", "This is no library.\n", Kind::Text, {}},
    {"OneByte", "x", Kind::Text, {}},
    {"LinkerScript", "/* GNU ld script */\nGROUP ( libvisa.so.7 )\n", Kind::LinkerScript, {}},
    {"Zeros", std::string(100, '\0'), Kind::Unknown, {}},
};

TEST(ExecutableHeader, NamesKindAndMachinesOfEachFile)
{
    for (const Case& each : cases) {
        const ExecutableHeader parsed = ExecutableHeader::parse(each.bytes);
        EXPECT_EQ(parsed.kind, each.kind) << each.name;
        EXPECT_EQ(parsed.machines, each.machines) << each.name;
    }
}

TEST(ExecutableHeader, EveryBeginningOfEveryFileIsRead)
{
    for (const Case& each : cases) {
        for (std::size_t size = 0; size < each.bytes.size(); ++size) {
            const ExecutableHeader parsed =
                ExecutableHeader::parse(std::string_view(each.bytes).substr(0, size));
            EXPECT_EQ(parsed.kind == Kind::Library || parsed.kind == Kind::OtherExecutable,
                      !parsed.machines.empty());
        }
    }
}

TEST(ExecutableHeader, ALibraryOfThisBuildIsForThisMachine)
{
    const ExecutableHeader stub =
        ExecutableHeader::read(QVVISA_STUB_FOLDER "/complete/" QVVISA_STUB_FILE);
    EXPECT_EQ(stub.kind, Kind::Library);
    EXPECT_EQ(stub.machines, std::vector<std::string>{visa::machineOfThisProgram()});
}

TEST(ExecutableHeader, WhatIsNoReadableFileIsNamed)
{
    const support::TemporaryFolder folder;
    const std::string path = folder.path() / "file";
    EXPECT_EQ(ExecutableHeader::read(path).kind, Kind::Missing);
    std::filesystem::create_symlink("nowhere", path);
    EXPECT_EQ(ExecutableHeader::read(path).kind, Kind::DanglingLink);
    std::filesystem::remove(path);
    std::filesystem::create_symlink("file", path);
    EXPECT_EQ(ExecutableHeader::read(path).kind, Kind::Unreadable);
    std::filesystem::remove(path);
    std::filesystem::create_directory(path);
    EXPECT_EQ(ExecutableHeader::read(path).kind, Kind::NoFile);
    std::filesystem::remove(path);
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(ExecutableHeader::read(path).kind, Kind::NoFile);
    EXPECT_EQ(ExecutableHeader::read(path + "/x").kind, Kind::Missing);
}

TEST(ExecutableHeader, AFileThatMayNotBeReadIsDenied)
{
    const support::TemporaryFolder folder;
    const std::string path = folder.path() / "file";
    support::writeFile(path, "text");
    std::filesystem::permissions(path, std::filesystem::perms::none);
    std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
    EXPECT_TRUE(support::asOrdinaryUser(
        [&path] { return ExecutableHeader::read(path).kind == Kind::Denied; }));
}

} // namespace
