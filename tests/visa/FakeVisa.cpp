// SPDX-License-Identifier: MIT
// A VISA library of the tests' own: every answer tells which call came with which arguments.
// LACKS (1 to 6) leaves one of the six calls out.
#include "visa/VisaApi.h"

#include <cstring>

#ifndef LACKS
#define LACKS 0
#endif

#if LACKS != 1
[[gnu::visibility("default")]] ViStatus viOpenDefaultRM(ViSession* session)
{
    *session = 101;
    return 1;
}
#endif

#if LACKS != 2
[[gnu::visibility("default")]] ViStatus viSetAttribute(ViObject object, ViAttr attribute,
                                                       ViAttrState value)
{
    return object == 11 && attribute == 0x0E5A0001 && value == 0x123456789ABCDEF0 ? 2 : -2;
}
#endif

#if LACKS != 3
[[gnu::visibility("default")]] ViStatus viFindRsrc(ViSession session, ViConstString expression,
                                                   ViFindList* findList, ViUInt32* count,
                                                   ViChar* description)
{
    *findList = session + 1;
    *count = 0xFFFFFFFF;
    std::strcpy(description, expression);
    return 3;
}
#endif

#if LACKS != 6
[[gnu::visibility("default")]] ViStatus viClose(ViObject object)
{
    return object == 77 ? 6 : -6;
}
#endif

#if LACKS != 4
[[gnu::visibility("default")]] ViStatus viFindNext(ViFindList findList, ViChar* description)
{
    std::strcpy(description, findList == 12 ? "next" : "?");
#if LACKS != 6
    // A library may use its own calls; they must be its own.
    return viClose(77) == 6 ? 4 : -4;
#else
    return 4;
#endif
}
#endif

#if LACKS != 5
[[gnu::visibility("default")]] ViStatus viParseRsrc(ViSession session, ViConstString resource,
                                                    ViUInt16* interfaceType,
                                                    ViUInt16* interfaceNumber)
{
    *interfaceType = static_cast<ViUInt16>(session);
    *interfaceNumber = static_cast<ViUInt16>(std::strlen(resource));
    return 5;
}
#endif
