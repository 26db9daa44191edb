// SPDX-License-Identifier: MIT
#include "simulator/ResourceManagerSession.h"

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
    return m_bench.status(call, nth, expression);
}

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

} // namespace simulator
