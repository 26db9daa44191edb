// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// The part of the published VISA interface (C binding, 64-bit widths) that the programs use and
/// the libraries implement. In the programs, the six calls go through visa::VisaLibrary to
/// whichever VISA library the machine has. Without one, each returns VI_ERROR_LIBRARY_NFOUND and
/// does not write its output arguments; a C++ exception in the library becomes
/// VI_ERROR_SYSTEM_ERROR.
///
/// Texts are zero-terminated and 8-bit. Every call may be made from any thread; which calls may
/// overlap depends on the loaded library.

using ViChar = char;
using ViUInt16 = std::uint16_t;
using ViUInt32 = std::uint32_t;
using ViInt32 = std::int32_t;
using ViStatus = ViInt32;
using ViObject = ViUInt32;
using ViSession = ViObject;
using ViFindList = ViObject;
using ViAttr = ViUInt32;
/// Pointer-sized.
using ViAttrState = std::uintptr_t;
using ViConstString = const ViChar*;

/// Size of the buffer for a resource description, terminating zero included.
constexpr int VI_FIND_BUFLEN = 256;

constexpr ViObject VI_NULL = 0;

/// Interface types.
constexpr ViUInt16 VI_INTF_GPIB = 1;
constexpr ViUInt16 VI_INTF_VXI = 2;
constexpr ViUInt16 VI_INTF_GPIB_VXI = 3;
constexpr ViUInt16 VI_INTF_ASRL = 4;
constexpr ViUInt16 VI_INTF_PXI = 5;
constexpr ViUInt16 VI_INTF_TCPIP = 6;
constexpr ViUInt16 VI_INTF_USB = 7;
constexpr ViUInt16 VI_INTF_RIO = 8;
constexpr ViUInt16 VI_INTF_FIREWIRE = 9;

constexpr ViStatus VI_SUCCESS = 0;
constexpr ViStatus visaError(ViUInt32 code)
{
    return static_cast<ViStatus>(0xBFFF0000U | code);
}
constexpr ViStatus VI_ERROR_SYSTEM_ERROR = visaError(0x0000);
constexpr ViStatus VI_ERROR_INV_OBJECT = visaError(0x000E);
constexpr ViStatus VI_ERROR_INV_EXPR = visaError(0x0010);
constexpr ViStatus VI_ERROR_RSRC_NFOUND = visaError(0x0011);
constexpr ViStatus VI_ERROR_LIBRARY_NFOUND = visaError(0x009E);

extern "C" {

/// Opens a session to the default resource manager and stores it in *session.
ViStatus viOpenDefaultRM(ViSession* session);

/// Sets one attribute of a session, event or find list.
ViStatus viSetAttribute(ViObject object, ViAttr attribute, ViAttrState value);

/// Searches for the resources that match the expression. On success *findList is a find list (to be
/// closed), *count the number of matches, and description (VI_FIND_BUFLEN characters) the first of
/// them.
ViStatus viFindRsrc(ViSession session, ViConstString expression, ViFindList* findList,
                    ViUInt32* count, ViChar* description);

/// Stores the next match in description (VI_FIND_BUFLEN characters).
ViStatus viFindNext(ViFindList findList, ViChar* description);

/// Gives the interface type and the interface (board) number of a resource string.
ViStatus viParseRsrc(ViSession session, ViConstString resource, ViUInt16* interfaceType,
                     ViUInt16* interfaceNumber);

/// Closes a session or a find list.
ViStatus viClose(ViObject object);
}
