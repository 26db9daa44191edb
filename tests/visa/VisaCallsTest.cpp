// SPDX-License-Identifier: MIT
// Runs with the tests' own library as libqvvisa.so on the loader's path.
#include "visa/VisaApi.h"
#include "visa/VisaLibrary.h"

#include <dlfcn.h>

#include <gtest/gtest.h>

#include <array>
#include <string>

TEST(VisaCalls, GoToTheLibraryOnTheLoadersPath)
{
    EXPECT_EQ(visa::VisaLibrary::instance().name(), EXPECTED_LIBRARY);
}

TEST(VisaCalls, PassArgumentsAndAnswersThroughUnchanged)
{
    ViSession session = 0;
    EXPECT_EQ(viOpenDefaultRM(&session), 1);
    EXPECT_EQ(session, 101U);

    EXPECT_EQ(viSetAttribute(11, 0x0E5A0001, 0x123456789ABCDEF0), 2);
    EXPECT_EQ(viSetAttribute(11, 0x0E5A0001, 0x9ABCDEF0), -2) << "all 64 bits count";

    ViFindList findList = 0;
    ViUInt32 count = 0;
    std::array<ViChar, VI_FIND_BUFLEN> description{};
    EXPECT_EQ(viFindRsrc(41, "ASRL?*", &findList, &count, description.data()), 3);
    EXPECT_EQ(findList, 42U);
    EXPECT_EQ(count, 0xFFFFFFFFU);
    EXPECT_STREQ(description.data(), "ASRL?*");

    EXPECT_EQ(viFindNext(12, description.data()), 4);
    EXPECT_STREQ(description.data(), "next");

    ViUInt16 type = 0;
    ViUInt16 number = 0;
    EXPECT_EQ(viParseRsrc(65535, "ASRL3::INSTR", &type, &number), 5);
    EXPECT_EQ(type, 65535U);
    EXPECT_EQ(number, 12U);

    EXPECT_EQ(viClose(77), 6);
    EXPECT_EQ(viClose(78), -6);
}

TEST(VisaCalls, AreHiddenFromTheLibraryTheyForwardTo)
{
    for (const char* name : {"viOpenDefaultRM", "viSetAttribute", "viFindRsrc", "viFindNext",
                             "viParseRsrc", "viClose"}) {
        EXPECT_EQ(::dlsym(RTLD_DEFAULT, name), nullptr) << name;
    }
}
