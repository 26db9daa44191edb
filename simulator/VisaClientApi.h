// SPDX-License-Identifier: MIT
#pragma once

#include "visa/VisaApi.h"

/// The rest of the published VISA interface that the stand-in library offers: what a general
/// client needs beside the program's six calls, and the codes that only the stand-in answers.
///
/// Every call may be made from any thread. A call that answers a negative status has left its
/// output arguments alone.

using ViByte = unsigned char;
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

constexpr ViStatus VI_ERROR_SYSTEM_ERROR = visaError(0x0000);
constexpr ViStatus VI_ERROR_INV_SESSION = VI_ERROR_INV_OBJECT;
constexpr ViStatus VI_ERROR_INV_ACC_MODE = visaError(0x0013);
constexpr ViStatus VI_ERROR_TMO = visaError(0x0015);
constexpr ViStatus VI_ERROR_NSUP_ATTR_STATE = visaError(0x001E);
constexpr ViStatus VI_ERROR_ATTR_READONLY = visaError(0x001F);
constexpr ViStatus VI_ERROR_INV_EVENT = visaError(0x0026);
constexpr ViStatus VI_ERROR_INV_MECH = visaError(0x0027);
constexpr ViStatus VI_ERROR_ALLOC = visaError(0x003C);
constexpr ViStatus VI_ERROR_USER_BUF = visaError(0x0071);

constexpr ViEventType VI_ALL_ENABLED_EVENTS = 0x3FFF7FFF;
constexpr ViUInt16 VI_ALL_MECH = 0xFFFF;

extern "C" {

/// Like viParseRsrc, and tells the resource class ("INSTR"), the full form of the resource string
/// and its alias (always empty here). Each text has room for VI_FIND_BUFLEN characters.
ViStatus viParseRsrcEx(ViSession session, ViConstString resource, ViUInt16* interfaceType,
                       ViUInt16* interfaceNumber, ViChar* resourceClass, ViChar* expandedName,
                       ViChar* alias);

/// Opens an instrument on the bench. Locks are not kept: every access mode is granted.
ViStatus viOpen(ViSession session, ViConstString resource, ViAccessMode accessMode,
                ViUInt32 openTimeout, ViSession* instrument);

/// Writes the attribute's value in the attribute's own width; a text takes up to VI_FIND_BUFLEN
/// characters.
ViStatus viGetAttribute(ViObject object, ViAttr attribute, void* value);

/// Sends a message to an instrument; *written (may be null) tells how many bytes it took.
ViStatus viWrite(ViSession session, const ViByte* buffer, ViUInt32 count, ViUInt32* written);

/// Takes what the instrument has to say; *got (may be null) tells how many bytes came. An
/// instrument with nothing to say answers VI_ERROR_TMO at once.
ViStatus viRead(ViSession session, ViByte* buffer, ViUInt32 count, ViUInt32* got);

/// Instruments here raise no events: answers VI_SUCCESS_EVENT_DIS, "was not enabled".
ViStatus viDisableEvent(ViSession session, ViEventType eventType, ViUInt16 mechanism);

/// Instruments here raise no events: answers VI_SUCCESS_QUEUE_EMPTY.
ViStatus viDiscardEvents(ViSession session, ViEventType eventType, ViUInt16 mechanism);
}
