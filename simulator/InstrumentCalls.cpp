// SPDX-License-Identifier: MIT
// The exported calls that talk to an instrument.

#include "resourcemanager/CallFrame.h"
#include "simulator/Instrument.h"

#include <algorithm>
#include <string>

using namespace resourcemanager;
using simulator::Instrument;

namespace {

/// There are no events and no queues: only the arguments can be wrong.
ViStatus answerEventCall(Call call, ViSession session, ViEventType eventType, ViUInt16 mechanism,
                         ViStatus answer)
{
    return runCall(call, [&](CallRecord& record) {
        record.argument(session);
        record.hexArgument(eventType);
        record.argument(mechanism);
        if (handles().find<FindList>(session)) {
            return VI_ERROR_INV_OBJECT;
        }
        return onOpen<Object>(call, session, [&](const auto&) {
            return mechanism == 0 ? VI_ERROR_INV_MECH : answer;
        });
    });
}

} // namespace

QVVISA_EXPORTED ViStatus viWrite(ViSession session, const ViByte* buffer, ViUInt32 count,
                                 ViUInt32* written)
{
    return runCall(Call::Write, [&](CallRecord& record) {
        record.argument(session);
        const std::string_view message(reinterpret_cast<const char*>(buffer),
                                       buffer != nullptr ? count : 0);
        if (buffer != nullptr) {
            record.textArgument(message);
        } else {
            record.nullArgument();
        }
        record.argument(count);
        if (buffer == nullptr && handles().find<Instrument>(session)) {
            return VI_ERROR_USER_BUF;
        }
        return onOpen<Instrument>(Call::Write, session, [&](const auto& found) {
            found.object->write(message);
            if (written != nullptr) {
                *written = count;
            }
            record.result("count", count);
            return VI_SUCCESS;
        });
    });
}

QVVISA_EXPORTED ViStatus viRead(ViSession session, ViByte* buffer, ViUInt32 count, ViUInt32* got)
{
    return runCall(Call::Read, [&](CallRecord& record) {
        record.argument(session);
        record.argument(count);
        if (buffer == nullptr && handles().find<Instrument>(session)) {
            return VI_ERROR_USER_BUF;
        }
        return onOpen<Instrument>(Call::Read, session, [&](const auto& found) {
            std::string text;
            const ViStatus status = found.object->read(count, text);
            if (status >= 0) {
                std::copy(text.begin(), text.end(), buffer);
                if (got != nullptr) {
                    *got = static_cast<ViUInt32>(text.size());
                }
                record.result("data", text);
            }
            return status;
        });
    });
}

QVVISA_EXPORTED ViStatus viDisableEvent(ViSession session, ViEventType eventType,
                                        ViUInt16 mechanism)
{
    return answerEventCall(Call::DisableEvent, session, eventType, mechanism, VI_SUCCESS_EVENT_DIS);
}

QVVISA_EXPORTED ViStatus viDiscardEvents(ViSession session, ViEventType eventType,
                                         ViUInt16 mechanism)
{
    return answerEventCall(Call::DiscardEvents, session, eventType, mechanism,
                           VI_SUCCESS_QUEUE_EMPTY);
}
