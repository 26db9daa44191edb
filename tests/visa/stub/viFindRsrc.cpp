// SPDX-License-Identifier: MIT
#include "tests/visa/stub/Stub.h"

[[gnu::visibility("default")]] ViStatus viFindRsrc(ViSession session, ViConstString expression,
                                                   ViFindList* findList, ViUInt32* count,
                                                   ViChar* description)
{
    return stub::answer("viFindRsrc", session, expression, findList, count, description);
}
