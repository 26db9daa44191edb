// SPDX-License-Identifier: MIT
#pragma once

#include "visa/SearchAttributes.h"
#include "visa/VisaApi.h"

/// The rest of the published VISA interface that the libraries of this project implement: what a
/// general client needs besides the six calls of visa/VisaApi.h.
///
/// Every call may be made from any thread. A call that returns a negative status has not written
/// its output arguments.

using ViBoolean = ViUInt16;
using ViByte = unsigned char;
using ViUInt64 = std::uint64_t;
using ViAccessMode = ViUInt32;
using ViEventType = ViUInt32;

constexpr ViStatus visaWarning(ViUInt32 code)
{
    return static_cast<ViStatus>(0x3FFF0000U | code);
}
constexpr ViStatus VI_SUCCESS_EVENT_DIS = visaWarning(0x0003);
constexpr ViStatus VI_SUCCESS_QUEUE_EMPTY = visaWarning(0x0004);
constexpr ViStatus VI_SUCCESS_TERM_CHAR = visaWarning(0x0005);
constexpr ViStatus VI_SUCCESS_MAX_CNT = visaWarning(0x0006);
constexpr ViStatus VI_WARN_NULL_OBJECT = visaWarning(0x0082);
constexpr ViStatus VI_WARN_UNKNOWN_STATUS = visaWarning(0x0085);

constexpr ViStatus VI_ERROR_INV_SESSION = VI_ERROR_INV_OBJECT;
constexpr ViStatus VI_ERROR_INV_RSRC_NAME = visaError(0x0012);
constexpr ViStatus VI_ERROR_INV_ACC_MODE = visaError(0x0013);
constexpr ViStatus VI_ERROR_TMO = visaError(0x0015);
constexpr ViStatus VI_ERROR_NSUP_ATTR = visaError(0x001D);
constexpr ViStatus VI_ERROR_NSUP_ATTR_STATE = visaError(0x001E);
constexpr ViStatus VI_ERROR_ATTR_READONLY = visaError(0x001F);
constexpr ViStatus VI_ERROR_INV_MECH = visaError(0x0027);
constexpr ViStatus VI_ERROR_ALLOC = visaError(0x003C);
constexpr ViStatus VI_ERROR_NSUP_OPER = visaError(0x0067);
constexpr ViStatus VI_ERROR_USER_BUF = visaError(0x0071);

constexpr ViAttr VI_ATTR_RSRC_CLASS = 0xBFFF0001;
constexpr ViAttr VI_ATTR_RSRC_NAME = 0xBFFF0002;
constexpr ViAttr VI_ATTR_RSRC_IMPL_VERSION = 0x3FFF0003;
constexpr ViAttr VI_ATTR_RSRC_LOCK_STATE = 0x3FFF0004;
constexpr ViAttr VI_ATTR_MAX_QUEUE_LENGTH = 0x3FFF0005;
constexpr ViAttr VI_ATTR_USER_DATA_32 = 0x3FFF0007;
constexpr ViAttr VI_ATTR_USER_DATA_64 = 0x3FFF000A;
constexpr ViAttr VI_ATTR_SEND_END_EN = 0x3FFF0016;
constexpr ViAttr VI_ATTR_TERMCHAR = 0x3FFF0018;
constexpr ViAttr VI_ATTR_TMO_VALUE = 0x3FFF001A;
constexpr ViAttr VI_ATTR_IO_PROT = 0x3FFF001C;
constexpr ViAttr VI_ATTR_ASRL_BAUD = 0x3FFF0021;
constexpr ViAttr VI_ATTR_ASRL_DATA_BITS = 0x3FFF0022;
constexpr ViAttr VI_ATTR_ASRL_PARITY = 0x3FFF0023;
constexpr ViAttr VI_ATTR_ASRL_STOP_BITS = 0x3FFF0024;
constexpr ViAttr VI_ATTR_ASRL_FLOW_CNTRL = 0x3FFF0025;
constexpr ViAttr VI_ATTR_SUPPRESS_END_EN = 0x3FFF0036;
constexpr ViAttr VI_ATTR_TERMCHAR_EN = 0x3FFF0038;
constexpr ViAttr VI_ATTR_ASRL_END_IN = 0x3FFF00B3;
constexpr ViAttr VI_ATTR_ASRL_END_OUT = 0x3FFF00B4;
constexpr ViAttr VI_ATTR_RM_SESSION = 0x3FFF00C4;
constexpr ViAttr VI_ATTR_MANF_ID = 0x3FFF00D9;
constexpr ViAttr VI_ATTR_MODEL_CODE = 0x3FFF00DF;
constexpr ViAttr VI_ATTR_INTF_INST_NAME = 0xBFFF00E9;
constexpr ViAttr VI_ATTR_RSRC_SPEC_VERSION = 0x3FFF0170;
constexpr ViAttr VI_ATTR_INTF_TYPE = 0x3FFF0171;
constexpr ViAttr VI_ATTR_GPIB_PRIMARY_ADDR = 0x3FFF0172;
constexpr ViAttr VI_ATTR_GPIB_SECONDARY_ADDR = 0x3FFF0173;
constexpr ViAttr VI_ATTR_RSRC_MANF_NAME = 0xBFFF0174;
constexpr ViAttr VI_ATTR_RSRC_MANF_ID = 0x3FFF0175;
constexpr ViAttr VI_ATTR_INTF_NUM = 0x3FFF0176;
constexpr ViAttr VI_ATTR_TCPIP_HOSTNAME = 0xBFFF0196;
constexpr ViAttr VI_ATTR_TCPIP_PORT = 0x3FFF0197;
constexpr ViAttr VI_ATTR_USB_SERIAL_NUM = 0xBFFF01A0;

