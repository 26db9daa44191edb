// SPDX-License-Identifier: MIT
// The exported calls that open, close and describe objects.

#include "resourcemanager/CallFrame.h"
#include "resourcemanager/ClientBuffer.h"
#include "visa/StatusNames.h"

#include <memory>
#include <string>

using namespace resourcemanager;

namespace {

/// Exclusive lock, shared lock and loading the configuration together.
constexpr ViAccessMode allAccessModes = 7;

ViStatus open(CallRecord& record, ViSession session,
              const HandleTable::Found<ManagerSession>& found, const std::string& resource,
              ViSession* instrument)
{
    ResourceSource& source = found.manager->source();
    const auto name = source.parse(resource);
    if (!name) {
        return VI_ERROR_INV_RSRC_NAME;
    }
    std::shared_ptr<Object> opened;
    const ViStatus status = source.open(resource, *name, opened);
    if (status < 0 || opened == nullptr) {
        return status < 0 ? status : VI_ERROR_SYSTEM_ERROR;
    }
    opened->attributes().addReadOnly(VI_ATTR_RM_SESSION, AttributeTable::Width::Long, session);
    const ViSession handle = handles().add(std::move(opened), session);
    if (handle == VI_NULL) {
        return VI_ERROR_INV_OBJECT; // another thread has closed the session meanwhile
    }
    *instrument = handle;
    record.result("session", handle);
    return status;
}

} // namespace

QVVISA_EXPORTED ViStatus viOpen(ViSession session, ViConstString resource, ViAccessMode accessMode,
                                ViUInt32 openTimeout, ViSession* instrument)
{
    return runCall(Call::Open, [&](CallRecord& record) {
        record.argument(session);
        record.textArgument(resource);
        record.argument(accessMode);
        record.argument(openTimeout);
        return onOpen<ManagerSession>(Call::Open, session, [&](const auto& found) {
            if (instrument == nullptr) {
                return VI_ERROR_USER_BUF;
            }
            if (accessMode > allAccessModes) {
                return VI_ERROR_INV_ACC_MODE;
            }
            return open(record, session, found, resource != nullptr ? resource : "", instrument);
        });
    });
}

QVVISA_EXPORTED ViStatus viClose(ViObject object)
{
    return runCall(Call::Close, [&](CallRecord& record) {
        record.argument(object);
        if (object == VI_NULL) {
            return VI_WARN_NULL_OBJECT;
        }
        return onOpen<Object>(Call::Close, object, [&](const auto&) {
            return handles().close(object) ? VI_SUCCESS : VI_ERROR_INV_OBJECT;
        });
    });
}

QVVISA_EXPORTED ViStatus viSetAttribute(ViObject object, ViAttr attribute, ViAttrState value)
{
    return runCall(Call::SetAttribute, [&](CallRecord& record) {
        record.argument(object);
        record.hexArgument(attribute);
        record.argument(static_cast<std::uint64_t>(value));
        return onOpen<Object>(Call::SetAttribute, object, [&](const auto& found) {
            return found.object->attributes().set(attribute, value);
        });
    });
}

QVVISA_EXPORTED ViStatus viGetAttribute(ViObject object, ViAttr attribute, void* value)
{
    return runCall(Call::GetAttribute, [&](CallRecord& record) {
        record.argument(object);
        record.hexArgument(attribute);
        return onOpen<Object>(Call::GetAttribute, object, [&](const auto& found) {
            return value != nullptr ? found.object->attributes().get(attribute, value)
                                    : VI_ERROR_USER_BUF;
        });
    });
}

QVVISA_EXPORTED ViStatus viStatusDesc(ViObject object, ViStatus status, ViChar* description)
{
    return runCall(Call::StatusDesc, [&](CallRecord& record) {
        record.argument(object);
        record.hexArgument(static_cast<ViUInt32>(status));
        if (description == nullptr) {
            return VI_ERROR_USER_BUF;
        }
        const auto found = handles().find<Object>(object);
        const std::optional<ViStatus> planned =
            found ? found.manager->beginCall(Call::StatusDesc) : std::nullopt;
        if (planned.value_or(VI_SUCCESS) < 0) {
            return *planned;
        }
        const char* const known = visa::statusDescription(status);
        const std::string text =
            known != nullptr ? known : "Unknown status " + visa::statusName(status) + '.';
        copyText(text, description);
        record.result("description", text);
        return planned.value_or(known != nullptr ? VI_SUCCESS : VI_WARN_UNKNOWN_STATUS);
    });
}
