// SPDX-License-Identifier: MIT
#include "tests/visa/stub/Stub.h"

[[gnu::visibility("default")]] ViStatus viParseRsrc(ViSession session, ViConstString resource,
                                                    ViUInt16* interfaceType,
                                                    ViUInt16* interfaceNumber)
{
    return stub::answer("viParseRsrc", session, resource, interfaceType, interfaceNumber);
}
