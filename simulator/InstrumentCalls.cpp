// SPDX-License-Identifier: MIT
// The calls that a client talks to an instrument with.

#include "simulator/CallFrame.h"
#include "simulator/InstrumentSession.h"
#include "simulator/ResourceLookup.h"
#include "simulator/ResourceManagerSession.h"
#include "simulator/VisaClientApi.h"

#include <algorithm>
#include <memory>
#include <string>

namespace {

using simulator::Call;
using simulator::CallLog;
using simulator::finishCall;
using simulator::handles;
using simulator::InstrumentSession;
using simulator::ResourceManagerSession;

/// The highest access mode: exclusive lock, shared lock and loading the configuration together.
constexpr ViAccessMode allAccessModes = 7;

ViStatus open(CallLog& log, ViSession session, ViConstString resource, ViAccessMode accessMode,
              ViSession* instrument)
{
    const auto manager = handles().find<ResourceManagerSession>(session);
    if (manager == nullptr) {
        return VI_ERROR_INV_OBJECT;
    }
    if (instrument == nullptr) {
        return VI_ERROR_USER_BUF;
    }
    const ViStatus planned = manager->countCall(Call::Open).value_or(VI_SUCCESS);
    if (planned < 0) {
        return planned;
    }
    if (accessMode > allAccessModes) {
        return VI_ERROR_INV_ACC_MODE;
    }
    const std::string text = resource != nullptr ? resource : "";
    const auto name = simulator::lookUp(manager->bench(), text);
    if (!name) {
        return VI_ERROR_INV_RSRC_NAME;
    }
    const simulator::BenchResource* const known = manager->bench().find(text);
    if (known == nullptr) {
        return VI_ERROR_RSRC_NFOUND;
    }
    const ViSession opened = handles().add(
        std::make_shared<InstrumentSession>(manager, session, *name, known->identification),
        session);
    if (opened == VI_NULL) {
        return VI_ERROR_INV_OBJECT; // another thread has closed the session meanwhile
    }
    *instrument = opened;
    log.result("session", opened);
    return planned;
}

} // namespace

[[gnu::visibility("default")]] ViStatus viOpen(ViSession session, ViConstString resource,
                                               ViAccessMode accessMode, ViUInt32 openTimeout,
                                               ViSession* instrument)
{
    CallLog log(Call::Open);
    return finishCall(log, [&] {
        log.argument(session);
        log.textArgument(resource);
        log.argument(accessMode);
        log.argument(openTimeout);
        return open(log, session, resource, accessMode, instrument);
    });
}

[[gnu::visibility("default")]] ViStatus viWrite(ViSession session, const ViByte* buffer,
                                                ViUInt32 count, ViUInt32* written)
{
    CallLog log(Call::Write);
    return finishCall(log, [&]() -> ViStatus {
        log.argument(session);
        const std::string_view message(reinterpret_cast<const char*>(buffer),
                                       buffer != nullptr ? count : 0);
        if (buffer != nullptr) {
            log.textArgument(message);
        } else {
            log.nullArgument();
        }
        log.argument(count);
        const auto instrument = handles().find<InstrumentSession>(session);
        if (instrument == nullptr) {
            return VI_ERROR_INV_OBJECT;
        }
        if (buffer == nullptr) {
            return VI_ERROR_USER_BUF;
        }
        const ViStatus planned = instrument->manager().countCall(Call::Write).value_or(VI_SUCCESS);
        if (planned < 0) {
            return planned;
        }
        instrument->write(message);
        if (written != nullptr) {
            *written = count;
        }
        log.result("count", count);
        return planned;
    });
}

[[gnu::visibility("default")]] ViStatus viRead(ViSession session, ViByte* buffer, ViUInt32 count,
                                               ViUInt32* got)
{
    CallLog log(Call::Read);
    return finishCall(log, [&]() -> ViStatus {
        log.argument(session);
        log.argument(count);
        const auto instrument = handles().find<InstrumentSession>(session);
        if (instrument == nullptr) {
            return VI_ERROR_INV_OBJECT;
        }
        if (buffer == nullptr) {
            return VI_ERROR_USER_BUF;
        }
        const std::optional<ViStatus> planned = instrument->manager().countCall(Call::Read);
        if (planned.value_or(VI_SUCCESS) < 0) {
            return *planned;
        }
        std::string text;
        const ViStatus status = instrument->read(count, text);
        if (status < 0) {
            return status;
        }
        std::copy(text.begin(), text.end(), buffer);
        if (got != nullptr) {
            *got = static_cast<ViUInt32>(text.size());
        }
        log.result("data", text);
        return planned.value_or(status);
    });
}