/// The maker's own attributes of the resource manager, both 32-bit: how long a search may take, in
/// milliseconds, and which kinds of resources it looks for.
constexpr ViAttr QV_ATTR_SEARCH_TIME = visa::searchTimeAttribute;
constexpr ViAttr QV_ATTR_SEARCH_KINDS = visa::searchInterfacesAttribute;

constexpr ViEventType VI_ALL_ENABLED_EVENTS = 0x3FFF7FFF;
constexpr ViUInt16 VI_ALL_MECH = 0xFFFF;

extern "C" {

/// Like viParseRsrc, and gives the resource class ("INSTR"), the full form of the resource string
/// and its alias. Each text has room for VI_FIND_BUFLEN characters; longer texts are cut.
ViStatus viParseRsrcEx(ViSession session, ViConstString resource, ViUInt16* interfaceType,
                       ViUInt16* interfaceNumber, ViChar* resourceClass, ViChar* expandedName,
                       ViChar* alias);

/// Opens a session to an instrument. Locks are not implemented: every access mode is granted.
ViStatus viOpen(ViSession session, ViConstString resource, ViAccessMode accessMode,
                ViUInt32 openTimeout, ViSession* instrument);

/// Writes the attribute's value in the attribute's own width; a text takes up to VI_FIND_BUFLEN
/// characters.
ViStatus viGetAttribute(ViObject object, ViAttr attribute, void* value);

/// Describes a status in a sentence (VI_FIND_BUFLEN characters). A status without a published name
/// gets a sentence too, and VI_WARN_UNKNOWN_STATUS. The object need not be open, since the status
/// of a failed viOpenDefaultRM can be asked about too.
ViStatus viStatusDesc(ViObject object, ViStatus status, ViChar* description);

/// Sends a message to an instrument; *written (may be null) is the number of bytes it took.
ViStatus viWrite(ViSession session, const ViByte* buffer, ViUInt32 count, ViUInt32* written);

/// Reads from an instrument; *got (may be null) is the number of bytes read. VI_ERROR_TMO when it
/// has nothing to say.
ViStatus viRead(ViSession session, ViByte* buffer, ViUInt32 count, ViUInt32* got);

ViStatus viDisableEvent(ViSession session, ViEventType eventType, ViUInt16 mechanism);
ViStatus viDiscardEvents(ViSession session, ViEventType eventType, ViUInt16 mechanism);
}
