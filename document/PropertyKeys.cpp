// SPDX-License-Identifier: MIT
#include "document/PropertyKeys.h"

#include "config/ConfigurationValue.h"

#include <limits>

namespace QvVisa {

std::array<std::pair<LineKind, std::uint32_t>, s_serialKeys.size()>
propertyValues(const SSerialProperties& properties)
{
    return {{{LineKind::SerialBaudrate, properties.baudrate},
             {LineKind::SerialDataBits, properties.dataBits},
             {LineKind::SerialStopBits, properties.stopBits},
             {LineKind::SerialParity, properties.parity},
             {LineKind::SerialFlowControl, properties.flowControl}}};
}

std::array<std::pair<LineKind, std::uint32_t>, s_gpibKeys.size()>
propertyValues(const SGpibProperties& properties)
{
    return {{{LineKind::GpibPrimaryAddress, properties.primaryAddress},
             {LineKind::GpibSecondaryAddress, properties.secondaryAddress},
             {LineKind::GpibSystemController, properties.systemController}}};
}

std::string_view keyInFile(LineKind kind)
{
    switch (kind) {
    case LineKind::GpibPrimaryAddress:
        return "PrimaryAddress";
    case LineKind::GpibSecondaryAddress:
        return "SecondaryAddress";
    case LineKind::GpibSystemController:
        return "SystemController";
    case LineKind::SerialBaudrate:
        return "Baudrate";
    case LineKind::SerialDataBits:
        return "DataBits";
    case LineKind::SerialStopBits:
        return "StopBits";
    case LineKind::SerialParity:
        return "Parity";
    case LineKind::SerialFlowControl:
        return "FlowControl";
    default:
        return {};
    }
}

std::uint32_t defaultValue(LineKind kind)
{
    switch (kind) {
    case LineKind::GpibPrimaryAddress:
        return SGpibProperties().primaryAddress;
    case LineKind::GpibSecondaryAddress:
        return SGpibProperties().secondaryAddress;
    case LineKind::GpibSystemController:
        return SGpibProperties().systemController;
    case LineKind::SerialBaudrate:
        return SSerialProperties().baudrate;
    case LineKind::SerialDataBits:
        return SSerialProperties().dataBits;
    case LineKind::SerialStopBits:
        return SSerialProperties().stopBits;
    case LineKind::SerialParity:
        return SSerialProperties().parity;
    case LineKind::SerialFlowControl:
        return SSerialProperties().flowControl;
    default:
        return 0;
    }
}

std::uint32_t largestValue(LineKind kind)
{
    if (isGpibProperty(kind)) {
        return std::numeric_limits<std::uint16_t>::max();
    }
    return kind == LineKind::SerialBaudrate
               ? static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max())
               : std::numeric_limits<std::uint8_t>::max();
}

std::string propertyLine(LineKind kind, std::uint16_t device, std::uint32_t value)
{
    std::string line =
        isGpibProperty(kind) ? ":GPIBProperty[DeviceNo=" : ":SerialProperty[DeviceNo=";
    line += std::to_string(device);
    line += "].";
    line += keyInFile(kind);
    line += '=';
    line += std::to_string(value);
    return line;
}

} // namespace QvVisa
