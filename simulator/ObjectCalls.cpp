// SPDX-License-Identifier: MIT
// The calls that every object has: attributes, events, closing.

#include "simulator/CallFrame.h"
#include "simulator/FindList.h"
#include "simulator/InstrumentSession.h"
#include "simulator/ResourceManagerSession.h"
#include "simulator/VisaClientApi.h"

#include <memory>

namespace {

using simulator::AttributeTable;
using simulator::Call;
using simulator::CallLog;
using simulator::FindList;
using simulator::finishCall;
using simulator::handles;
using simulator::InstrumentSession;
using simulator::ResourceManagerSession;

/// An open object seen as what all kinds have in common. The pointers keep it alive.
struct OpenObject
{
    explicit OpenObject(ViObject handle)
        : manager(handles().find<ResourceManagerSession>(handle)),
          instrument(handles().find<InstrumentSession>(handle)),
          list(handles().find<FindList>(handle))
    {}

    /// The session to the resource manager that the object is or belongs to; null for none.
    ResourceManagerSession* home() const
    {
        if (instrument != nullptr) {
            return &instrument->manager();
        }
        return list != nullptr ? &list->manager() : manager.get();
    }

    /// Null for a find list, which has no attributes.
    AttributeTable* attributes() const
    {
        if (instrument != nullptr) {
            return &instrument->attributes();
        }
        return manager != nullptr ? &manager->attributes() : nullptr;
    }

    std::shared_ptr<ResourceManagerSession> manager;
    std::shared_ptr<InstrumentSession> instrument;
    std::shared_ptr<FindList> list;
};

/// The shape of a call on an open object: the bench's status goes before the work, and a warning
/// from the bench takes the place of success.
template <typename Work>
ViStatus onOpenObject(Call call, ViObject handle, Work work)
{
    const OpenObject object(handle);
    ResourceManagerSession* const home = object.home();
    if (home == nullptr) {
        return VI_ERROR_INV_OBJECT;
    }
    const std::optional<ViStatus> planned = home->countCall(call);
    if (planned.value_or(VI_SUCCESS) < 0) {
        return *planned;
    }
    const ViStatus status = work(object);
    return status < 0 ? status : planned.value_or(status);
}

/// No events and no queues here: only the arguments can be wrong.
ViStatus answerEventCall(Call call, ViSession session, ViUInt16 mechanism, ViStatus answer)
{
    return onOpenObject(call, session, [&](const OpenObject& object) {
        if (object.list != nullptr) {
            return VI_ERROR_INV_OBJECT;
        }
        return mechanism == 0 ? VI_ERROR_INV_MECH : answer;
    });
}

} // namespace

[[gnu::visibility("default")]] ViStatus viClose(ViObject object)
{
    CallLog log(Call::Close);
    return finishCall(log, [&]() -> ViStatus {
        log.argument(object);
        if (object == VI_NULL) {
            return VI_WARN_NULL_OBJECT;
        }
        return onOpenObject(Call::Close, object, [&](const OpenObject&) {
            return handles().close(object) ? VI_SUCCESS : VI_ERROR_INV_OBJECT;
        });
    });
}

[[gnu::visibility("default")]] ViStatus viSetAttribute(ViObject object, ViAttr attribute,
                                                       ViAttrState value)
{
    CallLog log(Call::SetAttribute);
    return finishCall(log, [&] {
        log.argument(object);
        log.hexArgument(attribute);
        log.argument(static_cast<std::uint64_t>(value));
        return onOpenObject(Call::SetAttribute, object, [&](const OpenObject& open) {
            AttributeTable* const attributes = open.attributes();
            return attributes != nullptr ? attributes->set(attribute, value) : VI_ERROR_NSUP_ATTR;
        });
    });
}

[[gnu::visibility("default")]] ViStatus viGetAttribute(ViObject object, ViAttr attribute,
                                                       void* value)
{
    CallLog log(Call::GetAttribute);
    return finishCall(log, [&] {
        log.argument(object);
        log.hexArgument(attribute);
        return onOpenObject(Call::GetAttribute, object, [&](const OpenObject& open) {
            AttributeTable* const attributes = open.attributes();
            if (value == nullptr) {
                return VI_ERROR_USER_BUF;
            }
            return attributes != nullptr ? attributes->get(attribute, value) : VI_ERROR_NSUP_ATTR;
        });
    });
}

[[gnu::visibility("default")]] ViStatus viDisableEvent(ViSession session, ViEventType eventType,
                                                       ViUInt16 mechanism)
{
    CallLog log(Call::DisableEvent);
    return finishCall(log, [&] {
        log.argument(session);
        log.hexArgument(eventType);
        log.argument(mechanism);
        return answerEventCall(Call::DisableEvent, session, mechanism, VI_SUCCESS_EVENT_DIS);
    });
}

[[gnu::visibility("default")]] ViStatus viDiscardEvents(ViSession session, ViEventType eventType,
                                                        ViUInt16 mechanism)
{
    CallLog log(Call::DiscardEvents);
    return finishCall(log, [&] {
        log.argument(session);
        log.hexArgument(eventType);
        log.argument(mechanism);
        return answerEventCall(Call::DiscardEvents, session, mechanism, VI_SUCCESS_QUEUE_EMPTY);
    });
}
