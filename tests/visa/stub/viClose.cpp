// SPDX-License-Identifier: MIT
#include "tests/visa/stub/Stub.h"

[[gnu::visibility("default")]] ViStatus viClose(ViObject object)
{
    return stub::answer("viClose", object);
}

ViStatus stubCloseItself(ViObject object)
{
    return viClose(object);
}
