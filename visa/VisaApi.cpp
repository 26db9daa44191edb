// SPDX-License-Identifier: MIT
#include "visa/VisaApi.h"

#include "visa/VisaLibrary.h"

namespace {

template <typename Call, typename... Arguments>
ViStatus forward(Call visa::VisaLibrary::Calls::*call, Arguments... arguments)
{
    const Call target = visa::VisaLibrary::instance().calls().*call;
    return target != nullptr ? target(arguments...) : VI_ERROR_LIBRARY_NFOUND;
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
