// SPDX-License-Identifier: MIT
#include "simulator/Instrument.h"

#include "resourcemanager/VisaCalls.h"
#include "simulator/BenchSource.h"
#include "visa/Text.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace simulator {

namespace {

using resourcemanager::AttributeTable;
using Field = visa::ResourceField;
using Width = AttributeTable::Width;

void addSerialAttributes(AttributeTable& attributes)
{
    attributes.add(VI_ATTR_ASRL_BAUD, Width::Long, 9600, {1, UINT32_MAX});
    attributes.add(VI_ATTR_ASRL_DATA_BITS, Width::Short, 8, {5, 8});
    attributes.add(VI_ATTR_ASRL_PARITY, Width::Short, 0, {0, 4});
    // In tenths of a bit: 1, 1.5 or 2.
    attributes.add(VI_ATTR_ASRL_STOP_BITS, Width::Short, 10, {10, 20, 5});
    attributes.add(VI_ATTR_ASRL_FLOW_CNTRL, Width::Short, 0, {0, 7});
    attributes.add(VI_ATTR_ASRL_END_IN, Width::Short, 2, {0, 3});
    attributes.add(VI_ATTR_ASRL_END_OUT, Width::Short, 0, {0, 3});
}

/// What the fields of the resource string say.
void addAddressAttributes(AttributeTable& attributes, const visa::ResourceName& name)
{
    const auto addText = [&](ViAttr attribute, Field field) {
        if (const std::string_view text = name.field(field); !text.empty()) {
            attributes.addText(attribute, std::string(text));
        }
    };
    const auto addNumber = [&](ViAttr attribute, Field field) {
        const auto number = visa::parseNumber(name.field(field), 0xFFFF);
        if (number) {
            attributes.addReadOnly(attribute, Width::Short, *number);
        }
        return number.has_value();
    };
    if (addNumber(VI_ATTR_GPIB_PRIMARY_ADDR, Field::PrimaryAddress) &&
        !addNumber(VI_ATTR_GPIB_SECONDARY_ADDR, Field::SecondaryAddress)) {
        attributes.addReadOnly(VI_ATTR_GPIB_SECONDARY_ADDR, Width::Short, 0xFFFF);
    }
    addText(VI_ATTR_TCPIP_HOSTNAME, Field::Host);
    addNumber(VI_ATTR_TCPIP_PORT, Field::Port);
    addNumber(VI_ATTR_MANF_ID, Field::ManufacturerId);
    addNumber(VI_ATTR_MODEL_CODE, Field::ModelCode);
    addText(VI_ATTR_USB_SERIAL_NUM, Field::SerialNumber);
}

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r\n";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

} // namespace

Instrument::Instrument(const visa::ResourceName& name, std::string identification)
    : m_identification(std::move(identification))
{
    AttributeTable& table = attributes();
    resourcemanager::addCommonAttributes(table, BenchSource::manufacturer);
    table.addText(VI_ATTR_RSRC_CLASS, name.resourceClass);
    table.addText(VI_ATTR_RSRC_NAME, name.fullName);
    table.addText(VI_ATTR_INTF_INST_NAME,
                  name.fullName.substr(0, name.fullName.find("::")) + " (simulator)");
    table.addReadOnly(VI_ATTR_INTF_TYPE, Width::Short, name.interfaceType);
    table.addReadOnly(VI_ATTR_INTF_NUM, Width::Short, name.interfaceNumber);
    table.add(VI_ATTR_TMO_VALUE, Width::Long, 2000);
    table.add(VI_ATTR_TERMCHAR, Width::Byte, '\n');
    table.add(VI_ATTR_TERMCHAR_EN, Width::Short, 0, {0, 1});
    table.add(VI_ATTR_SEND_END_EN, Width::Short, 1, {0, 1});
    table.add(VI_ATTR_SUPPRESS_END_EN, Width::Short, 0, {0, 1});
    table.add(VI_ATTR_IO_PROT, Width::Short, 1, {1, 5});
    if (name.interfaceType == VI_INTF_ASRL) {
        addSerialAttributes(table);
    }
    addAddressAttributes(table, name);
}

void Instrument::write(std::string_view message)
{
    const bool isQuestion = visa::toUpperCase(trimmed(message)) == "*IDN?";
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_answer = isQuestion ? m_identification + '\n' : std::string();
}

ViStatus Instrument::read(std::size_t most, std::string& text)
{
    std::uint16_t stopsAtCharacter = 0;
    char character = '\n';
    attributes().get(VI_ATTR_TERMCHAR_EN, &stopsAtCharacter);
    attributes().get(VI_ATTR_TERMCHAR, &character);

    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_answer.empty()) {
        return VI_ERROR_TMO;
    }
    std::size_t length = std::min(most, m_answer.size());
    const std::size_t at = m_answer.find(character);
    const bool stops = stopsAtCharacter != 0 && at < length;
    if (stops) {
        length = at + 1;
    }
    text = m_answer.substr(0, length);
    m_answer.erase(0, length);
    if (stops) {
        return VI_SUCCESS_TERM_CHAR;
    }
    return m_answer.empty() ? VI_SUCCESS : VI_SUCCESS_MAX_CNT;
}

} // namespace simulator
