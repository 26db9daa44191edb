// SPDX-License-Identifier: MIT
#include "simulator/InstrumentSession.h"

#include "simulator/ResourceManagerSession.h"
#include "simulator/VisaAttributes.h"
#include "simulator/VisaClientApi.h"

#include <algorithm>
#include <cstdint>
#include <utility>

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

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

} // namespace

InstrumentSession::InstrumentSession(std::shared_ptr<ResourceManagerSession> manager,
                                     ViSession managerHandle, const ResourceName& name,
                                     std::string identification)
    : m_manager(std::move(manager)),
      m_identification(std::move(identification))
{
    addCommonAttributes(m_attributes);
    m_attributes.addText(VI_ATTR_RSRC_CLASS, name.resourceClass);
    m_attributes.addText(VI_ATTR_RSRC_NAME, name.fullName);
    m_attributes.addText(VI_ATTR_INTF_INST_NAME,
                         name.fullName.substr(0, name.fullName.find("::")) + " (stand-in)");
    m_attributes.addNumber(VI_ATTR_RM_SESSION, Width::Long, Access::ReadOnly, managerHandle);
    m_attributes.addNumber(VI_ATTR_INTF_TYPE, Width::Short, Access::ReadOnly, name.interfaceType);
    m_attributes.addNumber(VI_ATTR_INTF_NUM, Width::Short, Access::ReadOnly, name.interfaceNumber);
    m_attributes.addNumber(VI_ATTR_TMO_VALUE, Width::Long, Access::ReadWrite, 2000);
    m_attributes.addNumber(VI_ATTR_TERMCHAR, Width::Byte, Access::ReadWrite, '\n');
    m_attributes.addNumber(VI_ATTR_TERMCHAR_EN, Width::Short, Access::ReadWrite, 0);
    m_attributes.addNumber(VI_ATTR_SEND_END_EN, Width::Short, Access::ReadWrite, 1);
    m_attributes.addNumber(VI_ATTR_SUPPRESS_END_EN, Width::Short, Access::ReadWrite, 0);
    m_attributes.addNumber(VI_ATTR_IO_PROT, Width::Short, Access::ReadWrite, 1);
    if (name.interfaceType == VI_INTF_ASRL) {
        addSerialAttributes(m_attributes);
    }
}

void InstrumentSession::write(std::string_view message)
{
    const bool isQuestion = toUpper(trimmed(message)) == "*IDN?";
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_answer = isQuestion ? m_identification + '\n' : std::string();
}

ViStatus InstrumentSession::read(std::size_t most, std::string& text)
{
    std::uint16_t stopsAtCharacter = 0;
    char character = '\n';
    m_attributes.get(VI_ATTR_TERMCHAR_EN, &stopsAtCharacter);
    m_attributes.get(VI_ATTR_TERMCHAR, &character);

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
