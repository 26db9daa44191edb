// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/AttributeTable.h"
#include "visa/ResourceName.h"

namespace simulator {

/// The attributes that every session has: who made the library, and which versions it follows.
void addCommonAttributes(AttributeTable& attributes);

/// The attributes of a session to that resource, with the values they have at first.
void addInstrumentAttributes(AttributeTable& attributes, const visa::ResourceName& name);

} // namespace simulator
