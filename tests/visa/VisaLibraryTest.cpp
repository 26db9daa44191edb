// SPDX-License-Identifier: MIT
#include "visa/VisaLibrary.h"

#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <dlfcn.h>

#include <gtest/gtest.h>

#include <set>
#include <thread>

namespace {

const std::string s_complete = COMPLETE_LIBRARY;
const std::string s_incompleteFolder = INCOMPLETE_FOLDER;

std::string libraryLacking(int call)
{
    return s_incompleteFolder + "/liblacks" + std::to_string(call) + ".so";
}

bool isLoaded(const std::string& library)
{
    void* handle = ::dlopen(library.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr) {
        ::dlclose(handle);
    }
    return handle != nullptr;
}

class VisaLibraryLacking : public testing::TestWithParam<int>
{};

} // namespace

TEST(VisaLibrary, LooksForTheMakersLibraryFirstAndThenForTheStandardsSharedName)
{
#ifdef __APPLE__
    const std::vector<std::string> expected{"libqvvisa.dylib",
                                            "/Library/Frameworks/QvVisa.framework/libqvvisa.dylib",
                                            "/Library/Frameworks/VISA.framework/VISA"};
#else
    const std::vector<std::string> expected{"libqvvisa.so", "libvisa.so.0", "libvisa.so"};
#endif
    EXPECT_EQ(visa::VisaLibrary::candidates(), expected);
}

TEST(VisaLibrary, IsNotFoundWithoutCandidates)
{
    const visa::VisaLibrary library({});
    EXPECT_FALSE(library.isFound());
    EXPECT_EQ(library.name(), "");
    EXPECT_EQ(library.calls().openDefaultRM, nullptr);
    EXPECT_EQ(library.calls().setAttribute, nullptr);
    EXPECT_EQ(library.calls().findRsrc, nullptr);
    EXPECT_EQ(library.calls().findNext, nullptr);
    EXPECT_EQ(library.calls().parseRsrc, nullptr);
    EXPECT_EQ(library.calls().close, nullptr);
}

TEST(VisaLibrary, TakesALibraryWithAllSixCalls)
{
    const visa::VisaLibrary library({s_complete});
    EXPECT_TRUE(library.isFound());
    EXPECT_EQ(library.name(), s_complete);
    EXPECT_EQ(library.calls().close(77), 6);
    EXPECT_TRUE(isLoaded(s_complete));
}

TEST_P(VisaLibraryLacking, OneCallIsPassedOverAndUnloaded)
{
    const std::string lacking = libraryLacking(GetParam());
    void* handle = ::dlopen(lacking.c_str(), RTLD_NOW);
    ASSERT_NE(handle, nullptr) << ::dlerror();
    ::dlclose(handle);

    const visa::VisaLibrary alone({lacking});
    EXPECT_FALSE(alone.isFound());
    EXPECT_EQ(alone.calls().openDefaultRM, nullptr);
    EXPECT_EQ(alone.calls().close, nullptr);
    EXPECT_FALSE(isLoaded(lacking));

    const visa::VisaLibrary library({lacking, s_complete});
    EXPECT_EQ(library.name(), s_complete);
}

INSTANTIATE_TEST_SUITE_P(EachCall, VisaLibraryLacking, testing::Range(1, 7));

TEST(VisaLibrary, PassesOverWhatIsNoLibrary)
{
    const support::TemporaryFolder folder;
    const std::string text = folder.path() / "text.so";
    support::writeFile(text, "This is no library.\n");
    const std::string empty = folder.path() / "empty.so";
    support::writeFile(empty, "");
    const visa::VisaLibrary library(
        {text, empty, folder.path() / "missing.so", folder.path(), s_complete});
    EXPECT_EQ(library.name(), s_complete);
}

TEST(VisaLibrary, PassesOverALibraryOfTheWrongArchitecture)
{
    std::string bytes = support::readFile(s_complete);
    ASSERT_EQ(bytes.substr(0, 4), "\177ELF");
    // e_machine: no machine has this number.
    bytes.at(18) = '\xEE';
    bytes.at(19) = '\x7E';
    const support::TemporaryFolder folder;
    const std::string foreign = folder.path() / "foreign.so";
    support::writeFile(foreign, bytes);
    EXPECT_FALSE(visa::VisaLibrary({foreign}).isFound());
}

TEST(VisaLibrary, IsLookedForOnceHoweverManyThreadsAsk)
{
    std::mutex mutex;
    std::set<const visa::VisaLibrary*> seen;
    std::vector<std::thread> threads;
    for (int i = 0; i < 16; ++i) {
        threads.emplace_back([&mutex, &seen] {
            const visa::VisaLibrary* library = &visa::VisaLibrary::instance();
            const std::lock_guard<std::mutex> lock(mutex);
            seen.insert(library);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(seen.size(), 1U);
}
