// SPDX-License-Identifier: MIT
#include "simulator/StatusNames.h"

#include "visa/Text.h"

#include <array>
#include <cstdio>

namespace simulator {

namespace {

struct NamedStatus
{
    const char* name;
    ViUInt32 code;
};

// The second name of a code shared by two stands behind the first.
constexpr NamedStatus statuses[] = {
    {"VI_SUCCESS", 0x00000000U},
    {"VI_SUCCESS_EVENT_EN", 0x3FFF0002U},
    {"VI_SUCCESS_EVENT_DIS", 0x3FFF0003U},
    {"VI_SUCCESS_QUEUE_EMPTY", 0x3FFF0004U},
    {"VI_SUCCESS_TERM_CHAR", 0x3FFF0005U},
    {"VI_SUCCESS_MAX_CNT", 0x3FFF0006U},
    {"VI_SUCCESS_DEV_NPRESENT", 0x3FFF007DU},
    {"VI_SUCCESS_TRIG_MAPPED", 0x3FFF007EU},
    {"VI_SUCCESS_QUEUE_NEMPTY", 0x3FFF0080U},
    {"VI_SUCCESS_NCHAIN", 0x3FFF0098U},
    {"VI_SUCCESS_NESTED_SHARED", 0x3FFF0099U},
    {"VI_SUCCESS_NESTED_EXCLUSIVE", 0x3FFF009AU},
    {"VI_SUCCESS_SYNC", 0x3FFF009BU},
    {"VI_WARN_QUEUE_OVERFLOW", 0x3FFF000CU},
    {"VI_WARN_CONFIG_NLOADED", 0x3FFF0077U},
    {"VI_WARN_NULL_OBJECT", 0x3FFF0082U},
    {"VI_WARN_NSUP_ATTR_STATE", 0x3FFF0084U},
    {"VI_WARN_UNKNOWN_STATUS", 0x3FFF0085U},
    {"VI_WARN_NSUP_BUF", 0x3FFF0088U},
    {"VI_WARN_EXT_FUNC_NIMPL", 0x3FFF00A9U},
    {"VI_ERROR_SYSTEM_ERROR", 0xBFFF0000U},
    {"VI_ERROR_INV_OBJECT", 0xBFFF000EU},
    {"VI_ERROR_INV_SESSION", 0xBFFF000EU},
    {"VI_ERROR_RSRC_LOCKED", 0xBFFF000FU},
    {"VI_ERROR_INV_EXPR", 0xBFFF0010U},
    {"VI_ERROR_RSRC_NFOUND", 0xBFFF0011U},
    {"VI_ERROR_INV_RSRC_NAME", 0xBFFF0012U},
    {"VI_ERROR_INV_ACC_MODE", 0xBFFF0013U},
    {"VI_ERROR_TMO", 0xBFFF0015U},
    {"VI_ERROR_CLOSING_FAILED", 0xBFFF0016U},
    {"VI_ERROR_INV_DEGREE", 0xBFFF001BU},
    {"VI_ERROR_INV_JOB_ID", 0xBFFF001CU},
    {"VI_ERROR_NSUP_ATTR", 0xBFFF001DU},
    {"VI_ERROR_NSUP_ATTR_STATE", 0xBFFF001EU},
    {"VI_ERROR_ATTR_READONLY", 0xBFFF001FU},
    {"VI_ERROR_INV_LOCK_TYPE", 0xBFFF0020U},
    {"VI_ERROR_INV_ACCESS_KEY", 0xBFFF0021U},
    {"VI_ERROR_INV_EVENT", 0xBFFF0026U},
    {"VI_ERROR_INV_MECH", 0xBFFF0027U},
    {"VI_ERROR_HNDLR_NINSTALLED", 0xBFFF0028U},
    {"VI_ERROR_INV_HNDLR_REF", 0xBFFF0029U},
    {"VI_ERROR_INV_CONTEXT", 0xBFFF002AU},
    {"VI_ERROR_QUEUE_OVERFLOW", 0xBFFF002DU},
    {"VI_ERROR_NENABLED", 0xBFFF002FU},
    {"VI_ERROR_ABORT", 0xBFFF0030U},
    {"VI_ERROR_RAW_WR_PROT_VIOL", 0xBFFF0034U},
    {"VI_ERROR_RAW_RD_PROT_VIOL", 0xBFFF0035U},
    {"VI_ERROR_OUTP_PROT_VIOL", 0xBFFF0036U},
    {"VI_ERROR_INP_PROT_VIOL", 0xBFFF0037U},
    {"VI_ERROR_BERR", 0xBFFF0038U},
    {"VI_ERROR_IN_PROGRESS", 0xBFFF0039U},
    {"VI_ERROR_INV_SETUP", 0xBFFF003AU},
    {"VI_ERROR_QUEUE_ERROR", 0xBFFF003BU},
    {"VI_ERROR_ALLOC", 0xBFFF003CU},
    {"VI_ERROR_INV_MASK", 0xBFFF003DU},
    {"VI_ERROR_IO", 0xBFFF003EU},
    {"VI_ERROR_INV_FMT", 0xBFFF003FU},
    {"VI_ERROR_NSUP_FMT", 0xBFFF0041U},
    {"VI_ERROR_LINE_IN_USE", 0xBFFF0042U},
    {"VI_ERROR_NSUP_MODE", 0xBFFF0046U},
    {"VI_ERROR_SRQ_NOCCURRED", 0xBFFF004AU},
    {"VI_ERROR_INV_SPACE", 0xBFFF004EU},
    {"VI_ERROR_INV_OFFSET", 0xBFFF0051U},
    {"VI_ERROR_INV_WIDTH", 0xBFFF0052U},
    {"VI_ERROR_NSUP_OFFSET", 0xBFFF0054U},
    {"VI_ERROR_NSUP_VAR_WIDTH", 0xBFFF0055U},
    {"VI_ERROR_WINDOW_NMAPPED", 0xBFFF0057U},
    {"VI_ERROR_RESP_PENDING", 0xBFFF0059U},
    {"VI_ERROR_NLISTENERS", 0xBFFF005FU},
    {"VI_ERROR_NCIC", 0xBFFF0060U},
    {"VI_ERROR_NSYS_CNTLR", 0xBFFF0061U},
    {"VI_ERROR_NSUP_OPER", 0xBFFF0067U},
    {"VI_ERROR_INTR_PENDING", 0xBFFF0068U},
    {"VI_ERROR_ASRL_PARITY", 0xBFFF006AU},
    {"VI_ERROR_ASRL_FRAMING", 0xBFFF006BU},
    {"VI_ERROR_ASRL_OVERRUN", 0xBFFF006CU},
    {"VI_ERROR_TRIG_NMAPPED", 0xBFFF006EU},
    {"VI_ERROR_NSUP_ALIGN_OFFSET", 0xBFFF0070U},
    {"VI_ERROR_USER_BUF", 0xBFFF0071U},
    {"VI_ERROR_RSRC_BUSY", 0xBFFF0072U},
    {"VI_ERROR_NSUP_WIDTH", 0xBFFF0076U},
    {"VI_ERROR_INV_PARAMETER", 0xBFFF0078U},
    {"VI_ERROR_INV_PROT", 0xBFFF0079U},
    {"VI_ERROR_INV_SIZE", 0xBFFF007BU},
    {"VI_ERROR_WINDOW_MAPPED", 0xBFFF0080U},
    {"VI_ERROR_NIMPL_OPER", 0xBFFF0081U},
    {"VI_ERROR_INV_LENGTH", 0xBFFF0083U},
    {"VI_ERROR_INV_MODE", 0xBFFF0091U},
    {"VI_ERROR_SESN_NLOCKED", 0xBFFF009CU},
    {"VI_ERROR_MEM_NSHARED", 0xBFFF009DU},
    {"VI_ERROR_LIBRARY_NFOUND", 0xBFFF009EU},
    {"VI_ERROR_NSUP_INTR", 0xBFFF009FU},
    {"VI_ERROR_INV_LINE", 0xBFFF00A0U},
    {"VI_ERROR_FILE_ACCESS", 0xBFFF00A1U},
    {"VI_ERROR_FILE_IO", 0xBFFF00A2U},
    {"VI_ERROR_NSUP_LINE", 0xBFFF00A3U},
    {"VI_ERROR_NSUP_MECH", 0xBFFF00A4U},
    {"VI_ERROR_INTF_NUM_NCONFIG", 0xBFFF00A5U},
    {"VI_ERROR_CONN_LOST", 0xBFFF00A6U},
    {"VI_ERROR_MACHINE_NAVAIL", 0xBFFF00A7U},
    {"VI_ERROR_NPERMISSION", 0xBFFF00A8U},
};

} // namespace

std::string statusName(ViStatus status)
{
    const auto code = static_cast<ViUInt32>(status);
    for (const NamedStatus& known : statuses) {
        if (known.code == code) {
            return known.name;
        }
    }
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "0x%08X", code);
    return text.data();
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
    const auto number = visa::parseNumber(negative ? text.substr(1) : text, largest);
    if (!number) {
        return std::nullopt;
    }
    const auto code = static_cast<ViUInt32>(*number);
    return static_cast<ViStatus>(negative ? 0U - code : code);
}

} // namespace simulator
