// SPDX-License-Identifier: MIT
#include "config/ConfigurationValue.h"

#include <charconv>

namespace QvVisa {

namespace {

constexpr std::uint16_t low16(std::uint32_t number)
{
    return static_cast<std::uint16_t>(number & 0xFFFFU);
}

constexpr std::uint8_t low8(std::uint32_t number)
{
    return static_cast<std::uint8_t>(number & 0xFFU);
}

} // namespace

std::optional<std::uint32_t> toNumber(std::string_view digits)
{
    std::int32_t number = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (result.ec != std::errc()) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(number);
}

bool isGpibProperty(LineKind kind)
{
    return kind == LineKind::GpibPrimaryAddress || kind == LineKind::GpibSecondaryAddress ||
           kind == LineKind::GpibSystemController;
}

bool isSerialProperty(LineKind kind)
{
    return kind == LineKind::SerialBaudrate || kind == LineKind::SerialDataBits ||
           kind == LineKind::SerialStopBits || kind == LineKind::SerialParity ||
           kind == LineKind::SerialFlowControl;
}

std::optional<PropertyValue> toPropertyValue(const ConfigurationLine& line)
{
    const bool isGpib = isGpibProperty(line.kind);
    if (!isGpib && !isSerialProperty(line.kind)) {
        return std::nullopt;
    }
    const auto device = toNumber(line.first);
    const auto value = toNumber(line.second);
    if (!device || !value) {
        return std::nullopt;
    }
    PropertyValue property{line.kind, low16(*device), *value};
    if (isGpib) {
        property.value = low16(*value);
    } else if (line.kind != LineKind::SerialBaudrate) {
        property.value = low8(*value);
    }
    return property;
}

std::optional<std::uint16_t> toProvider(const ConfigurationLine& line)
{
    if (line.kind != LineKind::Provider) {
        return std::nullopt;
    }
    const auto number = toNumber(line.first);
    return number ? std::optional(low16(*number)) : std::nullopt;
}

void setProperty(SGpibProperties& properties, const PropertyValue& value)
{
    if (value.kind == LineKind::GpibPrimaryAddress) {
        properties.primaryAddress = low16(value.value);
    } else if (value.kind == LineKind::GpibSecondaryAddress) {
        properties.secondaryAddress = low16(value.value);
    } else if (value.kind == LineKind::GpibSystemController) {
        properties.systemController = low16(value.value);
    }
}

void setProperty(SSerialProperties& properties, const PropertyValue& value)
{
    if (value.kind == LineKind::SerialBaudrate) {
        properties.baudrate = value.value;
    } else if (value.kind == LineKind::SerialDataBits) {
        properties.dataBits = low8(value.value);
    } else if (value.kind == LineKind::SerialStopBits) {
        properties.stopBits = low8(value.value);
    } else if (value.kind == LineKind::SerialParity) {
        properties.parity = low8(value.value);
    } else if (value.kind == LineKind::SerialFlowControl) {
        properties.flowControl = low8(value.value);
    }
}

} // namespace QvVisa
