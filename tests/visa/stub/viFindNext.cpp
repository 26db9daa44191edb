// SPDX-License-Identifier: MIT
#include "tests/visa/stub/Stub.h"

[[gnu::visibility("default")]] ViStatus viFindNext(ViFindList findList, ViChar* description)
{
    return stub::answer("viFindNext", findList, description);
}
