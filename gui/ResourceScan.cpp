// SPDX-License-Identifier: MIT
#include "gui/ResourceScan.h"

#include "gui/VisaDescription.h"
#include "visa/VisaApi.h"

#include <algorithm>

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

QStringList findAll(ViSession resourceManager)
{
    QStringList resources;
    ViFindList findList = VI_NULL;
    ViUInt32 count = 0;
    VisaDescription description;
    const ViStatus status =
        viFindRsrc(resourceManager, "?*", &findList, &count, description.buffer());
    if (status != VI_SUCCESS || count == 0) {
        return resources;
    }
    resources.reserve(static_cast<int>(std::min(count, s_mostReserved)));
    resources.append(description.toString());
    for (ViUInt32 index = 1; index < count; ++index) {
        if (viFindNext(findList, description.buffer()) == VI_SUCCESS) {
            resources.append(description.toString());
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
