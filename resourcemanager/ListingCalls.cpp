// SPDX-License-Identifier: MIT
// The exported calls that list and parse resources.

#include "resourcemanager/CallFrame.h"
#include "resourcemanager/ClientBuffer.h"

#include <memory>
#include <string>

using namespace resourcemanager;

namespace {

constexpr ViUInt32 noLimit = 0xFFFFFFFF;

/// What viParseRsrc and viParseRsrcEx have in common.
ViStatus parse(Call call, CallRecord& record, ViSession session, ViConstString resource,
               const std::function<void(ManagerSession&, const visa::ResourceName&)>& deliver)
{
    return onOpen<ManagerSession>(call, session, [&](const auto& found) {
        const auto name = found.manager->source().parse(resource != nullptr ? resource : "");
        if (!name) {
            return VI_ERROR_INV_RSRC_NAME;
        }
        record.result("type", name->interfaceType);
        record.result("number", name->interfaceNumber);
        deliver(*found.manager, *name);
        return VI_SUCCESS;
    });
}

SearchResult search(ManagerSession& manager, const std::string& text,
                    const SearchExpression& expression)
{
    const auto time = manager.attributes().numberSet(QV_ATTR_SEARCH_TIME);
    const auto kinds = manager.attributes().numberSet(QV_ATTR_SEARCH_KINDS);
    Search search{text,         expression,   std::chrono::steady_clock::now(),
                  std::nullopt, std::nullopt, manager.cancellation()};
    if (time) {
        search.searchTime = std::chrono::milliseconds(*time);
    }
    if (kinds) {
        search.searchKinds = static_cast<ViUInt32>(*kinds);
    }
    return manager.source().search(search);
}

/// Null pointers for the list and the count mean that the client does not want them.
ViStatus find(CallRecord& record, ViSession session, ViConstString text, ViFindList* findList,
              ViUInt32* count, ViChar* description)
{
    const std::shared_ptr<ManagerSession> manager = handles().find<ManagerSession>(session).object;
    if (manager == nullptr) {
        return VI_ERROR_INV_OBJECT;
    }
    if (description == nullptr) {
        return VI_ERROR_USER_BUF;
    }
    const std::string expressionText = text != nullptr ? text : "";
    const auto expression = SearchExpression::compile(expressionText);
    if (!expression) {
        return VI_ERROR_INV_EXPR;
    }
    const ViStatus planned =
        manager->beginCall(Call::FindRsrc, expressionText).value_or(VI_SUCCESS);
    if (planned < 0) {
        return planned;
    }
    SearchResult result = search(*manager, expressionText, *expression);
    if (manager->cancellation().isCancelled()) {
        return VI_ERROR_INV_OBJECT;
    }
    if (result.descriptions.empty() && !result.count) {
        return VI_ERROR_RSRC_NFOUND;
    }
    const auto found =
        static_cast<ViUInt32>(std::min<std::size_t>(result.descriptions.size(), noLimit));
    const std::string first = result.descriptions.empty() ? "" : result.descriptions.front();
    if (findList != nullptr) {
        const ViFindList list =
            handles().add(std::make_shared<FindList>(std::move(result.descriptions)), session);
        if (list == VI_NULL) {
            return VI_ERROR_INV_OBJECT; // another thread has closed the session meanwhile
        }
        *findList = list;
        record.result("list", list);
    }
    if (count != nullptr) {
        *count = result.count.value_or(found);
        record.result("count", *count);
    }
    copyDescription(first, description);
    record.result("description", first);
    return planned;
}

} // namespace

QVVISA_EXPORTED ViStatus viOpenDefaultRM(ViSession* session)
{
    return runCall(Call::OpenDefaultRM, [&](CallRecord& record) {
        if (session == nullptr) {
            return VI_ERROR_USER_BUF;
        }
        const auto manager = std::make_shared<ManagerSession>(openResourceSource());
        const ViStatus planned = manager->beginCall(Call::OpenDefaultRM).value_or(VI_SUCCESS);
        if (planned >= 0) {
            *session = handles().add(manager);
            record.result("session", *session);
        }
        return planned;
    });
}

QVVISA_EXPORTED ViStatus viFindRsrc(ViSession session, ViConstString expression,
                                    ViFindList* findList, ViUInt32* count, ViChar* description)
{
    return runCall(Call::FindRsrc, [&](CallRecord& record) {
        record.argument(session);
        record.textArgument(expression);
        return find(record, session, expression, findList, count, description);
    });
}

QVVISA_EXPORTED ViStatus viFindNext(ViFindList findList, ViChar* description)
{
    return runCall(Call::FindNext, [&](CallRecord& record) {
        record.argument(findList);
        const auto list = handles().find<FindList>(findList);
        if (!list) {
            return VI_ERROR_INV_OBJECT;
        }
        if (description == nullptr) {
            return VI_ERROR_USER_BUF;
        }
        const std::uint32_t step = list.object->nextStep();
        const ViStatus planned =
            list.manager->beginNthCall(Call::FindNext, step, {}).value_or(VI_SUCCESS);
        if (planned < 0) {
            return planned;
        }
        const std::string* const match = list.object->match(step);
        if (match == nullptr) {
            return VI_ERROR_RSRC_NFOUND;
        }
        copyDescription(*match, description);
        record.result("description", *match);
        return planned;
    });
}

QVVISA_EXPORTED ViStatus viParseRsrc(ViSession session, ViConstString resource,
                                     ViUInt16* interfaceType, ViUInt16* interfaceNumber)
{
    return runCall(Call::ParseRsrc, [&](CallRecord& record) {
        record.argument(session);
        record.textArgument(resource);
        if (interfaceType == nullptr || interfaceNumber == nullptr) {
            return VI_ERROR_USER_BUF;
        }
        return parse(Call::ParseRsrc, record, session, resource,
                     [&](ManagerSession&, const visa::ResourceName& name) {
                         *interfaceType = name.interfaceType;
                         *interfaceNumber = name.interfaceNumber;
                     });
    });
}

QVVISA_EXPORTED ViStatus viParseRsrcEx(ViSession session, ViConstString resource,
                                       ViUInt16* interfaceType, ViUInt16* interfaceNumber,
                                       ViChar* resourceClass, ViChar* expandedName, ViChar* alias)
{
    return runCall(Call::ParseRsrcEx, [&](CallRecord& record) {
        record.argument(session);
        record.textArgument(resource);
        if (interfaceType == nullptr || interfaceNumber == nullptr || resourceClass == nullptr ||
            expandedName == nullptr || alias == nullptr) {
            return VI_ERROR_USER_BUF;
        }
        return parse(Call::ParseRsrcEx, record, session, resource,
                     [&](ManagerSession& manager, const visa::ResourceName& name) {
                         const std::string aliasText = manager.source().alias(name);
                         *interfaceType = name.interfaceType;
                         *interfaceNumber = name.interfaceNumber;
                         copyText(name.resourceClass, resourceClass);
                         copyText(name.fullName, expandedName);
                         copyText(aliasText, alias);
                         record.result("class", name.resourceClass);
                         record.result("name", name.fullName);
                         if (!aliasText.empty()) {
                             record.result("alias", aliasText);
                         }
                     });
    });
}
