// SPDX-License-Identifier: MIT
// Runs without a VISA library on the loader's path.
#include "visa/VisaApi.h"
#include "visa/VisaLibrary.h"

#include <gtest/gtest.h>

#include <array>

TEST(VisaAbsent, EveryCallSaysSoAndLeavesItsOutputAlone)
{
    if (visa::VisaLibrary::instance().isFound()) {
        GTEST_SKIP() << "this machine has a VISA library: " << visa::VisaLibrary::instance().name();
    }
    ViSession session = 5;
    EXPECT_EQ(viOpenDefaultRM(&session), VI_ERROR_LIBRARY_NFOUND);
    EXPECT_EQ(session, 5U);
    EXPECT_EQ(viSetAttribute(1, 2, 3), VI_ERROR_LIBRARY_NFOUND);
    ViFindList findList = 6;
    ViUInt32 count = 7;
    std::array<ViChar, VI_FIND_BUFLEN> description{'x'};
    EXPECT_EQ(viFindRsrc(1, "?*", &findList, &count, description.data()), VI_ERROR_LIBRARY_NFOUND);
    EXPECT_EQ(findList, 6U);
    EXPECT_EQ(count, 7U);
    EXPECT_EQ(viFindNext(1, description.data()), VI_ERROR_LIBRARY_NFOUND);
    EXPECT_STREQ(description.data(), "x");
    ViUInt16 type = 8;
    ViUInt16 number = 9;
    EXPECT_EQ(viParseRsrc(1, "ASRL1::INSTR", &type, &number), VI_ERROR_LIBRARY_NFOUND);
    EXPECT_EQ(type, 8U);
    EXPECT_EQ(number, 9U);
    EXPECT_EQ(viClose(1), VI_ERROR_LIBRARY_NFOUND);
}

TEST(VisaApi, HasThePublishedWidthsAndCodes)
{
    static_assert(sizeof(ViUInt16) == 2 && sizeof(ViUInt32) == 4 && sizeof(ViStatus) == 4);
    static_assert(sizeof(ViSession) == 4 && sizeof(ViObject) == 4 && sizeof(ViFindList) == 4);
    static_assert(sizeof(ViAttrState) == sizeof(void*));
    EXPECT_EQ(VI_FIND_BUFLEN, 256);
    EXPECT_EQ(VI_SUCCESS, 0);
    EXPECT_EQ(static_cast<ViUInt32>(VI_ERROR_INV_OBJECT), 0xBFFF000EU);
    EXPECT_EQ(static_cast<ViUInt32>(VI_ERROR_INV_EXPR), 0xBFFF0010U);
    EXPECT_EQ(static_cast<ViUInt32>(VI_ERROR_RSRC_NFOUND), 0xBFFF0011U);
    EXPECT_EQ(static_cast<ViUInt32>(VI_ERROR_INV_RSRC_NAME), 0xBFFF0012U);
    EXPECT_EQ(static_cast<ViUInt32>(VI_ERROR_NSUP_ATTR), 0xBFFF001DU);
    EXPECT_EQ(static_cast<ViUInt32>(VI_ERROR_LIBRARY_NFOUND), 0xBFFF009EU);
    EXPECT_LT(VI_ERROR_LIBRARY_NFOUND, 0);
}
