// SPDX-License-Identifier: MIT
#include "visa/StatusNames.h"

#include "visa/Text.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace visa {

namespace {

struct NamedStatus
{
    const char* name;
    ViUInt32 code;
    const char* description;
};

// Two names share a code; statusName() answers the first.
constexpr NamedStatus statuses[] = {
    {"VI_SUCCESS", 0x00000000U, "Operation completed."},
    {"VI_SUCCESS_EVENT_EN", 0x3FFF0002U,
     "The event was already enabled for at least one of the mechanisms."},
    {"VI_SUCCESS_EVENT_DIS", 0x3FFF0003U,
     "The event was already disabled for at least one of the mechanisms."},
    {"VI_SUCCESS_QUEUE_EMPTY", 0x3FFF0004U, "The event queue was already empty."},
    {"VI_SUCCESS_TERM_CHAR", 0x3FFF0005U, "The termination character was read."},
    {"VI_SUCCESS_MAX_CNT", 0x3FFF0006U, "As many bytes as requested were read; more may follow."},
    {"VI_SUCCESS_DEV_NPRESENT", 0x3FFF007DU,
     "The session is open, but the device does not respond."},
    {"VI_SUCCESS_TRIG_MAPPED", 0x3FFF007EU, "The trigger path was already mapped."},
    {"VI_SUCCESS_QUEUE_NEMPTY", 0x3FFF0080U, "An event was delivered; more are in the queue."},
    {"VI_SUCCESS_NCHAIN", 0x3FFF0098U, "The event was handled; no further handlers are called."},
    {"VI_SUCCESS_NESTED_SHARED", 0x3FFF0099U, "The shared lock is held more than once."},
    {"VI_SUCCESS_NESTED_EXCLUSIVE", 0x3FFF009AU, "The exclusive lock is held more than once."},
    {"VI_SUCCESS_SYNC", 0x3FFF009BU, "The operation was done synchronously."},
    {"VI_WARN_QUEUE_OVERFLOW", 0x3FFF000CU, "Events were lost because the event queue is full."},
    {"VI_WARN_CONFIG_NLOADED", 0x3FFF0077U,
     "The configuration does not exist or cannot be loaded; defaults are used."},
    {"VI_WARN_NULL_OBJECT", 0x3FFF0082U, "The object is the null object."},
    {"VI_WARN_NSUP_ATTR_STATE", 0x3FFF0084U,
     "The attribute value is valid, but not supported here."},
    {"VI_WARN_UNKNOWN_STATUS", 0x3FFF0085U, "The status code is unknown."},
    {"VI_WARN_NSUP_BUF", 0x3FFF0088U, "The buffer is not supported."},
    {"VI_WARN_EXT_FUNC_NIMPL", 0x3FFF00A9U,
     "The operation succeeded, but an extended function is not implemented."},
    {"VI_ERROR_SYSTEM_ERROR", 0xBFFF0000U, "Unknown system error."},
    {"VI_ERROR_INV_OBJECT", 0xBFFF000EU, "The session, find list or event is not open."},
    {"VI_ERROR_INV_SESSION", 0xBFFF000EU, "The session, find list or event is not open."},
    {"VI_ERROR_RSRC_LOCKED", 0xBFFF000FU, "The resource is locked by another session."},
    {"VI_ERROR_INV_EXPR", 0xBFFF0010U, "The search expression is malformed."},
    {"VI_ERROR_RSRC_NFOUND", 0xBFFF0011U,
     "No such resource was found, or the device is not present."},
    {"VI_ERROR_INV_RSRC_NAME", 0xBFFF0012U, "The resource string is malformed."},
    {"VI_ERROR_INV_ACC_MODE", 0xBFFF0013U, "The access mode is invalid."},
    {"VI_ERROR_TMO", 0xBFFF0015U, "The time limit expired before the operation completed."},
    {"VI_ERROR_CLOSING_FAILED", 0xBFFF0016U, "The object could not be closed properly."},
    {"VI_ERROR_INV_DEGREE", 0xBFFF001BU, "The degree is invalid."},
    {"VI_ERROR_INV_JOB_ID", 0xBFFF001CU, "The job identifier is invalid."},
    {"VI_ERROR_NSUP_ATTR", 0xBFFF001DU, "The object does not have this attribute."},
    {"VI_ERROR_NSUP_ATTR_STATE", 0xBFFF001EU, "The attribute does not take this value."},
    {"VI_ERROR_ATTR_READONLY", 0xBFFF001FU, "The attribute is read-only."},
    {"VI_ERROR_INV_LOCK_TYPE", 0xBFFF0020U, "The lock type is not supported."},
    {"VI_ERROR_INV_ACCESS_KEY", 0xBFFF0021U, "The access key is invalid."},
    {"VI_ERROR_INV_EVENT", 0xBFFF0026U, "The event type is not supported by this resource."},
    {"VI_ERROR_INV_MECH", 0xBFFF0027U, "The event mechanism is invalid."},
    {"VI_ERROR_HNDLR_NINSTALLED", 0xBFFF0028U, "No event handler is installed."},
    {"VI_ERROR_INV_HNDLR_REF", 0xBFFF0029U, "The event handler reference is invalid."},
    {"VI_ERROR_INV_CONTEXT", 0xBFFF002AU, "The event context is invalid."},
    {"VI_ERROR_QUEUE_OVERFLOW", 0xBFFF002DU, "The event queue is full."},
    {"VI_ERROR_NENABLED", 0xBFFF002FU, "The event is not enabled."},
    {"VI_ERROR_ABORT", 0xBFFF0030U, "The operation was aborted."},
    {"VI_ERROR_RAW_WR_PROT_VIOL", 0xBFFF0034U, "Protocol violation during a raw write."},
    {"VI_ERROR_RAW_RD_PROT_VIOL", 0xBFFF0035U, "Protocol violation during a raw read."},
    {"VI_ERROR_OUTP_PROT_VIOL", 0xBFFF0036U, "The device reported an output protocol error."},
    {"VI_ERROR_INP_PROT_VIOL", 0xBFFF0037U, "The device reported an input protocol error."},
    {"VI_ERROR_BERR", 0xBFFF0038U, "Bus error."},
    {"VI_ERROR_IN_PROGRESS", 0xBFFF0039U, "An operation is already in progress on the session."},
    {"VI_ERROR_INV_SETUP", 0xBFFF003AU, "The operation cannot start because the setup is invalid."},
    {"VI_ERROR_QUEUE_ERROR", 0xBFFF003BU, "The asynchronous operation could not be queued."},
    {"VI_ERROR_ALLOC", 0xBFFF003CU, "Not enough memory."},
    {"VI_ERROR_INV_MASK", 0xBFFF003DU, "The buffer mask is invalid."},
    {"VI_ERROR_IO", 0xBFFF003EU, "I/O error."},
    {"VI_ERROR_INV_FMT", 0xBFFF003FU, "The format string is malformed."},
    {"VI_ERROR_NSUP_FMT", 0xBFFF0041U, "The format string has a specifier that is not supported."},
    {"VI_ERROR_LINE_IN_USE", 0xBFFF0042U, "The trigger line is in use."},
    {"VI_ERROR_NSUP_MODE", 0xBFFF0046U, "The mode is not supported."},
    {"VI_ERROR_SRQ_NOCCURRED", 0xBFFF004AU, "No service request was received."},
    {"VI_ERROR_INV_SPACE", 0xBFFF004EU, "The address space is invalid."},
    {"VI_ERROR_INV_OFFSET", 0xBFFF0051U, "The offset is invalid."},
    {"VI_ERROR_INV_WIDTH", 0xBFFF0052U, "The width is invalid."},
    {"VI_ERROR_NSUP_OFFSET", 0xBFFF0054U, "The offset is not accessible."},
    {"VI_ERROR_NSUP_VAR_WIDTH", 0xBFFF0055U, "Source and destination widths must be equal."},
    {"VI_ERROR_WINDOW_NMAPPED", 0xBFFF0057U, "The session has no mapped window."},
    {"VI_ERROR_RESP_PENDING", 0xBFFF0059U, "An earlier response is still pending."},
    {"VI_ERROR_NLISTENERS", 0xBFFF005FU, "No device on the bus is listening."},
    {"VI_ERROR_NCIC", 0xBFFF0060U, "The interface is not the controller in charge."},
    {"VI_ERROR_NSYS_CNTLR", 0xBFFF0061U, "The interface is not the system controller."},
    {"VI_ERROR_NSUP_OPER", 0xBFFF0067U, "The session does not support this operation."},
    {"VI_ERROR_INTR_PENDING", 0xBFFF0068U, "An earlier interrupt is still pending."},
    {"VI_ERROR_ASRL_PARITY", 0xBFFF006AU, "Parity error."},
    {"VI_ERROR_ASRL_FRAMING", 0xBFFF006BU, "Framing error."},
    {"VI_ERROR_ASRL_OVERRUN", 0xBFFF006CU,
     "Overrun: a character arrived before the last one was read."},
    {"VI_ERROR_TRIG_NMAPPED", 0xBFFF006EU, "The trigger path is not mapped."},
    {"VI_ERROR_NSUP_ALIGN_OFFSET", 0xBFFF0070U, "The offset is not properly aligned."},
    {"VI_ERROR_USER_BUF", 0xBFFF0071U, "A user buffer is invalid."},
    {"VI_ERROR_RSRC_BUSY", 0xBFFF0072U, "The resource is busy."},
    {"VI_ERROR_NSUP_WIDTH", 0xBFFF0076U, "The width is not supported."},
    {"VI_ERROR_INV_PARAMETER", 0xBFFF0078U, "A parameter is invalid."},
    {"VI_ERROR_INV_PROT", 0xBFFF0079U, "The protocol is invalid."},
    {"VI_ERROR_INV_SIZE", 0xBFFF007BU, "The window size is invalid."},
    {"VI_ERROR_WINDOW_MAPPED", 0xBFFF0080U, "The session already has a mapped window."},
    {"VI_ERROR_NIMPL_OPER", 0xBFFF0081U, "The operation is not implemented."},
    {"VI_ERROR_INV_LENGTH", 0xBFFF0083U, "The length is invalid."},
    {"VI_ERROR_INV_MODE", 0xBFFF0091U, "The mode is invalid."},
    {"VI_ERROR_SESN_NLOCKED", 0xBFFF009CU, "The session holds no lock."},
    {"VI_ERROR_MEM_NSHARED", 0xBFFF009DU, "The device does not share memory."},
    {"VI_ERROR_LIBRARY_NFOUND", 0xBFFF009EU,
     "A VISA library was not found or could not be loaded."},
    {"VI_ERROR_NSUP_INTR", 0xBFFF009FU, "The interface cannot generate this interrupt."},
    {"VI_ERROR_INV_LINE", 0xBFFF00A0U, "The line is invalid."},
    {"VI_ERROR_FILE_ACCESS", 0xBFFF00A1U, "The file cannot be opened."},
    {"VI_ERROR_FILE_IO", 0xBFFF00A2U, "The file cannot be read or written."},
    {"VI_ERROR_NSUP_LINE", 0xBFFF00A3U, "The line is not supported."},
    {"VI_ERROR_NSUP_MECH", 0xBFFF00A4U, "The event mechanism is not supported."},
    {"VI_ERROR_INTF_NUM_NCONFIG", 0xBFFF00A5U, "The interface number is not configured."},
    {"VI_ERROR_CONN_LOST", 0xBFFF00A6U, "The connection was lost."},
    {"VI_ERROR_MACHINE_NAVAIL", 0xBFFF00A7U,
     "The remote machine does not exist or refuses connections."},
    {"VI_ERROR_NPERMISSION", 0xBFFF00A8U,
     "Access to the resource or the remote machine is denied."},
};

const NamedStatus* find(ViStatus status)
{
    const auto code = static_cast<ViUInt32>(status);
    const NamedStatus* const found =
        std::find_if(std::begin(statuses), std::end(statuses),
                     [code](const NamedStatus& known) { return known.code == code; });
    return found != std::end(statuses) ? found : nullptr;
}

} // namespace

std::string statusName(ViStatus status)
{
    if (const NamedStatus* const known = find(status)) {
        return known->name;
    }
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "0x%08X", static_cast<ViUInt32>(status));
    return text.data();
}

const char* statusDescription(ViStatus status)
{
    const NamedStatus* const known = find(status);
    return known != nullptr ? known->description : nullptr;
}

std::optional<ViStatus> statusFromText(const std::string& text)
{
    for (const NamedStatus& known : statuses) {
        if (text == known.name) {
            return static_cast<ViStatus>(known.code);
        }
    }
    const bool negative = !text.empty() && text.front() == '-';
    const std::uint64_t largest = negative ? 0x80000000U : 0xFFFFFFFFU;
    const auto number = parseNumber(negative ? text.substr(1) : text, largest);
    if (!number) {
        return std::nullopt;
    }
    const auto code = static_cast<ViUInt32>(*number);
    return static_cast<ViStatus>(negative ? 0U - code : code);
}

} // namespace visa
