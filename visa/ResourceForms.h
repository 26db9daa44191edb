// SPDX-License-Identifier: MIT
#pragma once

#include "visa/ResourceName.h"
#include "visa/Text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

/// The published forms of resource strings, for the parser of ResourceName.
namespace visa::resourceforms {

using Field = ResourceField;

struct InterfaceName
{
    std::string_view name;
    ViUInt16 type;
};

// A name that begins with another one precedes it.
inline constexpr InterfaceName interfaces[] = {
    {"GPIB-VXI", VI_INTF_GPIB_VXI}, {"GPIB", VI_INTF_GPIB}, {"VXI", VI_INTF_VXI},
    {"ASRL", VI_INTF_ASRL},         {"PXI", VI_INTF_PXI},   {"TCPIP", VI_INTF_TCPIP},
    {"USB", VI_INTF_USB},           {"RIO", VI_INTF_RIO},   {"FIREWIRE", VI_INTF_FIREWIRE},
};

/// The fields between interface and class, and how many of them must be given.
struct Form
{
    std::string_view resourceClass;
    std::size_t fewest;
    std::size_t most;
    std::array<Field, 4> fields;
    ViUInt16 type;
};

// The first form of an interface is the one without a class in the string.
inline constexpr Form forms[] = {
    {"INSTR", 1, 2, {Field::PrimaryAddress, Field::SecondaryAddress}, VI_INTF_GPIB},
    {"INTFC", 0, 0, {}, VI_INTF_GPIB},
    {"SERVANT", 0, 0, {}, VI_INTF_GPIB},
    {"INSTR", 1, 1, {Field::LogicalAddress}, VI_INTF_VXI},
    {"MEMACC", 0, 0, {}, VI_INTF_VXI},
    {"BACKPLANE", 0, 1, {Field::LogicalAddress}, VI_INTF_VXI},
    {"SERVANT", 0, 0, {}, VI_INTF_VXI},
    {"INSTR", 1, 1, {Field::LogicalAddress}, VI_INTF_GPIB_VXI},
    {"MEMACC", 0, 0, {}, VI_INTF_GPIB_VXI},
    {"BACKPLANE", 0, 1, {Field::LogicalAddress}, VI_INTF_GPIB_VXI},
    {"INSTR", 0, 0, {}, VI_INTF_ASRL},
    {"INSTR", 1, 3, {Field::Location, Field::Location, Field::Location}, VI_INTF_PXI},
    {"MEMACC", 0, 0, {}, VI_INTF_PXI},
    {"BACKPLANE", 1, 1, {Field::Location}, VI_INTF_PXI},
    {"INSTR", 1, 2, {Field::Host, Field::LanDevice}, VI_INTF_TCPIP},
    {"SOCKET", 2, 2, {Field::Host, Field::Port}, VI_INTF_TCPIP},
    {"SERVANT", 0, 1, {Field::LanDevice}, VI_INTF_TCPIP},
    {"INSTR",
     3,
     4,
     {Field::ManufacturerId, Field::ModelCode, Field::SerialNumber, Field::UsbInterface},
     VI_INTF_USB},
    {"RAW",
     3,
     4,
     {Field::ManufacturerId, Field::ModelCode, Field::SerialNumber, Field::UsbInterface},
     VI_INTF_USB},
    {"INSTR", 1, 2, {Field::Location, Field::Location}, VI_INTF_RIO},
    {"INSTR", 1, 3, {Field::Location, Field::Location, Field::Location}, VI_INTF_FIREWIRE},
};
inline constexpr Form qvibForm{"INSTR", 1, 1, {Field::Host}, VI_INTF_TCPIP};

struct NumericField
{
    Field field;
    std::uint32_t least;
    std::uint32_t most;
};

/// Ranges of the fields in decimal; for the host, of an IPv4 octet.
inline constexpr NumericField numericFields[] = {
    {Field::Board, 0, 0xFFFF},
    {Field::PrimaryAddress, 0, 30},
    {Field::SecondaryAddress, 0, 30},
    {Field::LogicalAddress, 0, 255},
    {Field::Host, 0, 255},
    {Field::Port, 1, 0xFFFF},
    {Field::UsbInterface, 0, 254},
};

inline const Form* formOf(ViUInt16 type, std::string_view resourceClass)
{
    for (const Form& form : forms) {
        if (form.type == type && equalsIgnoringCase(resourceClass, form.resourceClass)) {
            return &form;
        }
    }
    return nullptr;
}

inline const Form& defaultForm(ViUInt16 type)
{
    return *std::find_if(std::begin(forms), std::end(forms),
                         [type](const Form& form) { return form.type == type; });
}

} // namespace visa::resourceforms
