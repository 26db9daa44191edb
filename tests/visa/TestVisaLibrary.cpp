// SPDX-License-Identifier: MIT
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"
#include "visa/VisaLibrary.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include <dlfcn.h>

using visa::VisaLibrary;

namespace {

const std::vector<std::string> calls{"viOpenDefaultRM", "viSetAttribute", "viFindRsrc",
                                     "viFindNext",      "viParseRsrc",    "viClose"};

std::string completeLibrary()
{
    return QVVISA_STUB_FOLDER "/complete/" QVVISA_STUB_FILE;
}

std::string libraryLacking(const std::string& call)
{
    return QVVISA_STUB_FOLDER "/lacking_" + call + "/" QVVISA_STUB_FILE;
}

/// Does not load the library.
bool isLoaded(const std::string& path)
{
    void* library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (library != nullptr) {
        ::dlclose(library);
    }
    return library != nullptr;
}

std::string fileOf(const void* address)
{
    Dl_info info = {};
    return ::dladdr(address, &info) != 0 ? info.dli_fname : "";
}

template <typename Call>
std::string fileOf(Call* call)
{
    return fileOf(reinterpret_cast<const void*>(call));
}

void expectNothingFound(const VisaLibrary& library)
{
    EXPECT_FALSE(library.isFound());
    EXPECT_EQ(library.name(), "");
    EXPECT_EQ(library.calls().openDefaultRM, nullptr);
    EXPECT_EQ(library.calls().setAttribute, nullptr);
    EXPECT_EQ(library.calls().findRsrc, nullptr);
    EXPECT_EQ(library.calls().findNext, nullptr);
    EXPECT_EQ(library.calls().parseRsrc, nullptr);
    EXPECT_EQ(library.calls().close, nullptr);
}

void expectFound(const VisaLibrary& library, const std::string& path)
{
    EXPECT_TRUE(library.isFound());
    EXPECT_EQ(library.name(), path);
    EXPECT_EQ(fileOf(library.calls().openDefaultRM), path);
    EXPECT_EQ(fileOf(library.calls().setAttribute), path);
    EXPECT_EQ(fileOf(library.calls().findRsrc), path);
    EXPECT_EQ(fileOf(library.calls().findNext), path);
    EXPECT_EQ(fileOf(library.calls().parseRsrc), path);
    EXPECT_EQ(fileOf(library.calls().close), path);
}

TEST(VisaLibrary, CandidatesAreInTheDocumentedOrder)
{
#ifdef __APPLE__
    const std::vector<std::string> expected{"libqvvisa.dylib",
                                            "/Library/Frameworks/QvVisa.framework/libqvvisa.dylib",
                                            "/Library/Frameworks/VISA.framework/VISA"};
#else
    const std::vector<std::string> expected{"libqvvisa.so", "libvisa.so.0", "libvisa.so"};
#endif
    // The last one is the finder, wherever this build expects it.
    std::vector<std::string> candidates = VisaLibrary::candidates();
    EXPECT_NE(candidates.back().find("/qvvisa-finder/libqvvisa"), std::string::npos);
    candidates.pop_back();
    EXPECT_EQ(candidates, expected);
}

TEST(VisaLibrary, TakesALibraryWithAllSixCalls)
{
    ASSERT_FALSE(isLoaded(completeLibrary()));
    {
        const VisaLibrary library({completeLibrary()});
        expectFound(library, completeLibrary());
        EXPECT_EQ(reinterpret_cast<void*>(library.calls().close),
                  ::dlsym(::dlopen(completeLibrary().c_str(), RTLD_NOW), "viClose"));
    }
}

TEST(VisaLibrary, KeepsTheChosenLibraryLoaded)
{
    {
        const VisaLibrary library({completeLibrary()});
    }
    EXPECT_TRUE(isLoaded(completeLibrary()));
}

TEST(VisaLibrary, KeepsTheLibrarysSymbolsLocal)
{
    const VisaLibrary library({completeLibrary()});
    ASSERT_TRUE(library.isFound());
    for (const std::string& call : calls) {
        EXPECT_EQ(::dlsym(RTLD_DEFAULT, call.c_str()), nullptr) << call;
    }
}

class VisaLibraryLacking : public testing::TestWithParam<std::string>
{};

TEST_P(VisaLibraryLacking, IsSkippedAndUnloaded)
{
    const std::string path = libraryLacking(GetParam());
    // It can be loaded and has the other five calls.
    void* loaded = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(loaded, nullptr) << ::dlerror();
    for (const std::string& call : calls) {
        EXPECT_EQ(::dlsym(loaded, call.c_str()) == nullptr, call == GetParam());
    }
    ::dlclose(loaded);
    ASSERT_FALSE(isLoaded(path));

    expectNothingFound(VisaLibrary({path}));
    EXPECT_FALSE(isLoaded(path));
    expectFound(VisaLibrary({path, completeLibrary()}), completeLibrary());
    EXPECT_FALSE(isLoaded(path));
}

INSTANTIATE_TEST_SUITE_P(EachCall, VisaLibraryLacking, testing::ValuesIn(calls),
                         [](const auto& each) { return each.param; });

TEST(VisaLibrary, TakesTheFirstOfSeveralThatQualify)
{
    const support::TemporaryFolder folder;
    const std::string first = folder.path() / "first";
    const std::string second = folder.path() / "second";
    std::filesystem::copy_file(completeLibrary(), first);
    std::filesystem::copy_file(completeLibrary(), second);
    expectFound(VisaLibrary({libraryLacking("viClose"), first, second}), first);
    // Later candidates are not tried.
    EXPECT_TRUE(isLoaded(first));
    EXPECT_FALSE(isLoaded(second));
    expectFound(VisaLibrary({second, first}), second);
}

/// Files that cannot be loaded.
class UnfitFile : public testing::TestWithParam<std::string>
{
protected:
    UnfitFile() : m_path(m_folder.path() / "unfit")
    {
        const std::string& kind = GetParam();
        if (kind == "Text") {
            support::writeFile(m_path, "This is no library.\n");
        } else if (kind == "Empty") {
            support::writeFile(m_path, "");
        } else if (kind == "OtherMachines") {
            support::writeFile(m_path, otherMachines());
        } else if (kind == "HeaderAlone") {
            support::writeFile(m_path, support::readFile(completeLibrary()).substr(0, 64));
        } else if (kind == "Folder") {
            std::filesystem::create_directory(m_path);
        } else if (kind == "DanglingLink") {
            std::filesystem::create_symlink("nowhere", m_path);
        }
    }

    /// A library for another processor, by its header.
    static std::string otherMachines()
    {
#ifdef __APPLE__
        constexpr std::size_t machine = 4;
#else
        constexpr std::size_t machine = 18;
#endif
        std::string bytes = support::readFile(completeLibrary());
        bytes.at(machine) = static_cast<char>(~bytes.at(machine));
        return bytes;
    }

    support::TemporaryFolder m_folder;
    const std::string m_path;
};

TEST_P(UnfitFile, IsSkipped)
{
    expectNothingFound(VisaLibrary({m_path}));
    expectFound(VisaLibrary({m_path, completeLibrary()}), completeLibrary());
}

INSTANTIATE_TEST_SUITE_P(EachKind, UnfitFile,
                         testing::Values("Text", "Empty", "OtherMachines", "HeaderAlone", "Folder",
                                         "DanglingLink", "Missing"),
                         [](const auto& each) { return each.param; });

TEST(VisaLibrary, FindsNothingWithoutCandidates)
{
    expectNothingFound(VisaLibrary({}));
}

} // namespace
