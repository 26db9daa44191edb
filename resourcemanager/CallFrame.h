// SPDX-License-Identifier: MIT
#pragma once

#include "resourcemanager/CallRecord.h"
#include "resourcemanager/Sessions.h"
#include "resourcemanager/VisaCalls.h"
#include "visa/NoExceptions.h"

#include <new>
#include <optional>

/// Marks the definition of an exported call.
#define QVVISA_EXPORTED [[gnu::visibility("default")]]

namespace resourcemanager {

/// The frame of every exported call: runs its body, ViStatus(CallRecord&), and hands the record to
/// the call log. No exception reaches the client.
template <typename Body>
ViStatus runCall(Call call, Body body)
{
    return visa::withoutExceptions([&] {
        ViStatus status = VI_ERROR_ALLOC;
        try {
            const auto log = callLog();
            CallRecord record(call, log != nullptr);
            status = body(record);
            if (log != nullptr) {
                log(record.line(status));
            }
        } catch (const std::bad_alloc&) {
            status = VI_ERROR_ALLOC;
        }
        return status;
    });
}

/// Runs the work of a call on an open object, ViStatus(const HandleTable::Found<T>&): a negative
/// status planned by the source replaces it, any other replaces its success.
template <typename T, typename Work>
ViStatus onOpen(Call call, ViObject handle, Work work)
{
    const HandleTable::Found<T> found = handles().find<T>(handle);
    if (!found) {
        return VI_ERROR_INV_OBJECT;
    }
    const std::optional<ViStatus> planned = found.manager->beginCall(call);
    if (planned.value_or(VI_SUCCESS) < 0) {
        return *planned;
    }
    const ViStatus status = work(found);
    return status < 0 ? status : planned.value_or(status);
}

} // namespace resourcemanager
