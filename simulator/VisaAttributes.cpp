// SPDX-License-Identifier: MIT
#include "simulator/VisaAttributes.h"

#include <utility>

ViAttr attributeFromName(std::string_view name)
{
    static constexpr std::pair<std::string_view, ViAttr> attributes[] = {
        {"VI_ATTR_RSRC_CLASS", VI_ATTR_RSRC_CLASS},
        {"VI_ATTR_RSRC_NAME", VI_ATTR_RSRC_NAME},
        {"VI_ATTR_RSRC_IMPL_VERSION", VI_ATTR_RSRC_IMPL_VERSION},
        {"VI_ATTR_RSRC_LOCK_STATE", VI_ATTR_RSRC_LOCK_STATE},
        {"VI_ATTR_MAX_QUEUE_LENGTH", VI_ATTR_MAX_QUEUE_LENGTH},
        {"VI_ATTR_SEND_END_EN", VI_ATTR_SEND_END_EN},
        {"VI_ATTR_TERMCHAR", VI_ATTR_TERMCHAR},
        {"VI_ATTR_TMO_VALUE", VI_ATTR_TMO_VALUE},
        {"VI_ATTR_IO_PROT", VI_ATTR_IO_PROT},
        {"VI_ATTR_ASRL_BAUD", VI_ATTR_ASRL_BAUD},
        {"VI_ATTR_ASRL_DATA_BITS", VI_ATTR_ASRL_DATA_BITS},
        {"VI_ATTR_ASRL_PARITY", VI_ATTR_ASRL_PARITY},
        {"VI_ATTR_ASRL_STOP_BITS", VI_ATTR_ASRL_STOP_BITS},
        {"VI_ATTR_ASRL_FLOW_CNTRL", VI_ATTR_ASRL_FLOW_CNTRL},
        {"VI_ATTR_SUPPRESS_END_EN", VI_ATTR_SUPPRESS_END_EN},
        {"VI_ATTR_TERMCHAR_EN", VI_ATTR_TERMCHAR_EN},
        {"VI_ATTR_ASRL_END_IN", VI_ATTR_ASRL_END_IN},
        {"VI_ATTR_ASRL_END_OUT", VI_ATTR_ASRL_END_OUT},
        {"VI_ATTR_MANF_ID", VI_ATTR_MANF_ID},
        {"VI_ATTR_MODEL_CODE", VI_ATTR_MODEL_CODE},
        {"VI_ATTR_INTF_INST_NAME", VI_ATTR_INTF_INST_NAME},
        {"VI_ATTR_RSRC_SPEC_VERSION", VI_ATTR_RSRC_SPEC_VERSION},
        {"VI_ATTR_INTF_TYPE", VI_ATTR_INTF_TYPE},
        {"VI_ATTR_GPIB_PRIMARY_ADDR", VI_ATTR_GPIB_PRIMARY_ADDR},
        {"VI_ATTR_GPIB_SECONDARY_ADDR", VI_ATTR_GPIB_SECONDARY_ADDR},
        {"VI_ATTR_RSRC_MANF_NAME", VI_ATTR_RSRC_MANF_NAME},
        {"VI_ATTR_RSRC_MANF_ID", VI_ATTR_RSRC_MANF_ID},
        {"VI_ATTR_INTF_NUM", VI_ATTR_INTF_NUM},
        {"VI_ATTR_TCPIP_HOSTNAME", VI_ATTR_TCPIP_HOSTNAME},
        {"VI_ATTR_TCPIP_PORT", VI_ATTR_TCPIP_PORT},
        {"VI_ATTR_USB_SERIAL_NUM", VI_ATTR_USB_SERIAL_NUM},
    };
    for (const auto& [known, attribute] : attributes) {
        if (name == known) {
            return attribute;
        }
    }
    return VI_ATTR_UNKNOWN;
}
