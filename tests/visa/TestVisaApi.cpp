// SPDX-License-Identifier: MIT
#include "visa/VisaApi.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

// The widths of the published binding for 64-bit machines; a library was built with them.
static_assert(sizeof(ViChar) == 1);
static_assert(sizeof(ViUInt16) == 2 && std::is_unsigned_v<ViUInt16>);
static_assert(sizeof(ViUInt32) == 4 && std::is_unsigned_v<ViUInt32>);
static_assert(sizeof(ViInt32) == 4 && std::is_signed_v<ViInt32>);
static_assert(sizeof(ViStatus) == 4 && std::is_signed_v<ViStatus>);
static_assert(sizeof(ViObject) == 4 && std::is_unsigned_v<ViObject>);
static_assert(sizeof(ViSession) == 4 && std::is_unsigned_v<ViSession>);
static_assert(sizeof(ViFindList) == 4 && std::is_unsigned_v<ViFindList>);
static_assert(sizeof(ViAttr) == 4 && std::is_unsigned_v<ViAttr>);
static_assert(sizeof(ViAttrState) == sizeof(void*) && std::is_unsigned_v<ViAttrState>);
static_assert(std::is_same_v<ViConstString, const char*>);

static_assert(std::is_same_v<decltype(viOpenDefaultRM), ViStatus(ViSession*)>);
static_assert(std::is_same_v<decltype(viSetAttribute), ViStatus(ViObject, ViAttr, ViAttrState)>);
static_assert(std::is_same_v<decltype(viFindRsrc),
                             ViStatus(ViSession, const char*, ViFindList*, ViUInt32*, char*)>);
static_assert(std::is_same_v<decltype(viFindNext), ViStatus(ViFindList, char*)>);
static_assert(
    std::is_same_v<decltype(viParseRsrc), ViStatus(ViSession, const char*, ViUInt16*, ViUInt16*)>);
static_assert(std::is_same_v<decltype(viClose), ViStatus(ViObject)>);

TEST(VisaApi, HasThePublishedValues)
{
    EXPECT_EQ(VI_FIND_BUFLEN, 256);
    EXPECT_EQ(VI_NULL, 0U);
    EXPECT_EQ(VI_SUCCESS, 0);
    EXPECT_EQ(VI_ERROR_SYSTEM_ERROR, -1073807360);
    EXPECT_EQ(VI_ERROR_INV_OBJECT, -1073807346);
    EXPECT_EQ(VI_ERROR_RSRC_NFOUND, -1073807343);
    EXPECT_EQ(VI_ERROR_LIBRARY_NFOUND, -1073807202);
}

} // namespace
