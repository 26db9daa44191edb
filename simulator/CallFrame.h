// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/CallLog.h"
#include "simulator/HandleTable.h"
#include "simulator/VisaClientApi.h"

#include <new>

namespace simulator {

/// The process's open sessions and find lists.
HandleTable& handles();

/// Runs the body of a call, ViStatus(), and logs the call. Nothing thrown reaches the client.
template <typename Body>
ViStatus finishCall(const CallLog& log, Body body)
{
    ViStatus status = VI_ERROR_SYSTEM_ERROR;
    try {
        status = body();
        log.finish(status);
    } catch (const std::bad_alloc&) {
        status = VI_ERROR_ALLOC;
    } catch (...) {
        status = VI_ERROR_SYSTEM_ERROR;
    }
    return status;
}

} // namespace simulator
