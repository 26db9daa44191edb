// SPDX-License-Identifier: MIT
#include "visa/StatusNames.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

using visa::statusFromText;
using visa::statusName;

TEST(StatusNames, NamesAndCodesBelongTogether)
{
    EXPECT_EQ(statusName(VI_SUCCESS), "VI_SUCCESS");
    EXPECT_EQ(statusName(VI_ERROR_RSRC_NFOUND), "VI_ERROR_RSRC_NFOUND");
    EXPECT_EQ(statusName(0x3FFF0082), "VI_WARN_NULL_OBJECT");
    EXPECT_EQ(statusName(VI_ERROR_INV_OBJECT), "VI_ERROR_INV_OBJECT");
    EXPECT_EQ(statusName(1), "0x00000001");
    EXPECT_EQ(statusName(-1), "0xFFFFFFFF");
    EXPECT_EQ(statusFromText("VI_ERROR_INV_SESSION"), VI_ERROR_INV_OBJECT);
}

TEST(StatusNames, EachPublishedStatusHasANameAndASentence)
{
    int named = 0;
    for (const ViUInt32 family : {0x00000000U, 0x3FFF0000U, 0xBFFF0000U}) {
        for (ViUInt32 code = 0; code < 0x200; ++code) {
            const auto status = static_cast<ViStatus>(family | code);
            const char* const sentence = visa::statusDescription(status);
            const std::string name = statusName(status);
            EXPECT_EQ(name.substr(0, 3) == "VI_", sentence != nullptr) << name;
            EXPECT_EQ(statusFromText(name), status);
            if (sentence != nullptr) {
                ++named;
                EXPECT_EQ(std::string(sentence).back(), '.') << name;
            }
        }
    }
    EXPECT_GT(named, 90);
    EXPECT_STREQ(visa::statusDescription(VI_ERROR_LIBRARY_NFOUND),
                 "A VISA library was not found or could not be loaded.");
}

TEST(StatusNames, TakesNumbers)
{
    EXPECT_EQ(statusFromText("0"), 0);
    EXPECT_EQ(statusFromText("0xBFFF0011"), VI_ERROR_RSRC_NFOUND);
    EXPECT_EQ(statusFromText("-1073807343"), VI_ERROR_RSRC_NFOUND);
    EXPECT_EQ(statusFromText("3221159953"), VI_ERROR_RSRC_NFOUND);
    EXPECT_EQ(statusFromText("-0x1"), -1);
    EXPECT_EQ(statusFromText("-2147483648"), std::numeric_limits<ViStatus>::min());
    EXPECT_EQ(statusFromText("4294967295"), -1);
}

TEST(StatusNames, RefusesTheRest)
{
    for (const char* const text :
         {"", "-", "0x", "VI_", "vi_success", "VI_SUCCESS ", " 0", "+1", "1.0", "12x", "4294967296",
          "-2147483649", "0x100000000", "--1", "-VI_SUCCESS", "99999999999999999999999999"}) {
        EXPECT_FALSE(statusFromText(text)) << text;
    }
}
