// SPDX-License-Identifier: MIT
#include "visa/VisaApi.h"

#include "visa/NoExceptions.h"
#include "visa/VisaLibrary.h"

namespace {

template <typename Call, typename... Arguments>
ViStatus forward(Call visa::VisaLibrary::Calls::*call, Arguments... arguments)
{
    return visa::withoutExceptions([=] {
        const visa::VisaLibrary& library = visa::VisaLibrary::instance();
        const Call target = library.calls().*call;
        return target != nullptr ? target(arguments...) : library.statusWithout();
    });
}

} // namespace

using Calls = visa::VisaLibrary::Calls;

ViStatus viOpenDefaultRM(ViSession* session)
{
    return forward(&Calls::openDefaultRM, session);
}

ViStatus viSetAttribute(ViObject object, ViAttr attribute, ViAttrState value)
{
    return forward(&Calls::setAttribute, object, attribute, value);
}

ViStatus viFindRsrc(ViSession session, ViConstString expression, ViFindList* findList,
                    ViUInt32* count, ViChar* description)
{
    return forward(&Calls::findRsrc, session, expression, findList, count, description);
}

ViStatus viFindNext(ViFindList findList, ViChar* description)
{
    return forward(&Calls::findNext, findList, description);
}

ViStatus viParseRsrc(ViSession session, ViConstString resource, ViUInt16* interfaceType,
                     ViUInt16* interfaceNumber)
{
    return forward(&Calls::parseRsrc, session, resource, interfaceType, interfaceNumber);
}

ViStatus viClose(ViObject object)
{
    return forward(&Calls::close, object);
}
