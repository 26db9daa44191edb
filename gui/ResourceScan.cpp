// SPDX-License-Identifier: MIT
#include "gui/ResourceScan.h"

#include "visa/VisaApi.h"

#include <algorithm>
#include <array>

namespace gui {

namespace {

/// The maker's own attributes of the resource manager; they tune the search that follows. A
/// library that does not know them refuses them, which does no harm.
constexpr ViAttr s_searchInterfacesAttribute = 0x0E5A0002;
constexpr ViAttrState s_searchInterfaces = 7;
constexpr ViAttr s_searchTimeAttribute = 0x0E5A0001;
constexpr ViAttrState s_searchTime = 1000;

/// A library may count more than it delivers: room beyond this is made as it is needed.
constexpr ViUInt32 s_mostReserved = 4096;

using Description = std::array<ViChar, VI_FIND_BUFLEN>;

/// Reads no further than the buffer, also where the library did not end the text.
QString toText(const Description& description)
{
    const auto end = std::find(description.begin(), description.end(), '\0');
    return QString::fromUtf8(description.data(), static_cast<int>(end - description.begin()));
}

QStringList findAll(ViSession resourceManager)
{
    QStringList resources;
    ViFindList findList = VI_NULL;
    ViUInt32 count = 0;
    Description description{};
    const ViStatus status =
        viFindRsrc(resourceManager, "?*", &findList, &count, description.data());
    if (status != VI_SUCCESS || count == 0) {
        return resources;
    }
    resources.reserve(static_cast<int>(std::min(count, s_mostReserved)));
    resources.append(toText(description));
    for (ViUInt32 index = 1; index < count; ++index) {
        if (viFindNext(findList, description.data()) == VI_SUCCESS) {
            resources.append(toText(description));
        }
    }
    viClose(findList);
    return resources;
}

} // namespace

QStringList scanForResources()
{
    ViSession resourceManager = VI_NULL;
    viOpenDefaultRM(&resourceManager);
    viSetAttribute(resourceManager, s_searchInterfacesAttribute, s_searchInterfaces);
    viSetAttribute(resourceManager, s_searchTimeAttribute, s_searchTime);
    QStringList resources = findAll(resourceManager);
    resources.sort(Qt::CaseSensitive);
    viClose(resourceManager);
    return resources;
}

} // namespace gui
