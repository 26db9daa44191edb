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

std::vector<const void*> callsOf(const VisaLibrary& library)
{
    const auto& found = library.calls();
    return {reinterpret_cast<const void*>(found.openDefaultRM),
            reinterpret_cast<const void*>(found.setAttribute),
            reinterpret_cast<const void*>(found.findRsrc),
            reinterpret_cast<const void*>(found.findNext),
            reinterpret_cast<const void*>(found.parseRsrc),
            reinterpret_cast<const void*>(found.close)};
}

void expectNothingFound(const VisaLibrary& library)
{
    EXPECT_FALSE(library.isFound());
    EXPECT_EQ(library.name(), "");
    EXPECT_EQ(callsOf(library), std::vector<const void*>(6));
}

void expectFound(const VisaLibrary& library, const std::string& path)
{
    EXPECT_TRUE(library.isFound());
    EXPECT_EQ(library.name(), path);
    for (const void* call : callsOf(library)) {
        Dl_info info = {};
        EXPECT_NE(::dladdr(call, &info), 0);
        EXPECT_STREQ(info.dli_fname, path.c_str());
    }
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

TEST(VisaLibrary, TakesALibraryWithAllSixCallsAndKeepsItLoaded)
{
    ASSERT_FALSE(isLoaded(completeLibrary()));
    {
        const VisaLibrary library({completeLibrary()});
        expectFound(library, completeLibrary());
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

TEST(VisaLibrary, SkipsAndUnloadsALibraryThatLacksACall)
{
    for (const std::string& call : calls) {
        SCOPED_TRACE(call);
        const std::string path = libraryLacking(call);
        expectNothingFound(VisaLibrary({path}));
        EXPECT_FALSE(isLoaded(path));
        expectFound(VisaLibrary({path, completeLibrary()}), completeLibrary());
        EXPECT_FALSE(isLoaded(path));
    }
}

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

/// The byte of a library's header that says for which processor it is.
#ifdef __APPLE__
constexpr std::size_t processorByte = 4;
#else
constexpr std::size_t processorByte = 18;
#endif

TEST(VisaLibrary, SkipsFilesThatCannotBeLoaded)
{
    const support::TemporaryFolder folder;
    std::string library = support::readFile(completeLibrary());
    support::writeFile(folder.path() / "text", "This is no library.\n");
    support::writeFile(folder.path() / "empty", "");
    support::writeFile(folder.path() / "header-alone", library.substr(0, 64));
    library.at(processorByte) = static_cast<char>(~library.at(processorByte));
    support::writeFile(folder.path() / "for-another-machine", library);
    std::filesystem::create_directory(folder.path() / "folder");
    std::filesystem::create_symlink("nowhere", folder.path() / "dangling-link");
    for (const char* name : {"text", "empty", "for-another-machine", "header-alone", "folder",
                             "dangling-link", "missing"}) {
        SCOPED_TRACE(name);
        const std::string path = folder.path() / name;
        expectNothingFound(VisaLibrary({path}));
        expectFound(VisaLibrary({path, completeLibrary()}), completeLibrary());
    }
}

TEST(VisaLibrary, FindsNothingWithoutCandidates)
{
    expectNothingFound(VisaLibrary({}));
}

} // namespace
