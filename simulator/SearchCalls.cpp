// SPDX-License-Identifier: MIT
// The calls that a client lists resources with.

#include "simulator/BenchEnvironment.h"
#include "simulator/CallFrame.h"
#include "simulator/ClientBuffer.h"
#include "simulator/FindList.h"
#include "simulator/Hold.h"
#include "simulator/ResourceLookup.h"
#include "simulator/ResourceManagerSession.h"
#include "simulator/SearchExpression.h"
#include "simulator/VisaClientApi.h"

#include <algorithm>
#include <memory>
#include <string>

namespace {

using simulator::Bench;
using simulator::Call;
using simulator::CallLog;
using simulator::FindList;
using simulator::finishCall;
using simulator::handles;
using simulator::ResourceManagerSession;

/// Hands out a match and answers its text without end.
std::string deliver(const Bench& bench, const Bench::Hit& hit, ViChar* description)
{
    std::string text = bench.delivered(hit);
    std::copy(text.begin(), text.end(), description);
    if (text.back() == '\0') {
        text.pop_back();
    }
    return text;
}

ViStatus parse(Call call, CallLog& log, ViSession session, ViConstString resource,
               visa::ResourceName& name)
{
    const auto manager = handles().find<ResourceManagerSession>(session);
    if (manager == nullptr) {
        return VI_ERROR_INV_OBJECT;
    }
    const ViStatus planned = manager->countCall(call).value_or(VI_SUCCESS);
    if (planned < 0) {
        return planned;
    }
    const auto parsed = simulator::lookUp(manager->bench(), resource != nullptr ? resource : "");
    if (!parsed) {
        return VI_ERROR_INV_RSRC_NAME;
    }
    name = *parsed;
    log.result("type", name.interfaceType);
    log.result("number", name.interfaceNumber);
    return planned;
}

/// Null pointers for the list and the count mean that the client does not want them.
ViStatus find(CallLog& log, ViSession session, ViConstString text, ViFindList* findList,
              ViUInt32* count, ViChar* description)
{
    const auto manager = handles().find<ResourceManagerSession>(session);
    if (manager == nullptr) {
        return VI_ERROR_INV_OBJECT;
    }
    if (description == nullptr) {
        return VI_ERROR_USER_BUF;
    }
    const std::string expressionText = text != nullptr ? text : "";
    const auto expression = simulator::SearchExpression::compile(expressionText);
    if (!expression) {
        return VI_ERROR_INV_EXPR;
    }
    const Bench& bench = manager->bench();
    const ViStatus planned =
        manager->countCall(Call::FindRsrc, expressionText).value_or(VI_SUCCESS);
    if (planned < 0) {
        return planned;
    }
    std::vector<Bench::Hit> hits = expression->search(bench);
    const std::optional<ViUInt32> toldCount = bench.count(expressionText);
    if (hits.empty() && !toldCount) {
        return VI_ERROR_RSRC_NFOUND;
    }
    const auto trueCount = static_cast<ViUInt32>(hits.size());
    const std::optional<Bench::Hit> first =
        hits.empty() ? std::nullopt : std::optional(hits.front());
    if (findList != nullptr) {
        const ViFindList list =
            handles().add(std::make_shared<FindList>(manager, std::move(hits)), session);
        if (list == VI_NULL) {
            return VI_ERROR_INV_OBJECT; // another thread has closed the session meanwhile
        }
        *findList = list;
        log.result("list", list);
    }
    if (count != nullptr) {
        *count = toldCount.value_or(trueCount);
        log.result("count", *count);
    }
    if (first) {
        log.result("description", deliver(bench, *first, description));
    } else {
        *description = '\0';
        log.result("description", "");
    }
    return planned;
}

} // namespace

[[gnu::visibility("default")]] ViStatus viOpenDefaultRM(ViSession* session)
{
    CallLog log(Call::OpenDefaultRM);
    return finishCall(log, [&]() -> ViStatus {
        if (session == nullptr) {
            return VI_ERROR_USER_BUF;
        }
        const auto manager =
            std::make_shared<ResourceManagerSession>(simulator::benchFromEnvironment());
        const ViStatus planned = manager->countCall(Call::OpenDefaultRM).value_or(VI_SUCCESS);
        if (planned >= 0) {
            *session = handles().add(manager);
            log.result("session", *session);
        }
        return planned;
    });
}

[[gnu::visibility("default")]] ViStatus viFindRsrc(ViSession session, ViConstString expression,
                                                   ViFindList* findList, ViUInt32* count,
                                                   ViChar* description)
{
    CallLog log(Call::FindRsrc);
    return finishCall(log, [&] {
        log.argument(session);
        log.textArgument(expression);
        return find(log, session, expression, findList, count, description);
    });
}

[[gnu::visibility("default")]] ViStatus viFindNext(ViFindList findList, ViChar* description)
{
    CallLog log(Call::FindNext);
    return finishCall(log, [&]() -> ViStatus {
        log.argument(findList);
        const auto list = handles().find<FindList>(findList);
        if (list == nullptr) {
            return VI_ERROR_INV_OBJECT;
        }
        if (description == nullptr) {
            return VI_ERROR_USER_BUF;
        }
        const Bench& bench = list->manager().bench();
        const FindList::Step step = list->advance();
        simulator::hold(bench, Call::FindNext, step.number);
        const ViStatus planned = bench.status(Call::FindNext, step.number).value_or(VI_SUCCESS);
        if (planned < 0) {
            return planned;
        }
        if (!step.hit) {
            return VI_ERROR_RSRC_NFOUND;
        }
        log.result("description", deliver(bench, *step.hit, description));
        return planned;
    });
}

[[gnu::visibility("default")]] ViStatus viParseRsrc(ViSession session, ViConstString resource,
                                                    ViUInt16* interfaceType,
                                                    ViUInt16* interfaceNumber)
{
    CallLog log(Call::ParseRsrc);
    return finishCall(log, [&]() -> ViStatus {
        log.argument(session);
        log.textArgument(resource);
        if (interfaceType == nullptr || interfaceNumber == nullptr) {
            return VI_ERROR_USER_BUF;
        }
        visa::ResourceName name;
        const ViStatus status = parse(Call::ParseRsrc, log, session, resource, name);
        if (status >= 0) {
            *interfaceType = name.interfaceType;
            *interfaceNumber = name.interfaceNumber;
        }
        return status;
    });
}

[[gnu::visibility("default")]] ViStatus
viParseRsrcEx(ViSession session, ViConstString resource, ViUInt16* interfaceType,
              ViUInt16* interfaceNumber, ViChar* resourceClass, ViChar* expandedName, ViChar* alias)
{
    CallLog log(Call::ParseRsrcEx);
    return finishCall(log, [&]() -> ViStatus {
        log.argument(session);
        log.textArgument(resource);
        if (interfaceType == nullptr || interfaceNumber == nullptr || resourceClass == nullptr ||
            expandedName == nullptr || alias == nullptr) {
            return VI_ERROR_USER_BUF;
        }
        visa::ResourceName name;
        const ViStatus status = parse(Call::ParseRsrcEx, log, session, resource, name);
        if (status >= 0) {
            *interfaceType = name.interfaceType;
            *interfaceNumber = name.interfaceNumber;
            simulator::copyText(name.resourceClass, resourceClass);
            simulator::copyText(name.fullName, expandedName);
            simulator::copyText("", alias);
            log.result("class", name.resourceClass);
            log.result("name", name.fullName);
        }
        return status;
    });
}
