// SPDX-License-Identifier: MIT
// Runs with a stub library as the machine's libqvvisa.
#include "tests/support/TemporaryFolder.h"
#include "tests/visa/stub/Stub.h"
#include "visa/VisaLibrary.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include <dlfcn.h>

using visa::VisaLibrary;

/// An exported function, to show that the hidden forwarders are hidden for another reason.
extern "C" [[gnu::visibility("default")]] int qvvisaExportedByTheTest()
{
    return 1;
}

namespace {

class VisaForwarding : public testing::Test
{
protected:
    VisaForwarding()
    {
        const std::string& name = VisaLibrary::instance().name();
        void* library = ::dlopen(name.c_str(), RTLD_NOW | RTLD_NOLOAD);
        m_lastCall = stubCall<decltype(&stubLastCall)>(library, "stubLastCall")();
        m_setStatus = stubCall<decltype(&stubSetStatus)>(library, "stubSetStatus");
    }

    template <typename Call>
    static Call stubCall(void* library, const char* name)
    {
        void* symbol = library != nullptr ? ::dlsym(library, name) : nullptr;
        if (symbol == nullptr) {
            throw std::runtime_error(std::string("no stub library with ") + name);
        }
        return reinterpret_cast<Call>(symbol);
    }

    /// Expects that a call answers with the stub's status, whichever it is, and that the stub sees
    /// these arguments.
    template <typename Forward>
    void expectPassed(const char* name, std::vector<std::uintptr_t> arguments, Forward forward)
    {
        for (const ViStatus status :
             {VI_SUCCESS, ViStatus{0x3FFF0005}, VI_ERROR_INV_OBJECT,
              std::numeric_limits<ViStatus>::max(), std::numeric_limits<ViStatus>::min()}) {
            const int before = m_lastCall->total;
            m_setStatus(status);
            EXPECT_EQ(forward(), status);
            EXPECT_EQ(m_lastCall->total, before + 1);
            EXPECT_STREQ(m_lastCall->name, name);
            EXPECT_EQ(std::vector(m_lastCall->arguments,
                                  m_lastCall->arguments + m_lastCall->argumentCount),
                      arguments);
        }
    }

    const stub::Call* m_lastCall = nullptr;
    decltype(&stubSetStatus) m_setStatus = nullptr;
};

constexpr ViUInt32 mostOf32 = std::numeric_limits<ViUInt32>::max();

TEST_F(VisaForwarding, ForwardsEachCallUnchanged)
{
    ViSession session = 0;
    ViFindList list = 0;
    ViUInt32 count = 0;
    ViUInt16 type = 0;
    ViUInt16 number = 0;
    ViChar description[VI_FIND_BUFLEN] = "";
    const char* const text = "?*";
    const auto w = [](auto value) { return stub::word(value); };

    expectPassed("viOpenDefaultRM", {w(&session)}, [&] { return viOpenDefaultRM(&session); });
    expectPassed("viSetAttribute", {1, 0x0E5A0001, 1000},
                 [] { return viSetAttribute(1, 0x0E5A0001, 1000); });
    expectPassed("viFindRsrc", {2, w(text), w(&list), w(&count), w(&description[0])},
                 [&] { return viFindRsrc(2, text, &list, &count, description); });
    expectPassed("viFindNext", {3, w(&description[0])}, [&] { return viFindNext(3, description); });
    expectPassed("viParseRsrc", {4, w(text), w(&type), w(&number)},
                 [&] { return viParseRsrc(4, text, &type, &number); });
    expectPassed("viClose", {5}, [] { return viClose(5); });
}

TEST_F(VisaForwarding, ForwardsExtremeValuesUnchanged)
{
    constexpr auto mostOfWord = std::numeric_limits<ViAttrState>::max();
    expectPassed("viOpenDefaultRM", {0}, [] { return viOpenDefaultRM(nullptr); });
    expectPassed("viSetAttribute", {mostOf32, mostOf32, mostOfWord},
                 [] { return viSetAttribute(mostOf32, mostOf32, mostOfWord); });
    expectPassed("viFindRsrc", {mostOf32, 0, 0, 0, 0},
                 [] { return viFindRsrc(mostOf32, nullptr, nullptr, nullptr, nullptr); });
    expectPassed("viFindNext", {mostOf32, 0}, [] { return viFindNext(mostOf32, nullptr); });
    expectPassed("viParseRsrc", {mostOf32, 0, 0, 0},
                 [] { return viParseRsrc(mostOf32, nullptr, nullptr, nullptr); });
    expectPassed("viClose", {mostOf32}, [] { return viClose(mostOf32); });
}

TEST_F(VisaForwarding, IsHiddenFromLibraries)
{
    // The program's other exports can be found this way.
    EXPECT_NE(::dlsym(RTLD_DEFAULT, "qvvisaExportedByTheTest"), nullptr);
    for (const char* call : {"viOpenDefaultRM", "viSetAttribute", "viFindRsrc", "viFindNext",
                             "viParseRsrc", "viClose"}) {
        EXPECT_EQ(::dlsym(RTLD_DEFAULT, call), nullptr) << call;
    }
}

TEST_F(VisaForwarding, LeavesALibraryItsOwnCalls)
{
    // A second library calls its own viClose(); by way of our forwarder it would reach the first.
    const support::TemporaryFolder folder;
    const std::string path = folder.path() / "second";
    std::filesystem::copy_file(QVVISA_STUB_FOLDER "/complete/" QVVISA_STUB_FILE, path);
    void* second = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(second, nullptr) << ::dlerror();
    const stub::Call* lastOfSecond = stubCall<decltype(&stubLastCall)>(second, "stubLastCall")();
    ASSERT_NE(lastOfSecond, m_lastCall);
    stubCall<decltype(&stubSetStatus)>(second, "stubSetStatus")(VI_ERROR_INV_OBJECT);
    m_setStatus(VI_SUCCESS);

    const int before = m_lastCall->total;
    const auto closeItself = stubCall<decltype(&stubCloseItself)>(second, "stubCloseItself");
    EXPECT_EQ(closeItself(77), VI_ERROR_INV_OBJECT);
    EXPECT_STREQ(lastOfSecond->name, "viClose");
    EXPECT_EQ(lastOfSecond->arguments[0], 77U);
    EXPECT_EQ(lastOfSecond->total, 1);
    EXPECT_EQ(m_lastCall->total, before);
    ::dlclose(second);
}

} // namespace
