// SPDX-License-Identifier: MIT
#include "simulator/InstrumentAttributes.h"

#include "simulator/VisaAttributes.h"
#include "simulator/VisaClientApi.h"
#include "visa/Text.h"

#include <cstdint>
#include <string>
#include <vector>

namespace simulator {

namespace {

using Access = AttributeTable::Access;
using Width = AttributeTable::Width;

void addSerialAttributes(AttributeTable& attributes)
{
    attributes.addNumber(VI_ATTR_ASRL_BAUD, Width::Long, Access::ReadWrite, 9600);
    attributes.addNumber(VI_ATTR_ASRL_DATA_BITS, Width::Short, Access::ReadWrite, 8);
    attributes.addNumber(VI_ATTR_ASRL_PARITY, Width::Short, Access::ReadWrite, 0);
    // In tenths of a bit.
    attributes.addNumber(VI_ATTR_ASRL_STOP_BITS, Width::Short, Access::ReadWrite, 10);
    attributes.addNumber(VI_ATTR_ASRL_FLOW_CNTRL, Width::Short, Access::ReadWrite, 0);
    attributes.addNumber(VI_ATTR_ASRL_END_IN, Width::Short, Access::ReadWrite, 2);
    attributes.addNumber(VI_ATTR_ASRL_END_OUT, Width::Short, Access::ReadWrite, 0);
}

void addShort(AttributeTable& attributes, ViAttr attribute, const std::string& text)
{
    if (const auto number = visa::parseNumber(text, 0xFFFF)) {
        attributes.addNumber(attribute, Width::Short, Access::ReadOnly, *number);
    }
}

/// The fields of the resource string: addresses, names and numbers.
void addAddressAttributes(AttributeTable& attributes, const visa::ResourceName& name)
{
    using Field = visa::ResourceField;
    const auto textOf = [&](Field field) { return std::string(name.field(field)); };
    if (const std::string address = textOf(Field::PrimaryAddress); !address.empty()) {
        const std::string secondary = textOf(Field::SecondaryAddress);
        addShort(attributes, VI_ATTR_GPIB_PRIMARY_ADDR, address);
        addShort(attributes, VI_ATTR_GPIB_SECONDARY_ADDR, secondary.empty() ? "0xFFFF" : secondary);
    }
    if (const std::string host = textOf(Field::Host); !host.empty()) {
        attributes.addText(VI_ATTR_TCPIP_HOSTNAME, host);
    }
    addShort(attributes, VI_ATTR_TCPIP_PORT, textOf(Field::Port));
    addShort(attributes, VI_ATTR_MANF_ID, textOf(Field::ManufacturerId));
    addShort(attributes, VI_ATTR_MODEL_CODE, textOf(Field::ModelCode));
    if (const std::string serial = textOf(Field::SerialNumber); !serial.empty()) {
        attributes.addText(VI_ATTR_USB_SERIAL_NUM, serial);
    }
}

} // namespace

void addCommonAttributes(AttributeTable& attributes)
{
    attributes.addText(VI_ATTR_RSRC_MANF_NAME, "Quorvane (stand-in)");
    attributes.addNumber(VI_ATTR_RSRC_MANF_ID, Width::Short, Access::ReadOnly, 0x0E5A);
    // Version 5.12.1 of the library, 5.8 of the interface: 12 bits major, 12 minor, 8 the rest.
    attributes.addNumber(VI_ATTR_RSRC_IMPL_VERSION, Width::Long, Access::ReadOnly, 0x00500C01);
    attributes.addNumber(VI_ATTR_RSRC_SPEC_VERSION, Width::Long, Access::ReadOnly, 0x00500800);
    attributes.addNumber(VI_ATTR_RSRC_LOCK_STATE, Width::Long, Access::ReadOnly, 0);
    attributes.addNumber(VI_ATTR_MAX_QUEUE_LENGTH, Width::Long, Access::ReadWrite, 50);
    attributes.addNumber(VI_ATTR_USER_DATA_32, Width::Long, Access::ReadWrite, 0);
    attributes.addNumber(VI_ATTR_USER_DATA_64, Width::Wide, Access::ReadWrite, 0);
}

void addInstrumentAttributes(AttributeTable& attributes, const visa::ResourceName& name)
{
    addCommonAttributes(attributes);
    attributes.addText(VI_ATTR_RSRC_CLASS, name.resourceClass);
    attributes.addText(VI_ATTR_RSRC_NAME, name.fullName);
    attributes.addText(VI_ATTR_INTF_INST_NAME,
                       name.fullName.substr(0, name.fullName.find("::")) + " (stand-in)");
    attributes.addNumber(VI_ATTR_INTF_TYPE, Width::Short, Access::ReadOnly, name.interfaceType);
    attributes.addNumber(VI_ATTR_INTF_NUM, Width::Short, Access::ReadOnly, name.interfaceNumber);
    attributes.addNumber(VI_ATTR_TMO_VALUE, Width::Long, Access::ReadWrite, 2000);
    attributes.addNumber(VI_ATTR_TERMCHAR, Width::Byte, Access::ReadWrite, '\n');
    attributes.addNumber(VI_ATTR_TERMCHAR_EN, Width::Short, Access::ReadWrite, 0);
    attributes.addNumber(VI_ATTR_SEND_END_EN, Width::Short, Access::ReadWrite, 1);
    attributes.addNumber(VI_ATTR_SUPPRESS_END_EN, Width::Short, Access::ReadWrite, 0);
    attributes.addNumber(VI_ATTR_IO_PROT, Width::Short, Access::ReadWrite, 1);
    if (name.interfaceType == VI_INTF_ASRL) {
        addSerialAttributes(attributes);
    }
    addAddressAttributes(attributes, name);
}

} // namespace simulator
