// SPDX-License-Identifier: MIT
#pragma once

#include "visa/VisaApi.h"

#include <string_view>

/// The published attributes that the stand-in's sessions have, and the maker's own two.

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

/// The maker's own, on the resource manager: they tune a search. The stand-in keeps their values
/// and searches as ever.
constexpr ViAttr QV_ATTR_SEARCH_TIME = 0x0E5A0001;
constexpr ViAttr QV_ATTR_SEARCH_KINDS = 0x0E5A0002;

/// No session has it.
constexpr ViAttr VI_ATTR_UNKNOWN = 0;

/// The attribute of that published name, VI_ATTR_UNKNOWN where no session here has it.
ViAttr attributeFromName(std::string_view name);
