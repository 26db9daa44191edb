// SPDX-License-Identifier: MIT
#pragma once

#include "visa/VisaApi.h"

#include <optional>
#include <string>

namespace simulator {

/// The published name of a status ("VI_ERROR_TMO"), or its eight hexadecimal digits ("0xBFFF1234")
/// where it has none here. VI_ERROR_INV_OBJECT and VI_ERROR_INV_SESSION share a code; the answer
/// is VI_ERROR_INV_OBJECT.
std::string statusName(ViStatus status);

/// The status that a published name or a number (decimal or 0x...; unsigned 32-bit or negative)
/// stands for, nothing where the text is neither.
std::optional<ViStatus> statusFromText(const std::string& text);

} // namespace simulator
