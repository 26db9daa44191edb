// SPDX-License-Identifier: MIT
#include "simulator/InstrumentSession.h"

#include "simulator/InstrumentAttributes.h"
#include "simulator/VisaAttributes.h"
#include "simulator/VisaClientApi.h"
#include "visa/Text.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace simulator {

namespace {

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
                                     ViSession managerHandle, const visa::ResourceName& name,
                                     std::string identification)
    : m_manager(std::move(manager)),
      m_identification(std::move(identification))
{
    addInstrumentAttributes(m_attributes, name);
    m_attributes.addNumber(VI_ATTR_RM_SESSION, AttributeTable::Width::Long,
                           AttributeTable::Access::ReadOnly, managerHandle);
}

void InstrumentSession::write(std::string_view message)
{
    const bool isQuestion = visa::toUpperCase(trimmed(message)) == "*IDN?";
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
