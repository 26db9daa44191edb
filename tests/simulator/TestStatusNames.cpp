// SPDX-License-Identifier: MIT
#include "simulator/StatusNames.h"
#include "simulator/VisaClientApi.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

using simulator::statusFromText;
using simulator::statusName;

TEST(StatusNames, NamesAndCodesBelongTogether)
{
    EXPECT_EQ(statusName(VI_SUCCESS), "VI_SUCCESS");
    EXPECT_EQ(statusName(VI_ERROR_RSRC_NFOUND), "VI_ERROR_RSRC_NFOUND");
    EXPECT_EQ(statusName(VI_WARN_NULL_OBJECT), "VI_WARN_NULL_OBJECT");
    EXPECT_EQ(statusName(VI_ERROR_INV_SESSION), "VI_ERROR_INV_OBJECT");
    EXPECT_EQ(statusName(1), "0x00000001");
    EXPECT_EQ(statusName(-1), "0xFFFFFFFF");

    for (const ViStatus status : {VI_SUCCESS,
                                  VI_SUCCESS_EVENT_DIS,
                                  VI_SUCCESS_QUEUE_EMPTY,
                                  VI_SUCCESS_TERM_CHAR,
                                  VI_SUCCESS_MAX_CNT,
                                  VI_WARN_NULL_OBJECT,
                                  VI_ERROR_SYSTEM_ERROR,
                                  VI_ERROR_INV_OBJECT,
                                  VI_ERROR_INV_EXPR,
                                  VI_ERROR_RSRC_NFOUND,
                                  VI_ERROR_INV_RSRC_NAME,
                                  VI_ERROR_INV_ACC_MODE,
                                  VI_ERROR_TMO,
                                  VI_ERROR_NSUP_ATTR,
                                  VI_ERROR_NSUP_ATTR_STATE,
                                  VI_ERROR_ATTR_READONLY,
                                  VI_ERROR_INV_EVENT,
                                  VI_ERROR_INV_MECH,
                                  VI_ERROR_ALLOC,
                                  VI_ERROR_USER_BUF,
                                  VI_ERROR_LIBRARY_NFOUND}) {
        EXPECT_EQ(statusName(status).substr(0, 3), "VI_") << status;
        EXPECT_EQ(statusFromText(statusName(status)), status);
    }
    EXPECT_EQ(statusFromText("VI_ERROR_INV_SESSION"), VI_ERROR_INV_SESSION);
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
