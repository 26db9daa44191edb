// SPDX-License-Identifier: MIT
#include "tests/visa/stub/Stub.h"

[[gnu::visibility("default")]] ViStatus viOpenDefaultRM(ViSession* session)
{
    return stub::answer("viOpenDefaultRM", session);
}
