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

namespace {

class VisaForwarding : public testing::Test
{
protected:
    VisaForwarding()
    {
        const std::string& name = visa::VisaLibrary::instance().name();
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
    template <typename... Parameters, typename... Arguments>
    void expectPassed(const char* name, ViStatus (&call)(Parameters...), Arguments... arguments)
    {
        SCOPED_TRACE(name);
        for (const ViStatus status :
             {VI_SUCCESS, ViStatus{0x3FFF0005}, VI_ERROR_INV_OBJECT,
              std::numeric_limits<ViStatus>::max(), std::numeric_limits<ViStatus>::min()}) {
            const int before = m_lastCall->total;
            m_setStatus(status);
            EXPECT_EQ(call(arguments...), status);
            EXPECT_EQ(m_lastCall->total, before + 1);
            EXPECT_EQ(m_lastCall->name, name);
            EXPECT_EQ(m_lastCall->arguments,
                      (std::vector{stub::word(static_cast<Parameters>(arguments))...}));
        }
    }

    const stub::Call* m_lastCall = nullptr;
    decltype(&stubSetStatus) m_setStatus = nullptr;
};

TEST_F(VisaForwarding, ForwardsEachCallUnchanged)
{
    constexpr ViUInt32 most = std::numeric_limits<ViUInt32>::max();
    ViSession session = 0;
    ViFindList list = 0;
    ViUInt32 count = 0;
    ViUInt16 type = 0;
    ViUInt16 number = 0;
    ViChar description[VI_FIND_BUFLEN] = "";

    expectPassed("viOpenDefaultRM", viOpenDefaultRM, &session);
    expectPassed("viOpenDefaultRM", viOpenDefaultRM, nullptr);
    expectPassed("viSetAttribute", viSetAttribute, 1U, 0x0E5A0001U, 1000U);
    expectPassed("viSetAttribute", viSetAttribute, most, most,
                 std::numeric_limits<ViAttrState>::max());
    expectPassed("viFindRsrc", viFindRsrc, 2U, "?*", &list, &count, description);
    expectPassed("viFindRsrc", viFindRsrc, most, nullptr, nullptr, nullptr, nullptr);
    expectPassed("viFindNext", viFindNext, 3U, description);
    expectPassed("viFindNext", viFindNext, most, nullptr);
    expectPassed("viParseRsrc", viParseRsrc, 4U, "ASRL1", &type, &number);
    expectPassed("viParseRsrc", viParseRsrc, most, nullptr, nullptr, nullptr);
    expectPassed("viClose", viClose, 5U);
    expectPassed("viClose", viClose, most);
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

    const auto closeItself = stubCall<decltype(&stubCloseItself)>(second, "stubCloseItself");
    EXPECT_EQ(closeItself(77), VI_SUCCESS);
    EXPECT_EQ(lastOfSecond->name, "viClose");
    EXPECT_EQ(lastOfSecond->arguments, std::vector<std::uintptr_t>{77});
    EXPECT_EQ(m_lastCall->total, 0);
    ::dlclose(second);
}

} // namespace
