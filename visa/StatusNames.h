// SPDX-License-Identifier: MIT
#pragma once

#include "visa/VisaApi.h"

#include <optional>
#include <string>

namespace visa {

/// The published name of a status ("VI_ERROR_TMO"), or its code as "0xBFFF1234" where it has none.
/// VI_ERROR_INV_OBJECT and VI_ERROR_INV_SESSION share a code; the answer is VI_ERROR_INV_OBJECT.
std::string statusName(ViStatus status);

/// One English sentence about a published status; null for a code without a published name.
const char* statusDescription(ViStatus status);

/// The status with this published name or number (decimal or 0x..., unsigned 32-bit or negative);
/// nothing for any other text.
std::optional<ViStatus> statusFromText(const std::string& text);

} // namespace visa
