// SPDX-License-Identifier: MIT
#pragma once

#include "visa/VisaApi.h"

namespace visa {

/// The vendor's own attributes of the resource manager; they tune the search that follows. A
/// library that does not know them refuses them, which does no harm.
constexpr ViAttr searchTimeAttribute = 0x0E5A0001;
/// Milliseconds.
constexpr ViAttrState searchTime = 1000;
constexpr ViAttr searchInterfacesAttribute = 0x0E5A0002;
constexpr ViAttrState allInterfaces = 7;
constexpr ViAttrState localInterfaces = 0;

} // namespace visa
