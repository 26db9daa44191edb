// SPDX-License-Identifier: MIT
#include "tests/visa/stub/Stub.h"

[[gnu::visibility("default")]] ViStatus viSetAttribute(ViObject object, ViAttr attribute,
                                                       ViAttrState value)
{
    return stub::answer("viSetAttribute", object, attribute, value);
}
