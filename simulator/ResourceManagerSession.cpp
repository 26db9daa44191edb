// SPDX-License-Identifier: MIT
#include "simulator/ResourceManagerSession.h"

#include "simulator/Hold.h"
#include "simulator/InstrumentAttributes.h"
#include "simulator/VisaAttributes.h"

#include <utility>

namespace simulator {

using Access = AttributeTable::Access;
using Width = AttributeTable::Width;

ResourceManagerSession::ResourceManagerSession(Bench bench) : m_bench(std::move(bench))
{
    addCommonAttributes(m_attributes);
    m_attributes.addText(VI_ATTR_RSRC_CLASS, "RM");
    m_attributes.addText(VI_ATTR_RSRC_NAME, "");
    m_attributes.addNumber(QV_ATTR_SEARCH_TIME, Width::Long, Access::ReadWrite, 0);
    m_attributes.addNumber(QV_ATTR_SEARCH_KINDS, Width::Long, Access::ReadWrite, 0);
}

std::optional<ViStatus> ResourceManagerSession::countCall(Call call, std::string_view expression)
{
    const std::uint32_t nth = ++m_counts[static_cast<std::size_t>(call)];
    hold(m_bench, call, nth, expression);
    return m_bench.status(call, nth, expression);
}

} // namespace simulator
